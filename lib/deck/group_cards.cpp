#include "deck/group_cards.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "deck/card_stream.h"
#include "deck/checked_cards.h"
#include "deck/deck_tables.h"
#include "deck/group_card_table.h"
#include "deck/normalised_deck.h"
#include "mesh/group_tables.h"

namespace brelan {

namespace {

// MTYPE 5 of a deck: a group of MTYPE 3 that cuts nothing and colours nothing, the outline of a finished dam.
constexpr std::int32_t CLOSING_OUTLINE = 5;

void write_pair(Channels& channels, LayoutKind kind, CheckedDeck& checker, float a, float b) {
    checker.values[1] = a;
    checker.values[2] = b;
    write_card(checker, normalised(channels), CARD_POST_PAIR.written_of(kind));
}

void pass_list_if_any(Channels& channels, LayoutKind kind, CheckedDeck& checker, Console& console,
                      const Card& card) {
    pass(channels, kind, checker, console, card);
    if (const std::int32_t count = count_on(channels, checker, card, MOST_CARD_VALUES); count > 0)
        pass_integer_list(channels, checker, card, count);
}

void pass_title(Channels& channels) {
    const TextLine line = deck(channels).read_line("a group's title");
    const std::int32_t columns = last_title_column(line);
    normalised(channels).write_line(columns == 0 ? " " : line.first(columns));
}

// A material line whose MATold stands at a position: 0 there stands for the material after MAT.
void pass_with_old_material(Channels& channels, LayoutKind kind, CheckedDeck& checker, Console& console,
                            const Card& card, std::int32_t position) {
    check(channels, kind, checker, console, card);
    if (checker.values[position] == 0.0F)
        checker.values[position] = checker.values[1] + 1.0F;
    if (const std::string_view form = card.written_of(kind); !form.empty())
        write_card(checker, normalised(channels), form);
}

void pass_material_line(Channels& channels, LayoutKind kind, CheckedDeck& checker, Console& console,
                        std::int32_t group_type) {
    switch (group_type) {
        case 1:
        case 2:
            pass(channels, kind, checker, console, CARD_MATERIAL_1);
            break;
        case 3:
            pass(channels, kind, checker, console, CARD_MATERIAL_3);
            break;
        case 4:
            pass_with_old_material(channels, kind, checker, console, CARD_MATERIAL_4, 5);
            break;
        case CLOSING_OUTLINE: {
            const std::int32_t words[4] = {0, 1, 0, 1};  // MAT, KF, LTP, LMAT
            write_integers(normalised(channels), words);
            break;
        }
        case -2:
            pass(channels, kind, checker, console, CARD_MATERIAL_JOINT_2);
            break;
        case -3:
            pass(channels, kind, checker, console, CARD_MATERIAL_JOINT_3);
            break;
        case -4:
            pass_with_old_material(channels, kind, checker, console, CARD_MATERIAL_JOINT_4, 10);
            break;
        default:
            break;
    }
}

// Six pairs and seven switches for the outputs. MTYPE 5 moves its first pair to the second place.
void pass_post_lines(Channels& channels, LayoutKind kind, CheckedDeck& checker, Console& console,
                     std::int32_t group_type) {
    constexpr int pairs = 6, switches = 7;
    float kept_1 = 0.0F, kept_2 = 0.0F;
    for (int i = 1; i <= pairs; ++i) {
        check(channels, kind, checker, console, CARD_POST_PAIR);
        if (group_type == CLOSING_OUTLINE && i == 1) {
            kept_1 = checker.values[1];
            kept_2 = checker.values[2];
            write_pair(channels, kind, checker, 0.0F, 0.0F);
        } else if (group_type == CLOSING_OUTLINE && i == 2) {
            write_pair(channels, kind, checker, kept_1, kept_2);
        } else {
            write_pair(channels, kind, checker, checker.values[1], checker.values[2]);
        }
    }
    for (int i = 1; i <= switches; ++i)
        pass(channels, kind, checker, console, CARD_POST_SWITCH);
}

void pass_outline(Channels& channels, LayoutKind kind, CheckedDeck& checker, Console& console,
                  std::int32_t group_type) {
    check(channels, kind, checker, console, CARD_POINTS);
    if (group_type == CLOSING_OUTLINE)
        checker.values[2] = 0.0F;  // MOVE
    write_card(checker, normalised(channels), CARD_POINTS.written_of(kind));
    const std::int32_t point_count = count_on(channels, checker, CARD_POINTS, MOST_GROUP_POINTS);
    for (std::int32_t i = 1; i <= point_count; ++i)
        pass(channels, kind, checker, console, CARD_POINT);
}

void pass_arc(Channels& channels, LayoutKind kind, CheckedDeck& checker, Console& console,
              bool closes_outline) {
    pass(channels, kind, checker, console, CARD_ARC);
    const ArcFault fault = fault_of_arc(std::span<const float, 6>(&checker.values[1], 6), closes_outline);
    if (!fault.message.empty())
        deck(channels).fail_behind(fault.message);
}

void pass_segments(Channels& channels, LayoutKind kind, CheckedDeck& checker, Console& console,
                   std::int32_t group_type) {
    pass(channels, kind, checker, console, CARD_SEGMENTS);
    const std::int32_t segment_count = count_on(channels, checker, CARD_SEGMENTS, MOST_GROUP_POINTS);
    if (segment_count < 0)
        deck(channels).fail_behind("Card 3.3.5.4.3: expected an NSEGMENT of 0 or more, found " +
                                   std::to_string(segment_count));
    for (std::int32_t k = 1; k <= segment_count; ++k) {
        check(channels, kind, checker, console, CARD_SEGMENT);
        const std::int32_t segment_type = value_of(checker, 2);
        // Segments count as they come, whatever number the card gives them.
        checker.values[1] = static_cast<float>(k);
        if (group_type == CLOSING_OUTLINE) {
            checker.values[3] = 0.0F;  // NDIV
            checker.values[4] = 3.0F;  // IEND
        }
        write_card(checker, normalised(channels), CARD_SEGMENT.written_of(kind));
        if (segment_type == 2)
            pass_arc(channels, kind, checker, console,
                     k > 1 && k == segment_count && std::abs(group_type) != 2);
    }
}

void check_group(Channels& channels, LayoutKind kind, CheckedDeck& checker, Console& console, bool titled) {
    if (titled)
        pass_title(channels);
    check(channels, kind, checker, console, CARD_GROUP);
    const std::int32_t group_type = value_of(checker, 1);
    const bool has_post_lines = value_of(checker, 2) == 1;
    if (group_type == CLOSING_OUTLINE)
        checker.values[1] = 3.0F;
    write_card(checker, normalised(channels), CARD_GROUP.written_of(kind));
    if (group_type == 0)
        return;
    pass_material_line(channels, kind, checker, console, group_type);
    if (has_post_lines)
        pass_post_lines(channels, kind, checker, console, group_type);
    pass_outline(channels, kind, checker, console, group_type);
    pass_segments(channels, kind, checker, console, group_type);
}

}  // namespace

ArcFault fault_of_arc(std::span<const float, 6> values, bool closes_outline) {
    constexpr float smallest_square = std::numeric_limits<float>::min();
    const auto [Rx, Ry, Qb, Qe] = std::array{values[2], values[3], values[4], values[5]};
    const auto message = [](const char* field, const char* expected, float found) {
        std::array<char, 32> text{};
        std::snprintf(text.data(), text.size(), "%g", static_cast<double>(found));
        return std::string("Card 3.3.5.4.3.1-1 (") + field + "): expected " + expected + ", found " +
               text.data() + ": the arc has no length";
    };
    // The engine works with the squares.
    if (Rx * Rx < smallest_square)
        return {message("Rx", "a half axis other than 0", Rx), 2};
    if (Ry * Ry < smallest_square)
        return {message("Ry", "a half axis other than 0", Ry), 3};
    if (written_alike(Qb, Qe) && !(closes_outline && !written_alike(Rx, Ry)))
        return {message("Qe", "an angle other than Qb", Qe), 5};
    return {};
}

void check_groups(Channels& channels, LayoutKind kind, CheckedDeck& checker, Console& console) {
    pass_list_if_any(channels, kind, checker, console, CARD_NODES);
    pass_list_if_any(channels, kind, checker, console, CARD_ELEMENTS);
    pass(channels, kind, checker, console, CARD_BOUND);
    if (value_of(checker, 1) == 1)
        pass(channels, kind, checker, console, CARD_BOUNDS);
    pass(channels, kind, checker, console, CARD_GROUPS);
    const std::int32_t groups = count_on(channels, checker, CARD_GROUPS, MOST_GROUPS);
    const bool titled = value_of(checker, 2) == 1;
    pass(channels, kind, checker, console, CARD_REFERENCE);
    for (std::int32_t g = 1; g <= groups; ++g)
        check_group(channels, kind, checker, console, titled);
}

}  // namespace brelan
