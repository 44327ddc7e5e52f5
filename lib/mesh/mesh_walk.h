// The walk through a mesh file: two heading lines, the counts, two heading lines, the nodes, and the sections
// of elements, each behind heading lines of its own.
#pragma once

#include <cstdint>

#include "mesh/edition.h"
#include "mesh/mesh_records.h"
#include "text/channels.h"

namespace brelan {

// Lowest and highest number seen.
template <class Number>
struct NumberRange {
    Number lowest{NO_LOWEST_NUMBER}, highest;

    void include(Number number) {
        lowest = number < lowest ? number : lowest;
        highest = number > highest ? number : highest;
    }
};

// Takes one part after the other, from where the channel stands.
class MeshWalk {
public:
    MeshWalk(LayoutKind kind, Channel& file, const StrippedMesh& form, const MeshCounts& counts = {})
        : kind_(kind), file_(file), form_(form), counts_(counts) {}

    // Reads up to the first node record.
    const MeshCounts& head() {
        skip_headings(2);
        counts_ = read_mesh_counts(file_);
        skip_headings(2);
        return counts_;
    }

    template <class Action>
    void each_node(const Action& action) {
        for (std::int32_t i = 0; i < counts_.nodes; ++i)
            action(read_node_record(kind_, file_, form_.field_count));
    }

    // The elements of a type with what stands in front of them; a section without elements is not there.
    template <class Action>
    void each_element(std::int8_t type, const Action& action) {
        each_record(type, [&] { action(read_element_record(kind_, file_, type)); });
    }

    // The lowest and the highest element number of a type.
    NumberRange<ElementNumber> element_numbers(std::int8_t type) {
        NumberRange<ElementNumber> range;
        each_record(type, [&] { range.include(read_element_number(kind_, file_, type)); });
        return range;
    }

    // The same for the nodes, which are then read again.
    NumberRange<NodeNumber> node_numbers() {
        NumberRange<NodeNumber> range;
        look_ahead([&] { each_node([&](const NodeRecord& node) { range.include(node.number); }); });
        return range;
    }

    // Leaves the channel where it was.
    template <class Action>
    void look_ahead(const Action& action) {
        const int start = file_.lines_before();
        action();
        file_.step_back(file_.lines_before() - start);
    }

private:
    void skip_headings(int lines) { file_.skip_lines(lines, "a heading line"); }

    template <class Action>
    void each_record(std::int8_t type, const Action& action) {
        const std::int32_t count = counts_.of(type);
        if (count > 0)
            skip_headings(form_.headings_of(type));
        for (std::int32_t i = 0; i < count; ++i)
            action();
    }

    LayoutKind kind_;
    Channel& file_;
    StrippedMesh form_;
    MeshCounts counts_;
};

}  // namespace brelan
