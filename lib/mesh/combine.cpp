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
std::vector<NumberedPoint> first_nodes(const Combination& combination, const Mesh& mesh,
                                       const SideTables& side) {
    std::vector<NumberedPoint> nodes;
    for (std::int32_t n = combination.first.nodes.lowest; n <= combination.first.nodes.highest; ++n)
        if (mesh.node_in_use[n] == 1)
            nodes.push_back({n, side.x[n], side.y[n]});
    return nodes;
}

std::vector<NumberedPoint> second_nodes(const Combination& combination, const Mesh& mesh,
                                        const SideTables& side) {
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
    return mesh.type_in_use[n] < ELEMENT_CONTINUUM ? side.second_type_in_use[n] : mesh.type_in_use[n];
}

}  // namespace

void scan_region(LayoutKind kind, Channel& mesh_file, Region& region) {
    MeshWalk walk(kind, mesh_file, region.stripped);
    region.counts = walk.head();
    walk.each_node([](const NodeRecord&) {});
    for (const std::int8_t type : ELEMENT_TYPES)
        region.old_elements[type - ELEMENT_CONTINUUM] = walk.element_numbers(type);
    mesh_file.rewind();
}

void fix_region_numbers(Combination& combination) {
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
    std::int32_t last = extent(first[CONTINUUM]) + 2 + extent(second[CONTINUUM]);
    combination.second.start[BEAM] = last + 1;
    last = last + extent(second[BEAM]) + 1;
    combination.first.start[BEAM] = last + 1;
    last = last + extent(first[BEAM]) + 1;
    combination.second.start[TRUSS] = last + 1;
    combination.first.start[TRUSS] = last + extent(second[TRUSS]) + 2;
}

void read_region_head(LayoutKind kind, Channel& mesh_file, Region& region) {
    MeshWalk walk(kind, mesh_file, region.stripped);
    region.counts = walk.head();
    region.nodes = walk.node_numbers();
    region.elements = NumberRange{};
}

void read_first_nodes(const Combination& combination, Mesh& mesh, SideTables& side, Channel& mesh_file) {
    MeshWalk walk(mesh.kind, mesh_file, combination.first.stripped, combination.first.counts);
    walk.each_node([&](const NodeRecord& node) {
        side.codes[node.number] = node.codes;
        side.x[node.number] = node.x;
        side.y[node.number] = node.y;
        side.head[node.number] = node.head;
        side.coefficient[node.number] = node.coefficient;
        mesh.node_in_use[node.number] = 1;
    });
}

void read_second_nodes(const Combination& combination, Mesh& mesh, SideTables& side, Channel& mesh_file) {
    MeshWalk walk(mesh.kind, mesh_file, combination.second.stripped, combination.second.counts);
    walk.each_node([&](const NodeRecord& node) {
        store_node(mesh, node.number, node);
        side.second_node_in_use[node.number] = 1;
        mesh.node_used[node.number] = node.number;
    });
}

void read_region_elements(const Combination& combination, Mesh& mesh, SideTables& side, Channel& mesh_file,
                          Region& region, std::int8_t type) {
    const int place = type - ELEMENT_CONTINUUM;
    const bool first = &region == &combination.first;
    MeshWalk walk(mesh.kind, mesh_file, region.stripped, region.counts);
    walk.each_element(type, [&](const ElementRecord& element) {
        const std::int32_t number = element.number - region.old_elements[place].lowest + region.start[place];
        if (number < 1 || number > HIGHEST_ELEMENT_NUMBER)
            mesh_file.fail_behind(
                "element " + std::to_string(element.number) + ": expected a new number from 1 to " +
                std::to_string(HIGHEST_ELEMENT_NUMBER) +
                ", but the renumbering of the two regions makes it " + std::to_string(number));
        store_element(mesh, number, type, element);
        if (first)
            mesh.type_in_use[number] = type;
        else
            side.second_type_in_use[number] = type;
        region.elements.include(number);
    });
}

bool regions_collide(const Combination& combination) {
    return combination.first.elements.lowest == combination.second.elements.lowest;
}

float smallest_spacing(const Combination& combination, const Mesh& mesh, const SideTables& side) {
    return smallest_distance(second_nodes(combination, mesh, side),
                             smallest_distance(first_nodes(combination, mesh, side), NO_SPACING));
}

void match_listed_nodes(Combination& combination, Mesh& mesh, const SideTables& side) {
    for (std::int32_t i = 1; i <= combination.pair_count; ++i) {
        const std::int32_t second = combination.second_nodes[i];
        if (second < 1 || second > HIGHEST_NODE_NUMBER || side.second_node_in_use[second] != 1)
            fail(combination.list_place +
                 ": Card 2.3: expected node numbers of the mesh of Card 2.1-1 in the first list, found " +
                 std::to_string(second));
        if (combination.first_nodes[i] < 1 || combination.first_nodes[i] > HIGHEST_NODE_NUMBER)
            fail(combination.list_place + ": Card 2.3: expected node numbers from 1 to " +
                 std::to_string(HIGHEST_NODE_NUMBER) + " in the second list, found " +
                 std::to_string(combination.first_nodes[i]));
        if (mesh.node_in_use[combination.first_nodes[i]] == 1)
            mesh.new_number[combination.first_nodes[i]] = -second;
    }
}

void match_nearest_nodes(const Combination& combination, Mesh& mesh, const SideTables& side, float spacing) {
    const float reach = 0.5F * spacing;
    const std::vector<NumberedPoint> candidates = second_nodes(combination, mesh, side);
    NodeGrid grid(reach, candidates.size());
    for (const NumberedPoint& node : candidates)
        grid.add(node);
    for (const NumberedPoint& node : first_nodes(combination, mesh, side))
        if (const std::int32_t match = grid.highest_within_reach(node.x, node.y); match != 0)
            mesh.new_number[node.number] = -match;
}

void merge_nodes(const Combination& combination, Mesh& mesh, SideTables& side) {
    std::int32_t next = combination.second.nodes.highest + 1;
    for (std::int32_t n = combination.first.nodes.lowest; n <= combination.first.nodes.highest; ++n) {
        if (mesh.node_in_use[n] != 1)
            continue;
        if (mesh.new_number[n] < 0) {
            if (combination.keeps_first_data)
                copy_first_node(mesh, side, n, -mesh.new_number[n]);
            continue;
        }
        if (next > HIGHEST_NODE_NUMBER)
            fail(combination.first.name + ": expected node numbers of at most " +
                 std::to_string(HIGHEST_NODE_NUMBER) + ", but its nodes go on behind the highest of " +
                 combination.second.name + ", " + std::to_string(combination.second.nodes.highest));
        copy_first_node(mesh, side, n, next);
        mesh.new_number[n] = next;
        mesh.node_used[next] = next;
        ++next;
    }
    for (std::int32_t n = combination.first.nodes.lowest; n <= combination.first.nodes.highest; ++n)
        mesh.new_number[n] = std::abs(mesh.new_number[n]);
}

void renumber_first_elements(const Combination& combination, Mesh& mesh) {
    const bool midside = kind_row(mesh.kind).element_words == 8;
    for (std::int32_t n = combination.first.elements.lowest; n <= combination.first.elements.highest; ++n) {
        if (mesh.type_in_use[n] < 0)
            continue;
        ElementWords& w = mesh.words[n];
        for (std::int32_t* word : {&w.corner_1, &w.corner_2, &w.corner_3, &w.corner_4})
            if (*word > 0)
                *word = mesh.new_number[*word];
        if (!midside)
            continue;
        for (std::int32_t* word : {&w.midside_5, &w.midside_6, &w.midside_7, &w.midside_8})
            if (*word > 0)
                *word = mesh.new_number[*word];
    }
}

void count_combined(const Mesh& mesh, const SideTables& side, ResultMesh& result) {
    for (std::int32_t n = 1; n <= HIGHEST_NODE_NUMBER; ++n) {
        if (mesh.node_used[n] <= 0)
            continue;
        ++result.counts.nodes;
        result.nodes.include(n);
    }
    for (std::int32_t n = 1; n <= HIGHEST_ELEMENT_NUMBER; ++n) {
        const std::int8_t type = combined_type(mesh, side, n);
        if (type < ELEMENT_CONTINUUM)
            continue;
        result.elements.include(n);
        ++result.counts.of(type);
    }
}

void write_combined_nodes(const Mesh& mesh, Channel& mesh_file, const ResultMesh& result) {
    for (std::int32_t n = result.nodes.lowest; n <= result.nodes.highest; ++n)
        if (mesh.node_used[n] > 0)
            write_node_record(mesh.kind, mesh_file, load_node(mesh, n));
}

void write_combined_elements(const Mesh& mesh, const SideTables& side, Channel& mesh_file,
                             const ResultMesh& result, std::int8_t type) {
    write_section_heading(mesh.kind, mesh_file, type);
    for (std::int32_t n = result.elements.lowest; n <= result.elements.highest; ++n)
        if (mesh.type_in_use[n] == type || side.second_type_in_use[n] == type)
            write_element_record(mesh.kind, mesh_file, type, load_element_for_writing(mesh, n));
}

}  // namespace brelan
