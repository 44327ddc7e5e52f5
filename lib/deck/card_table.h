// The card table: how many values each card has, what stands for a field that is not given, and how the card
// is written to the normalised deck. A card is known to the user by its label.
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <string_view>

#include "mesh/edition.h"

namespace brelan {

// One entry for each kind, in the order of LayoutKind.
template <class T>
using ByKind = std::array<T, 4>;

template <class T>
constexpr ByKind<T> each_kind(T value) {
    return {value, value, value, value};
}

// Of a kind that has no default for a field: what an earlier card left there stays.
inline constexpr float NO_DEFAULT = std::numeric_limits<float>::quiet_NaN();

// A default for the fields first to last.
struct FieldDefault {
    std::int32_t first = 0, last = -1;
    ByKind<float> value{};
};

struct Card {
    std::string_view label;    // shown in the report of a wrong count
    std::string_view fields;   // names in the manual
    std::int32_t minimum = 0;  // counts of values
    ByKind<std::int32_t> maximum{};
    ByKind<std::string_view> written;  // in the normalised deck, by field: I integer, E real
    std::array<FieldDefault, 2> defaults{};

    std::int32_t maximum_of(LayoutKind kind) const { return maximum[static_cast<std::size_t>(kind)]; }
    std::string_view written_of(LayoutKind kind) const { return written[static_cast<std::size_t>(kind)]; }
};

// A field of IEDIT 6 that stays as it is.
inline constexpr float KEEP_FIELD = -10.0F;

// --- mode ----------------------------------------------------------------------------------------

// JK's default is prepared by the checker: it may stem from an earth dam.
inline constexpr Card CARD_1_1{"1.1", "IMOD, JK", 1, each_kind(2), each_kind<std::string_view>("II"), {}};

// --- combination ---------------------------------------------------------------------------------

// Card 2.2 is reported as group 1.1: front ends know it by that label.
inline constexpr Card CARD_2_2{"1.1", "INTERFACE", 1, each_kind(1), each_kind<std::string_view>("I"), {}};
inline constexpr Card CARD_2_3{"2.3", "NINT", 1, each_kind(1), each_kind<std::string_view>("I"), {}};

// --- edit ----------------------------------------------------------------------------------------

inline constexpr Card CARD_3_2{
    "3.2",        "NSNEL, NSNODE, NSBEAM, NSTRUS",     2,
    each_kind(4), each_kind<std::string_view>("IIII"), {{{3, 4, each_kind(0.0F)}}}};
inline constexpr Card CARD_3_3{
    "3.3",        "IEDIT, MATX1, MATX2, MATX3, MATXB, MATXT", 1,
    each_kind(6), each_kind<std::string_view>("IIIIII"),      {{{2, 6, each_kind(0.0F)}}}};

inline constexpr Card CARD_3_3_1_1{
    "3.3.1.1", "XO, YO, XN, YN", 4, each_kind(4), each_kind<std::string_view>("EEEE"), {}};
inline constexpr Card CARD_3_3_1_2{"3.3.1.2", "SCX, SCY", 2, each_kind(2), each_kind<std::string_view>("EE"),
                                   {}};

// The selection cards of IEDIT 1, 2 and 3 differ in their labels only.
struct SelectionCards {
    Card location, window, list, side;
};
constexpr SelectionCards selection_cards(std::string_view location, std::string_view window,
                                         std::string_view list, std::string_view side) {
    return {{location, "ILOC", 1, each_kind(1), each_kind<std::string_view>("I"), {}},
            {window, "XMIN, YMIN, XMAX, YMAX", 4, each_kind(4), each_kind<std::string_view>("EEEE"), {}},
            {list, "NSEL", 1, each_kind(1), each_kind<std::string_view>("I"), {}},
            {side, "ISIDE", 1, each_kind(1), each_kind<std::string_view>("I"), {}}};
}
inline constexpr SelectionCards CARDS_3_3_2 = selection_cards("3.3.2.1", "3.3.2.2.1", "3.3.2.2.2", "3.3.2.3");
inline constexpr SelectionCards CARDS_3_3_3 = selection_cards("3.3.3.1", "3.3.3.2.1", "3.3.3.2.2", "3.3.3.3");
inline constexpr SelectionCards CARDS_3_3_4 = selection_cards("3.3.4.1", "3.3.4.2.1", "3.3.4.2.2", "3.3.4.3");

inline constexpr ByKind<std::int32_t> NODE_CODE_COUNTS{5, 2, 2, 3};
inline constexpr ByKind<std::string_view> NODE_CODE_FIELDS{"IIIII", "II", "II", "III"};
// The minimum of Card 3.3.2.4 is its maximum: all codes of the kind are given.
inline constexpr Card CARD_3_3_2_4{"3.3.2.4", "IDNEW", 0, NODE_CODE_COUNTS, NODE_CODE_FIELDS, {}};
inline constexpr Card CARD_3_3_4_4{
    "3.3.4.4", "MATNC, MATNB, MATNT", 3, each_kind(3), each_kind<std::string_view>("III"), {}};

inline constexpr Card CARD_3_3_6_1{"3.3.6.1", "MODEL", 1, each_kind(1), each_kind<std::string_view>("I"), {}};
inline constexpr Card CARD_3_3_6_2{"3.3.6.2",
                                   "MATNO_T, rHw, Hi",
                                   2,
                                   each_kind(3),
                                   each_kind<std::string_view>("IEE"),
                                   {{{3, 3, each_kind(0.0F)}}}};
inline constexpr Card CARD_3_3_6_3{
    "3.3.6.3", "X1, Y1, X2, Y2, X3, Y3", 6, each_kind(6), each_kind<std::string_view>("EEEEEE"), {}};

inline constexpr Card CARD_3_6_1{"3.6.1", "NEDC", 1, each_kind(1), each_kind<std::string_view>("I"), {}};
inline constexpr Card CARD_3_6_1_1{"3.6.1-1",
                                   "MATold, NS1, NS2, NS3, NS4, MATNEW and the kind's attributes",
                                   5,
                                   each_kind(8),
                                   {"IIIIIIII", "IIIIIII", "IIIIIII", "IIIIIIEE"},
                                   {{{6, 8, each_kind(KEEP_FIELD)}}}};
inline constexpr Card CARD_3_6_2{"3.6.2", "NEDB", 1, each_kind(1), each_kind<std::string_view>("I"), {}};
inline constexpr Card CARD_3_6_2_1{
    "3.6.2-1",    "MATold, NS1, NS2, MATNEW, one more", 3,
    each_kind(5), each_kind<std::string_view>("IIIII"), {{{4, 5, each_kind(KEEP_FIELD)}}}};
inline constexpr Card CARD_3_6_3{"3.6.3", "NEDT", 1, each_kind(1), each_kind<std::string_view>("I"), {}};
inline constexpr Card CARD_3_6_3_1{
    "3.6.3-1",    "MATold, NS1, NS2, MATNEW, one more", 3,
    each_kind(5), each_kind<std::string_view>("IIIII"), {{{4, 5, each_kind(KEEP_FIELD)}}}};

// --- base mesh -----------------------------------------------------------------------------------

inline constexpr Card CARD_4_1{"4.1",
                               "NBX, NBY, IB_LEFT, IB_RIGHT, IB_TOP, IB_BOTTOM",
                               2,
                               each_kind(6),
                               each_kind<std::string_view>("IIIIII"),
                               {{{3, 6, each_kind(1.0F)}, {5, 5, each_kind(0.0F)}}}};
inline constexpr Card CARD_4_2{
    "4.2",        "Xo, Yo and the kind's third value", 2,
    {3, 3, 3, 2}, {"EEE", "EEE", "EEE", "EE"},         {{{3, 3, {-1.0E+30F, 0.0F, 0.0F, NO_DEFAULT}}}}};
inline constexpr Card CARD_4_3{"4.3", "W, DX, AX", 3, each_kind(3), each_kind<std::string_view>("EEE"), {}};
inline constexpr Card CARD_4_4{"4.4", "H, DY, AY", 3, each_kind(3), each_kind<std::string_view>("EEE"), {}};
inline constexpr Card CARD_4_5{"4.5", "IGMOD", 1, each_kind(1), each_kind<std::string_view>("I"), {}};

// --- earth dam -----------------------------------------------------------------------------------

inline constexpr Card CARD_5_1{
    "5.1",        "NLAYER, ICORE, ICUT, ISHELL, NCREST, Hi", 4,
    each_kind(6), each_kind<std::string_view>("IIIIIE"),     {{{5, 6, each_kind(0.0F)}}}};
inline constexpr Card CARD_5_2{"5.2",
                               "HDAM, HWATER, RUNL, WLEFT, crest width, WMID, RUNR, WRIGHT",
                               8,
                               each_kind(8),
                               each_kind<std::string_view>("EEEEEEEE"),
                               {}};
inline constexpr Card CARD_5_3{"5.3",        "the four points of the core",           8,
                               each_kind(8), each_kind<std::string_view>("EEEEEEEE"), {}};
inline constexpr Card CARD_5_4_1{"5.4-1", "XLEFT, XRIGHT", 2, each_kind(2), each_kind<std::string_view>("EE"),
                                 {}};
inline constexpr Card CARD_5_5{"5.5",        "the four points of the cut-off wall",   8,
                               each_kind(8), each_kind<std::string_view>("EEEEEEEE"), {}};

}  // namespace brelan
