// The project's title and the unit labels that the post files print, from the front end's "UNIT.DAT".
#pragma once

#include <string>
#include <string_view>

#include "channel/channels.h"
#include "mesh/edition.h"

namespace brelan {

// Texts of fixed width, trailing blanks included; blank until a code of the file has set them.
struct UnitLabels {
    std::string TITLE = std::string(80, ' ');
    std::string_view UFORCE = "     ", ULENGTH = "    ", UTIME = "     ", UENERGY = "       ";
    std::string_view UTEMP = "     ";  // unit of a temperature, or of a head; other kinds have none
    std::string_view USTRESS = "         ";
    std::string UMOMENT = std::string(8, ' '), UVELOC = std::string(9, ' '), UACCEL = std::string(9, ' ');
};

// Reads the file and sets the labels. A code that its table does not know leaves its label as it stood.
void UNITTAB(Channels& channels, LayoutKind kind, UnitLabels& units);

}  // namespace brelan
