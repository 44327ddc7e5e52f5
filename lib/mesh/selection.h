// Which nodes and elements an edit acts on.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>

#include "mesh/edit_tables.h"
#include "mesh/tables.h"

namespace brelan {

// Expands a number list into a selection table: n sets entry n to n, a following -m all entries from the
// number before it plus 1 to m. Returns the settings made, repeats included. A 0 sets nothing. Ends the run
// at a negative first entry and at a number that the table does not have, naming the list's place.
template <class SelectionTable>
std::int32_t expand_list(std::span<const std::int32_t> list, SelectionTable& table,
                         const FilePlace& place = {"number list"}) {
    using Number = typename SelectionTable::Index;
    constexpr std::int32_t last = SelectionTable::SIZE;
    std::int32_t settings = 0;
    std::int32_t previous = 0;
    bool first = true;
    for (const std::int32_t entry : list) {
        if (entry < -last || entry > last)
            fail_at(place, "expected a list of numbers of at most " + std::to_string(last) + ", found " +
                               std::to_string(entry));
        if (first && entry < 0)
            fail_at(place,
                    "expected a list whose first number is not negative, found " + std::to_string(entry));
        first = false;
        for (std::int32_t n = entry < 0 ? previous + 1 : entry; n != 0 && n <= std::abs(entry); ++n) {
            table[Number(n)] = Number(n);
            ++settings;
        }
        previous = std::abs(entry);
    }
    return settings;
}

// The selection that the cards list: expanded for ILOC 1, else empty.
Selection prepare_selection(const EditCards& edit);

// True when the selection takes what is inside (ISIDE 0) or outside (ISIDE 1); any other ISIDE takes nothing.
bool takes_side(const EditCards& edit, bool inside);

// True when a node of the source mesh, by its old number, is inside the selection.
bool node_inside(const EditCards& edit, const Selection& selection, NodeNumber number, float x, float y);

// True when an element is inside the selection: by its centroid for ILOC 0, by its number for ILOC 1.
bool element_inside(const EditCards& edit, const Mesh& mesh, const Selection& selection, std::int8_t type,
                    const ElementRecord& element);

// True when the material is on the list of ILOC 3.
bool material_listed(const EditCards& edit, MaterialNumber material);

}  // namespace brelan
