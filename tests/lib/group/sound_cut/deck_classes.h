// Classes of random decks for the cut: what engineers draw, and what is harder than they would.
#pragma once

#include <ostream>
#include <span>
#include <string>

#include "lib/group/sound_cut/cut_deck.h"

namespace brelan::test {

struct DeckClass {
    std::string_view name;
    CutDeck (*draw)(Drawing& drawing, Kind kind);
    bool is_engineer_s = false;  // on 40 by 24 squares of a metre, drawn without malice
    bool is_well_apart = false;  // no angle below ten degrees is promised
};

inline std::ostream& operator<<(std::ostream& out, const DeckClass& of) {
    return out << of.name;
}

std::span<const DeckClass> deck_classes();

// Deck `number` of a class, from 0: always the same one. Kinds take turns.
CutDeck deck_of_class(const DeckClass& of, int number);

// A drawing whose parts lie well apart over well shaped elements.
CutDeck well_apart_deck(Drawing& drawing, Kind kind);

// Decks that show one difficulty each; the name says which.
std::vector<CutDeck> nasty_decks();

}  // namespace brelan::test
