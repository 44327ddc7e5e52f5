#include "lib/group/sound_cut/cut_deck.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>

#include "group/engine_mesh.h"
#include "mesh/kinds.h"
#include "plane/path.h"
#include "run/run.h"
#include "run/run_deck.h"
#include "support/numbers.h"

namespace brelan::test {

namespace {

constexpr const char* RESULT = "Out.Mes";

std::string numbers(const std::vector<int>& list) {
    std::string text = std::to_string(list.size()) + "\n";
    for (const int n : list)
        text += std::to_string(n) + " ";
    return list.empty() ? text : text + "\n";
}

std::string real(double value) {
    std::array<char, 40> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%.6f", value);
    return buffer.data();
}

const std::string& unit_table() {
    static const std::string text =
        read_text(std::filesystem::path(BRELAN_SOURCE_DIR) / "data/Vork/Qx/Qxdata/UNIT.DAT");
    return text;
}

RunInput input_of(const CutDeck& deck, std::string text, CutMethod method) {
    RunInput input;
    input.edition = edition_of(deck.kind);
    input.cut = method;
    input.files["..\\deck.dat"] = std::move(text);
    input.files["C:\\Vork\\Qx\\Qxdata\\UNIT.DAT"] = unit_table();
    input.files["..\\DV-BRELAN.dat"] =
        "1 0.001 0.01 " + real(static_cast<double>(deck.same)) + "\n0 0.01 0 0 0 0 0 0\n0\n";
    return input;
}

// The mesh in the tables of a run that has finished.
CutMesh mesh_in(const brelan::Mesh& tables) {
    CutMesh mesh;
    for (NodeNumber n(1); n <= LAST_NODE; ++n)
        if (tables.node_in_use[n] == 1)
            mesh.nodes.push_back({n.value, {tables.x[n], tables.y[n]}});
    for (ElementNumber e(1); e <= LAST_ELEMENT; ++e) {
        const ElementWords& w = tables.words[e];
        const std::int32_t material = w.material.value;
        const FourNodes corners = corner_words(w);
        switch (tables.type_in_use[e]) {
            case ELEMENT_CONTINUUM:
                // A mesh that was read has 100 or more where the engine that makes a joint puts a number
                // below 0.
                if (is_joint(tables, e) || (has_node_values(tables.kind) && tables.attribute[e] >= 100)) {
                    mesh.joints.push_back({e.value, material, corners});
                    break;
                }
                mesh.solids.push_back(
                    {e.value,
                     material,
                     {corners.begin(), corners.begin() + 3},
                     {w.midside_5.value, w.midside_6.value, w.midside_7.value, w.midside_8.value}});
                if (w.corner_4.names_one())
                    mesh.solids.back().corners.push_back(corners[3]);
                break;
            case ELEMENT_BEAM:
            case ELEMENT_TRUSS:
                mesh.lines.push_back({e.value, material, corners[0], corners[1]});
                break;
            default:
                break;
        }
    }
    return mesh;
}

bool is_joint_record(Kind kind, const MeshElement& element) {
    if (kind == Kind::coupled)
        return element.codes[0] > 0;
    if (kind == Kind::displacement)
        return element.reals[1] < 0.0;
    return element.codes[0] < 0 || element.codes[0] >= 100;
}

std::vector<int> nodes_held_by_codes(const Mesh& file) {
    std::vector<int> held;
    for (const MeshNode& node : file.nodes)
        if (node.codes[0] != 0 || node.codes[1] != 0)
            held.push_back(node.number);
    return held;
}

// A mesh file, its coordinates as a run reads them.
CutMesh mesh_of(const Mesh& file) {
    CutMesh mesh;
    for (const MeshNode& node : file.nodes)
        mesh.nodes.push_back({node.number, {static_cast<float>(node.x), static_cast<float>(node.y)}});
    for (const MeshElement& e : file.continuum) {
        if (is_joint_record(file.kind, e)) {
            mesh.joints.push_back({e.number, e.material, e.corners});
            continue;
        }
        mesh.solids.push_back({e.number, e.material, {e.corners.begin(), e.corners.end()}, e.midsides});
        if (e.corners[3] == 0)
            mesh.solids.back().corners.pop_back();
    }
    for (const MeshLine& line : file.beams)
        mesh.lines.push_back({line.number, line.material, line.i, line.j});
    for (const MeshLine& line : file.trusses)
        mesh.lines.push_back({line.number, line.material, line.i, line.j});
    return mesh;
}

Spot spot(const Point& p) {
    return {p.x, p.y};
}

bool same_place(const Spot& a, const Spot& b, double same) {
    return std::hypot(a.x - b.x, a.y - b.y) <= same;
}

DrawnPiece piece_of(const Path& path, const PathPiece& piece, const SegmentRow& row) {
    DrawnPiece drawn;
    drawn.segment = piece.segment + 1;
    const int rule = row.end_rule;
    drawn.is_cut = rule != 0 && rule != 3;
    drawn.places_start = rule == 0 || rule == -1 || rule == 2 || rule == -2;
    drawn.places_end = rule == 0 || rule == 1 || rule == 2 || rule == -2;
    const std::size_t step = row.segment_type == STRAIGHT_SEGMENT ? piece.parts : 1;
    for (std::size_t i = 0; i <= piece.parts; i += step)
        drawn.points.push_back(spot(path.point_of(piece, i)));
    return drawn;
}

// A region follows its outline where each side is cut and each corner is placed by one of its two sides.
bool follows_outline(const DrawnPath& drawn, double same) {
    if (!drawn.closed || drawn.pieces.empty())
        return false;
    for (std::size_t k = 0; k < drawn.pieces.size(); ++k) {
        const DrawnPiece& piece = drawn.pieces[k];
        const DrawnPiece& next = drawn.pieces[(k + 1) % drawn.pieces.size()];
        if (!piece.is_cut || (!piece.places_end && !next.places_start) ||
            !same_place(piece.points.back(), next.points.front(), same))
            return false;
    }
    return true;
}

DrawnPath drawn_path(const GroupCards& cards, std::int32_t g, std::size_t number, float same) {
    const GroupRow& row = cards.rows[g];
    const GroupMaterial& material = cards.materials[g];
    DrawnPath drawn;
    drawn.group = number;
    drawn.type = row.group_type;
    drawn.overlay = row.overlay;
    drawn.free_line = row.group_type == 2 && row.overlay == 1;
    drawn.material = static_cast<int>(material.material);
    drawn.old_material = static_cast<int>(material.old_material);
    drawn.joint_material = row.group_type <= -2 ? static_cast<int>(material.joint_material) : 0;
    drawn.thickness = row.group_type <= -2 ? static_cast<double>(material.joint_thickness) : 0.0;
    drawn.line_type = std::abs(static_cast<int>(material.inner_line_type));
    drawn.line_material = static_cast<int>(material.inner_line_material);
    if (row.group_type == -1 || row.group_type == 5)
        drawn.line_type = 0;
    const OutlineUse use = std::abs(row.group_type) != 2 ? OutlineUse::region
                           : drawn.free_line             ? OutlineUse::free_line
                                                         : OutlineUse::line;
    const auto segments = segments_of(cards, g);
    const Path path = path_along(outline_of(cards, g), segments, use, same);
    drawn.closed = path.closed;
    for (const PathPiece& piece : path.pieces)
        drawn.pieces.push_back(piece_of(path, piece, segments[piece.segment]));
    for (const Point& p : path.points)
        drawn.polygon.push_back(spot(p));
    drawn.exact = follows_outline(drawn, static_cast<double>(same));
    return drawn;
}

}  // namespace

// --- drawing ---------------------------------------------------------------------------------------------

CutDeck deck_over_squares(std::string name, Kind kind, int columns, int rows) {
    CutDeck deck;
    deck.name = std::move(name);
    deck.kind = kind;
    deck.high = {static_cast<double>(columns), static_cast<double>(rows)};
    const bool scalar = kind == Kind::temperature || kind == Kind::head;
    deck.blocks = {scalar ? "1 1 0 0 0 0" : "1 1 1 1 0 1", "0.0 0.0", std::to_string(columns) + ".0 1.0 0.5",
                   std::to_string(rows) + ".0 1.0 0.5"};
    deck.limits = true;
    return deck;
}

CutDeck deck_over(std::string name, Kind kind, const DrawnMesh& drawn) {
    CutDeck deck;
    deck.name = std::move(name);
    deck.kind = kind;
    // As the file of the mesh tells it.
    const auto in_file = [](float value) {
        return static_cast<double>(std::strtof(e_field(value, 13, 6).c_str(), nullptr));
    };
    deck.high = {in_file(drawn.width), in_file(drawn.height)};
    deck.base.kind = kind;
    deck.base.name = "Base.Mes";
    const bool scalar = kind == Kind::temperature || kind == Kind::head;
    for (std::size_t i = 0; i < drawn.nodes.size(); ++i) {
        MeshNode node;
        node.number = static_cast<int>(i + 1);
        node.codes.assign(kind == Kind::coupled ? 5 : scalar ? 2 : 3, 0);
        if (drawn.coded[i])
            node.codes[0] = 1;
        node.x = static_cast<double>(drawn.nodes[i].x);
        node.y = static_cast<double>(drawn.nodes[i].y);
        deck.base.nodes.push_back(node);
    }
    for (const auto& corners : drawn.elements) {
        MeshElement element;
        element.number = static_cast<int>(deck.base.continuum.size() + 1);
        std::copy(corners.begin(), corners.end(), element.corners.begin());
        element.codes.assign(kind == Kind::coupled ? 4 : scalar ? 1 : 0, 0);
        if (kind == Kind::coupled)
            element.reals = {0.0};
        if (kind == Kind::displacement)
            element.reals = {1.0, 2.0};
        deck.base.continuum.push_back(element);
    }
    return deck;
}

DrawnMesh mesh_of_squares(int columns, int rows, bool triangles) {
    DrawnMesh mesh;
    mesh.columns = columns;
    mesh.rows = rows;
    mesh.width = static_cast<float>(columns);
    mesh.height = static_cast<float>(rows);
    for (int row = 0; row <= rows; ++row)
        for (int column = 0; column <= columns; ++column)
            mesh.nodes.push_back({static_cast<float>(column), static_cast<float>(row)});
    add_grid_elements(mesh, triangles);
    return mesh;
}

void add_grid_elements(DrawnMesh& mesh, bool triangles) {
    mesh.coded.assign(mesh.nodes.size(), false);
    for (int row = 0; row < mesh.rows; ++row)
        for (int column = 0; column < mesh.columns; ++column) {
            const std::int32_t a = mesh.node_at(column, row), b = a + 1;
            const std::int32_t d = mesh.node_at(column, row + 1), c = d + 1;
            if (triangles) {
                mesh.elements.push_back({a, b, c, 0});
                mesh.elements.push_back({a, c, d, 0});
            } else {
                mesh.elements.push_back({a, b, c, d});
            }
        }
}

DrawnSegment segment_with(int IEND, int NDIV) {
    DrawnSegment segment;
    segment.IEND = IEND;
    segment.NDIV = NDIV;
    return segment;
}

DrawnSegment arc_with(Point centre, Point half_axes, float from, float to, int NDIV) {
    DrawnSegment arc;
    arc.LTYPE = 2;
    arc.NDIV = NDIV;
    arc.Xo = centre.x, arc.Yo = centre.y;
    arc.Rx = half_axes.x, arc.Ry = half_axes.y;
    arc.Qb = from, arc.Qe = to;
    return arc;
}

void make_second_order(CutDeck& deck) {
    std::map<std::pair<int, int>, int> known;
    const std::vector<MeshNode> corners = deck.base.nodes;
    for (MeshElement& element : deck.base.continuum) {
        const std::size_t count = element.corners[3] > 0 ? 4 : 3;
        for (std::size_t i = 0; i < count; ++i) {
            const int a = element.corners[i], b = element.corners[(i + 1) % count];
            const auto [at, fresh] =
                known.emplace(std::minmax(a, b), static_cast<int>(deck.base.nodes.size() + 1));
            element.midsides[i] = at->second;
            if (!fresh)
                continue;
            const MeshNode &from = corners[static_cast<std::size_t>(a - 1)],
                           &to = corners[static_cast<std::size_t>(b - 1)];
            MeshNode middle = from;
            middle.number = at->second;
            std::fill(middle.codes.begin(), middle.codes.end(), 0);
            middle.x = (from.x + to.x) / 2.0;
            middle.y = (from.y + to.y) / 2.0;
            deck.base.nodes.push_back(middle);
        }
    }
}

DrawnGroup beams_along(std::vector<Point> points, int material) {
    DrawnGroup group;
    group.MTYPE = 2;
    group.LTi = 2;
    group.LMi = material;
    group.points = std::move(points);
    group.segments.assign(group.points.size() - 1, segment_with(2));
    return group;
}

DrawnGroup region_of(std::vector<Point> points, int material) {
    DrawnGroup group;
    group.MTYPE = 3;
    group.MAT = material;
    group.points = std::move(points);
    group.segments.assign(group.points.size(), segment_with(2));
    return group;
}

std::string text_of(const CutDeck& deck, std::size_t first, std::size_t last, bool reads_base) {
    std::string text;
    if (reads_base) {
        text = "1 0\nBase.Mes\n";
    } else {
        text = "2 0\n";
        for (const std::string& card : deck.blocks)
            text += card + "\n";
        text += "1\nBmesh.dat\n";
    }
    text += std::string(RESULT) + "\n1 1\n4\n" + numbers(deck.frozen) + numbers(deck.listed);
    text += deck.limits ? "1\n" + real(deck.low.x) + " " + real(deck.low.y) + " " + real(deck.high.x) + " " +
                              real(deck.high.y) + "\n"
                        : "0\n";
    text += std::to_string(last - first) + " 0\n0.0 0.0\n";
    for (std::size_t g = first; g < last; ++g)
        for (const std::string& card : cards_of(deck.groups[g]))
            text += card + "\n";
    return text;
}

// --- running ---------------------------------------------------------------------------------------------

CutRun run_cut(const CutDeck& deck, CutMethod method) {
    CutRun result;
    const std::size_t all = deck.groups.size();
    const std::size_t split = deck.groups_of_first_deck == 0 ? all : deck.groups_of_first_deck;
    std::string base = deck.blocks.empty() ? deck.base.text() : std::string();
    for (std::size_t first = 0, last = split; first < all; first = last, last = all) {
        const bool reads_base = !base.empty();
        RunInput input = input_of(deck, text_of(deck, first, last, reads_base), method);
        if (reads_base)
            input.files["..\\Base.Mes"] = base;
        const auto files = files_of(input);
        KeptConsole console;
        const auto run = std::make_unique<Run>(files, console);
        run->cut = method;
        const auto begin = std::chrono::steady_clock::now();
        const RunEnd end = run_to_end(*run);
        result.seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
        if (end.status != STATUS_FINISHED) {
            result.status = end.status;
            result.message = end.text;
            return result;
        }
        if (first == 0) {
            const MeshCheck check = check_mesh(reads_base ? base : files->text("..\\Bmesh.dat"), deck.kind);
            result.before = mesh_of(check.mesh);
            result.frozen_codes = nodes_held_by_codes(check.mesh);
        } else {
            const MeshCheck check = check_mesh(base, deck.kind);
            result.reread = mesh_of(check.mesh);
            result.still_frozen = nodes_held_by_codes(check.mesh);
        }
        for (std::int32_t g = 1; g <= run->deck.groups.count; ++g)
            result.paths.push_back(
                drawn_path(run->deck.groups, g, result.paths.size() + 1, run->tolerances.same));
        result.after = mesh_in(run->mesh);
        if (last < all)
            result.between = result.after;
        base = files->text("..\\" + std::string(RESULT));
    }
    return result;
}

std::string keep_deck(const CutDeck& deck, CutMethod method, const std::string& directory, int number) {
    namespace fs = std::filesystem;
    std::string name = deck.name.substr(0, 40);
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    const fs::path place =
        fs::path(directory) /
        (name + (method == CutMethod::sound ? "-sound-" : "-rules-") + std::to_string(number));
    fs::create_directories(place);
    const std::size_t split = deck.groups_of_first_deck == 0 ? deck.groups.size() : deck.groups_of_first_deck;
    std::ofstream(place / "deck.dat") << "* Kind: " << name_of(deck.kind) << "\n"
                                      << text_of(deck, 0, split, deck.blocks.empty());
    if (split < deck.groups.size())
        std::ofstream(place / "second.dat") << "* Out.Mes of the first deck is its Base.Mes\n"
                                            << text_of(deck, split, deck.groups.size(), true);
    if (deck.blocks.empty())
        std::ofstream(place / "Base.Mes") << deck.base.text();
    std::ofstream(place / "DV-BRELAN.dat")
        << "1 0.001 0.01 " << real(static_cast<double>(deck.same)) << "\n0 0.01 0 0 0 0 0 0\n0\n";
    return place.string();
}

}  // namespace brelan::test
