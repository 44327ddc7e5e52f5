// What a person is told about each card of the deck: its number in the manual, what it is, and the names of
// its fields by kind. Counts and defaults come from the batch program's card table.
#pragma once

#include "deck/card_table.h"
#include "deck/group_card_table.h"

namespace brelan::tool {

struct CardForm {
    const Card* card = nullptr;
    std::string_view number;  // in the manual
    std::string_view heading;
    ByKind<std::string_view> names;  // separated by blanks; a name "-" is of a value without effect

    std::string_view names_of(LayoutKind kind) const { return names[static_cast<std::size_t>(kind)]; }
};

constexpr CardForm form(const Card& card, std::string_view number, std::string_view heading,
                        std::string_view names) {
    return {&card, number, heading, each_kind(names)};
}

// --- mode, combination ---------------------------------------------------------------------------

inline constexpr CardForm FORM_MODE = form(CARD_1_1, "1.1", "mode", "IMOD JK");
inline constexpr CardForm FORM_INTERFACE =
    form(CARD_2_2, "2.2", "how the common nodes are found", "INTERFACE");
inline constexpr CardForm FORM_PAIRS = form(CARD_2_3, "2.3", "count of node pairs", "NINT");

// --- edit ----------------------------------------------------------------------------------------

inline constexpr CardForm FORM_START = form(CARD_3_2, "3.2", "first numbers", "NSNEL NSNODE NSBEAM NSTRUS");
inline constexpr CardForm FORM_EDIT = form(CARD_3_3, "3.3", "the edit, and materials that it leaves alone",
                                           "IEDIT MATX1 MATX2 MATX3 MATXB MATXT");

inline constexpr CardForm FORM_MOVE =
    form(CARD_3_3_1_1, "3.3.1.1", "old and new place of a point", "XO YO XN YN");
inline constexpr CardForm FORM_SCALE = form(CARD_3_3_1_2, "3.3.1.2", "scales", "SCX SCY");

struct SelectionForms {
    CardForm location, window, list, side;
};
constexpr SelectionForms selection_forms(const SelectionCards& cards, std::string_view what,
                                         std::string_view list) {
    // The cards' own labels are the manual's numbers here.
    return {form(cards.location, cards.location.label, what, "ILOC"),
            form(cards.window, cards.window.label, "window", "XMIN YMIN XMAX YMAX"),
            form(cards.list, cards.list.label, list, "NSEL"),
            form(cards.side, cards.side.label, "inside or outside", "ISIDE")};
}
inline constexpr SelectionForms FORMS_NODES =
    selection_forms(CARDS_3_3_2, "how nodes are selected", "count of nodes or materials");
inline constexpr SelectionForms FORMS_DELETE =
    selection_forms(CARDS_3_3_3, "how elements are selected", "count of elements");
inline constexpr SelectionForms FORMS_MATERIAL =
    selection_forms(CARDS_3_3_4, "how elements are selected", "count of elements");

inline constexpr CardForm FORM_CODES{
    &CARD_3_3_2_4, "3.3.2.4", "new node codes", {"ISX ISY IFX IFY IRZ", "ID IDF", "ID IDF", "IDX IDY IDT"}};
inline constexpr CardForm FORM_NEW_MATERIALS =
    form(CARD_3_3_4_4, "3.3.4.4", "new materials", "MATNC MATNB MATNT");

inline constexpr CardForm FORM_MODEL = form(CARD_3_3_6_1, "3.3.6.1", "slope template", "MODEL");
inline constexpr CardForm FORM_SLOPE =
    form(CARD_3_3_6_2, "3.3.6.2", "material, water level, head of the slope", "MATNO_T rHw Hi");
inline constexpr CardForm FORM_TRIANGLE =
    form(CARD_3_3_6_3, "3.3.6.3", "crest, toe and foot of the slope", "X1 Y1 X2 Y2 X3 Y3");

inline constexpr CardForm FORM_REBUILD_C =
    form(CARD_3_6_1, "3.6.1", "count of rows for continuum elements", "NEDC");
inline constexpr CardForm FORM_REBUILD_C_ROW{
    &CARD_3_6_1_1,
    "3.6.1-1",
    "row for continuum elements",
    {"MATold NS1 NS2 NS3 NS4 MATNEW KS KF", "MATold NS1 NS2 NS3 NS4 MATNEW IDH -",
     "MATold NS1 NS2 NS3 NS4 MATNEW IDH -", "MATold NS1 NS2 NS3 NS4 MATNEW THIC DEN"}};
inline constexpr CardForm FORM_REBUILD_B = form(CARD_3_6_2, "3.6.2", "count of rows for beams", "NEDB");
inline constexpr CardForm FORM_REBUILD_B_ROW =
    form(CARD_3_6_2_1, "3.6.2-1", "row for beams", "MATold NS1 NS2 MATNEW -");
inline constexpr CardForm FORM_REBUILD_T = form(CARD_3_6_3, "3.6.3", "count of rows for trusses", "NEDT");
inline constexpr CardForm FORM_REBUILD_T_ROW =
    form(CARD_3_6_3_1, "3.6.3-1", "row for trusses", "MATold NS1 NS2 MATNEW -");

// --- groups --------------------------------------------------------------------------------------

inline constexpr CardForm FORM_FIXED_NODES =
    form(CARD_NODES, "3.3.5.1", "count of nodes that must not move", "NODE");
inline constexpr CardForm FORM_FIXED_ELEMENTS =
    form(CARD_ELEMENTS, "3.3.5.2", "count of elements that must not change", "NOEL");
inline constexpr CardForm FORM_BOUND = form(CARD_BOUND, "3.3.5.3", "are there limits?", "IBOUND");
inline constexpr CardForm FORM_BOUNDS =
    form(CARD_BOUNDS, "3.3.5.3.2", "limits on which nodes must not move", "XMIN YMIN XMAX YMAX");
inline constexpr CardForm FORM_GROUPS = form(CARD_GROUPS, "3.3.5.4-1", "count of groups", "NGROUP IGTITL");
inline constexpr CardForm FORM_REFERENCE =
    form(CARD_REFERENCE, "3.3.5.4-2", "reference point", "Xref Yref Hi");
inline constexpr CardForm FORM_GROUP =
    form(CARD_GROUP, "3.3.5.4.1", "kind of group", "MTYPE IGPOST OVERLAY GCOLOR GLTYPE GLTHIC GHIDE");

inline constexpr std::string_view NUMBER_MATERIAL = "3.3.5.4.1-1";
inline constexpr CardForm FORM_MATERIAL_1{
    &CARD_MATERIAL_1, NUMBER_MATERIAL, "line elements", {"LTP LMAT", "LTP LFUN", "LTP LFUN", "LTP LMAT"}};
inline constexpr CardForm FORM_MATERIAL_3{
    &CARD_MATERIAL_3,
    NUMBER_MATERIAL,
    "material inside, line elements",
    {"MAT KF LTP LMAT -", "MAT IH LTP LFUN -", "MAT IH LTP LFUN -", "MAT DEN LTP LMAT -"}};
inline constexpr CardForm FORM_MATERIAL_4{&CARD_MATERIAL_4,
                                          NUMBER_MATERIAL,
                                          "stage inside, line elements",
                                          {"MAT KF LTP LMAT MATold", "MAT IH LTP LFUN MATold",
                                           "MAT IH LTP LFUN MATold", "MAT DEN LTP LMAT MATold"}};
inline constexpr CardForm FORM_MATERIAL_JOINT_2{
    &CARD_MATERIAL_JOINT_2,
    NUMBER_MATERIAL,
    "joint, line elements on both of its sides",
    {"MATj KFj THICj LTi LMi LTo LMo", "MATj IHj THICj LTi LFi LTo LFo", "MATj IHj THICj LTi LFi LTo LFo",
     "MATj DENj THICj LTi LMi LTo LMo"}};
inline constexpr CardForm FORM_MATERIAL_JOINT_3{
    &CARD_MATERIAL_JOINT_3,
    NUMBER_MATERIAL,
    "material inside, joint, line elements on both of its sides",
    {"MAT KF MATj KFj THICj LTi LMi LTo LMo -", "MAT IH MATj IHj THICj LTi LFi LTo LFo -",
     "MAT IH MATj IHj THICj LTi LFi LTo LFo -", "MAT DEN MATj DENj THICj LTi LMi LTo LMo -"}};
inline constexpr CardForm FORM_MATERIAL_JOINT_4{
    &CARD_MATERIAL_JOINT_4,
    NUMBER_MATERIAL,
    "stage inside, joint, line elements on both of its sides",
    {"MAT KF MATj KFj THICj LTi LMi LTo LMo MATold", "MAT IH MATj IHj THICj LTi LFi LTo LFo MATold",
     "MAT IH MATj IHj THICj LTi LFi LTo LFo MATold", "MAT DEN MATj DENj THICj LTi LMi LTo LMo MATold"}};

inline constexpr CardForm FORM_POST_PAIR =
    form(CARD_POST_PAIR, "3.3.5.4.1.3", "pair for the outputs", "P1 P2");
inline constexpr CardForm FORM_POST_SWITCH =
    form(CARD_POST_SWITCH, "3.3.5.4.1.3", "switch for the outputs", "S");

inline constexpr CardForm FORM_POINTS =
    form(CARD_POINTS, "3.3.5.4.2", "count of points, origin of the group", "NPOINT MOVE IREF XLo YLo");
inline constexpr CardForm FORM_POINT = form(CARD_POINT, "3.3.5.4.2-1", "point of the outline", "NP X Y");
inline constexpr CardForm FORM_SEGMENTS =
    form(CARD_SEGMENTS, "3.3.5.4.3", "count of segments", "NSEGMENT GNODX GNODY");
inline constexpr CardForm FORM_SEGMENT =
    form(CARD_SEGMENT, "3.3.5.4.3.1", "segment", "SEGNO LTYPE NDIV IEND");
inline constexpr CardForm FORM_ARC =
    form(CARD_ARC, "3.3.5.4.3.1-1", "arc of the segment before it", "Xo Yo Rx Ry Qb Qe");

// --- base mesh, earth dam ------------------------------------------------------------------------

inline constexpr CardForm FORM_BLOCKS =
    form(CARD_4_1, "4.1", "count of block columns and rows; which sides are fixed",
         "NBX NBY IB_LEFT IB_RIGHT IB_TOP IB_BOTTOM");
inline constexpr CardForm FORM_CORNER{
    &CARD_4_2, "4.2", "lower left corner", {"Xo Yo Ywater", "Xo Yo T", "Xo Yo H", "Xo Yo"}};
inline constexpr CardForm FORM_COLUMN = form(CARD_4_3, "4.3", "block column, from the left", "W DX AX");
inline constexpr CardForm FORM_ROW = form(CARD_4_4, "4.4", "block row, from the top", "H DY AY");
inline constexpr CardForm FORM_FOLLOWS = form(CARD_4_5, "4.5", "does an edit follow?", "IGMOD");

inline constexpr CardForm FORM_DAM =
    form(CARD_5_1, "5.1", "what the dam has", "NLAYER ICORE ICUT ISHELL NCREST Hi");
inline constexpr CardForm FORM_PROFILE =
    form(CARD_5_2, "5.2", "profile of the dam", "HDAM HWATER RUNL WLEFT WCREST WMID RUNR WRIGHT");
inline constexpr CardForm FORM_CORE =
    form(CARD_5_3, "5.3", "the four points of the core", "X1 Y1 X2 Y2 X3 Y3 X4 Y4");
inline constexpr CardForm FORM_MARGINS = form(CARD_5_4_1, "5.4-1", "ground beside the dam", "XLEFT XRIGHT");
inline constexpr CardForm FORM_WALL =
    form(CARD_5_5, "5.5", "the four points of the cut-off wall", "X1 Y1 X2 Y2 X3 Y3 X4 Y4");

}  // namespace brelan::tool
