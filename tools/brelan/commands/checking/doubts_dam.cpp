// Earth dams: lengths that make no sense, and profiles whose mesh may come out unsound.
#include <fmt/core.h>

#include <algorithm>
#include <cmath>

#include "commands/checking/doubts.h"

namespace brelan::tool {

namespace {

// What the cards say of the dam, in the coordinates of its mesh: the left toe is the origin.
struct Dam {
    const DeckCard *parts = nullptr, *profile = nullptr, *core = nullptr, *wall = nullptr;
    bool shells = false;
    double HDAM = 0.0, HWATER = 0.0, RUNL = 0.0, WLEFT = 0.0, WCREST = 0.0, WMID = 0.0, RUNR = 0.0,
           WRIGHT = 0.0;
    double depth = 0.0;  // of all layers

    explicit Dam(const Deck& deck)
        : parts(deck.card("5.1")), profile(deck.card("5.2")), core(deck.card("5.3")), wall(deck.card("5.5")) {
        if (parts == nullptr || profile == nullptr)
            return;
        shells = parts->integer("ISHELL") != 0;
        for (auto [name, value] : {std::pair("HDAM", &HDAM),
                                   {"HWATER", &HWATER},
                                   {"RUNL", &RUNL},
                                   {"WLEFT", &WLEFT},
                                   {"WCREST", &WCREST},
                                   {"WMID", &WMID},
                                   {"RUNR", &RUNR},
                                   {"WRIGHT", &WRIGHT}})
            *value = static_cast<double>(profile->real(name));
        for (const DeckCard& card : deck.cards)
            if (card.number == "5.4-1" && card.type == CardType::list)
                for (const float thickness : card.list)
                    depth += static_cast<double>(thickness);
    }

    // Height of the rows of elements: those of the steeper slope templates are finer.
    double row() const {
        constexpr double STEEP = 0.5833;
        return HDAM / (!shells ? 20.0 : HDAM / RUNL >= STEEP ? 28.0 : 13.0);
    }

    // Width of the elements of the middle block column.
    double middle_element() const {
        const std::int32_t NCREST = parts->integer("NCREST");
        const double wanted = NCREST > 0 ? WMID / NCREST : row();
        return WMID / std::max(1.0, std::floor(WMID / wanted));
    }
};

constexpr double NOTHING = 1e-4;  // of a length; cards have five digits

bool same_length(double a, double b) {
    return std::abs(a - b) <= NOTHING * std::max(std::abs(a), std::abs(b));
}

// --- lengths -------------------------------------------------------------------------------------

void doubt_lengths(Doubts& doubts, const Dam& dam) {
    if (dam.parts->integer("NLAYER") <= 0 && dam.parts->integer("ICUT") == 1)
        doubts.doubt("no-layers", dam.parts, "ICUT 1: a cut-off wall needs layers to stand in");
    for (const char* name : {"HDAM", "RUNL", "WLEFT", "WCREST", "WMID", "RUNR", "WRIGHT"})
        if (!(dam.profile->real(name) > 0.0F))
            doubts.doubt("bad-length", dam.profile,
                         fmt::format("{} {:g}: expected a length above 0", name, dam.profile->real(name)));
    if (dam.HWATER > dam.HDAM)
        doubts.doubt("bad-length", dam.profile, "HWATER: the water stands above the crest");
    const double profile = dam.RUNL + dam.WCREST + dam.RUNR, blocks = dam.WLEFT + dam.WMID + dam.WRIGHT;
    if (!same_length(profile, blocks))
        doubts.doubt(
            "counts-disagree", dam.profile,
            fmt::format("the profile is {:g} wide and the block columns {:g}: the toe goes to their end",
                        profile, blocks));
}

// --- soundness -----------------------------------------------------------------------------------

void doubt_columns(Doubts& doubts, const Dam& dam) {
    if (!dam.shells && (!same_length(dam.WLEFT, dam.RUNL) || !same_length(dam.WMID, dam.WCREST)))
        doubts.doubt("may-be-unsound", dam.profile,
                     "without shells a crest that does not end at the edges of the middle block column often "
                     "leaves an unsound mesh: WLEFT as RUNL and WMID as the crest are safe");
}

void doubt_core(Doubts& doubts, const Dam& dam) {
    if (dam.core == nullptr)
        return;
    const std::vector<DeckPoint> corners = four_points(*dam.core);
    double top = corners.front().y;
    for (const DeckPoint& corner : corners)
        top = std::max(top, corner.y);
    if (top < dam.HDAM && top > dam.HDAM - dam.row()) {
        doubts.doubt(
            "may-be-unsound", dam.core,
            fmt::format("a core that ends within the top row of elements may leave an unsound mesh: {:g} "
                        "or {:g} and below are safe",
                        dam.HDAM, dam.HDAM - dam.row()));
        return;
    }
    if (dam.shells || top < dam.HDAM)
        return;
    double beside = dam.WCREST;  // the least distance of a corner from the ends of the crest
    for (const DeckPoint& corner : corners)
        if (corner.y == top)
            beside = std::min({beside, corner.x - dam.RUNL, dam.RUNL + dam.WCREST - corner.x});
    if (beside < dam.middle_element())
        doubts.doubt(
            "may-be-unsound", dam.core,
            fmt::format("a core up to the crest with a corner less than an element from the crest's end "
                        "may leave an unsound mesh: {:g} from it, or {:g} high and less, are safe",
                        dam.middle_element(), dam.HDAM - dam.row()));
}

// The lowest elements of the ground are about twice as high as the others.
void doubt_wall(Doubts& doubts, const Dam& dam) {
    if (dam.wall == nullptr)
        return;
    constexpr double LOWEST_ROW = 2.0;
    double foot = 0.0;
    for (const DeckPoint& corner : four_points(*dam.wall))
        foot = std::min(foot, corner.y);
    const double over_bottom = foot + dam.depth;
    if (over_bottom > NOTHING * dam.depth && over_bottom < LOWEST_ROW * dam.row())
        doubts.doubt(
            "may-be-unsound", dam.wall,
            fmt::format("a wall that ends within the lowest row of elements may leave an unsound mesh: "
                        "the bottom at {:g}, or {:g} and above, are safe",
                        -dam.depth, LOWEST_ROW * dam.row() - dam.depth));
}

void doubt_water(Doubts& doubts, const Dam& dam) {
    if (doubts.deck().kind == LayoutKind::head && !dam.shells && dam.HWATER > 0.0 && dam.HWATER < dam.row())
        doubts.doubt(
            "may-be-unsound", dam.profile,
            fmt::format("HWATER {:g}: a level of less than an element may leave an unsound mesh: 0, or "
                        "{:g} and above, are safe",
                        dam.HWATER, dam.row()));
}

}  // namespace

void doubt_dam(Doubts& doubts) {
    const Dam dam(doubts.deck());
    if (dam.parts == nullptr || dam.profile == nullptr || doubts.deck().fault)
        return;
    doubt_lengths(doubts, dam);
    if (!(dam.HDAM > 0.0) || !(dam.RUNL > 0.0) || !(dam.WMID > 0.0))
        return;
    doubt_columns(doubts, dam);
    doubt_core(doubts, dam);
    doubt_wall(doubts, dam);
    doubt_water(doubts, dam);
}

}  // namespace brelan::tool
