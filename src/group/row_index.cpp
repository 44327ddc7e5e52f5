#include "group/row_index.h"

#include <algorithm>
#include <cstdlib>

#include "group/indexes.h"
#include "mesh/tables.h"

namespace brelan {

namespace {

using Rows = std::vector<std::uint32_t>;

std::vector<Rows> by_node;              // places of rows, ascending
std::vector<std::uint32_t> by_element;  // place behind 1, 0 for an element without a row
Rows every_row;                         // 0, 1, 2, ...

}  // namespace

void note_row() {
    if (by_node.empty()) {
        by_node.resize(static_cast<std::size_t>(MAXNP) + 1);
        by_element.resize(static_cast<std::size_t>(MAXEL) + 1);
    }
    const auto r = static_cast<std::uint32_t>(CUTTAB.size() - 1);
    const CutRow& row = CUTTAB.back();
    for (const std::int32_t n : row.N) {
        if (n <= 0)
            continue;
        Rows& rows = by_node[static_cast<std::size_t>(n)];
        if (rows.empty() || rows.back() != r)
            rows.push_back(r);
    }
    by_element[static_cast<std::size_t>(row.E)] = r + 1;
}

void clear_rows() {
    for (const CutRow& row : CUTTAB) {
        for (const std::int32_t n : row.N)
            if (n > 0 && !by_node.empty())
                by_node[static_cast<std::size_t>(n)].clear();
        if (!by_element.empty())
            by_element[static_cast<std::size_t>(std::abs(row.E))] = 0;
    }
    CUTTAB.clear();
}

std::span<const std::uint32_t> rows_with(std::int32_t node) {
    if (indexes_are_on && node > 0 && !by_node.empty())
        return by_node[static_cast<std::size_t>(node)];
    while (every_row.size() < CUTTAB.size())
        every_row.push_back(static_cast<std::uint32_t>(every_row.size()));
    return std::span(every_row).first(CUTTAB.size());
}

std::vector<std::uint32_t> rows_of(std::span<const std::int32_t> elements) {
    Rows rows;
    for (const std::int32_t e : elements)
        if (const std::uint32_t at = by_element.empty() ? 0 : by_element[static_cast<std::size_t>(e)]; at > 0)
            rows.push_back(at - 1);
    std::sort(rows.begin(), rows.end());
    return rows;
}

}  // namespace brelan
