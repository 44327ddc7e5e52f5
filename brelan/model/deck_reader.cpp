// Reading a deck: the library's cards, and what they draw.
#include <algorithm>
#include <limits>

#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "deck/card_source.h"
#include "deck/card_stream.h"
#include "deck/deck.h"
#include "deck/deck_walk.h"
#include "model/card_notes.h"
#include "model/deck.h"
#include "model/group_path.h"
#include "text/channels.h"

namespace brelan::tool {

namespace {

constexpr int CHANNEL_TEXT = 1, CHANNEL_CARDS = 2, CHANNEL_SHOWN = 3;

// --- what the groups draw ------------------------------------------------------------------------

// Numbers on cards may be any; no card has room for the one that has no opposite.
std::int32_t with_opposite(std::int32_t number) {
    return std::max(number, -std::numeric_limits<std::int32_t>::max());
}

// A group by its cards; its points and segments as the engine has them.
DeckGroup group_of(const NotedDeck& deck, const GroupCards& groups, std::int32_t number) {
    DeckGroup group;
    group.number = number;
    std::vector<SegmentRow> rows;
    for (std::size_t i = 0; i < deck.cards.size(); ++i) {
        const DeckCard& card = deck.cards[i];
        if (card.group != number)
            continue;
        if (card.type == CardType::title) {
            group.title = card.name;
        } else if (card.number == "3.3.5.4.1") {
            group.card = i;
            group.group_type = card.integer("MTYPE");
            group.overlay = card.integer("OVERLAY");
        } else if (card.number == "3.3.5.4.3.1") {
            rows.push_back(groups.segments[number][static_cast<std::int32_t>(rows.size()) + 1]);
            const SegmentRow& row = rows.back();
            group.segments.push_back({with_opposite(row.segment_type),
                                      with_opposite(row.divisions),
                                      with_opposite(row.end_rule),
                                      {},
                                      i});
        }
    }
    std::vector<Point> outline;
    for (std::int32_t i = 1; i <= groups.rows[number].point_count; ++i)
        outline.push_back(groups.outlines[number][i]);
    if (group.group_type != 0)
        draw_path(group, outline, rows);
    return group;
}

// The groups whose cards are all there.
void draw_groups(NotedDeck& deck, const GroupCards& groups) {
    std::int32_t last = 0;
    for (const DeckCard& card : deck.cards)
        last = std::max(last, card.group);
    for (std::int32_t number = 1; number <= (deck.fault ? last - 1 : last); ++number)
        deck.groups.push_back(group_of(deck, groups, number));
}

// --- the file ------------------------------------------------------------------------------------

std::string read_text_of(const std::filesystem::path& file) {
    std::error_code error;
    if (!std::filesystem::exists(file, error))
        throw Failure(file.string() + ": expected a card deck, but there is no file of this name");
    if (!std::filesystem::is_regular_file(file, error))
        throw Failure(file.string() + ": expected a card deck, found no ordinary file");
    return read_file(file);
}

MaterialNames named_in(std::string_view text) {
    MaterialNames names;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        names.take_comment(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return names;
}

}  // namespace

DeckSource deck_source(const std::filesystem::path& file) {
    DeckSource source;
    if (file == STANDARD_STREAM)
        source = {STANDARD_INPUT, read_standard_input()};
    else
        source = {file, read_text_of(file)};
    const std::string name = source.file.string();
    std::string& text = source.text;
    if (text.empty())
        throw Failure(name + ": expected a card deck, found an empty file");
    if (const std::size_t zero = text.find('\0'); zero != std::string::npos)
        throw Failure(
            name + ", line " +
            std::to_string(1 + std::count(text.begin(), text.begin() + static_cast<long>(zero), '\n')) +
            ": expected a card deck, found a zero byte: the file is no text");
    source.byte_order_mark = text.starts_with(BYTE_ORDER_MARK);
    if (source.byte_order_mark)
        text.erase(0, BYTE_ORDER_MARK.size());
    return source;
}

NotedDeck read_deck(const DeckSource& source, LayoutKind kind) {
    NotedDeck deck;
    static_cast<DeckSource&>(deck) = source;
    deck.kind = kind;
    deck.names = named_in(source.text);
    Channels channels;
    channels.open_in_memory(CHANNEL_TEXT, source.file.string(), source.text);
    Channel& lines = channels.open_in_memory(CHANNEL_CARDS, "the cards");
    Channel& shown = channels.open_in_memory(CHANNEL_SHOWN, "the normalised deck");
    CardMemory memory;
    const auto values = std::make_unique<brelan::Deck>();
    CardNotes notes(deck);
    DeckCards cards(lines, shown, kind, memory, *values, notes, CardNaming::number);
    try {
        strip_deck(channels, CHANNEL_TEXT, CHANNEL_CARDS);
        shown.follow(lines);
        read_cards(cards, *values, notes);
        if (!lines.at_end())
            deck.surplus_line = lines.place_here().line;
    } catch (const WrongCount& card) {
        notes.refuse(card);
    } catch (const RunEnd& end) {
        notes.refuse(end);
    }
    deck.mode = values->mode;
    for (const DeckCard& card : deck.cards)
        if (card.number == "2.1-1" || (card.number == "3.1-1" && !values->uses_template))
            deck.first_mesh = card.name;
        else if (card.number == "2.1-2")
            deck.second_mesh = card.name;
        else if (card.number == "2.1-3" || card.number == "3.1-2")
            deck.result = card.name;
    draw_groups(deck, values->groups);
    return deck;
}

NotedDeck read_deck(const std::filesystem::path& file, LayoutKind kind) {
    return read_deck(deck_source(file), kind);
}

}  // namespace brelan::tool
