// The group cards of IEDIT 4 through the checker.
#pragma once

namespace brelan {

// Checks the cards behind a Card 3.3 with IEDIT 4 and writes them to the normalised deck.
void check_groups();

}  // namespace brelan
