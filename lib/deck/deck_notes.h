// Who looks on while a deck is read: the command notes each card with its fields, a run tells the plot tool
// the name of the result.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "deck/card.h"
#include "deck/card_stream.h"
#include "text/channels.h"
#include "text/text_line.h"

namespace brelan {

class DeckNotes {
public:
    DeckNotes() = default;
    DeckNotes(const DeckNotes&) = delete;
    DeckNotes& operator=(const DeckNotes&) = delete;
    virtual ~DeckNotes() = default;

    // A card, a list, a name or a title is about to be read: it stands on the next line of the deck.
    virtual void card(const Card&, const Channel& /*deck*/) {}
    virtual void list(const Card&, std::string_view /*heading*/, const Channel& /*deck*/) {}
    virtual void name(std::string_view /*number*/, std::string_view /*heading*/, const Channel& /*deck*/) {}
    virtual void title(const Channel& /*deck*/) {}

    // The values of the card or list as far as they could be read, defaults among them; and one that follows
    // from others.
    virtual void values(std::span<const float>) {}
    virtual void value_is(std::int32_t /*position*/, float) {}
    virtual void list_values(std::span<const float>, Channel& /*deck*/) {}
    virtual void name_is(const TextLine&) {}
    virtual void title_is(std::string_view) {}

    // The mesh that the deck makes.
    virtual void result(const TextLine&) {}
    // The group that the next cards belong to, from 1.
    virtual void group(std::int32_t) {}
};

}  // namespace brelan
