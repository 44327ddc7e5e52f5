#include "group/cut_table.h"

#include <algorithm>
#include <utility>

namespace brelan {

void CutTable::add(const CutRow& row) {
    const auto r = static_cast<std::uint32_t>(rows.size());
    rows.push_back(row);
    for (const NodeNumber n : row.corner_node) {
        if (n.is_none())
            continue;
        std::vector<std::uint32_t>& places = by_node_[n.place()];
        if (places.empty() || places.back() != r)
            places.push_back(r);
    }
    by_element_[row.element.place()] = r + 1;
}

void CutTable::clear() {
    for (const CutRow& row : rows) {
        for (const NodeNumber n : row.corner_node)
            if (n.names_one())
                by_node_[n.place()].clear();
        by_element_[row.element.in_sight().place()] = 0;
    }
    rows.clear();
}

std::span<const std::uint32_t> CutTable::rows_with(NodeNumber node) {
    if (uses_indexes_ && node.names_one() && !by_node_.empty())
        return std::as_const(by_node_)[node.place()];
    while (every_row_.size() < rows.size())
        every_row_.push_back(static_cast<std::uint32_t>(every_row_.size()));
    return std::span(every_row_).first(rows.size());
}

std::vector<std::uint32_t> CutTable::rows_of(std::span<const ElementNumber> elements) const {
    std::vector<std::uint32_t> places;
    for (const ElementNumber e : elements)
        if (const std::uint32_t at = by_element_[e.place()]; at > 0)
            places.push_back(at - 1);
    std::sort(places.begin(), places.end());
    return places;
}

}  // namespace brelan
