#include "analysis/stage_areas.h"

#include <algorithm>
#include <map>
#include <utility>

namespace brelan {

StageAreas stage_areas(const MeshLists& mesh, const std::vector<CornerPlaces>& corners,
                       const Stages& stages) {
    StageAreas areas;
    areas.steps.push_back(0);
    areas.steps.insert(areas.steps.end(), stages.steps().begin(), stages.steps().end());
    std::map<std::pair<ElementClass, std::int32_t>, StageRow> rows;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const Element& e = mesh.elements[i];
        StageRow& row = rows[{e.of, e.words.material.value}];
        row.of = e.of;
        row.material = e.words.material.value;
        row.amounts.resize(areas.steps.size());
        MaterialRow measured;
        add_element(measured, mesh, e, corners[i]);
        const double amount = row.measures_area() ? measured.area : measured.length;
        const ActivityPair pair = stages.pair_of(e.number.value);
        for (std::size_t k = 0; k < areas.steps.size(); ++k) {
            StageAmount& at = row.amounts[k];
            const bool stands = is_there(pair, areas.steps[k]);
            const bool stood = k == 0 ? stands : is_there(pair, areas.steps[k - 1]);
            at.elements += stands ? 1 : 0;
            at.stands += stands ? amount : 0.0;
            at.comes += stands && !stood ? amount : 0.0;
            at.goes += stood && !stands ? amount : 0.0;
        }
    }
    for (auto& [key, row] : rows)
        areas.rows.push_back(std::move(row));
    return areas;
}

MeshLists mesh_in_step(const MeshLists& mesh, const Stages& stages, std::int32_t step) {
    MeshLists there = mesh;
    enum class Use : std::uint8_t { none, gone, stands };
    std::vector<Use> uses(mesh.nodes.size(), Use::none);
    for (const Element& e : mesh.elements) {
        const Use use = stages.is_there(e.number.value, step) ? Use::stands : Use::gone;
        const ElementWords& w = e.words;
        for (const NodeNumber n : {w.corner_1, w.corner_2, w.corner_3, w.corner_4, w.midside_5, w.midside_6,
                                   w.midside_7, w.midside_8})
            if (const std::int32_t place = mesh.node_place(n.value); place != MeshLists::NONE)
                uses[static_cast<std::size_t>(place)] = std::max(uses[static_cast<std::size_t>(place)], use);
    }
    std::erase_if(there.elements, [&](const Element& e) { return !stages.is_there(e.number.value, step); });
    std::erase_if(there.nodes, [&](const Node& node) {
        return uses[static_cast<std::size_t>(mesh.node_place(node.number.value))] == Use::gone;
    });
    there.finish();
    return there;
}

}  // namespace brelan
