#include "analysis/doubles.h"

#include <algorithm>
#include <map>

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
    for (std::size_t first = 0, end = 0; first < entries.size(); first = end) {
        for (end = first + 1; end < entries.size() && entries[end].nodes == entries[first].nodes;)
            ++end;
        sets.single.push_back(entries[first].element);
        if (end - first == 1)
            continue;
        std::map<std::int32_t, std::int32_t> last;  // of each material
        for (std::size_t i = first; i < end; ++i) {
            const std::int32_t e = entries[i].element;
            const std::int32_t material = mesh.elements[static_cast<std::size_t>(e)].words.material.value;
            const auto same = last.find(material);
            if (i > first)
                sets.doubles.emplace_back(e, same != last.end() ? same->second : entries[i - 1].element);
            if (i > first + 1)
                sets.further.emplace_back(e, entries[first].element);
            last[material] = e;
        }
    }
    std::sort(sets.single.begin(), sets.single.end());
    std::sort(sets.doubles.begin(), sets.doubles.end());
    std::sort(sets.further.begin(), sets.further.end());
    return sets;
}

}  // namespace brelan
