// Where things lie on a mesh: which point is in it, on one of its sides, at one of its nodes.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "analysis/geometry.h"
#include "analysis/mesh_lists.h"
#include "model/deck.h"

namespace brelan::tool {

class MeshPlaces {
public:
    explicit MeshPlaces(const MeshLists& mesh);

    const MeshLists& mesh() const { return mesh_; }
    // A length that is nothing on this mesh.
    double nothing() const { return nothing_; }

    bool inside(const DeckPoint& point) const;
    bool on_side(const DeckPoint& point) const;
    bool at_node(const DeckPoint& point, double tolerance) const;

    // Nodes on the segment, its ends left out.
    std::size_t nodes_between(const DeckPoint& from, const DeckPoint& to) const;

    // Shortest side of the solids at a point; nothing outside.
    std::optional<double> shortest_side_at(const DeckPoint& point) const;

private:
    struct Cell {
        std::int64_t column = 0, row = 0;
    };
    Cell cell_of(double x, double y) const;
    const std::vector<std::int32_t>& solids_at(const DeckPoint& point) const;
    bool contains(std::int32_t solid, const DeckPoint& point) const;
    double distance_to_sides(std::int32_t solid, const DeckPoint& point) const;

    const MeshLists& mesh_;
    std::vector<CornerPlaces> corners_;
    Bounds bounds_;
    double cell_ = 1.0, nothing_ = 0.0;
    std::int64_t columns_ = 1, rows_ = 1;
    std::vector<std::vector<std::int32_t>> solids_, nodes_;  // by cell: places in mesh.elements, mesh.nodes
};

// Distance of a point from a segment.
double distance_to_segment(const DeckPoint& point, const DeckPoint& from, const DeckPoint& to);

}  // namespace brelan::tool
