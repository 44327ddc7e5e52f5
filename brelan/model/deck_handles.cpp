#include "model/deck_handles.h"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>

#include "cli/exit_status.h"
#include "model/handle_reading.h"

namespace brelan::tool {

double arriving(float value) {
    return std::stod(fmt::format("{:.4e}", value));
}

std::size_t place_of_field(const DeckCard& card, std::string_view name) {
    const DeckField* const field = card.field(name);
    if (field == nullptr)
        throw Failure(fmt::format("Card {} has no {}", card.number, name));
    return static_cast<std::size_t>(field - card.fields.data());
}

double number_on(const DeckCard& card, std::string_view name) {
    return arriving(card.real(name));
}

std::vector<DeckHandle> handles_of(const NotedDeck& deck) {
    std::vector<DeckHandle> handles;
    add_plan_handles(deck, handles);
    add_group_handles(deck, handles);
    return handles;
}

namespace {

const DeckHandle& handle_named(const std::vector<DeckHandle>& handles, std::string_view id) {
    const auto found = std::find_if(handles.begin(), handles.end(),
                                    [&](const DeckHandle& handle) { return handle.id == id; });
    if (found == handles.end())
        throw Failure(fmt::format("the deck draws nothing called {} any longer", id));
    return *found;
}

float value_at(const NotedDeck& deck, const Lever& lever) {
    const DeckCard& card = deck.cards[lever.card];
    return card.type == CardType::list ? card.list.at(lever.place) : card.fields.at(lever.place).value;
}

std::string text_at(const NotedDeck& deck, const Lever& lever) {
    const DeckCard& card = deck.cards[lever.card];
    // A number of a list has no text of its own: one decimal is usual.
    return card.type == CardType::list ? "0.0" : card.fields.at(lever.place).text;
}

// Differences of numbers with few digits end in noise.
double without_noise(double value, double coordinate, double origin) {
    constexpr double noise = 1e-9;
    return std::abs(value) < noise * std::max(std::abs(coordinate), std::abs(origin)) ? 0.0 : value;
}

class Mover {
public:
    Mover(const NotedDeck& deck, const DeckHandle& handle) : deck_(deck), handle_(handle) {}

    const std::vector<ValueChange>& changes() const { return changes_; }

    void move(const DeckPoint& to) {
        for (const Lever& lever : handle_.x)
            pull(lever, to.x);
        for (const Lever& lever : handle_.y)
            pull(lever, to.y);
        const double x = to.x - handle_.centre.x, y = to.y - handle_.centre.y;
        for (const Lever& lever : handle_.polar)
            if (handle_.kind == HandleKind::angle)
                turn(lever, std::atan2(y, x) * DEGREES);
            else
                pull(lever, std::hypot(x, y));
    }

private:
    void pull(const Lever& lever, double coordinate) {
        set(lever, without_noise(lever.factor * (coordinate - lever.origin), coordinate, lever.origin));
    }

    // The angle of that direction that is nearest to what it was.
    void turn(const Lever& lever, double degrees) {
        const auto before = static_cast<double>(value_at(deck_, lever));
        set(lever, before + std::remainder(degrees - before, FULL_TURN));
    }

    void set(const Lever& lever, double value) {
        const std::string text = text_like(value, text_at(deck_, lever));
        // A half axis may have either sign, and keeps it.
        const float before = handle_.kind == HandleKind::radius ? value_at(deck_, lever) : 1.0F;
        if (lever.is_length && !(std::stof(text) * before > 0.0F))
            throw Failure(handle_.kind == HandleKind::radius
                              ? fmt::format("the {} cannot be 0", handle_.title)
                              : fmt::format("\"{}\" cannot pass what lies beside it", handle_.title));
        if (std::stof(text) != value_at(deck_, lever))
            changes_.push_back({lever.card, lever.place, text});
    }

    const NotedDeck& deck_;
    const DeckHandle& handle_;
    std::vector<ValueChange> changes_;
};

bool has_area(const DeckCard& window) {
    return window.real("XMIN") < window.real("XMAX") && window.real("YMIN") < window.real("YMAX");
}

// The cards as they were but for the numbers that were to change.
void require_changed(const NotedDeck& before, const NotedDeck& after, std::span<const ValueChange> changes) {
    const int line = before.cards[changes.front().card].line;
    if (after.fault && (!before.fault || after.fault->line != before.fault->line))
        throw Failure(after.fault->message);
    bool alike = after.cards.size() == before.cards.size();
    for (std::size_t i = 0; alike && i < before.cards.size(); ++i) {
        std::vector<float> was = before.cards[i].list, is = after.cards[i].list;
        for (const DeckField& field : before.cards[i].fields)
            was.push_back(field.value);
        for (const DeckField& field : after.cards[i].fields)
            is.push_back(field.value);
        for (const ValueChange& change : changes)
            if (change.card == i && change.place < was.size())
                was[change.place] = std::stof(change.text);
        alike = was == is;
    }
    if (!alike)
        throw Failure(fmt::format(
            "line {}: expected numbers that all stand there one by one, with blanks between them", line));
}

}  // namespace

Moved move_handle(const NotedDeck& deck, std::string_view id, const DeckPoint& to) {
    if (!std::isfinite(to.x) || !std::isfinite(to.y))
        throw Failure("a handle goes to a place with finite coordinates");
    const std::vector<DeckHandle> handles = handles_of(deck);
    const DeckHandle& handle = handle_named(handles, id);
    Mover mover(deck, handle);
    mover.move(to);
    if (mover.changes().empty())
        return {{}, handle.place};
    Moved moved{value_edits(deck, mover.changes()), {}};
    DeckSource source = deck;
    source.text = edited_text(deck.text, moved.edits);
    const NotedDeck after = read_deck(source, deck.kind);
    require_changed(deck, after, mover.changes());
    const DeckCard& card = deck.cards[handle.card()];
    if (handle.kind == HandleKind::window && has_area(card) && !has_area(after.cards[handle.card()]))
        throw Failure("the window would have no area");
    moved.place = handle_named(handles_of(after), id).place;
    return moved;
}

}  // namespace brelan::tool
