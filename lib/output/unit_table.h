// The project's title and the unit labels that the post files print, from the front end's "UNIT.DAT".
#pragma once

#include <string>
#include <string_view>

#include "mesh/edition.h"
#include "text/channels.h"

namespace brelan {

// Texts of fixed width, trailing blanks included; blank until a code of the file has set them.
struct UnitLabels {
    std::string title = std::string(80, ' ');
    std::string_view force = "     ", length = "    ", time = "     ", energy = "       ";
    std::string_view temperature = "     ";  // unit of a temperature, or of a head; other kinds have none
    std::string_view stress = "         ";
    std::string moment = std::string(8, ' '), velocity = std::string(9, ' '),
                acceleration = std::string(9, ' ');
};

// Reads the file and sets the labels. A code that its table does not know leaves its label as it stood.
void read_unit_table(Channels& channels, LayoutKind kind, UnitLabels& units);

}  // namespace brelan
