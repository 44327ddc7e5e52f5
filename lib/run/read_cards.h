// The driver's reading of the normalised deck. Each routine reads the cards of its name from channel 3, in
// the order in which the checker wrote them.
#pragma once

#include "text/text_line.h"

namespace brelan {

struct Run;

// File names of Cards 2.1 and 3.1.
struct FileNames {
    TextLine first;  // FILEA; the deck's result when the next deck begins
    TextLine second;
    TextLine combined;
    TextLine result;  // FILEM
};

TextLine read_file_name(Run& run);

// Cards 2.x: the three names, INTERFACE and the lists of Card 2.3.
void read_combination_cards(Run& run);

// Cards 4.1 to 4.5. Ends the run at a block column or row that cannot be divided.
void read_base_mesh_cards(Run& run);

// Cards 3.2 and 3.3.
void read_edit_cards(Run& run);

// The cards that follow Card 3.3 for its IEDIT.
void read_edit_group(Run& run);

}  // namespace brelan
