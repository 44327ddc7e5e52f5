#include "lib/group/sound_cut/deck_classes.h"

#include <algorithm>
#include <cmath>

namespace brelan::test {

namespace {

constexpr int COLUMNS = 40, ROWS = 24;
constexpr float SURFACE = 24.0F, RIGHT = 40.0F;

// Four decimals, as a person writes them.
float written(float value) {
    return std::round(value * 1.0E4F) / 1.0E4F;
}
float between(Drawing& drawing, float low, float high) {
    return written(drawing.between(low, high));
}

// A vault over an invert, with a lining.
DrawnGroup tunnel(Drawing& drawing, float x, float y, int material) {
    const float radius = between(drawing, 2.0F, 4.5F);
    const float invert = drawing.one_in(2) ? radius : between(drawing, 0.4F * radius, radius);
    static constexpr std::array<int, 4> parts{0, -12, -20, -30};
    DrawnGroup group = region_of({{x + radius, y}, {x - radius, y}}, material);
    group.LTi = 2;
    group.LMi = 20 + material;
    const int NDIV = drawing.one_of(parts);
    group.segments = {arc_with({x, y}, {radius, radius}, 0.0F, 180.0F, NDIV),
                      arc_with({x, y}, {radius, invert}, 180.0F, 360.0F, NDIV)};
    return group;
}

// From border to border below a surface of two to four straight pieces.
DrawnGroup stratum(Drawing& drawing, float low, float high, int material) {
    const int inner = 1 + drawing.below(3);
    std::vector<Point> points{{0.0F, 0.0F}, {RIGHT, 0.0F}, {RIGHT, between(drawing, low, high)}};
    for (int i = inner; i > 0; --i)
        points.push_back({between(drawing, 2.0F, 6.0F) +
                              static_cast<float>(i - 1) * (RIGHT - 8.0F) / static_cast<float>(inner),
                          between(drawing, low, high)});
    points.push_back({0.0F, between(drawing, low, high)});
    return region_of(std::move(points), material);
}

// From the surface downwards, a joint on its left and beams.
DrawnGroup wall(float x, float foot, int material) {
    DrawnGroup group = beams_along({{x, SURFACE}, {x, foot}}, 20 + material);
    group.MTYPE = -2;
    group.MATj = 40 + material;
    return group;
}

// --- the engineer's ----------------------------------------------------------------------------------------

CutDeck site(Kind kind) {
    return deck_over_squares("", kind, COLUMNS, ROWS);
}

CutDeck tunnels(Drawing& drawing, Kind kind) {
    CutDeck deck = site(kind);
    deck.groups.push_back(tunnel(drawing, between(drawing, 7.0F, 14.0F), between(drawing, 6.0F, 17.0F), 2));
    if (drawing.one_in(2))
        deck.groups.push_back(
            tunnel(drawing, between(drawing, 24.0F, 33.0F), between(drawing, 6.0F, 17.0F), 3));
    return deck;
}

CutDeck strata(Drawing& drawing, Kind kind) {
    CutDeck deck = site(kind);
    const int count = 1 + drawing.below(3);
    for (int i = 0; i < count; ++i)  // the lower ones over the upper ones
        deck.groups.push_back(stratum(drawing, 18.0F - 6.0F * static_cast<float>(i),
                                      22.0F - 6.0F * static_cast<float>(i), 2 + i));
    return deck;
}

CutDeck walls(Drawing& drawing, Kind kind) {
    CutDeck deck = site(kind);
    deck.groups.push_back(wall(between(drawing, 5.0F, 17.0F), between(drawing, 5.0F, 19.0F), 2));
    if (drawing.one_in(2))
        deck.groups.push_back(wall(between(drawing, 22.0F, 36.0F), between(drawing, 5.0F, 19.0F), 3));
    return deck;
}

CutDeck anchors(Drawing& drawing, Kind kind) {
    CutDeck deck = site(kind);
    const float x = between(drawing, 14.0F, 24.0F), foot = between(drawing, 8.0F, 14.0F);
    const float first = between(drawing, 19.0F, 22.0F), second = between(drawing, 15.5F, 18.5F);
    deck.groups.push_back(beams_along({{x, SURFACE}, {x, first}, {x, second}, {x, foot}}, 22));
    int material = 23;
    for (const float level : {first, second}) {
        const float length = between(drawing, 6.0F, 13.0F), fall = between(drawing, 0.2F, 0.6F);
        DrawnGroup anchor =
            beams_along({{x, level}, {written(x - length), written(level - fall * length)}}, material++);
        anchor.LTi = 3;
        if (drawing.one_in(3)) {  // a strut that does not touch the ground
            anchor.points[1] = {written(x + length), level};
            anchor.OVERLAY = 1;
            anchor.segments[0].NDIV = 1;
        }
        deck.groups.push_back(anchor);
    }
    return deck;
}

CutDeck slopes(Drawing& drawing, Kind kind) {
    CutDeck deck = site(kind);
    const float left = between(drawing, 1.5F, 12.0F), bottom = between(drawing, 15.0F, 22.0F);
    const float first = between(drawing, left + 2.0F, left + 11.0F);
    const float second = between(drawing, first + 3.0F, first + 8.0F);
    const float right = between(drawing, second + 2.0F, std::min(second + 11.0F, 38.5F));
    deck.groups.push_back(
        region_of({{left, SURFACE}, {first, bottom}, {second, bottom}, {right, SURFACE}}, 0));
    deck.groups[0].MTYPE = 1;
    return deck;
}

CutDeck sites(Drawing& drawing, Kind kind) {
    CutDeck deck = site(kind);
    const float left = between(drawing, 10.0F, 15.0F), right = between(drawing, 22.0F, 28.0F);
    const float foot = between(drawing, 9.0F, 12.0F);
    const float first = between(drawing, 19.0F, 21.0F), second = between(drawing, 15.0F, 17.5F);
    deck.groups.push_back(stratum(drawing, 3.0F, 6.0F, 2));
    deck.groups.push_back(wall(left, foot, 3));
    deck.groups.push_back(wall(right, written(foot + 0.5F), 4));
    int material = 5;
    for (const auto& [top, bottom] : {std::pair{SURFACE, first}, std::pair{first, second}}) {
        DrawnGroup stage =
            region_of({{left, top}, {left, bottom}, {right, bottom}, {right, top}}, 10 + material);
        stage.MTYPE = 4;
        stage.MATold = material++;
        deck.groups.push_back(stage);
    }
    deck.groups.push_back(tunnel(drawing, between(drawing, 32.0F, 34.5F), between(drawing, 12.0F, 17.0F), 7));
    return deck;
}

// --- harder ones -------------------------------------------------------------------------------------------

// Each group has materials of its own, so that what it leaves is told apart.
void give_materials(CutDeck& deck) {
    int g = 0;
    for (DrawnGroup& group : deck.groups) {
        ++g;
        group.MAT = group.MAT == 0 ? 0 : 10 + g;
        group.LMi = 20 + g;
        group.MATold = 30 + g;
        group.MATj = 40 + g;
    }
}

CutDeck over(const DrawnMesh& mesh, Drawing& drawing, Kind kind) {
    CutDeck deck = deck_over("", kind, mesh);
    deck.limits = drawing.one_in(2);
    return deck;
}

DrawnGroup any_line(Drawing& drawing, const DrawnMesh& mesh) {
    static constexpr std::array<Course, 3> courses{Course::any_slope, Course::along_sides,
                                                   Course::through_corners};
    return draw_line(drawing, mesh, drawing.one_of(courses));
}

DrawnGroup any_outline(Drawing& drawing, const DrawnMesh& mesh) {
    return drawing.one_in(2) ? draw_arc(drawing, mesh) : draw_outline(drawing, mesh);
}

template <DrawnGroup (*DRAW)(Drawing&, const DrawnMesh&), int CELLS = 5>
CutDeck one_group(Drawing& drawing, Kind kind) {
    const DrawnMesh mesh = draw_mesh(drawing, CELLS);
    CutDeck deck = over(mesh, drawing, kind);
    deck.groups.push_back(DRAW(drawing, mesh));
    give_materials(deck);
    return deck;
}

DrawnGroup deletion(Drawing& drawing, const DrawnMesh& mesh) {
    DrawnGroup group = any_outline(drawing, mesh);
    group.MTYPE = drawing.one_in(2) ? 1 : -1;
    return group;
}
DrawnGroup stage(Drawing& drawing, const DrawnMesh& mesh) {
    DrawnGroup group = any_outline(drawing, mesh);
    group.MTYPE = 4;
    return group;
}
DrawnGroup joint(Drawing& drawing, const DrawnMesh& mesh) {
    DrawnGroup group = any_line(drawing, mesh);
    make_joint(group, 0.0F);
    return group;
}
DrawnGroup wide_joint(Drawing& drawing, const DrawnMesh& mesh) {
    DrawnGroup group = any_line(drawing, mesh);
    make_joint(group, drawing.one_in(2) ? -drawing.between(0.01F, 0.05F) : drawing.between(0.01F, 0.05F));
    return group;
}
DrawnGroup closed_joint(Drawing& drawing, const DrawnMesh& mesh) {
    DrawnGroup group = any_outline(drawing, mesh);
    make_joint(group, 0.0F);
    return group;
}

CutDeck three_groups(Drawing& drawing, Kind kind) {
    const DrawnMesh mesh = draw_mesh(drawing);
    CutDeck deck = over(mesh, drawing, kind);
    for (int g = 0; g < 3; ++g)
        deck.groups.push_back(drawing.one_in(2) ? any_line(drawing, mesh) : any_outline(drawing, mesh));
    give_materials(deck);
    return deck;
}

CutDeck two_decks(Drawing& drawing, Kind kind) {
    CutDeck deck = three_groups(drawing, kind);
    deck.groups_of_first_deck = 1U + static_cast<std::size_t>(drawing.below(2));
    return deck;
}

// Half of the kinds have midside nodes.
CutDeck second_order(Drawing& drawing, Kind kind) {
    const bool has_midsides = kind == Kind::coupled || kind == Kind::displacement;
    CutDeck deck = three_groups(drawing, has_midsides ? kind : Kind::displacement);
    make_second_order(deck);
    return deck;
}

CutDeck over_a_joint(Drawing& drawing, Kind kind) {
    const DrawnMesh mesh = draw_mesh(drawing);
    CutDeck deck = over(mesh, drawing, kind);
    deck.groups = {any_line(drawing, mesh), any_line(drawing, mesh)};
    make_joint(deck.groups[0], 0.0F);
    if (drawing.one_in(2))
        make_joint(deck.groups[1], 0.0F);
    give_materials(deck);
    return deck;
}

constexpr std::array<DeckClass, 20> CLASSES{{
    {"tunnels", tunnels, true},
    {"strata", strata, true},
    {"walls with joints", walls, true},
    {"anchors and struts", anchors, true},
    {"cuts with two slopes", slopes, true},
    {"sites", sites, true},
    {"lines", one_group<any_line>},
    {"lines, larger meshes", one_group<any_line, 14>},
    {"closed outlines", one_group<draw_outline>},
    {"circles and arcs", one_group<draw_arc>},
    {"deletion", one_group<deletion>},
    {"stages", one_group<stage>},
    {"joints of no width", one_group<joint>},
    {"joints of a width", one_group<wide_joint>},
    {"joints round outlines", one_group<closed_joint>},
    {"three crossing groups", three_groups},
    {"three groups in two decks", two_decks},
    {"lines and joints over a joint", over_a_joint},
    {"three groups, second order", second_order},
    {"well apart", well_apart_deck, false, true},
}};

}  // namespace

std::span<const DeckClass> deck_classes() {
    return CLASSES;
}

CutDeck deck_of_class(const DeckClass& of, int number) {
    std::uint32_t seed = 2166136261U;
    for (const char c : of.name)
        seed = (seed ^ static_cast<unsigned char>(c)) * 16777619U;
    Drawing drawing(seed + 7919U * static_cast<std::uint32_t>(number));
    CutDeck deck = of.draw(drawing, ALL_KINDS[static_cast<std::size_t>(number % 4)]);
    deck.name = std::string(of.name) + " " + std::to_string(number);
    return deck;
}

}  // namespace brelan::test
