// The card table: modes, combination, edits, base mesh and earth dam. The groups have a table of their own.
#pragma once

#include "deck/card.h"
#include "deck/deck_tables.h"
#include "mesh/block_tables.h"
#include "mesh/tables.h"

namespace brelan {

// --- mode ----------------------------------------------------------------------------------------

// JK's default is prepared by the checker: it may stem from an earth dam.
inline constexpr Card CARD_1_1{"1.1", "1.1", "mode", 1, each_kind<CardFields>("I: IMOD JK")};

// --- combination ---------------------------------------------------------------------------------

// Card 2.2 is reported as group 1.1: front ends know it by that label.
inline constexpr Card CARD_2_2{
    "1.1", "2.2", "how the common nodes are found", 1, each_kind<CardFields>("I: INTERFACE"), 0, "INTERFACE"};
inline constexpr Card CARD_2_3{
    "2.3", "2.3", "count of node pairs", 1, each_kind<CardFields>("I: NINT"), MOST_CARD_VALUES, "NINT"};

// --- edit ----------------------------------------------------------------------------------------

inline constexpr Card CARD_3_2{"3.2", "3.2", "first numbers", 2,
                               each_kind<CardFields>("I: NSNEL NSNODE NSBEAM=0 NSTRUS=0")};
inline constexpr Card CARD_3_3{"3.3", "3.3", "the edit, and materials that it leaves alone", 1,
                               each_kind<CardFields>("I: IEDIT MATX1=0 MATX2=0 MATX3=0 MATXB=0 MATXT=0")};

inline constexpr Card CARD_3_3_1_1{"3.3.1.1", "3.3.1.1", "old and new place of a point", 4,
                                   each_kind<CardFields>("E: XO YO XN YN")};
inline constexpr Card CARD_3_3_1_2{"3.3.1.2", "3.3.1.2", "scales", 2, each_kind<CardFields>("E: SCX SCY")};

// The selection cards of IEDIT 1, 2 and 3.
struct SelectionCards {
    Card location, window, list, side;
};
constexpr SelectionCards selection_cards(std::string_view location, std::string_view window,
                                         std::string_view list, std::string_view side, std::string_view how,
                                         std::string_view count) {
    return {{location, location, how, 1, each_kind<CardFields>("I: ILOC"), 0, "ILOC"},
            {window, window, "window", 4, each_kind<CardFields>("E: XMIN YMIN XMAX YMAX")},
            {list, list, count, 1, each_kind<CardFields>("I: NSEL"), MOST_CARD_VALUES, "NSEL"},
            {side, side, "inside or outside", 1, each_kind<CardFields>("I: ISIDE"), 0, "ISIDE"}};
}
inline constexpr SelectionCards CARDS_3_3_2 = selection_cards(
    "3.3.2.1", "3.3.2.2.1", "3.3.2.2.2", "3.3.2.3", "how nodes are selected", "count of nodes or materials");
inline constexpr SelectionCards CARDS_3_3_3 = selection_cards(
    "3.3.3.1", "3.3.3.2.1", "3.3.3.2.2", "3.3.3.3", "how elements are selected", "count of elements");
inline constexpr SelectionCards CARDS_3_3_4 = selection_cards(
    "3.3.4.1", "3.3.4.2.1", "3.3.4.2.2", "3.3.4.3", "how elements are selected", "count of elements");

inline constexpr Card CARD_3_3_2_4{"3.3.2.4",
                                   "3.3.2.4",
                                   "new node codes",
                                   0,
                                   {"I: ISX ISY IFX IFY IRZ", "I: ID IDF", "I: ID IDF", "I: IDX IDY IDT"},
                                   0,
                                   "the new node codes (IDNEW)"};
inline constexpr Card CARD_3_3_4_4{"3.3.4.4",
                                   "3.3.4.4",
                                   "new materials",
                                   3,
                                   each_kind<CardFields>("I: MATNC MATNB MATNT"),
                                   0,
                                   "MATNC, MATNB, MATNT"};

inline constexpr Card CARD_3_3_6_1{
    "3.3.6.1", "3.3.6.1", "slope template", 1, each_kind<CardFields>("I: MODEL"), 0, "MODEL"};
inline constexpr Card CARD_3_3_6_2{"3.3.6.2",
                                   "3.3.6.2",
                                   "material, water level, head of the slope",
                                   2,
                                   each_kind<CardFields>("I: MATNO_T E: rHw Hi=0"),
                                   0,
                                   "MATNO_T, rHw, Hi"};
inline constexpr Card CARD_3_3_6_3{"3.3.6.3", "3.3.6.3", "crest, toe and foot of the slope", 6,
                                   each_kind<CardFields>("E: X1 Y1 X2 Y2 X3 Y3")};

// -10 leaves a field as it is.
inline constexpr Card CARD_3_6_1{
    "3.6.1",           "3.6.1", "count of rows for continuum elements", 1, each_kind<CardFields>("I: NEDC"),
    MOST_REBUILD_ROWS, "NEDC"};
inline constexpr Card CARD_3_6_1_1{"3.6.1-1",
                                   "3.6.1-1",
                                   "row for continuum elements",
                                   5,
                                   {"I: MATold NS1 NS2 NS3 NS4 MATNEW=-10 KS=-10 KF=-10",
                                    "I: MATold NS1 NS2 NS3 NS4 MATNEW=-10 IDH=-10 -: -=-10",
                                    "I: MATold NS1 NS2 NS3 NS4 MATNEW=-10 IDH=-10 -: -=-10",
                                    "I: MATold NS1 NS2 NS3 NS4 MATNEW=-10 E: THIC=-10 DEN=-10"},
                                   0,
                                   "a row of Card 3.6.1-1"};
inline constexpr Card CARD_3_6_2{
    "3.6.2",           "3.6.2", "count of rows for beams", 1, each_kind<CardFields>("I: NEDB"),
    MOST_REBUILD_ROWS, "NEDB"};
inline constexpr Card CARD_3_6_2_1{"3.6.2-1",
                                   "3.6.2-1",
                                   "row for beams",
                                   3,
                                   each_kind<CardFields>("I: MATold NS1 NS2 MATNEW=-10 -=-10"),
                                   0,
                                   "a row of Card 3.6.2-1 or 3.6.3-1"};
inline constexpr Card CARD_3_6_3{
    "3.6.3",           "3.6.3", "count of rows for trusses", 1, each_kind<CardFields>("I: NEDT"),
    MOST_REBUILD_ROWS, "NEDT"};
inline constexpr Card CARD_3_6_3_1{"3.6.3-1",
                                   "3.6.3-1",
                                   "row for trusses",
                                   3,
                                   each_kind<CardFields>("I: MATold NS1 NS2 MATNEW=-10 -=-10"),
                                   0,
                                   "a row of Card 3.6.2-1 or 3.6.3-1"};

// --- base mesh -----------------------------------------------------------------------------------

inline constexpr Card CARD_4_1{"4.1",
                               "4.1",
                               "count of block columns and rows; which sides are fixed",
                               2,
                               each_kind<CardFields>("I: NBX NBY IB_LEFT=1 IB_RIGHT=1 IB_TOP=0 IB_BOTTOM=1"),
                               0,
                               "Card 4.1 (NBX, NBY and four boundary switches)"};
inline constexpr Card CARD_4_2{"4.2",
                               "4.2",
                               "lower left corner",
                               2,
                               {"E: Xo Yo Ywater=-1E30", "E: Xo Yo T=0", "E: Xo Yo H=0", "E: Xo Yo"}};
inline constexpr Card CARD_4_3{"4.3", "4.3", "block column, from the left", 3,
                               each_kind<CardFields>("E: W DX AX")};
inline constexpr Card CARD_4_4{"4.4", "4.4", "block row, from the top", 3,
                               each_kind<CardFields>("E: H DY AY")};
inline constexpr Card CARD_4_5{"4.5", "4.5", "does an edit follow?", 1, each_kind<CardFields>("I: IGMOD")};

// --- earth dam -----------------------------------------------------------------------------------

inline constexpr Card CARD_5_1{"5.1",
                               "5.1",
                               "what the dam has",
                               4,
                               each_kind<CardFields>("I: NLAYER ICORE ICUT ISHELL NCREST=0 E: Hi=0"),
                               MOST_CARD_VALUES};
inline constexpr Card CARD_5_2{"5.2", "5.2", "profile of the dam", 8,
                               each_kind<CardFields>("E: HDAM HWATER RUNL WLEFT WCREST WMID RUNR WRIGHT")};
inline constexpr Card CARD_5_3{"5.3", "5.3", "the four points of the core", 8,
                               each_kind<CardFields>("E: X1 Y1 X2 Y2 X3 Y3 X4 Y4")};
inline constexpr Card CARD_5_4_1{"5.4-1", "5.4-1", "ground beside the dam", 2,
                                 each_kind<CardFields>("E: XLEFT XRIGHT")};
inline constexpr Card CARD_5_5{"5.5", "5.5", "the four points of the cut-off wall", 8,
                               each_kind<CardFields>("E: X1 Y1 X2 Y2 X3 Y3 X4 Y4")};

}  // namespace brelan
