// Earth dams: lengths that make no sense, profiles whose mesh may come out unsound, slopes that are fixed,
// zones that shells cut off.
#include <fmt/core.h>

#include <algorithm>
#include <cmath>

#include "commands/checking/dam_zones.h"
#include "commands/checking/doubts.h"

namespace brelan::tool {

namespace {

// What the cards say of the dam, in the coordinates of its mesh: the left toe is the origin.
struct Dam {
    const DeckCard *parts = nullptr, *profile = nullptr, *core = nullptr, *wall = nullptr;
    bool shells = false;
    double height = 0.0, water_height = 0.0, left_run = 0.0, left_width = 0.0, crest = 0.0,
           middle_width = 0.0, right_run = 0.0, right_width = 0.0;
    double depth = 0.0;  // of all layers

    explicit Dam(const NotedDeck& deck)
        : parts(deck.card("5.1")), profile(deck.card("5.2")), core(deck.card("5.3")), wall(deck.card("5.5")) {
        if (parts == nullptr || profile == nullptr)
            return;
        shells = parts->integer("ISHELL") != 0;
        for (auto [name, value] : {std::pair("HDAM", &height),
                                   {"HWATER", &water_height},
                                   {"RUNL", &left_run},
                                   {"WLEFT", &left_width},
                                   {"WCREST", &crest},
                                   {"WMID", &middle_width},
                                   {"RUNR", &right_run},
                                   {"WRIGHT", &right_width}})
            *value = static_cast<double>(profile->real(name));
        for (const DeckCard& card : deck.cards)
            if (card.number == "5.4-1" && card.type == CardType::list)
                for (const float thickness : card.list)
                    depth += static_cast<double>(thickness);
    }

    // Height of the rows of elements: those of the steeper slope templates are finer.
    double row() const {
        constexpr double STEEP = 0.5833;
        return height / (!shells ? 20.0 : height / left_run >= STEEP ? 28.0 : 13.0);
    }

    // Width of the elements of the middle block column.
    double middle_element() const {
        const std::int32_t crest_divisions = parts->integer("NCREST");
        const double wanted = crest_divisions > 0 ? middle_width / crest_divisions : row();
        return middle_width / std::max(1.0, std::floor(middle_width / wanted));
    }
};

constexpr double EQUAL_WITHIN = 1e-4;  // of a length; cards have five digits

bool same_length(double a, double b) {
    return std::abs(a - b) <= EQUAL_WITHIN * std::max(std::abs(a), std::abs(b));
}

// --- lengths -------------------------------------------------------------------------------------

void doubt_lengths(Doubts& doubts, const Dam& dam) {
    if (dam.parts->integer("NLAYER") <= 0 && dam.parts->integer("ICUT") == 1)
        doubts.doubt("no-layers", dam.parts, "ICUT 1: a cut-off wall needs layers to stand in");
    for (const char* name : {"HDAM", "RUNL", "WLEFT", "WCREST", "WMID", "RUNR", "WRIGHT"})
        if (!(dam.profile->real(name) > 0.0F))
            doubts.doubt("bad-length", dam.profile,
                         fmt::format("{} {:g}: expected a length above 0", name, dam.profile->real(name)));
    if (dam.water_height > dam.height)
        doubts.doubt("bad-length", dam.profile, "HWATER: the water stands above the crest");
    const double profile = dam.left_run + dam.crest + dam.right_run,
                 blocks = dam.left_width + dam.middle_width + dam.right_width;
    if (!same_length(profile, blocks))
        doubts.doubt(
            "counts-disagree", dam.profile,
            fmt::format("the profile is {:g} wide and the block columns {:g}: the toe goes to their end",
                        profile, blocks));
}

// --- soundness -----------------------------------------------------------------------------------

// The sides of a wall of such a width may take the same nodes as each other and as the core above it.
void doubt_wall(Doubts& doubts, const Dam& dam) {
    if (dam.wall == nullptr || dam.core == nullptr)
        return;
    const std::vector<DeckPoint> corners = four_points(*dam.wall);
    const auto [left, right] = std::minmax_element(
        corners.begin(), corners.end(), [](const DeckPoint& a, const DeckPoint& b) { return a.x < b.x; });
    const double element = dam.middle_element(), wide = (right->x - left->x) / element;
    if (wide >= 0.5 && wide < 0.75)
        doubts.doubt(
            "may-be-unsound", dam.wall,
            fmt::format("a wall of half to three quarters of an element's width below a core may leave an "
                        "unsound mesh: elements are {:g} wide here, {:g} and above is safe",
                        element, 0.75 * element));
}

void doubt_water(Doubts& doubts, const Dam& dam) {
    const double half = 0.5 * dam.row();
    if (doubts.deck().kind == LayoutKind::head && !dam.shells && dam.depth > 0.0 && dam.water_height > 0.0 &&
        dam.water_height < half)
        doubts.doubt(
            "may-be-unsound", dam.profile,
            fmt::format("HWATER {:g}: a level of less than half an element may leave an unsound mesh: "
                        "0, or {:g} and above, are safe",
                        dam.water_height, half));
}

// --- codes ---------------------------------------------------------------------------------------

// A template marks the nodes under water by codes that hold a node in these kinds.
void doubt_slopes(Doubts& doubts, const Dam& dam) {
    const LayoutKind kind = doubts.deck().kind;
    if (!dam.shells || (kind != LayoutKind::displacement && kind != LayoutKind::coupled) ||
        dam.water_height >= dam.height || dam.water_height <= 0.0)
        return;
    const std::string_view words = kind == LayoutKind::coupled ? "ISX and ISY" : "IDX and IDY";
    doubts.doubt(
        "slopes-held", dam.profile,
        fmt::format("HWATER {:g}: with shells the nodes of both slopes below the water get 1 in {}, which "
                    "fixes them: set them to 0 with an edit of Earth_Dam.Mes (IEDIT 1), or take ISHELL 0",
                    dam.water_height, words));
}

// --- areas ---------------------------------------------------------------------------------------

void doubt_zones(Doubts& doubts, const MeshLists& body) {
    for (const CutOffZone& zone : cut_off_zones(doubts.deck(), body)) {
        std::string made = fmt::format("{:.4g}", zone.made);
        if (zone.other_foot())
            made += fmt::format(" and ends at y = {:.4g} instead of {:.4g}", zone.foot, zone.drawn_foot);
        doubts.doubt(
            "zone-cut-off", zone.card,
            fmt::format("the {} is drawn with an area of {:.4g} and comes out with {}: by the rules "
                        "shells from templates hold none of it, and what is near them is made of whole "
                        "elements; with --cut sound it comes out as it is drawn",
                        zone.name, zone.drawn, made));
    }
}

}  // namespace

void doubt_dam(Doubts& doubts, const MeshLists* body) {
    const Dam dam(doubts.deck());
    if (dam.parts == nullptr || dam.profile == nullptr || doubts.deck().fault)
        return;
    doubt_lengths(doubts, dam);
    if (!(dam.height > 0.0) || !(dam.left_run > 0.0) || !(dam.middle_width > 0.0))
        return;
    doubt_wall(doubts, dam);
    doubt_water(doubts, dam);
    doubt_slopes(doubts, dam);
    if (body != nullptr)
        doubt_zones(doubts, *body);
}

}  // namespace brelan::tool
