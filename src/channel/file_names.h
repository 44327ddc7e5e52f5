// File names as decks and the program write them, and where they lie on this machine.
#pragma once

#include <filesystem>
#include <string_view>

namespace brelan {

// Finds the file that a name of the package stands for.
//
// On Windows the name is used as it is. Elsewhere `\` separates directories and drive C:\ is the directory
// that the environment variable BRELAN_DRIVE_C names, else $XDG_DATA_HOME/brelan2d/C, else
// ~/.local/share/brelan2d/C. Each directory and file name matches exactly, or else the one entry that differs
// only in the case of its letters (the package's home system does not tell them apart); a name that is not
// there stays as given. Trailing blanks do not count.
//
// Ends the run when the name is blank, when two entries match it equally well, or when drive C:\ has no
// place.
std::filesystem::path RESOLVE(std::string_view name);

}  // namespace brelan
