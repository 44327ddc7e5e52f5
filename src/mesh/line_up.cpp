#include "mesh/line_up.h"

#include "channel/channels.h"
#include "channel/free_field.h"
#include "mesh/move_tables.h"
#include "mesh/tables.h"
#include "channel/channel_numbers.h"

namespace brelan {

namespace {

constexpr std::string_view SWITCH_FILE = "LineUp.dat";
constexpr std::int32_t LINED_MATERIAL = 7;

// Corners that follow a truss on an edge, by the slots of its ends.
struct EdgeRow {
    int A, B;  // slots of the truss's ends
    int C, D;  // the corners next to them
};
constexpr EdgeRow EDGES[] = {{1, 2, 4, 3}, {1, 4, 2, 3}, {2, 3, 1, 4}, {2, 1, 3, 4},
                             {3, 4, 2, 1}, {3, 2, 4, 1}, {4, 1, 3, 2}, {4, 3, 1, 2}};

// What the search looks up: by node, in place of a scan over all elements for each truss.
struct LineUpIndex {
    std::vector<std::int32_t> before;              // I1 of the last truss whose I2 is the node; 0 for none
    std::vector<std::int32_t> behind;              // I2 of the last truss whose I1 is the node
    std::vector<std::vector<std::int32_t>> quads;  // quadrilaterals of the material at the node, ascending
    std::vector<bool> listed;                      // nodes in LNP

    explicit LineUpIndex(const Mesh& mesh) : before(MAXNP + 1, 0), behind(MAXNP + 1, 0), quads(MAXNP + 1), listed(MAXNP + 1, false) {
        for (std::int32_t n = 1; n <= MAXEL; ++n) {
            const ElementWords& w = mesh.words[n];
            if (mesh.type[n] == EL_TRUSS && is_node(w.I1) && is_node(w.I2)) {
                before[place(w.I2)] = w.I1;
                behind[place(w.I1)] = w.I2;
            } else if (mesh.type[n] == EL_CONTINUUM && w.MATNO == LINED_MATERIAL && w.I4 != 0) {
                for (const std::int32_t corner : {w.I1, w.I2, w.I3, w.I4})
                    if (is_node(corner) && (quads[place(corner)].empty() || quads[place(corner)].back() != n))
                        quads[place(corner)].push_back(n);
            }
        }
    }

    static bool is_node(std::int32_t number) { return number >= 1 && number <= MAXNP; }
    static std::size_t place(std::int32_t node) { return static_cast<std::size_t>(node); }
};

// A point's coordinate along the direction of the slides, and the one across.
struct Direction {
    bool vertical;

    float along(const Mesh& mesh, std::int32_t n) const { return vertical ? mesh.y[n] : mesh.x[n]; }
    float across(const Mesh& mesh, std::int32_t n) const { return vertical ? mesh.x[n] : mesh.y[n]; }
};

// Puts node n on the line through p and q where the coordinate along is s. A node that has been moved stays,
// and so does one whose line runs across.
void slide(const Mesh& mesh, LineUp& line_up, LineUpIndex& index, const Direction& d, std::int32_t n, float s, std::int32_t p, std::int32_t q) {
    const std::size_t place = LineUpIndex::place(n);
    if (index.listed[place] || d.along(mesh, q) == d.along(mesh, p))
        return;
    const float t = (s - d.along(mesh, p)) / (d.along(mesh, q) - d.along(mesh, p));
    const float across = d.across(mesh, p) + (d.across(mesh, q) - d.across(mesh, p)) * t;
    index.listed[place] = true;
    line_up.nodes.push_back({n, d.vertical ? across : s, d.vertical ? s : across});
}

void add_merge(MoveLists& moves, std::int32_t moved, std::int32_t target) {
    moves.first[++moves.first_count] = {moved, target, 1.0F};
}

bool within(float s, float low, float high) {
    return s >= low && s <= high;
}

// The slides of a truss A-B with neighbours P and N along its line (0 for none), level with C and D.
void slide_truss(Mesh& mesh, MoveLists& moves, LineUp& line_up, LineUpIndex& index, std::int32_t A, std::int32_t B, std::int32_t C, std::int32_t D) {
    if (mesh.x[C] != mesh.x[D] && mesh.y[C] != mesh.y[D])
        return;
    const Direction d{mesh.x[C] == mesh.x[D]};
    const std::int32_t P = index.before[LineUpIndex::place(A)];
    const std::int32_t N = index.behind[LineUpIndex::place(B)];
    const float SA = d.along(mesh, A), SB = d.along(mesh, B), SC = d.along(mesh, C), SD = d.along(mesh, D);
    const bool rising = SA <= SB;
    const float low = rising ? SA : SB, high = rising ? SB : SA;
    if (within(SC, low, high)) {
        slide(mesh, line_up, index, d, A, SC, A, B);
    } else if (P > 0) {
        const float SP = d.along(mesh, P);
        if (rising ? SC <= SP : SP <= SC)
            add_merge(moves, P, A);
        slide(mesh, line_up, index, d, A, SC, A, P);
    }
    if (within(SD, low, high)) {
        slide(mesh, line_up, index, d, B, SD, B, A);
    } else if (N > 0) {
        const float SN = d.along(mesh, N);
        if (rising ? SN <= SD : SD <= SN)
            add_merge(moves, N, B);
        slide(mesh, line_up, index, d, B, SD, N, B);
    }
}

// The work on a truss and one quadrilateral that holds both its ends.
void line_up_on(Mesh& mesh, MoveLists& moves, LineUp& line_up, LineUpIndex& index, std::int32_t A, std::int32_t B, const ElementWords& quad) {
    const std::int32_t corner[4] = {quad.I1, quad.I2, quad.I3, quad.I4};
    const std::int32_t P = index.before[LineUpIndex::place(A)];
    const std::int32_t N = index.behind[LineUpIndex::place(B)];
    int slot_A = 0, slot_B = 0, matches = 0;
    for (int i = 0; i < 4; ++i) {
        if (corner[i] == A)
            slot_A = i + 1;
        else if (corner[i] == B)
            slot_B = i + 1;
        else if (corner[i] > 0 && (corner[i] == P || corner[i] == N))
            return;
        matches += corner[i] == A || corner[i] == B ? 1 : 0;
    }
    if (matches != 2)
        return;
    for (const EdgeRow& edge : EDGES)
        if (edge.A == slot_A && edge.B == slot_B)
            slide_truss(mesh, moves, line_up, index, A, B, corner[edge.C - 1], corner[edge.D - 1]);
}

}  // namespace

void READLINEUP(Channels& channels, LineUp& line_up) {
    line_up.is_on = 0;
    if (!channels.file_exists(SWITCH_FILE))
        return;
    read_free(channels.open(CH_DATA, SWITCH_FILE, OpenStatus::old), "the line-up switch", line_up.is_on);
    channels.close(CH_DATA);
    if (line_up.is_on <= 0)
        return;
    write_free(channels.open(CH_DATA, SWITCH_FILE, OpenStatus::result), std::int32_t{0});
    channels.close(CH_DATA);
}

void SEARCHLINEUP(Mesh& mesh, MoveLists& moves, LineUp& line_up) {
    line_up.nodes.clear();
    LineUpIndex index(mesh);
    for (std::int32_t t = 1; t <= MAXEL; ++t) {
        if (mesh.type[t] != EL_TRUSS)
            continue;
        const std::int32_t A = mesh.words[t].I1, B = mesh.words[t].I2;
        if (!LineUpIndex::is_node(A) || !LineUpIndex::is_node(B))
            continue;
        for (const std::int32_t e : index.quads[LineUpIndex::place(A)])
            line_up_on(mesh, moves, line_up, index, A, B, mesh.words[e]);
    }
}

void APPLYLINEUP(Mesh& mesh, const LineUp& line_up) {
    for (const LinedNode& lined : line_up.nodes) {
        mesh.x[lined.node] = lined.x;
        mesh.y[lined.node] = lined.y;
    }
}

}  // namespace brelan
