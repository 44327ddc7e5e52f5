#include "commands/checking/code_meanings.h"

#include <algorithm>
#include <array>
#include <span>

namespace brelan::tool {

namespace {

struct CodeField {
    std::string_view card, field;
    std::span<const CodeValue> values;
    std::string_view otherwise;
    bool ends_run = false;
};

constexpr CodeValue MODES[] = {{-1, "combination, the second mesh's data win"},
                               {0, "combination"},
                               {1, "edit"},
                               {2, "base mesh"},
                               {3, "earth dam"}};
constexpr CodeValue INTERFACES[] = {{0, "nodes at one place"}, {1, "listed pairs"}};
constexpr CodeValue EDITS[] = {{0, "move, scale, mirror"}, {1, "set node codes"}, {2, "delete elements"},
                               {3, "change materials"},    {4, "groups"},         {5, "map a slope"},
                               {6, "rebuild elements"}};
constexpr CodeValue NODE_SELECTIONS[] = {
    {0, "in a window"}, {1, "on a list"}, {2, "on a polyline"}, {3, "of elements of listed materials"}};
constexpr CodeValue ELEMENT_SELECTIONS[] = {{0, "in a window"}, {1, "on a list"}};
constexpr CodeValue SIDE_VALUES[] = {{0, "what is selected"}, {1, "all others"}};
constexpr CodeValue NO_YES[] = {{0, "no"}, {1, "yes"}};
constexpr CodeValue FIXED[] = {{0, "free"}, {1, "fixed"}};
constexpr CodeValue TEMPLATES[] = {{1, "1 : 1"}, {2, "1 : 1.5"}, {3, "1 : 2"}, {4, "1 : 2.5"}, {5, "1 : 3"}};
constexpr CodeValue GROUPS[] = {{0, "passed over"},
                                {1, "deletes inside"},
                                {-1, "deletes outside"},
                                {2, "line"},
                                {-2, "joint along a line"},
                                {3, "material inside"},
                                {-3, "material inside, joint"},
                                {4, "stage inside"},
                                {-4, "stage inside, joint"},
                                {5, "outline, listed only"}};
constexpr CodeValue LINES[] = {{0, "nothing"},          {1, "nothing"},         {2, "beams"},
                               {3, "trusses"},          {4, "trusses, code 0"}, {5, "trusses, code 1"},
                               {-1, "nothing"},         {-2, "beams"},          {-3, "trusses"},
                               {-4, "trusses, code 0"}, {-5, "trusses, code 1"}};
constexpr CodeValue SEGMENTS[] = {{1, "straight"}, {2, "arc"}};
constexpr CodeValue ENDS[] = {{0, "ends only"},        {1, "cut, end placed"},  {-1, "cut, start placed"},
                              {2, "cut, both placed"}, {-2, "nodes move only"}, {3, "not cut"}};

constexpr std::array FIELDS{
    CodeField{"1.1", "IMOD", MODES, "no mode: the run ends with a message", true},
    CodeField{"2.2", "INTERFACE", INTERFACES, "expected 0 or 1: the run ends with a message", true},
    CodeField{"3.3", "IEDIT", EDITS, "no edit: the result is a mesh with nothing in it"},
    CodeField{"3.3.2.1", "ILOC", NODE_SELECTIONS, "nothing is selected"},
    CodeField{"3.3.3.1", "ILOC", ELEMENT_SELECTIONS, "nothing is selected"},
    CodeField{"3.3.4.1", "ILOC", ELEMENT_SELECTIONS, "nothing is selected"},
    CodeField{"3.3.2.3", "ISIDE", SIDE_VALUES, "the edit acts on nothing"},
    CodeField{"3.3.3.3", "ISIDE", SIDE_VALUES, "the edit acts on nothing"},
    CodeField{"3.3.4.3", "ISIDE", SIDE_VALUES, "the edit acts on nothing"},
    CodeField{"3.3.6.1", "MODEL", TEMPLATES, "no template of its own: the first is taken"},
    CodeField{"3.3.5.3", "IBOUND", NO_YES, "taken for 0"},
    CodeField{"3.3.5.4-1", "IGTITL", NO_YES, "taken for 0"},
    CodeField{"3.3.5.4.1", "MTYPE", GROUPS, "no kind of group: it has no material line and only cuts"},
    CodeField{"3.3.5.4.1", "IGPOST", NO_YES, "taken for 0"},
    CodeField{"3.3.5.4.1", "OVERLAY", NO_YES, "expected 0 or 1"},
    CodeField{"3.3.5.4.1-1", "LTP", LINES, "no kind of line: nothing is put along it"},
    CodeField{"3.3.5.4.1-1", "LTi", LINES, "no kind of line: nothing is put along it"},
    CodeField{"3.3.5.4.1-1", "LTo", LINES, "no kind of line: nothing is put along it"},
    CodeField{"3.3.5.4.2", "MOVE", NO_YES, "taken for 0"},
    CodeField{"3.3.5.4.2", "IREF", NO_YES, "taken for 0"},
    CodeField{"3.3.5.4.3.1", "LTYPE", SEGMENTS, "no kind of segment: it is left out"},
    CodeField{"3.3.5.4.3.1", "IEND", ENDS, "unknown: sides are cut, and neither end becomes a node"},
    CodeField{"4.1", "IB_LEFT", FIXED, "taken for 0"},
    CodeField{"4.1", "IB_RIGHT", FIXED, "taken for 0"},
    CodeField{"4.1", "IB_TOP", FIXED, "taken for 0"},
    CodeField{"4.1", "IB_BOTTOM", FIXED, "taken for 0"},
    CodeField{"4.5", "IGMOD", NO_YES, "expected 0 or 1: the run ends with a message", true},
    CodeField{"5.1", "ICORE", NO_YES, "taken for 0"},
    CodeField{"5.1", "ICUT", NO_YES, "taken for 0"},
    CodeField{"5.1", "ISHELL", NO_YES, "taken for 1"},
};

const CodeField* row_of(std::string_view card_number, std::string_view field) {
    const auto row = std::find_if(FIELDS.begin(), FIELDS.end(), [&](const CodeField& candidate) {
        return candidate.card == card_number && candidate.field == field;
    });
    return row == FIELDS.end() ? nullptr : &*row;
}

}  // namespace

CodeMeaning meaning_of(const DeckCard& card, const DeckField& field) {
    if (card.type != CardType::values || field.form == FieldForm::real)
        return {};
    const CodeField* const row = row_of(card.number, field.name);
    if (row == nullptr)
        return {};
    for (const CodeValue& value : row->values)
        if (value.value == field.integer())
            return {.is_code = true, .known = true, .text = value.text};
    return {.is_code = true, .text = row->otherwise, .ends_run = row->ends_run};
}

std::span<const CodeValue> code_values(std::string_view card_number, std::string_view field) {
    const CodeField* const row = row_of(card_number, field);
    return row == nullptr ? std::span<const CodeValue>{} : row->values;
}

}  // namespace brelan::tool
