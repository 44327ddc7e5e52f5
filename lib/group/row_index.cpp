#include "group/row_index.h"

#include <algorithm>
#include <cstdlib>

#include "group/engine.h"

#include "mesh/tables.h"

namespace brelan {

using Rows = RowIndex::Rows;

void note_row(Engine& engine) {
    if (engine.row_index.by_node.empty()) {
        engine.row_index.by_node.resize(static_cast<std::size_t>(HIGHEST_NODE_NUMBER) + 1);
        engine.row_index.by_element.resize(static_cast<std::size_t>(HIGHEST_ELEMENT_NUMBER) + 1);
    }
    const auto r = static_cast<std::uint32_t>(engine.rows.size() - 1);
    const CutRow& row = engine.rows.back();
    for (const std::int32_t n : row.corner_node) {
        if (n <= 0)
            continue;
        Rows& rows = engine.row_index.by_node[static_cast<std::size_t>(n)];
        if (rows.empty() || rows.back() != r)
            rows.push_back(r);
    }
    engine.row_index.by_element[static_cast<std::size_t>(row.element)] = r + 1;
}

void clear_rows(Engine& engine) {
    for (const CutRow& row : engine.rows) {
        for (const std::int32_t n : row.corner_node)
            if (n > 0 && !engine.row_index.by_node.empty())
                engine.row_index.by_node[static_cast<std::size_t>(n)].clear();
        if (!engine.row_index.by_element.empty())
            engine.row_index.by_element[static_cast<std::size_t>(std::abs(row.element))] = 0;
    }
    engine.rows.clear();
}

std::span<const std::uint32_t> rows_with(Engine& engine, std::int32_t node) {
    if (engine.uses_indexes && node > 0 && !engine.row_index.by_node.empty())
        return engine.row_index.by_node[static_cast<std::size_t>(node)];
    while (engine.row_index.every_row.size() < engine.rows.size())
        engine.row_index.every_row.push_back(static_cast<std::uint32_t>(engine.row_index.every_row.size()));
    return std::span(engine.row_index.every_row).first(engine.rows.size());
}

std::vector<std::uint32_t> rows_of(const Engine& engine, std::span<const std::int32_t> elements) {
    Rows rows;
    for (const std::int32_t e : elements)
        if (const std::uint32_t at = engine.row_index.by_element.empty()
                                         ? 0
                                         : engine.row_index.by_element[static_cast<std::size_t>(e)];
            at > 0)
            rows.push_back(at - 1);
    std::sort(rows.begin(), rows.end());
    return rows;
}

}  // namespace brelan
