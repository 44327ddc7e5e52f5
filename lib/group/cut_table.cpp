#include "group/cut_table.h"

#include <algorithm>
#include <cstdlib>

#include "mesh/tables.h"

namespace brelan {

void CutTable::add(const CutRow& row) {
    if (by_node_.empty()) {
        by_node_.resize(static_cast<std::size_t>(HIGHEST_NODE_NUMBER) + 1);
        by_element_.resize(static_cast<std::size_t>(HIGHEST_ELEMENT_NUMBER) + 1);
    }
    const auto r = static_cast<std::uint32_t>(rows.size());
    rows.push_back(row);
    for (const std::int32_t n : row.corner_node) {
        if (n <= 0)
            continue;
        std::vector<std::uint32_t>& places = by_node_[static_cast<std::size_t>(n)];
        if (places.empty() || places.back() != r)
            places.push_back(r);
    }
    by_element_[static_cast<std::size_t>(row.element)] = r + 1;
}

void CutTable::clear() {
    for (const CutRow& row : rows) {
        for (const std::int32_t n : row.corner_node)
            if (n > 0 && !by_node_.empty())
                by_node_[static_cast<std::size_t>(n)].clear();
        if (!by_element_.empty())
            by_element_[static_cast<std::size_t>(std::abs(row.element))] = 0;
    }
    rows.clear();
}

std::span<const std::uint32_t> CutTable::rows_with(std::int32_t node) {
    if (uses_indexes_ && node > 0 && !by_node_.empty())
        return by_node_[static_cast<std::size_t>(node)];
    while (every_row_.size() < rows.size())
        every_row_.push_back(static_cast<std::uint32_t>(every_row_.size()));
    return std::span(every_row_).first(rows.size());
}

std::vector<std::uint32_t> CutTable::rows_of(std::span<const std::int32_t> elements) const {
    std::vector<std::uint32_t> places;
    for (const std::int32_t e : elements)
        if (const std::uint32_t at = by_element_.empty() ? 0 : by_element_[static_cast<std::size_t>(e)];
            at > 0)
            places.push_back(at - 1);
    std::sort(places.begin(), places.end());
    return places;
}

}  // namespace brelan
