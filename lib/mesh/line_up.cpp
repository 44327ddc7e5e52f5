#include "mesh/line_up.h"

#include "mesh/move_tables.h"
#include "mesh/tables.h"
#include "text/channel_numbers.h"
#include "text/channels.h"
#include "text/free_field.h"

namespace brelan {

namespace {

constexpr std::string_view SWITCH_FILE = "LineUp.dat";
constexpr MaterialNumber LINED_MATERIAL{7};

// Corners that follow a truss on an edge, by the slots of its ends.
struct EdgeRow {
    int a, b;  // slots of the truss's ends
    int c, d;  // the corners next to them
};
constexpr EdgeRow EDGES[] = {{1, 2, 4, 3}, {1, 4, 2, 3}, {2, 3, 1, 4}, {2, 1, 3, 4},
                             {3, 4, 2, 1}, {3, 2, 4, 1}, {4, 1, 3, 2}, {4, 3, 1, 2}};

// What the search looks up: by node, in place of a scan over all elements for each truss.
struct LineUpIndex {
    std::vector<NodeNumber> before;  // I1 of the last truss whose I2 is the node; 0 for none
    std::vector<NodeNumber> behind;  // I2 of the last truss whose I1 is the node
    std::vector<std::vector<ElementNumber>>
        quadrilaterals;        // quadrilaterals of the material at the node, ascending
    std::vector<bool> listed;  // nodes that are to be moved

    explicit LineUpIndex(const Mesh& mesh)
        : before(HIGHEST_NODE_NUMBER + 1),
          behind(HIGHEST_NODE_NUMBER + 1),
          quadrilaterals(HIGHEST_NODE_NUMBER + 1),
          listed(HIGHEST_NODE_NUMBER + 1, false) {
        for (ElementNumber n{1}; n <= LAST_ELEMENT; ++n) {
            const ElementWords& w = mesh.words[n];
            if (mesh.type[n] == ELEMENT_TRUSS && is_node(w.corner_1) && is_node(w.corner_2)) {
                before[w.corner_2.place()] = w.corner_1;
                behind[w.corner_1.place()] = w.corner_2;
            } else if (mesh.type[n] == ELEMENT_CONTINUUM && w.material == LINED_MATERIAL &&
                       w.corner_4 != NodeNumber{}) {
                for (const NodeNumber corner : {w.corner_1, w.corner_2, w.corner_3, w.corner_4})
                    if (is_node(corner) && (quadrilaterals[corner.place()].empty() ||
                                            quadrilaterals[corner.place()].back() != n))
                        quadrilaterals[corner.place()].push_back(n);
            }
        }
    }

    static bool is_node(NodeNumber number) { return number.names_one() && number <= LAST_NODE; }
};

// A point's coordinate along the direction of the slides, and the one across.
struct Direction {
    bool vertical;

    float along(const Mesh& mesh, NodeNumber n) const { return vertical ? mesh.y[n] : mesh.x[n]; }
    float across(const Mesh& mesh, NodeNumber n) const { return vertical ? mesh.x[n] : mesh.y[n]; }
};

// Puts node n on the line through p and q where the coordinate along is s. A node that has been moved stays,
// and so does one whose line runs across.
void slide(const Mesh& mesh, LineUp& line_up, LineUpIndex& index, const Direction& d, NodeNumber n, float s,
           NodeNumber p, NodeNumber q) {
    const std::size_t place = n.place();
    if (index.listed[place] || d.along(mesh, q) == d.along(mesh, p))
        return;
    const float t = (s - d.along(mesh, p)) / (d.along(mesh, q) - d.along(mesh, p));
    const float across = d.across(mesh, p) + (d.across(mesh, q) - d.across(mesh, p)) * t;
    index.listed[place] = true;
    line_up.nodes.push_back({n, d.vertical ? across : s, d.vertical ? s : across});
}

void add_merge(MoveLists& moves, NodeNumber moved, NodeNumber target) {
    moves.first[++moves.first_count] = {moved, target, 1.0F};
}

bool within(float s, float low, float high) {
    return s >= low && s <= high;
}

// The slides of a truss A-B with neighbours P and N along its line (0 for none), level with C and D.
void slide_truss(Mesh& mesh, MoveLists& moves, LineUp& line_up, LineUpIndex& index, NodeNumber a,
                 NodeNumber b, NodeNumber c, NodeNumber d) {
    if (mesh.x[c] != mesh.x[d] && mesh.y[c] != mesh.y[d])
        return;
    const Direction direction{mesh.x[c] == mesh.x[d]};
    const NodeNumber p = index.before[a.place()];
    const NodeNumber n = index.behind[b.place()];
    const float along_a = direction.along(mesh, a), along_b = direction.along(mesh, b),
                along_c = direction.along(mesh, c), along_d = direction.along(mesh, d);
    const bool rising = along_a <= along_b;
    const float low = rising ? along_a : along_b, high = rising ? along_b : along_a;
    if (within(along_c, low, high)) {
        slide(mesh, line_up, index, direction, a, along_c, a, b);
    } else if (p.names_one()) {
        const float along_p = direction.along(mesh, p);
        if (rising ? along_c <= along_p : along_p <= along_c)
            add_merge(moves, p, a);
        slide(mesh, line_up, index, direction, a, along_c, a, p);
    }
    if (within(along_d, low, high)) {
        slide(mesh, line_up, index, direction, b, along_d, b, a);
    } else if (n.names_one()) {
        const float along_n = direction.along(mesh, n);
        if (rising ? along_n <= along_d : along_d <= along_n)
            add_merge(moves, n, b);
        slide(mesh, line_up, index, direction, b, along_d, n, b);
    }
}

// The work on a truss and one quadrilateral that holds both its ends.
void line_up_on(Mesh& mesh, MoveLists& moves, LineUp& line_up, LineUpIndex& index, NodeNumber a, NodeNumber b,
                const ElementWords& quadrilateral) {
    const NodeNumber corner[4] = {quadrilateral.corner_1, quadrilateral.corner_2, quadrilateral.corner_3,
                                  quadrilateral.corner_4};
    const NodeNumber p = index.before[a.place()];
    const NodeNumber n = index.behind[b.place()];
    int slot_a = 0, slot_b = 0, matches = 0;
    for (int i = 0; i < 4; ++i) {
        if (corner[i] == a)
            slot_a = i + 1;
        else if (corner[i] == b)
            slot_b = i + 1;
        else if (corner[i].names_one() && (corner[i] == p || corner[i] == n))
            return;
        matches += corner[i] == a || corner[i] == b ? 1 : 0;
    }
    if (matches != 2)
        return;
    for (const EdgeRow& edge : EDGES)
        if (edge.a == slot_a && edge.b == slot_b)
            slide_truss(mesh, moves, line_up, index, a, b, corner[edge.c - 1], corner[edge.d - 1]);
}

}  // namespace

void read_line_up(Channels& channels, LineUp& line_up) {
    line_up.is_on = 0;
    if (!channels.file_exists(SWITCH_FILE))
        return;
    read_free(channels.open(CHANNEL_DATA, SWITCH_FILE, OpenStatus::setting_old), "the line-up switch",
              line_up.is_on);
    channels.close(CHANNEL_DATA);
    if (line_up.is_on <= 0)
        return;
    write_free(channels.open(CHANNEL_DATA, SWITCH_FILE, OpenStatus::side_result), std::int32_t{0});
    channels.close(CHANNEL_DATA);
}

void search_line_up(Mesh& mesh, MoveLists& moves, LineUp& line_up) {
    line_up.nodes.clear();
    LineUpIndex index(mesh);
    for (ElementNumber t{1}; t <= LAST_ELEMENT; ++t) {
        if (mesh.type[t] != ELEMENT_TRUSS)
            continue;
        const NodeNumber a = mesh.words[t].corner_1, b = mesh.words[t].corner_2;
        if (!LineUpIndex::is_node(a) || !LineUpIndex::is_node(b))
            continue;
        for (const ElementNumber e : index.quadrilaterals[a.place()])
            line_up_on(mesh, moves, line_up, index, a, b, mesh.words[e]);
    }
}

void apply_line_up(Mesh& mesh, const LineUp& line_up) {
    for (const LinedNode& lined : line_up.nodes) {
        mesh.x[lined.node] = lined.x;
        mesh.y[lined.node] = lined.y;
    }
}

}  // namespace brelan
