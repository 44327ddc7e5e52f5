// The channel numbers of the package. Stages share them: a number names a role, not a file.
#pragma once

namespace brelan {

inline constexpr int CHANNEL_DECK = 3;         // the normalised deck; the user's deck while the checker runs
inline constexpr int CHANNEL_DATA = 4;         // short-lived data files
inline constexpr int CHANNEL_MESH_A = 5;       // "FILEA.TMP"; the checker's copy of the deck
inline constexpr int CHANNEL_MESH_B = 6;       // "FILEB.TMP"; the normalised deck while the checker writes it
inline constexpr int CHANNEL_WORK = 7;         // "TEMPO.TMP" or FILEC; the checker's error listing "T7.TMP"
inline constexpr int CHANNEL_RESULT_COPY = 8;  // "MeshFile.Mes"
inline constexpr int CHANNEL_SOURCE_A = 15;    // FILEA
inline constexpr int CHANNEL_SOURCE_B = 16;    // the file of the second region
inline constexpr int CHANNEL_BLOCKS = 21;      // "Bmesh.Tmp"
inline constexpr int CHANNEL_COORDINATES = 22;  // "Coord.dat"
inline constexpr int CHANNEL_INDEX = 23;        // "Index.dat"
inline constexpr int CHANNEL_BASE = 24;         // "..\Bmesh.dat"
inline constexpr int CHANNEL_JOINT = 31;        // "JOINT.TMP"
inline constexpr int CHANNEL_GROUP = 32;        // "GROUP.TMP"; "UNIT.DAT" before it, "..\Group.Man" behind it
inline constexpr int CHANNEL_GROUP_TEXT = 33;   // "Group.dat"
inline constexpr int CHANNEL_POST = 34;         // "..\Group.Pos"
inline constexpr int CHANNEL_MESH_COPY = 35;    // "TEMPMESH.TMP", then "..\MatAD.Man"
inline constexpr int CHANNEL_BOUNDARY = 36;     // "..\Boundary.Man"
inline constexpr int CHANNEL_RESULT = 55;       // FILEM
inline constexpr int CHANNEL_MESSAGE = 66;      // "MESSAGE.INP", and MANUAL.DAT while it is asked for
inline constexpr int CHANNEL_DEFAULTS = 87;     // "..\DV-BRELAN.dat"
inline constexpr int CHANNEL_STATUS = 88;       // the run status
inline constexpr int CHANNEL_STRIP = 123;       // "TT123.TMP", the stripper's working file
inline constexpr int CHANNEL_MASTER = 221;      // the package's master of the defaults file
inline constexpr int CHANNEL_DEBUG = 804;       // the debug file
inline constexpr int CHANNEL_DELETE = 805;      // files that the end of the run deletes
inline constexpr int CHANNEL_TRACE = 888;       // the pass trace

}  // namespace brelan
