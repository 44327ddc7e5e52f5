// The group tables: the cards of IEDIT 4, the settings of the group engine and what its stages leave to each
// other. Who fills them: the cards, run/read_group_cards.cpp; the rest, the stage named at each table.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "channel/text_line.h"
#include "mesh/tables.h"

namespace brelan {

inline constexpr std::int32_t MAXGROUPS = 500;        // groups of a deck, and rows of the group listing
inline constexpr std::int32_t MAXGROUPPOINTS = 1100;  // outline points, and segments, of a group
inline constexpr std::int32_t MAXPATHNODES = 4000;    // nodes kept of a group's line
inline constexpr std::int32_t MAXPOLYGON = 2001;      // points of one segment, and of a polygon to be scanned

// --- cards ---------------------------------------------------------------------------------------

// A point of the plane.
struct Point {
    float x = 0.0F, y = 0.0F;
};

// Kind of a group.
//   0 skipped; 1 deletes inside, -1 outside; 2 a line, -2 a joint along a line; 3 material inside, -3 with a
//   joint; 4 duplicate material inside, -4 with a joint.
struct GroupRow {
    std::int32_t MTYPE = 0;
    std::int32_t NPOINT = 0;  // outline points in use
    std::int32_t NSEGMENT = 0;
    std::int32_t MOVE = 0;  // 1: the nodes of the finished line are frozen
    std::int32_t OVERLAY = 0;
};

// Words of the material line. A word that a group's card does not have keeps the value of a group before it
// in the same place.
struct GroupMaterial {
    float MAT = 0.0F, KF = 0.0F;                  // KF is IH or DEN by kind
    float MATj = 0.0F, KFj = 0.0F, THICj = 0.0F;  // joint
    float LTi = 0.0F, LMi = 0.0F;                 // line: LTP and LMAT, or those of a joint's first line
    float LTo = 0.0F, LMo = 0.0F;                 // second line of a joint
    float MATold = 0.0F;
};

// A segment of an outline. Only an arc (LTYPE 2) has centre, half axes and angles (radians).
struct SegmentRow {
    std::int32_t LTYPE = 0, NDIV = 0, IEND = 0;
    float Xo = 0.0F, Yo = 0.0F, Rx = 0.0F, Ry = 0.0F, Qb = 0.0F, Qe = 0.0F;
};

}  // namespace brelan
