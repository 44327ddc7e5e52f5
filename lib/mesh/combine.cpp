#include "mesh/combine.h"

#include <string>
#include <vector>

#include "mesh/kinds.h"
#include "plane/point_grid.h"

namespace brelan {

namespace {

constexpr float NO_SPACING = 1.0E35F;  // start of the smallest spacing

constexpr int CONTINUUM = 0, BEAM = 1, TRUSS = 2;  // places in Region::old_elements and Region::start

// The first region's nodes in ascending number, and the second's.
std::vector<NumberedPoint> first_nodes(const Combination& combination, const RegionTables& first) {
    std::vector<NumberedPoint> nodes;
    for (NodeNumber n = combination.first.nodes.lowest; n <= combination.first.nodes.highest; ++n)
        if (first.node_in_use[n] == 1)
            nodes.push_back({n.value, first.x[n], first.y[n]});
    return nodes;
}

std::vector<NumberedPoint> second_nodes(const Combination& combination, const Mesh& mesh) {
    std::vector<NumberedPoint> nodes;
    for (NodeNumber n = combination.second.nodes.lowest; n <= combination.second.nodes.highest; ++n)
        if (mesh.node_in_use[n] == 1)
            nodes.push_back({n.value, mesh.x[n], mesh.y[n]});
    return nodes;
}

// Numbers rise strictly in the order second continuum, first continuum, second beam, first beam, second
// truss, first truss.
bool numbers_can_stay(const Combination& combination) {
    const NumberRange<ElementNumber>(&first)[3] = combination.first.old_elements;
    const NumberRange<ElementNumber>(&second)[3] = combination.second.old_elements;
    return second[CONTINUUM].highest < first[CONTINUUM].lowest &&
           first[CONTINUUM].highest < second[BEAM].lowest && second[BEAM].highest < first[BEAM].lowest &&
           first[BEAM].highest < second[TRUSS].lowest && second[TRUSS].highest < first[TRUSS].lowest;
}

// Puts a first-region node's data into a slot of the working set.
void copy_first_node(Mesh& mesh, const RegionTables& first, NodeNumber from, NodeNumber to) {
    for (int i = 0; i < kind_row(mesh.kind).node_codes; ++i)
        mesh.codes[to][static_cast<std::size_t>(i)] = first.codes[from][static_cast<std::size_t>(i)];
    mesh.x[to] = first.x[from];
    mesh.y[to] = first.y[from];
    if (has_node_values(mesh.kind)) {
        mesh.head[to] = first.head[from];
        mesh.coefficient[to] = first.coefficient[from];
    }
}

// The type of an element in the combined mesh; below 1 for none.
std::int8_t combined_type(const Mesh& mesh, const RegionTables& first, ElementNumber n) {
    return first.type_in_use[n] < ELEMENT_CONTINUUM ? mesh.type_in_use[n] : first.type_in_use[n];
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
    const NumberRange<ElementNumber>(&first)[3] = combination.first.old_elements;
    const NumberRange<ElementNumber>(&second)[3] = combination.second.old_elements;
    if (numbers_can_stay(combination)) {
        for (const int type : {CONTINUUM, BEAM, TRUSS}) {
            combination.first.start[type] = first[type].lowest;
            combination.second.start[type] = second[type].lowest;
        }
        return;
    }
    // An empty set takes part with its start values, 100,000 and 0: only the numbers of types behind it
    // suffer.
    const auto extent = [](const NumberRange<ElementNumber>& range) { return range.highest - range.lowest; };
    combination.second.start[CONTINUUM] = ElementNumber(1);
    combination.first.start[CONTINUUM] = ElementNumber(extent(second[CONTINUUM]) + 2);
    ElementNumber last(extent(first[CONTINUUM]) + 2 + extent(second[CONTINUUM]));
    combination.second.start[BEAM] = last + 1;
    last = last + (extent(second[BEAM]) + 1);
    combination.first.start[BEAM] = last + 1;
    last = last + (extent(first[BEAM]) + 1);
    combination.second.start[TRUSS] = last + 1;
    combination.first.start[TRUSS] = last + (extent(second[TRUSS]) + 2);
}

void read_region_head(LayoutKind kind, Channel& mesh_file, Region& region) {
    MeshWalk walk(kind, mesh_file, region.stripped);
    region.counts = walk.head();
    region.nodes = walk.node_numbers();
    region.elements = {};
}

void read_first_nodes(const Combination& combination, const Mesh& mesh, RegionTables& first,
                      Channel& mesh_file) {
    MeshWalk walk(mesh.kind, mesh_file, combination.first.stripped, combination.first.counts);
    walk.each_node([&](const NodeRecord& node) {
        first.codes[node.number] = node.codes;
        first.x[node.number] = node.x;
        first.y[node.number] = node.y;
        first.head[node.number] = node.head;
        first.coefficient[node.number] = node.coefficient;
        first.node_in_use[node.number] = 1;
    });
}

void read_second_nodes(const Combination& combination, Mesh& mesh, Channel& mesh_file) {
    MeshWalk walk(mesh.kind, mesh_file, combination.second.stripped, combination.second.counts);
    walk.each_node([&](const NodeRecord& node) {
        store_node(mesh, node.number, node);
        mesh.node_in_use[node.number] = 1;
    });
}

void read_region_elements(Mesh& mesh, ElementTypes& types, Channel& mesh_file, Region& region,
                          std::int8_t type) {
    const int place = type - ELEMENT_CONTINUUM;
    MeshWalk walk(mesh.kind, mesh_file, region.stripped, region.counts);
    walk.each_element(type, [&](const ElementRecord& element) {
        const ElementNumber number =
            region.start[place] + (element.number - region.old_elements[place].lowest);
        if (number.is_none() || number > LAST_ELEMENT)
            mesh_file.fail_behind("element " + to_string(element.number) +
                                  ": expected a new number from 1 to " +
                                  std::to_string(HIGHEST_ELEMENT_NUMBER) +
                                  ", but the renumbering of the two regions makes it " + to_string(number));
        store_element(mesh, number, type, element);
        types[number] = type;
        region.elements.include(number);
    });
}

bool regions_collide(const Combination& combination) {
    return combination.first.elements.lowest == combination.second.elements.lowest;
}

float smallest_spacing(const Combination& combination, const Mesh& mesh, const RegionTables& first) {
    return smallest_distance(second_nodes(combination, mesh),
                             smallest_distance(first_nodes(combination, first), NO_SPACING));
}

NodeNumbers match_listed_nodes(const CombinationCards& cards, const Mesh& mesh, const RegionTables& first) {
    NodeNumbers matches;
    for (std::int32_t i = 1; i <= cards.pair_count; ++i) {
        const NodeNumber of_second = cards.second_nodes[i], of_first = cards.first_nodes[i];
        if (of_second.is_none() || of_second > LAST_NODE || mesh.node_in_use[of_second] != 1)
            fail_at(cards.list_place,
                    "Card 2.3: expected node numbers of the mesh of Card 2.1-1 in the first list, found " +
                        to_string(of_second));
        if (of_first.is_none() || of_first > LAST_NODE)
            fail_at(cards.list_place, "Card 2.3: expected node numbers from 1 to " +
                                          std::to_string(HIGHEST_NODE_NUMBER) +
                                          " in the second list, found " + to_string(of_first));
        if (first.node_in_use[of_first] == 1)
            matches[of_first] = of_second;
    }
    return matches;
}

NodeNumbers match_nearest_nodes(const Combination& combination, const Mesh& mesh, const RegionTables& first,
                                float spacing) {
    const float reach = 0.5F * spacing;
    const std::vector<NumberedPoint> candidates = second_nodes(combination, mesh);
    PointGrid grid(reach, candidates.size());
    for (const NumberedPoint& node : candidates)
        grid.add(node);
    NodeNumbers matches;
    for (const NumberedPoint& node : first_nodes(combination, first))
        matches[NodeNumber(node.number)] = NodeNumber(grid.highest_within_reach(node.x, node.y));
    return matches;
}

NodeNumbers merge_nodes(const Combination& combination, Mesh& mesh, const RegionTables& first,
                        const NodeNumbers& matches) {
    NodeNumbers new_numbers;
    for (NodeNumber n{1}; n <= LAST_NODE; ++n)
        new_numbers[n] = n;
    NodeNumber next = combination.second.nodes.highest + 1;
    for (NodeNumber n = combination.first.nodes.lowest; n <= combination.first.nodes.highest; ++n) {
        if (first.node_in_use[n] != 1)
            continue;
        if (matches[n].names_one()) {
            new_numbers[n] = matches[n];
            if (combination.keeps_first_data)
                copy_first_node(mesh, first, n, matches[n]);
            continue;
        }
        if (next > LAST_NODE)
            fail(combination.first.name + ": expected node numbers of at most " +
                 std::to_string(HIGHEST_NODE_NUMBER) + ", but its nodes go on behind the highest of " +
                 combination.second.name + ", " + to_string(combination.second.nodes.highest));
        copy_first_node(mesh, first, n, next);
        new_numbers[n] = next;
        mesh.node_in_use[next] = 1;
        ++next;
    }
    return new_numbers;
}

void renumber_first_elements(const Combination& combination, Mesh& mesh, const RegionTables& first,
                             const NodeNumbers& new_numbers) {
    const bool midside = kind_row(mesh.kind).element_words == 8;
    for (ElementNumber n = combination.first.elements.lowest; n <= combination.first.elements.highest; ++n) {
        if (first.type_in_use[n] < ELEMENT_CONTINUUM)
            continue;
        ElementWords& w = mesh.words[n];
        for (NodeNumber* word : {&w.corner_1, &w.corner_2, &w.corner_3, &w.corner_4})
            if (word->names_one())
                *word = new_numbers[*word];
        if (!midside)
            continue;
        for (NodeNumber* word : {&w.midside_5, &w.midside_6, &w.midside_7, &w.midside_8})
            if (word->names_one())
                *word = new_numbers[*word];
    }
}

ResultMesh count_combined(const Mesh& mesh, const RegionTables& first) {
    ResultMesh result;
    count_nodes(mesh, result);
    for (ElementNumber n{1}; n <= LAST_ELEMENT; ++n) {
        const std::int8_t type = combined_type(mesh, first, n);
        if (type < ELEMENT_CONTINUUM)
            continue;
        result.elements.include(n);
        ++result.counts.of(type);
    }
    return result;
}

// Where elements of both regions have one number, both sections show what was read last.
void write_combined_elements(const Mesh& mesh, const RegionTables& first, Channel& mesh_file,
                             const ResultMesh& result, std::int8_t type) {
    write_section_heading(mesh.kind, mesh_file, type);
    for (ElementNumber n = result.elements.lowest; n <= result.elements.highest; ++n)
        if (first.type_in_use[n] == type || mesh.type_in_use[n] == type)
            write_element_record(mesh.kind, mesh_file, type, load_element_for_writing(mesh, n));
}

}  // namespace brelan
