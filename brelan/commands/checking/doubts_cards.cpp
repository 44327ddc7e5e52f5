// Counts that disagree, switches that exclude each other, lengths that make no sense.
#include <fmt/core.h>

#include <algorithm>
#include <cmath>

#include "commands/card_report.h"
#include "commands/checking/doubts.h"
#include "mesh/tables.h"

namespace brelan::tool {

namespace {

constexpr float FINEST = 0.3F, EVEN = 0.5F;  // AX and AY

std::size_t words_on(const std::string& text) {
    std::size_t words = 0;
    bool in_word = false;
    for (const char c : text) {
        const bool separator = c == ' ' || c == ',' || c == '\t' || c == '\n';
        words += !separator && !in_word ? 1 : 0;
        in_word = !separator;
    }
    return words;
}

void doubt_list(Doubts& doubts, const DeckCard& card) {
    const std::size_t words = words_on(card.text);
    if (card.text.find_first_of("*/") == std::string::npos && words > card.list.size())
        doubts.doubt("counts-disagree", &card,
                     fmt::format("{} numbers are asked for, and {} stand there: the rest is not read",
                                 card.list.size(), words));
    if (card.last_line > card.line + 1 &&
        card.list.size() < 2 * static_cast<std::size_t>(card.last_line - card.line))
        doubts.doubt("counts-disagree", &card,
                     fmt::format("the list of {} numbers takes the lines up to {}: does its count fit?",
                                 card.list.size(), card.last_line));
}

// Lists of Cards 3.3.2.2.2 and the like, with ranges.
void doubt_ranges(Doubts& doubts, const DeckCard& card, bool ranges) {
    const auto number = [](float value) { return static_cast<double>(value); };
    for (std::size_t i = 0; i < card.list.size(); ++i) {
        const double value = number(card.list[i]);
        if (std::abs(value) > HIGHEST_NODE_NUMBER)
            doubts.end_of_run("too-large", &card,
                              fmt::format("{:g}: numbers go up to {}", value, HIGHEST_NODE_NUMBER));
        if (value >= 0.0)
            continue;
        if (!ranges)
            doubts.doubt("no-range", &card, fmt::format("{:g}: this list knows no ranges", value));
        else if (i == 0)
            doubts.end_of_run("bad-range", &card,
                              fmt::format("{:g}: a list cannot begin with a range", value));
        else if (number(card.list[i - 1]) >= -value)
            doubts.doubt(
                "bad-range", &card,
                fmt::format("{:g} {:g}: the range has nothing in it", number(card.list[i - 1]), value));
    }
}

// Lists of Card 2.3.
void doubt_pairs(Doubts& doubts, const DeckCard& card) {
    for (const float value : card.list)
        if (const std::int32_t number = whole_number(value); number < 1 || number > HIGHEST_NODE_NUMBER)
            doubts.end_of_run("bad-number", &card,
                              fmt::format("{}: pairs have single numbers from 1 to {}, and know no ranges",
                                          number, HIGHEST_NODE_NUMBER));
}

void doubt_window(Doubts& doubts, const DeckCard& card) {
    if (!(card.real("XMIN") < card.real("XMAX")) || !(card.real("YMIN") < card.real("YMAX")))
        doubts.doubt("empty-window", &card,
                     "the window has no area: XMIN and YMIN are to be the smaller ones");
}

void doubt_strip(Doubts& doubts, const DeckCard& card, const char* width_name, const char* smallest_name,
                 const char* position_name) {
    const float width = card.real(width_name), smallest = card.real(smallest_name),
                position = std::abs(card.real(position_name));
    if (!(width > 0.0F))
        doubts.doubt("bad-length", &card,
                     fmt::format("{} {:g}: expected a length above 0", width_name, width));
    if (!(smallest > 0.0F))
        doubts.doubt("bad-length", &card,
                     fmt::format("{} {:g}: expected a length above 0", smallest_name, smallest));
    if (position < FINEST)
        doubts.doubt("bad-grading", &card,
                     fmt::format("{} {:g}: taken for {:g}; 0.3 to 0.5 grade, 0.5 is even", position_name,
                                 card.real(position_name), std::copysign(FINEST, card.real(position_name))));
    if (position > EVEN)
        doubts.doubt("bad-grading", &card,
                     fmt::format("{} {:g}: taken for {:g}, which is even", position_name,
                                 card.real(position_name), std::copysign(EVEN, card.real(position_name))));
}

// A graded column or row comes out wavy when its middle key point lies on the coordinate 0: even along the
// edges of the blocks that it runs through, graded between them.
void doubt_middles(Doubts& doubts) {
    const NotedDeck& deck = doubts.deck();
    const DeckCard* corner = deck.card("4.2");
    if (corner == nullptr)
        return;
    float height = 0.0F;
    for (const DeckCard& card : deck.cards)
        if (card.number == "4.4")
            height += card.real("H");
    float x = corner->real("Xo"), y = corner->real("Yo") + height;
    const auto look = [&](const DeckCard& card, float start, float direction, float width, float position) {
        const float share = std::clamp(std::abs(position), FINEST, EVEN);
        const float middle = start + direction * (position >= 0.0F ? share * width : width - share * width);
        if (std::abs(middle) < 1e-6F * width && share < EVEN)
            doubts.doubt(
                "middle-on-zero", &card,
                "its middle point lies on the coordinate 0, where it counts as not given on the edges of "
                "the blocks, but not in their centres: the grading comes out wavy");
    };
    for (const DeckCard& card : deck.cards) {
        if (card.number == "4.3") {
            look(card, x, 1.0F, card.real("W"), card.real("AX"));
            x += card.real("W");
        } else if (card.number == "4.4") {
            look(card, y, -1.0F, card.real("H"), card.real("AY"));
            y -= card.real("H");
        }
    }
}

void doubt_start_numbers(Doubts& doubts, const DeckCard& card) {
    for (const char* name : {"NSNEL", "NSNODE"})
        if (const std::int32_t first = card.integer(name);
            first < 1 || (first > HIGHEST_NODE_NUMBER && first <= 99999))
            doubts.end_of_run(
                "bad-number", &card,
                fmt::format("{} {}: numbers go from 1 to {}", name, first, HIGHEST_NODE_NUMBER));
}

void doubt_counts(Doubts& doubts, const DeckCard& card) {
    for (const char* name : {"NINT", "NSEL", "NEDC", "NEDB", "NEDT", "NODE", "NOEL", "NGROUP", "NLAYER"})
        if (const DeckField* field = card.field(name); field != nullptr && field->integer() < 0)
            doubts.doubt("bad-count", &card, fmt::format("{} {}: taken for 0", name, field->integer()));
    if (const DeckField* field = card.field("NSEL"); field != nullptr && field->integer() == 0)
        doubts.doubt("bad-count", &card, "NSEL 0: nothing is selected");
}

}  // namespace

void doubt_cards(Doubts& doubts) {
    const NotedDeck& deck = doubts.deck();
    const DeckCard* nodes = deck.card("3.3.2.1");
    for (const DeckCard& card : deck.cards) {
        if (deck.fault && card.line == deck.fault->line)
            continue;
        if (card.type == CardType::list)
            doubt_list(doubts, card);
        const bool selection = card.number == "3.3.2.2.2" || card.number == "3.3.3.2.2" ||
                               card.number == "3.3.4.2.2" || card.number == "3.3.5.1" ||
                               card.number == "3.3.5.2";
        if (card.type == CardType::list && selection)
            doubt_ranges(doubts, card,
                         card.number != "3.3.2.2.2" || nodes == nullptr || nodes->integer("ILOC") == 1);
        if (card.type == CardType::list && card.number == "2.3")
            doubt_pairs(doubts, card);
        if (card.type != CardType::values)
            continue;
        if (card.field("XMIN") != nullptr)
            doubt_window(doubts, card);
        doubt_counts(doubts, card);
        if (card.number == "3.2")
            doubt_start_numbers(doubts, card);
        else if (card.number == "3.3.1.2" && (card.real("SCX") == 0.0F || card.real("SCY") == 0.0F))
            doubts.doubt("bad-length", &card, "a scale of 0 leaves nothing of the mesh");
        else if (card.number == "4.3")
            doubt_strip(doubts, card, "W", "DX", "AX");
        else if (card.number == "4.4")
            doubt_strip(doubts, card, "H", "DY", "AY");
        else if (card.number == "3.3.6.2" && (card.real("rHw") < 0.0F || card.real("rHw") > 1.0F))
            doubts.doubt("no-water", &card,
                         fmt::format("rHw {:g}: no water level from 0 to 1", card.real("rHw")));
    }
    doubt_middles(doubts);
    if (!deck.fault && deck.surplus_line > 0) {
        DeckCard behind;
        behind.line = deck.surplus_line;
        doubts.doubt("surplus-lines", &behind,
                     "the deck ends before this line: from here on nothing is read");
    }
}

}  // namespace brelan::tool
