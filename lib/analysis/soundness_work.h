// What the searches behind check_soundness() share: soundness.h is the way in.
#pragma once

#include <cstdint>
#include <vector>

#include "analysis/geometry.h"
#include "analysis/soundness.h"

namespace brelan {

// A side of a solid with joints closed: the two node places, the lower one first.
struct ClosedSide {
    std::int32_t low = 0, high = 0;
    std::int32_t element = 0, from = 0, to = 0;  // place of the element; its own corners
};

// Nodes with their places, for searches by place.
struct PlacedNodes {
    std::vector<std::int32_t> nodes = {};  // by node place
    std::vector<Position> points = {};
};

struct SoundnessWork {
    const MeshLists& mesh;
    const std::vector<CornerPlaces>& corners;
    Soundness result;
    std::vector<std::int32_t> closed = {};    // by node place: with joints closed
    std::vector<std::uint8_t> of_solid = {};  // by node place
    std::vector<std::int32_t> single = {};    // places of solids, one for each set of nodes
    std::vector<ClosedSide> sides = {};       // of those, by low, high and element
    std::vector<ClosedSide> free = {};        // without a neighbour, by element

    static std::size_t at(std::int32_t place) { return static_cast<std::size_t>(place); }
    const Element& element(std::int32_t place) const { return mesh.elements[at(place)]; }
    Number number(std::int32_t place) const { return element(place).number.value; }
    Number node_number(std::int32_t place) const { return mesh.nodes[at(place)].number.value; }
    double tolerance() const { return result.tolerance; }

    void add(Check check, const Place& place) {
        result.findings[static_cast<std::size_t>(check)].places.push_back(place);
    }
    std::vector<Place>& places(Check check) {
        return result.findings[static_cast<std::size_t>(check)].places;
    }

    PlacedNodes nodes_of_solids() const;

    // True when two nodes with joints closed are the ends of a side of a solid.
    bool is_side(std::int32_t a, std::int32_t b) const;

    // Calls use(first, end) for each run of equal sides.
    template <class Use>
    void each_side(Use&& use) const {
        for (std::size_t i = 0; i < sides.size();) {
            std::size_t end = i + 1;
            while (end < sides.size() && sides[end].low == sides[i].low && sides[end].high == sides[i].high)
                ++end;
            use(i, end);
            i = end;
        }
    }
};

// How far p lies from the inside of the segment; infinite for a point at or beyond an end.
double distance_within(const Position& from, const Position& to, const Position& p, double tolerance);

// Each adds what it finds to the work's result.

// Sides, their crowding, the outline; hanging nodes, and nodes at one place.
void find_sides(SoundnessWork& work);
void find_hanging_nodes(SoundnessWork& work);
void find_coincident_nodes(SoundnessWork& work);

// The shape of joints, their lines, and wedges that they leave open.
void find_joint_faults(SoundnessWork& work);
void find_open_wedges(SoundnessWork& work);

// Beams and trusses along the sides of solids, between their nodes, and over each other.
void find_line_faults(SoundnessWork& work);

// Numbers and places of midside nodes.
void find_midside_faults(SoundnessWork& work);

// Solids over solids, and joints of a width over them.
void find_overlaps(SoundnessWork& work);

// Pieces of ground that hang together in single nodes or not at all.
void find_loose_parts(SoundnessWork& work);

// Codes of nodes that fit neither the border nor their neighbours.
void find_odd_codes(SoundnessWork& work);

}  // namespace brelan
