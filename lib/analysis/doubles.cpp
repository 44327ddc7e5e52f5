#include "analysis/doubles.h"

#include <algorithm>

namespace brelan {

SolidSets solid_sets(const MeshLists& mesh, const std::vector<CornerPlaces>& corners,
                     const std::vector<std::int32_t>& closed) {
    struct Entry {
        std::array<std::int32_t, 4> nodes;
        std::int32_t element;
    };
    std::vector<Entry> entries;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        if (mesh.elements[i].of != ElementClass::solid || !corners[i].complete())
            continue;
        Entry entry{{MeshLists::NONE, MeshLists::NONE, MeshLists::NONE, MeshLists::NONE},
                    static_cast<std::int32_t>(i)};
        for (int k = 0; k < corners[i].count; ++k)
            entry.nodes[static_cast<std::size_t>(k)] = closed[static_cast<std::size_t>(corners[i][k])];
        std::sort(entry.nodes.begin(), entry.nodes.end());
        entries.push_back(entry);
    }
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
        return a.nodes != b.nodes ? a.nodes < b.nodes : a.element < b.element;
    });
    SolidSets sets;
    for (std::size_t i = 0; i < entries.size(); ++i)
        if (i > 0 && entries[i].nodes == entries[i - 1].nodes)
            sets.doubles.emplace_back(entries[i].element, entries[i - 1].element);
        else
            sets.single.push_back(entries[i].element);
    std::sort(sets.single.begin(), sets.single.end());
    std::sort(sets.doubles.begin(), sets.doubles.end());
    return sets;
}

}  // namespace brelan
