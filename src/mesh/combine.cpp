#include "mesh/combine.h"

#include <cstdlib>
#include <string>
#include <vector>

#include "mesh/kinds.h"
#include "mesh/node_grid.h"

namespace brelan {

namespace {

constexpr float NO_SPACING = 1.0E35F;  // start of the smallest spacing

constexpr int CONTINUUM = 0, BEAM = 1, TRUSS = 2;  // places in Region::old_elements and Region::start

// The first region's nodes in ascending number, and the second's.
std::vector<NumberedPoint> first_nodes(const Combination& combination, const Mesh& mesh, const SideTables& side) {
    std::vector<NumberedPoint> nodes;
    for (std::int32_t n = combination.first.nodes.lowest; n <= combination.first.nodes.highest; ++n)
        if (mesh.node_in_use[n] == 1)
            nodes.push_back({n, side.x[n], side.y[n]});
    return nodes;
}

std::vector<NumberedPoint> second_nodes(const Combination& combination, const Mesh& mesh, const SideTables& side) {
    std::vector<NumberedPoint> nodes;
    for (std::int32_t n = combination.second.nodes.lowest; n <= combination.second.nodes.highest; ++n)
        if (side.second_node_in_use[n] == 1)
            nodes.push_back({n, mesh.x[n], mesh.y[n]});
    return nodes;
}

// Numbers rise strictly in the order second continuum, first continuum, second beam, first beam, second
// truss, first truss.
bool numbers_can_stay(const Combination& combination) {
    const NumberRange(&first)[3] = combination.first.old_elements;
    const NumberRange(&second)[3] = combination.second.old_elements;
    return second[CONTINUUM].highest < first[CONTINUUM].lowest &&
           first[CONTINUUM].highest < second[BEAM].lowest && second[BEAM].highest < first[BEAM].lowest &&
           first[BEAM].highest < second[TRUSS].lowest && second[TRUSS].highest < first[TRUSS].lowest;
}

// Puts a first-region node's data into a slot of the working set.
void copy_first_node(Mesh& mesh, SideTables& side, std::int32_t from, std::int32_t to) {
    for (int i = 0; i < kind_row(mesh.kind).node_codes; ++i)
        mesh.codes[to][static_cast<std::size_t>(i)] = side.codes[from][static_cast<std::size_t>(i)];
    mesh.x[to] = side.x[from];
    mesh.y[to] = side.y[from];
    if (has_node_values(mesh.kind)) {
        mesh.head[to] = side.head[from];
        mesh.coefficient[to] = side.coefficient[from];
    }
}

// The type of an element in the combined mesh; below 1 for none.
std::int8_t combined_type(const Mesh& mesh, const SideTables& side, std::int32_t n) {
    return mesh.type_in_use[n] < EL_CONTINUUM ? side.second_type_in_use[n] : mesh.type_in_use[n];
}

}  // namespace

void SCANREGION(LayoutKind kind, Channel& mesh_file, Region& region) {
    mesh_file.skip_lines(2, "a heading line");
    region.counts = read_mesh_counts(mesh_file);
    mesh_file.skip_lines(2, "a heading line");
    for (std::int32_t i = 0; i < region.counts.NUMNP; ++i)
        read_node_record(kind, mesh_file, region.stripped.NFIELDS);
    for (const std::int8_t type : {EL_CONTINUUM, EL_BEAM, EL_TRUSS}) {
        NumberRange& range = region.old_elements[type - EL_CONTINUUM];
        range = NumberRange{};
        if (region.counts.of(type) > 0)
            mesh_file.skip_lines(region.stripped.headings_of(type), "a heading line");
        for (std::int32_t i = 0; i < region.counts.of(type); ++i)
            range.include(read_element_number(kind, mesh_file, type));
    }
    mesh_file.rewind();
}

void FIXREGIONNUMBERS(Combination& combination) {
    const NumberRange(&first)[3] = combination.first.old_elements;
    const NumberRange(&second)[3] = combination.second.old_elements;
    if (numbers_can_stay(combination)) {
        for (const int type : {CONTINUUM, BEAM, TRUSS}) {
            combination.first.start[type] = first[type].lowest;
            combination.second.start[type] = second[type].lowest;
        }
        return;
    }
    // An empty set takes part with its start values, 100,000 and 0: only the numbers of types behind it
    // suffer.
    const auto extent = [](const NumberRange& range) { return range.highest - range.lowest; };
    combination.second.start[CONTINUUM] = 1;
    combination.first.start[CONTINUUM] = extent(second[CONTINUUM]) + 2;
    std::int32_t E = extent(first[CONTINUUM]) + 2 + extent(second[CONTINUUM]);
    combination.second.start[BEAM] = E + 1;
    E = E + extent(second[BEAM]) + 1;
    combination.first.start[BEAM] = E + 1;
    E = E + extent(first[BEAM]) + 1;
    combination.second.start[TRUSS] = E + 1;
    combination.first.start[TRUSS] = E + extent(second[TRUSS]) + 2;
}

void READREGIONHEAD(LayoutKind kind, Channel& mesh_file, Region& region) {
    mesh_file.skip_lines(2, "a heading line");
    region.counts = read_mesh_counts(mesh_file);
    mesh_file.skip_lines(2, "a heading line");
    region.nodes = NumberRange{};
    region.elements = NumberRange{};
    const int start = mesh_file.lines_before();
    for (std::int32_t i = 0; i < region.counts.NUMNP; ++i)
        region.nodes.include(read_node_record(kind, mesh_file, region.stripped.NFIELDS).NODE);
    mesh_file.step_back(mesh_file.lines_before() - start);
}

void READFIRSTNODES(const Combination& combination, Mesh& mesh, SideTables& side, Channel& mesh_file) {
    for (std::int32_t i = 0; i < combination.first.counts.NUMNP; ++i) {
        const NodeRecord node = read_node_record(mesh.kind, mesh_file, combination.first.stripped.NFIELDS);
        side.codes[node.NODE] = node.ID;
        side.x[node.NODE] = node.XC;
        side.y[node.NODE] = node.YC;
        side.head[node.NODE] = node.H;
        side.coefficient[node.NODE] = node.CF;
        mesh.node_in_use[node.NODE] = 1;
    }
}

void READSECONDNODES(const Combination& combination, Mesh& mesh, SideTables& side, Channel& mesh_file) {
    for (std::int32_t i = 0; i < combination.second.counts.NUMNP; ++i) {
        const NodeRecord node = read_node_record(mesh.kind, mesh_file, combination.second.stripped.NFIELDS);
        mesh.codes[node.NODE] = node.ID;
        mesh.x[node.NODE] = node.XC;
        mesh.y[node.NODE] = node.YC;
        if (has_node_values(mesh.kind)) {
            mesh.head[node.NODE] = node.H;
            mesh.coefficient[node.NODE] = node.CF;
        }
        side.second_node_in_use[node.NODE] = 1;
        mesh.node_used[node.NODE] = node.NODE;
    }
}

void READREGIONELEMENTS(const Combination& combination, Mesh& mesh, SideTables& side, Channel& mesh_file, Region& region, std::int8_t type) {
    const int place = type - EL_CONTINUUM;
    const bool first = &region == &combination.first;
    mesh_file.skip_lines(region.stripped.headings_of(type), "a heading line");
    for (std::int32_t i = 0; i < region.counts.of(type); ++i) {
        const ElementRecord element = read_element_record(mesh.kind, mesh_file, type);
        const std::int32_t number = element.NEL - region.old_elements[place].lowest + region.start[place];
        if (number < 1 || number > MAXEL)
            mesh_file.fail_behind("element " + std::to_string(element.NEL) + ": expected a new number from 1 to " +
                             std::to_string(MAXEL) + ", but the renumbering of the two regions makes it " +
                             std::to_string(number));
        store_element(mesh, number, type, element);
        if (first)
            mesh.type_in_use[number] = type;
        else
            side.second_type_in_use[number] = type;
        region.elements.include(number);
    }
}

bool regions_collide(const Combination& combination) {
    return combination.first.elements.lowest == combination.second.elements.lowest;
}

float SMALLESTSPACING(const Combination& combination, const Mesh& mesh, const SideTables& side) {
    return SMALLESTDISTANCE(second_nodes(combination, mesh, side), SMALLESTDISTANCE(first_nodes(combination, mesh, side), NO_SPACING));
}

void MATCHLISTED(Combination& combination, Mesh& mesh, const SideTables& side) {
    for (std::int32_t i = 1; i <= combination.pair_count; ++i) {
        const std::int32_t second = combination.second_nodes[i];
        if (second < 1 || second > MAXNP || side.second_node_in_use[second] != 1)
            FAIL(combination.list_place +
                 ": Card 2.3: expected node numbers of the mesh of Card 2.1-1 in the first list, found " +
                 std::to_string(second));
        if (combination.first_nodes[i] < 1 || combination.first_nodes[i] > MAXNP)
            FAIL(combination.list_place + ": Card 2.3: expected node numbers from 1 to " + std::to_string(MAXNP) +
                 " in the second list, found " + std::to_string(combination.first_nodes[i]));
        if (mesh.node_in_use[combination.first_nodes[i]] == 1)
            mesh.new_number[combination.first_nodes[i]] = -second;
    }
}

void MATCHNEAREST(const Combination& combination, Mesh& mesh, const SideTables& side, float DMIN) {
    const float TOL = 0.5F * DMIN;
    const std::vector<NumberedPoint> candidates = second_nodes(combination, mesh, side);
    NodeGrid grid(TOL, candidates.size());
    for (const NumberedPoint& node : candidates)
        grid.add(node);
    for (const NumberedPoint& node : first_nodes(combination, mesh, side))
        if (const std::int32_t match = grid.highest_within_reach(node.x, node.y); match != 0)
            mesh.new_number[node.number] = -match;
}

void MERGENODES(const Combination& combination, Mesh& mesh, SideTables& side) {
    std::int32_t NEXT = combination.second.nodes.highest + 1;
    for (std::int32_t n = combination.first.nodes.lowest; n <= combination.first.nodes.highest; ++n) {
        if (mesh.node_in_use[n] != 1)
            continue;
        if (mesh.new_number[n] < 0) {
            if (combination.keeps_first_data)
                copy_first_node(mesh, side, n, -mesh.new_number[n]);
            continue;
        }
        if (NEXT > MAXNP)
            FAIL(combination.first.name + ": expected node numbers of at most " + std::to_string(MAXNP) +
                 ", but its nodes go on behind the highest of " + combination.second.name + ", " +
                 std::to_string(combination.second.nodes.highest));
        copy_first_node(mesh, side, n, NEXT);
        mesh.new_number[n] = NEXT;
        mesh.node_used[NEXT] = NEXT;
        ++NEXT;
    }
    for (std::int32_t n = combination.first.nodes.lowest; n <= combination.first.nodes.highest; ++n)
        mesh.new_number[n] = std::abs(mesh.new_number[n]);
}

void RENUMBERFIRST(const Combination& combination, Mesh& mesh) {
    const bool midside = kind_row(mesh.kind).element_words == 8;
    for (std::int32_t n = combination.first.elements.lowest; n <= combination.first.elements.highest; ++n) {
        if (mesh.type_in_use[n] < 0)
            continue;
        ElementWords& w = mesh.words[n];
        for (std::int32_t* word : {&w.I1, &w.I2, &w.I3, &w.I4})
            if (*word > 0)
                *word = mesh.new_number[*word];
        if (!midside)
            continue;
        for (std::int32_t* word : {&w.M5, &w.M6, &w.M7, &w.M8})
            if (*word > 0)
                *word = mesh.new_number[*word];
    }
}

void COUNTCOMBINED(const Mesh& mesh, const SideTables& side, ResultMesh& result) {
    for (std::int32_t n = 1; n <= MAXNP; ++n) {
        if (mesh.node_used[n] <= 0)
            continue;
        ++result.counts.NUMNP;
        result.nodes.include(n);
    }
    for (std::int32_t n = 1; n <= MAXEL; ++n) {
        const std::int8_t type = combined_type(mesh, side, n);
        if (type < EL_CONTINUUM)
            continue;
        result.elements.include(n);
        ++(type == EL_CONTINUUM ? result.counts.NCONT
           : type == EL_BEAM    ? result.counts.NBEAM
                                : result.counts.NTRUS);
    }
}

void WRITECOMBINEDNODES(const Mesh& mesh, Channel& mesh_file, const ResultMesh& result) {
    for (std::int32_t n = result.nodes.lowest; n <= result.nodes.highest; ++n)
        if (mesh.node_used[n] > 0)
            write_node_record(mesh.kind, mesh_file, load_node(mesh, n));
}

void WRITECOMBINEDELEMENTS(const Mesh& mesh, const SideTables& side, Channel& mesh_file, const ResultMesh& result, std::int8_t type) {
    write_section_heading(mesh.kind, mesh_file, type);
    for (std::int32_t n = result.elements.lowest; n <= result.elements.highest; ++n)
        if (mesh.type_in_use[n] == type || side.second_type_in_use[n] == type)
            write_element_record(mesh.kind, mesh_file, type, load_element_for_writing(mesh, n));
}

}  // namespace brelan
