// Line-up of truss lines: trusses on an edge of a quadrilateral of material 7 slide along their line until
// they stand level with the opposite edge.
#pragma once

#include <cstdint>
#include <vector>

namespace brelan {

inline std::int32_t LINEUP = 0;        // 0 off, else on for this deck
inline std::vector<std::int32_t> LNP;  // nodes to be moved; their new coordinates stand in XC1, YC1

// Reads LINEUP from "LineUp.dat" in the working directory, 0 when there is none. A value above 0 works once:
// the file then holds 0.
void READLINEUP(Channels& channels, LineUp& line_up);

// Looks for the trusses that the line-up moves: fills LNP, and the first move list with the nodes that a
// slide would pass. All comparisons go by the coordinates before the line-up.
void SEARCHLINEUP(Mesh& mesh, SideTables& side, MoveLists& moves, LineUp& line_up);

// Moves the nodes of LNP.
void APPLYLINEUP(Mesh& mesh, SideTables& side, LineUp& line_up);

}  // namespace brelan
