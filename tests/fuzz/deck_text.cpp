// The deck checker, and the same deck as the command brelan reads and draws it.
#include "input.h"
#include "model/deck.h"
#include "targets.h"

namespace brelan::fuzz {

void deck_text(std::string_view input) {
    const Header header = take_header(input);
    const bool stands = checked_deck(input, header.kind) != nullptr;
    tool::DeckSource source;
    source.file = "deck.dat";
    source.text = input;
    const tool::NotedDeck noted = tool::read_deck(source, header.kind);
    require(!stands || !noted.fault || !noted.fault->wrong_count,
            "the checker takes a card that brelan refuses");
    tool::shapes_of(noted);
}

}  // namespace brelan::fuzz
