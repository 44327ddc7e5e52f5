// The driver's reading of the group cards of IEDIT 4 from the normalised deck (Pass 14.1).
#pragma once

namespace brelan {

struct Run;

// Reads the cards behind Card 3.3 into the group tables. Every value is read as a real and cut where an
// integer is meant. Ends of arcs are computed and stored as outline points.
void read_group_cards(Run& run);

}  // namespace brelan
