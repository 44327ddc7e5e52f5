// The channel numbers of the package. Stages share them: a number names a role, not a file.
#pragma once

namespace brelan {

inline constexpr int CH_DECK = 3;         // the normalised deck; the user's deck while the checker runs
inline constexpr int CH_DATA = 4;         // short-lived data files
inline constexpr int CH_MESH_A = 5;       // "FILEA.TMP"; the checker's copy of the deck
inline constexpr int CH_MESH_B = 6;       // "FILEB.TMP"; the normalised deck while the checker writes it
inline constexpr int CH_WORK = 7;         // "TEMPO.TMP" or FILEC; the checker's error listing "T7.TMP"
inline constexpr int CH_RESULT_COPY = 8;  // "MeshFile.Mes"
inline constexpr int CH_SOURCE_A = 15;    // FILEA
inline constexpr int CH_SOURCE_B = 16;    // the file of the second region
inline constexpr int CH_BLOCKS = 21;      // "Bmesh.Tmp"
inline constexpr int CH_COORD = 22;       // "Coord.dat"
inline constexpr int CH_INDEX = 23;       // "Index.dat"
inline constexpr int CH_BASE = 24;        // "..\Bmesh.dat"
inline constexpr int CH_JOINT = 31;       // "JOINT.TMP"
inline constexpr int CH_GROUP = 32;       // "GROUP.TMP"; "UNIT.DAT" before it, "..\Group.Man" behind it
inline constexpr int CH_GROUP_TEXT = 33;  // "Group.dat"
inline constexpr int CH_POST = 34;        // "..\Group.Pos"
inline constexpr int CH_TEMP_MESH = 35;   // "TEMPMESH.TMP", then "..\MatAD.Man"
inline constexpr int CH_BOUNDARY = 36;    // "..\Boundary.Man"
inline constexpr int CH_RESULT = 55;      // FILEM
inline constexpr int CH_MESSAGE = 66;     // "MESSAGE.INP", and MANUAL.DAT while it is asked for
inline constexpr int CH_DEFAULTS = 87;    // "..\DV-BRELAN.dat"
inline constexpr int CH_STATUS = 88;      // the run status
inline constexpr int CH_STRIP = 123;      // "TT123.TMP", the stripper's working file
inline constexpr int CH_MASTER = 221;     // the package's master of the defaults file
inline constexpr int CH_EXIST = 804;      // the debug file
inline constexpr int CH_DELETE = 805;     // files that the end of the run deletes
inline constexpr int CH_TRACE = 888;      // the pass trace

}  // namespace brelan
