#include "model/new_group.h"

#include <fmt/core.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <filesystem>

#include "cli/exit_status.h"
#include "cli/words.h"
#include "deck/card_table.h"
#include "deck/group_card_table.h"
#include "model/card_layout.h"
#include "model/group_outline.h"

namespace brelan::tool {

namespace {

constexpr std::int32_t EDIT = 1, BASE_MESH_MODE = 2, DAM = 3, GROUPS = 4;

// --- where it goes -------------------------------------------------------------------------------

// The lines that a group takes: of its first card and of its last; the comments in front belong to it as
// well.
struct GroupLines {
    int first = 0, last = 0;
};

GroupLines lines_of_group(const NotedDeck& deck, int number) {
    GroupLines lines;
    for (const DeckCard& card : deck.cards)
        if (card.group == number) {
            lines.first = lines.first == 0 ? card.line : lines.first;
            lines.last = card.last_line;
        }
    return lines;
}

// The line behind each group, and the one behind the cards in front of all.
std::vector<int> boundaries(const NotedDeck& deck) {
    std::vector<int> lines{deck.card("3.3.5.4-2")->last_line + 1};
    for (const DeckGroup& group : deck.groups)
        lines.push_back(lines_of_group(deck, group.number).last + 1);
    return lines;
}

// How many groups stand in front of one that is drawn with the cursor there: it follows the group that the
// cursor is in. Outside of the groups' cards it follows all of them, as groups work on what those before
// left.
std::size_t groups_before(const NotedDeck& deck, int line) {
    if (line < deck.card("3.3.5.4-1")->line)
        return deck.groups.size();
    return static_cast<std::size_t>(std::count_if(
        deck.groups.begin(), deck.groups.end(),
        [&](const DeckGroup& group) { return lines_of_group(deck, group.number).first <= line; }));
}

// Lines in front of a line, which may be the one behind the last.
TextEdit insertion(const NotedDeck& deck, int line, std::string text) {
    const std::vector<std::string_view> lines = lines_of(deck.text);
    if (static_cast<std::size_t>(line) <= lines.size() || deck.text.ends_with('\n'))
        return {line, 0, 0, std::move(text)};
    text.pop_back();
    const std::size_t end = lines.back().size();
    return {line - 1, end, end, "\n" + text};
}

// --- comments that count groups ------------------------------------------------------------------

// A comment in front of a group that has its number in it, as "* Group No = 2".
constexpr std::string_view COUNTING = "Group No = ";

std::vector<TextEdit> counted_on(const NotedDeck& deck, std::size_t behind) {
    const std::vector<std::string_view> lines = lines_of(deck.text);
    const std::vector<int> from = boundaries(deck);
    std::vector<TextEdit> edits;
    for (std::size_t g = deck.groups.size(); g > behind; --g)
        for (int number = from[g - 1]; number < lines_of_group(deck, deck.groups[g - 1].number).first;
             ++number) {
            const std::string_view line = lines[static_cast<std::size_t>(number) - 1];
            const std::size_t found = line.find(COUNTING);
            if (!line.starts_with('*') || found == std::string_view::npos)
                continue;
            const std::size_t begin = found + COUNTING.size();
            std::size_t counted = 0;
            const auto [end, error] =
                std::from_chars(line.data() + begin, line.data() + line.size(), counted);
            if (error == std::errc() && counted == g)
                edits.push_back(
                    {number, begin, static_cast<std::size_t>(end - line.data()), std::to_string(g + 1)});
        }
    return edits;
}

// --- its cards -----------------------------------------------------------------------------------

std::string real_text(double value) {
    return text_like(value, "0.0");
}

// The attribute that the elements inside get: that of a group near by, else that of a base mesh.
std::string attribute_text(const NotedDeck& deck, std::string_view field) {
    const DeckField* found = nullptr;
    for (const DeckCard& card : deck.cards)
        if (const DeckField* own = card.number == CARD_MATERIAL_3.number ? card.field(field) : nullptr)
            found = own;
    if (found != nullptr && found->known)
        return shortest_text(found->value, found->form);
    return field == "DEN" ? "2.3" : field == "KF" ? "1" : "0";
}

class GroupText {
public:
    GroupText(const NotedDeck& deck, const CardLayout& layout, const GroupOutline& outline)
        : deck_(deck), layout_(layout), outline_(outline) {}

    std::string cards(std::int32_t material) const {
        const std::string type = outline_.closed ? "3" : "2";
        std::string text = layout_.line(CARD_GROUP, {type, "0", "0"});
        // Beams stand along a line.
        const std::string line_type = outline_.closed || material == 0 ? "0" : "2";
        const std::string line_material = outline_.closed ? "0" : std::to_string(material);
        if (outline_.closed)
            text += layout_.line(CARD_MATERIAL_3,
                                 {std::to_string(material),
                                  attribute_text(deck_, CARD_MATERIAL_3.fields_of(deck_.kind)[2].name),
                                  line_type, line_material});
        else
            text += layout_.line(CARD_MATERIAL_1, {line_type, line_material});
        return text + points() + segments();
    }

private:
    std::string points() const {
        std::vector<CardValueTexts> rows;
        for (const DeckPoint& point : outline_.points)
            rows.push_back({std::to_string(rows.size() + 1), real_text(point.x), real_text(point.y)});
        return layout_.line(CARD_POINTS, {std::to_string(rows.size()), "1", "0", "0.0", "0.0"}) +
               layout_.lines(CARD_POINT, rows);
    }

    // Cut all along, with both ends as nodes.
    std::string segments() const {
        const std::size_t count = outline_.points.size() - (outline_.closed ? 0 : 1);
        std::string text = layout_.line(CARD_SEGMENTS, {std::to_string(count)});
        const auto row = [](std::size_t number, const char* type) {
            return CardValueTexts{std::to_string(number), type, "0", "2"};
        };
        if (outline_.arcs.empty()) {
            std::vector<CardValueTexts> rows;
            for (std::size_t k = 1; k <= count; ++k)
                rows.push_back(row(k, "1"));
            return text + layout_.lines(CARD_SEGMENT, rows);
        }
        for (std::size_t k = 1; k <= outline_.arcs.size(); ++k) {
            const OutlineArc& arc = outline_.arcs[k - 1];
            text += layout_.line(CARD_SEGMENT, row(k, "2")) +
                    layout_.line(CARD_ARC,
                                 {real_text(arc.centre.x), real_text(arc.centre.y), real_text(arc.radius),
                                  real_text(arc.radius), real_text(arc.begin), real_text(arc.end)});
        }
        return text;
    }

    const NotedDeck& deck_;
    const CardLayout& layout_;
    const GroupOutline& outline_;
};

std::string title_of(const GroupSketch& drawn, std::size_t number) {
    constexpr std::size_t most = 80;
    if (drawn.title.find_first_not_of(' ') == std::string::npos)
        return fmt::format("{} {}",
                           drawn.form == DrawnForm::outline ? "Outline"
                           : drawn.form == DrawnForm::line  ? "Line"
                                                            : "Arc",
                           number);
    if (drawn.title.starts_with('*') || drawn.title.size() > most ||
        drawn.title.find_first_of("\r\n\t") != std::string::npos)
        throw Failure(
            fmt::format("a title is one line of at most {} characters that does not begin with *", most));
    return drawn.title;
}

// All lines of a group. With titles the comment in front has none of its own.
std::string group_text(const NotedDeck& deck, const CardLayout& layout, const GroupSketch& drawn,
                       const GroupOutline& outline, std::size_t number, bool titled) {
    const std::string title = title_of(drawn, number);
    std::string text;
    if (layout.has_comments() || !titled)
        text += fmt::format("* {}{}{}\n", COUNTING, number, titled ? "" : ": " + title);
    if (titled)
        text += title + "\n";
    return text + GroupText(deck, layout, outline).cards(drawn.material);
}

// --- a deck that draws groups --------------------------------------------------------------------

NewGroup into_groups(const NotedDeck& deck, int line, const GroupSketch& drawn, const GroupOutline& outline) {
    const DeckCard& counts = *deck.card("3.3.5.4-1");
    const std::size_t before = groups_before(deck, line), count = deck.groups.size();
    if (count >= static_cast<std::size_t>(MOST_GROUPS))
        throw Failure(fmt::format("a deck has at most {} groups", MOST_GROUPS));
    std::optional<std::size_t> like;
    for (std::size_t g = 0; g < count; ++g)
        if (deck.groups[g].group_type != 0 && (!like || g < before))
            like = g;
    const int at = boundaries(deck)[before];
    const std::string text =
        group_text(deck, CardLayout(deck, like), drawn, outline, before + 1, counts.integer("IGTITL") == 1);
    NewGroup made;
    made.edits = counted_on(deck, before);
    made.edits.push_back(insertion(deck, at, text));
    const ValueChange change{static_cast<std::size_t>(&counts - deck.cards.data()), 0,
                             std::to_string(count + 1)};
    for (TextEdit& edit : value_edits(deck, {&change, 1}))
        made.edits.push_back(std::move(edit));
    made.line = at + (text.starts_with('*') ? 1 : 0);
    return made;
}

// --- a base mesh that gets an edit ---------------------------------------------------------------

// The name of the mesh that the deck is to make.
std::string result_name(const NotedDeck& deck) {
    const std::string stem = deck.file.stem().string();
    const bool is_name = !stem.empty() && stem.find_first_of("*\\/:- ") == std::string::npos &&
                         lower(stem + ".dat") != lower(BASE_MESH);
    return (is_name ? stem : "Groups") + ".Mes";
}

NewGroup behind_base_mesh(const NotedDeck& deck, const GroupSketch& drawn, const GroupOutline& outline) {
    const DeckCard& last = *deck.card("4.5");
    if (deck.surplus_line > 0)
        throw Failure(
            fmt::format("line {} is not read: take it out, or set IGMOD on line {} to 1 where an edit "
                        "begins there",
                        deck.surplus_line, last.line));
    const DeckCard& corner = *deck.card("4.2");
    double right = static_cast<double>(corner.real("Xo")), top = static_cast<double>(corner.real("Yo"));
    for (const DeckCard& card : deck.cards) {
        right += card.number == "4.3" ? static_cast<double>(card.real("W")) : 0.0;
        top += card.number == "4.4" ? static_cast<double>(card.real("H")) : 0.0;
    }
    const CardLayout layout(deck);
    std::string text = fmt::format("* The base mesh is read, and the mesh with groups written.\n{}\n{}\n",
                                   BASE_MESH, result_name(deck));
    text += layout.line(CARD_3_2, {"1", "1"});
    text += layout.line(CARD_3_3, {std::to_string(GROUPS)});
    text += layout.line(CARD_NODES, {"0"}) + layout.line(CARD_ELEMENTS, {"0"});
    text += "* The border of the mesh stays where it is.\n" + layout.line(CARD_BOUND, {"1"});
    text += layout.line(
        CARD_BOUNDS, {shortest_text(corner.real("Xo"), FieldForm::real),
                      shortest_text(corner.real("Yo"), FieldForm::real), real_text(right), real_text(top)});
    text += layout.line(CARD_GROUPS, {"1", "1"}) + layout.line(CARD_REFERENCE, {"0.0", "0.0"});
    NewGroup made;
    made.line = last.last_line + 2 + static_cast<int>(std::count(text.begin(), text.end(), '\n'));
    text += group_text(deck, layout, drawn, outline, 1, true);
    made.edits.push_back(insertion(deck, last.last_line + 1, text));
    const ValueChange change{static_cast<std::size_t>(&last - deck.cards.data()), 0, "1"};
    for (TextEdit& edit : value_edits(deck, {&change, 1}))
        made.edits.push_back(std::move(edit));
    return made;
}

[[noreturn]] void refuse_mode(const NotedDeck& deck) {
    if (deck.mode == DAM)
        throw Failure("a deck of an earth dam draws no groups: an edit of its mesh with IEDIT 4 does");
    if (const DeckCard* edit = deck.card("3.3"))
        throw Failure(
            fmt::format("the deck draws no groups: set IEDIT on line {} to {}, and the cards behind it",
                        edit->line, GROUPS));
    throw Failure("the deck joins two meshes and draws no groups: an edit of the result with IEDIT 4 does");
}

NewGroup made_group(const NotedDeck& deck, int line, const GroupSketch& drawn) {
    constexpr std::int32_t most_material = 99999;
    if (deck.fault)
        throw Failure(deck.fault->line > 0
                          ? fmt::format("mend line {} first: {}", deck.fault->line, deck.fault->message)
                          : deck.fault->message);
    if (drawn.material < 0 || drawn.material > most_material)
        throw Failure(fmt::format("a material is a number from 0 to {}", most_material));
    const GroupOutline outline = outline_of(drawn);
    if (deck.card("3.3.5.4-2") != nullptr)
        return into_groups(deck, line, drawn, outline);
    const DeckCard* edit_follows = deck.card("4.5");
    if (deck.mode == BASE_MESH_MODE && edit_follows != nullptr && edit_follows->integer("IGMOD") != EDIT)
        return behind_base_mesh(deck, drawn, outline);
    refuse_mode(deck);
}

}  // namespace

NewGroup draw_group(const NotedDeck& deck, int line, const GroupSketch& drawn) {
    NewGroup made = made_group(deck, line, drawn);
    std::sort(made.edits.begin(), made.edits.end(), [](const TextEdit& a, const TextEdit& b) {
        return a.line != b.line ? a.line > b.line : a.from > b.from;
    });
    return made;
}

}  // namespace brelan::tool
