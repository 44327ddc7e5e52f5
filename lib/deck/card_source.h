// Where the cards come from as a deck is walked: from the deck, checked and shown in the normalised deck on
// the way, or from lines of the normalised deck itself.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "deck/card.h"
#include "deck/deck.h"
#include "deck/deck_notes.h"
#include "deck/deck_tables.h"
#include "mesh/edition.h"
#include "mesh/numbers.h"
#include "text/channels.h"

namespace brelan {

// How messages name a card: by the label that front ends know, or by its number in the manual.
enum class CardNaming { label, number };

class CardSource {
public:
    CardSource(LayoutKind card_kind, CardValues& card_values) : kind(card_kind), values(card_values) {}
    CardSource(const CardSource&) = delete;
    CardSource& operator=(const CardSource&) = delete;
    virtual ~CardSource() = default;

    // Reads the values of the next card, defaults among them.
    virtual void read(const Card& card) = 0;
    // Hands on the card that was read last, with what was set since.
    virtual void pass(const Card& card) = 0;
    // Both, and the fields of the card in their order.
    template <class... Fields>
    void take(const Card& card, Fields&... fields) {
        read(card);
        pass(card);
        std::int32_t position = 0;
        (give(++position, fields), ...);
    }
    virtual std::string title() = 0;
    // A line of integers that no card of the deck stands for. Only cards of a person call for one.
    virtual void show(std::initializer_list<std::int32_t>) {}  // GCOVR_EXCL_LINE

    // True for the cards of a person, false for what is left of them in the normalised deck.
    virtual bool is_deck() const = 0;
    // Lines of the normalised deck so far.
    virtual int lines_shown() const = 0;
    // From here on no fault is held: the values are taken from the normalised deck instead. It holds those
    // cards that call for it, so that nothing is left to be done for them.
    virtual void stop_holding() {}  // GCOVR_EXCL_LINE

    // The line read last.
    virtual FilePlace place() const = 0;
    // What is wrong with a value there, and meets a run where it takes the card.
    virtual void hold(const std::string& message) = 0;
    // Ends the walk at the line read last.
    [[noreturn]] void refuse(const std::string& message,
                             std::optional<std::size_t> field = std::nullopt) const {
        fail_at(place(), message, field);
    }

    // A field of the card taken last, by its position from 1: cut to an integer, and as it is shown.
    std::int32_t integer(std::int32_t position) const;
    virtual float shown(std::int32_t position) const = 0;
    // The same, into a field of what it is.
    void give(std::int32_t position, std::int32_t& field) const { field = integer(position); }
    void give(std::int32_t position, float& field) const { field = shown(position); }
    template <class Tag>
    void give(std::int32_t position, NumberOf<Tag>& field) const {
        field = NumberOf<Tag>(integer(position));
    }
    // The same as it is given.
    float given(std::int32_t position) const { return values[position]; }
    std::span<const float> given_values() const { return {&values[1], MOST_CARD_VALUES}; }
    void set(std::int32_t position, float value) { values[position] = value; }
    // The same for a default that follows from other fields; the normalised deck has it already.
    virtual void complete(std::int32_t position, float value) { set(position, value); }  // GCOVR_EXCL_LINE

    // The count on the card taken last. Ends the walk when it is above the size of the table behind it.
    std::int32_t count(const Card& card) const;
    std::int32_t take_count(const Card& card) {
        take(card);
        return count(card);
    }

    const LayoutKind kind;

protected:
    virtual std::string name_of(const Card& card) const = 0;

    CardValues& values;
};

class DeckCards : public CardSource {
public:
    DeckCards(Channel& stripped, Channel& normalised, LayoutKind kind, CardMemory& memory, Deck& deck,
              DeckNotes& notes, CardNaming naming = CardNaming::label);

    // The values of a deck that the program has made: the text is passed over, and tells places, names and
    // titles alone.
    void take_made(const MadeCards& cards) { made_ = &cards; }

    void read(const Card& card) override;
    void pass(const Card& card) override;
    float shown(std::int32_t position) const override;
    void complete(std::int32_t position, float value) override;
    // The numbers behind a card, as integers. Nothing is read for a count of 0 or less.
    std::vector<std::int32_t> list(const Card& card, std::int32_t count, std::string_view heading,
                                   std::string_view called);
    std::string title() override;
    void show(std::initializer_list<std::int32_t> integers) override;
    bool is_deck() const override { return true; }
    int lines_shown() const override { return normalised_.lines_before(); }
    void stop_holding() override { part_ = DeckPart::nothing; }
    FilePlace place() const override { return stripped_.place_behind(); }
    void hold(const std::string& message) override {
        hold({STATUS_FAILED, place().text() + ": " + message, place()});
    }
    void hold(const RunEnd& end);

    // The list of a card whose line is there for a count of 0 too.
    std::vector<std::int32_t> list_line(const Card& card, std::int32_t count, std::string_view heading,
                                        std::string_view called);
    // A list of reals, at least one.
    std::vector<float> reals(const Card& card, std::int32_t count, std::string_view heading,
                             const std::string& expected);

    // A file name field: taken from the parent of the working directory where it is a bare name.
    TextLine file_name(std::string_view number, std::string_view field);
    void unused_file_name(std::string_view number, std::string_view field);
    void result_name(std::string_view number, std::string_view field, TextLine& name);

    // IEDIT, before the names of the edit are read.
    std::int32_t look_ahead_to_edit();

    // JK of a Card 1.1 that does not give it.
    void prepare_kind_code() { set(2, static_cast<float>(memory_.prepared_kind_code)); }

    // Behind the last card.
    FilePlace end_place() const { return normalised_.place_here(); }

    // What is read from here on belongs to a part.
    void begin(DeckPart part) { part_ = part; }

    Channel& normalised() { return normalised_; }

protected:
    std::string name_of(const Card& card) const override;

private:
    void read_list(const Card& card, std::int32_t count, std::string_view heading,
                   const std::string& expected);
    void check_integer(float value, std::string_view called);

    Channel& stripped_;
    Channel& normalised_;
    CardMemory& memory_;
    Deck& deck_;
    DeckNotes& notes_;
    CardNaming naming_;
    const Card* card_ = nullptr;  // taken last
    DeckPart part_ = DeckPart::mode;
    const MadeCards* made_ = nullptr;
    std::size_t next_made_ = 0;
};

// The lines of the normalised deck from the one where the channel stands.
class ShownCards : public CardSource {
public:
    ShownCards(Channel& normalised, LayoutKind card_kind, CardValues& room)
        : CardSource(card_kind, room), normalised_(normalised) {}

    void read(const Card& card) override;
    void pass(const Card&) override {}
    float shown(std::int32_t position) const override { return values[position]; }
    std::string title() override;
    bool is_deck() const override { return false; }
    // A deck alone is asked.
    int lines_shown() const override { return normalised_.lines_before(); }  // GCOVR_EXCL_LINE

    FilePlace place() const override { return normalised_.place_behind(); }
    void hold(const std::string& message) override { refuse(message); }

protected:
    // A deck's lists and counts alone ask.
    std::string name_of(const Card& card) const override {  // GCOVR_EXCL_LINE
        return "Card " + std::string(card.number);          // GCOVR_EXCL_LINE
    }

private:
    Channel& normalised_;
};

}  // namespace brelan
