// The card table of the groups of IEDIT 4. The labels are those of the messages; the manual numbers the cards
// of a group otherwise.
#pragma once

#include "deck/card_table.h"

namespace brelan {

inline constexpr Card CARD_NODES{"3.3.5.1.1", "NODE", 1, each_kind(1), each_kind<std::string_view>("I"), {}};
inline constexpr Card CARD_ELEMENTS{"3.3.5.2.1", "NOEL", 1, each_kind(1), each_kind<std::string_view>("I"),
                                    {}};
inline constexpr Card CARD_BOUND{"3.3.5.3.1", "IBOUND", 1, each_kind(1), each_kind<std::string_view>("I"),
                                 {}};
inline constexpr Card CARD_BOUNDS{
    "3.3.5.3.2", "XMIN, YMIN, XMAX, YMAX", 4, each_kind(4), each_kind<std::string_view>("EEEE"), {}};
inline constexpr Card CARD_GROUPS{"3.3.5.4",
                                  "NGROUP, IGTITL",
                                  1,
                                  each_kind(2),
                                  each_kind<std::string_view>("II"),
                                  {{{2, 2, each_kind(0.0F)}}}};
inline constexpr Card CARD_REFERENCE{"3.3.5.4-1",
                                     "Xref, Yref, Hi",
                                     2,
                                     each_kind(3),
                                     each_kind<std::string_view>("EEE"),
                                     {{{3, 3, each_kind(0.0F)}}}};

// --- one group -----------------------------------------------------------------------------------

// The last four fields go no further.
inline constexpr Card CARD_GROUP{"3.3.5.4.1.1",
                                 "MTYPE, IGPOST, OVERLAY, GCOLOR, GLTYPE, GLTHIC, GHIDE",
                                 1,
                                 each_kind(7),
                                 each_kind<std::string_view>("III"),
                                 {{{2, 7, each_kind(0.0F)}}}};

// Material lines, by MTYPE. KF is IH in the temperature and head kinds, and the real DEN in the displacement
// kind. MATold stands last: where it is 0 or not given it becomes MAT + 1.
inline constexpr std::string_view LABEL_MATERIAL = "3.3.5.4.1.2";
inline constexpr Card CARD_MATERIAL_1{
    // MTYPE 1 and 2
    LABEL_MATERIAL, "LTP, LMAT", 2, each_kind(2), each_kind<std::string_view>("II"), {}};
inline constexpr Card CARD_MATERIAL_3{LABEL_MATERIAL,
                                      "MAT, KF, LTP, LMAT",
                                      4,
                                      each_kind(5),
                                      {"IIII", "IIII", "IIII", "IEII"},
                                      {{{5, 5, each_kind(0.0F)}}}};
inline constexpr Card CARD_MATERIAL_4{
    LABEL_MATERIAL, "MAT, KF, LTP, LMAT, MATold",         4,
    each_kind(5),   {"IIIII", "IIIII", "IIIII", "IEIII"}, {{{5, 5, each_kind(0.0F)}}}};
inline constexpr Card CARD_MATERIAL_JOINT_2{LABEL_MATERIAL, "MATj, KFj, THICj, LTi, LMi, LTo, LMo",       7,
                                            each_kind(7),   {"IIEIIII", "IIEIIII", "IIEIIII", "IEEIIII"}, {}};
inline constexpr Card CARD_MATERIAL_JOINT_3{
    LABEL_MATERIAL, "MAT, KF, MATj, KFj, THICj, LTi, LMi, LTo, LMo",      9,
    each_kind(10),  {"IIIIEIIII", "IIIIEIIII", "IIIIEIIII", "IEIEEIIII"}, {{{10, 10, each_kind(0.0F)}}}};
// The head kind writes no line: the reader takes its values from the lines behind, and decks have lived with
// that.
inline constexpr Card CARD_MATERIAL_JOINT_4{
    LABEL_MATERIAL, "MAT, KF, MATj, KFj, THICj, LTi, LMi, LTo, LMo, MATold", 9,
    each_kind(10),  {"IIIIEIIIII", "IIIIEIIIII", "", "IEIEEIIIII"},          {{{10, 10, each_kind(0.0F)}}}};

inline constexpr Card CARD_POST_PAIR{
    "3.3.5.4.1.3", "two integers", 2, each_kind(2), each_kind<std::string_view>("II"), {}};
inline constexpr Card CARD_POST_SWITCH{
    "3.3.5.4.1.3", "one integer", 1, each_kind(1), each_kind<std::string_view>("I"), {}};

inline constexpr Card CARD_POINTS{"3.3.5.4.2.1", "NPOINT, MOVE, IREF, XLo, YLo",       5,
                                  each_kind(5),  each_kind<std::string_view>("IIIEE"), {}};
inline constexpr Card CARD_POINT{
    "3.3.5.4.2.2", "NP, X, Y", 3, each_kind(3), each_kind<std::string_view>("IEE"), {}};
// GNODX and GNODY go no further.
inline constexpr Card CARD_SEGMENTS{
    "3.3.5.4.3",  "NSEGMENT, GNODX, GNODY",         1,
    each_kind(3), each_kind<std::string_view>("I"), {{{2, 3, each_kind(0.0F)}}}};
inline constexpr Card CARD_SEGMENT{"3.3.5.4.3.1", "SEGNO, LTYPE, NDIV, IEND",          4,
                                   each_kind(4),  each_kind<std::string_view>("IIII"), {}};
inline constexpr Card CARD_ARC{
    "3.3.5.4.3.2", "Xo, Yo, Rx, Ry, Qb, Qe", 6, each_kind(6), each_kind<std::string_view>("EEEEEE"), {}};

}  // namespace brelan
