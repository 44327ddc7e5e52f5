// A deck with groups over a rectangle of ground, drawn by a test, and what a run of it leaves: the mesh in
// the run's own 32 bits, and the groups as the deck was read.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "mesh/cut_method.h"
#include "mesh/edition.h"
#include "support/group_drawing.h"
#include "support/mesh.h"

namespace brelan::test {

struct Spot {
    double x = 0.0, y = 0.0;
};

// --- the deck --------------------------------------------------------------------------------------------

struct CutDeck {
    std::string name;  // its class, or what it shows
    Kind kind = Kind::displacement;
    Spot low, high;                   // the ground: a rectangle
    std::vector<std::string> blocks;  // Cards 4.1 to 4.4 of a base mesh; none: `base` is read
    Mesh base;
    std::vector<DrawnGroup> groups;
    std::vector<int> frozen, listed;       // Cards 3.3.5.1 and 3.3.5.2
    bool limits = false;                   // Card 3.3.5.3 with the limits of the ground
    float same = 0.001F;                   // TOLSAME
    std::size_t groups_of_first_deck = 0;  // 0: one deck; else the rest is drawn by a second over its result
};

// A base mesh of squares of a metre.
CutDeck deck_over_squares(std::string name, Kind kind, int columns, int rows);
// A mesh drawn at random, in the kind.
CutDeck deck_over(std::string name, Kind kind, const DrawnMesh& mesh);

// Squares of a metre with quadrilaterals, or two triangles for each.
DrawnMesh mesh_of_squares(int columns, int rows, bool triangles);
// Gives the nodes of a grid, which are there row by row, their quadrilaterals, or two triangles for each.
void add_grid_elements(DrawnMesh& mesh, bool triangles);

// A line of beams, a closed outline of a material: straight from point to point, every segment cut.
DrawnGroup beams_along(std::vector<Point> points, int material);
DrawnGroup region_of(std::vector<Point> points, int material);
DrawnSegment segment_with(int IEND, int NDIV = 0);
DrawnSegment arc_with(Point centre, Point half_axes, float from, float to, int NDIV);  // degrees
// Gives the elements of the mesh that is read midside nodes.
void make_second_order(CutDeck& deck);

// The text of the deck that draws the groups from the first to the one before the last.
std::string text_of(const CutDeck& deck, std::size_t first, std::size_t last, bool reads_base);

// --- what a run leaves -----------------------------------------------------------------------------------

struct CutNode {
    int number = 0;
    Spot at;
};
struct CutSolid {
    int number = 0, material = 0;
    std::vector<int> corners;       // three or four, as they are written
    std::array<int, 4> midsides{};  // 0: none
};
struct CutJoint {
    int number = 0, material = 0;
    std::array<int, 4> corners{};  // line, line, twin of the second, twin of the first
};
struct CutLine {
    int number = 0, material = 0, from = 0, to = 0;
};
struct CutMesh {
    std::vector<CutNode> nodes;
    std::vector<CutSolid> solids;
    std::vector<CutJoint> joints;
    std::vector<CutLine> lines;
};

// What a segment draws, without the points inside a straight one.
struct DrawnPiece {
    std::size_t segment = 0;  // from 1
    bool is_cut = false;
    bool places_start = false, places_end = false;
    std::vector<Spot> points;
};
struct DrawnPath {
    std::size_t group = 0;  // from 1
    int type = 0, overlay = 0;
    int material = 0, old_material = 0, joint_material = 0, line_type = 0, line_material = 0;
    double thickness = 0.0;
    bool closed = false, free_line = false;
    std::vector<DrawnPiece> pieces;
    std::vector<Spot> polygon;  // all of its points
    bool exact = false;         // a region whose every side is cut and whose every corner is a node
};

struct CutRun {
    int status = 0;
    std::string message;            // of a run that ended otherwise
    CutMesh before, after;          // the base mesh, the result
    CutMesh between;                // that of the first deck of two
    CutMesh reread;                 // the same as the second deck reads it
    std::vector<int> frozen_codes;  // nodes of the base mesh that their codes hold
    std::vector<int> still_frozen;  // those of `reread`: lines take over the codes of their nodes
    std::vector<DrawnPath> paths;
    double seconds = 0.0;
};

CutRun run_cut(const CutDeck& deck, CutMethod method);

// Writes deck, meshes and result below a directory; its path.
std::string keep_deck(const CutDeck& deck, CutMethod method, const std::string& directory, int number);

}  // namespace brelan::test
