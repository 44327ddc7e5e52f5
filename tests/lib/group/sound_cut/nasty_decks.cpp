#include "lib/group/sound_cut/deck_classes.h"
namespace brelan::test {
std::vector<CutDeck> nasty_decks() {
    return {};
}
}  // namespace brelan::test
