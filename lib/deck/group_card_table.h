// The card table of the groups of IEDIT 4. Their labels are not the manual's numbers.
#pragma once

#include "deck/card.h"
#include "deck/deck_tables.h"
#include "mesh/group_tables.h"

namespace brelan {

inline constexpr Card CARD_NODES{
    "3.3.5.1.1",     "3.3.5.1", "count of nodes that must not move", 1, each_kind<CardFields>("I: NODE"),
    MOST_CARD_VALUES};
inline constexpr Card CARD_ELEMENTS{
    "3.3.5.2.1",     "3.3.5.2", "count of elements that must not change", 1, each_kind<CardFields>("I: NOEL"),
    MOST_CARD_VALUES};
inline constexpr Card CARD_BOUND{"3.3.5.3.1", "3.3.5.3", "are there limits?", 1,
                                 each_kind<CardFields>("I: IBOUND")};
inline constexpr Card CARD_BOUNDS{"3.3.5.3.2", "3.3.5.3.2", "limits on which nodes must not move", 4,
                                  each_kind<CardFields>("E: XMIN YMIN XMAX YMAX")};
inline constexpr Card CARD_GROUPS{
    "3.3.5.4", "3.3.5.4-1", "count of groups", 1, each_kind<CardFields>("I: NGROUP IGTITL=0"), MOST_GROUPS};
inline constexpr Card CARD_REFERENCE{"3.3.5.4-1", "3.3.5.4-2", "reference point", 2,
                                     each_kind<CardFields>("E: Xref Yref Hi=0")};

// --- one group -----------------------------------------------------------------------------------

inline constexpr Card CARD_GROUP{
    "3.3.5.4.1.1", "3.3.5.4.1", "kind of group", 1,
    each_kind<CardFields>("I: MTYPE IGPOST=0 OVERLAY=0 -: GCOLOR=0 GLTYPE=0 GLTHIC=0 GHIDE=0")};

// Material lines, by MTYPE. MATold stands last: where it is 0 or not given it becomes MAT + 1.
constexpr Card material_line(std::string_view heading, std::int32_t minimum,
                             const ByKind<CardFields>& fields) {
    return {"3.3.5.4.1.2", "3.3.5.4.1-1", heading, minimum, fields, 0, "the material line of a group"};
}
inline constexpr Card CARD_MATERIAL_1 =  // MTYPE 1 and 2
    material_line("line elements", 2, {"I: LTP LMAT", "I: LTP LFUN", "I: LTP LFUN", "I: LTP LMAT"});
inline constexpr Card CARD_MATERIAL_3 =
    material_line("material inside, line elements", 4,
                  {"I: MAT KF LTP LMAT -: -=0", "I: MAT IH LTP LFUN -: -=0", "I: MAT IH LTP LFUN -: -=0",
                   "I: MAT E: DEN I: LTP LMAT -: -=0"});
inline constexpr Card CARD_MATERIAL_4 =
    material_line("stage inside, line elements", 4,
                  {"I: MAT KF LTP LMAT MATold=0", "I: MAT IH LTP LFUN MATold=0",
                   "I: MAT IH LTP LFUN MATold=0", "I: MAT E: DEN I: LTP LMAT MATold=0"});
inline constexpr Card CARD_MATERIAL_JOINT_2 =
    material_line("joint, line elements on both of its sides", 7,
                  {"I: MATj KFj E: THICj I: LTi LMi LTo LMo", "I: MATj IHj E: THICj I: LTi LFi LTo LFo",
                   "I: MATj IHj E: THICj I: LTi LFi LTo LFo", "I: MATj E: DENj THICj I: LTi LMi LTo LMo"});
inline constexpr Card CARD_MATERIAL_JOINT_3 =
    material_line("material inside, joint, line elements on both of its sides", 9,
                  {"I: MAT KF MATj KFj E: THICj I: LTi LMi LTo LMo -: -=0",
                   "I: MAT IH MATj IHj E: THICj I: LTi LFi LTo LFo -: -=0",
                   "I: MAT IH MATj IHj E: THICj I: LTi LFi LTo LFo -: -=0",
                   "I: MAT E: DEN I: MATj E: DENj THICj I: LTi LMi LTo LMo -: -=0"});
// In the head kind the line does not get into the normalised deck: its values are taken from the lines
// behind, and decks have lived with that.
inline constexpr Card CARD_MATERIAL_JOINT_4 = [] {
    Card card = material_line("stage inside, joint, line elements on both of its sides", 9,
                              {"I: MAT KF MATj KFj E: THICj I: LTi LMi LTo LMo MATold=0",
                               "I: MAT IH MATj IHj E: THICj I: LTi LFi LTo LFo MATold=0",
                               "I: MAT IH MATj IHj E: THICj I: LTi LFi LTo LFo MATold=0",
                               "I: MAT E: DEN I: MATj E: DENj THICj I: LTi LMi LTo LMo MATold=0"});
    card.not_shown_in = LayoutKind::head;
    return card;
}();

inline constexpr Card CARD_POST_PAIR{
    "3.3.5.4.1.3",           "3.3.5.4.1.3", "pair for the outputs", 2, each_kind<CardFields>("I: P1 P2"), 0,
    "a pair for the outputs"};
inline constexpr Card CARD_POST_SWITCH{"3.3.5.4.1.3",
                                       "3.3.5.4.1.3",
                                       "switch for the outputs",
                                       1,
                                       each_kind<CardFields>("I: S"),
                                       0,
                                       "a switch for the outputs"};

inline constexpr Card CARD_POINTS{"3.3.5.4.2.1",
                                  "3.3.5.4.2",
                                  "count of points, origin of the group",
                                  5,
                                  each_kind<CardFields>("I: NPOINT MOVE IREF E: XLo YLo"),
                                  MOST_GROUP_POINTS};
inline constexpr Card CARD_POINT{"3.3.5.4.2.2", "3.3.5.4.2-1", "point of the outline", 3,
                                 each_kind<CardFields>("I: NP E: X Y")};
inline constexpr Card CARD_SEGMENTS{"3.3.5.4.3",
                                    "3.3.5.4.3",
                                    "count of segments",
                                    1,
                                    each_kind<CardFields>("I: NSEGMENT -: GNODX=0 GNODY=0"),
                                    MOST_GROUP_POINTS};
inline constexpr Card CARD_SEGMENT{"3.3.5.4.3.1", "3.3.5.4.3.1", "segment", 4,
                                   each_kind<CardFields>("I: SEGNO LTYPE NDIV IEND")};
inline constexpr Card CARD_ARC{"3.3.5.4.3.2", "3.3.5.4.3.1-1", "arc of the segment before it", 6,
                               each_kind<CardFields>("E: Xo Yo Rx Ry Qb Qe")};

}  // namespace brelan
