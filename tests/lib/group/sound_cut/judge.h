// What is wrong with a cut mesh, told in words with the place. Works from the mesh and the deck alone, in 64
// bits; what the engine and the analysis know of a mesh is not asked.
#pragma once

#include <string>
#include <vector>

#include "lib/group/sound_cut/cut_deck.h"

namespace brelan::test {

enum class Law {
    shape,    // no inverted, flat, concave or duplicate element, no corner twice
    fit,      // no hanging node, no hole, no two unconnected nodes at one place
    border,   // area, border and corners are what they were
    line,     // a drawn piece in ground that can be cut is a chain of sides
    pinned,   // frozen nodes keep their bits
    region,   // materials fill their polygons
    midside,  // midside nodes stay on their sides
};

std::string_view name_of(Law law);

struct Violation {
    Law law;
    std::string text;
};

struct Verdict {
    std::vector<Violation> violations;
    double smallest_angle = 180.0;  // of all solids, degrees
    std::string smallest_at;        // the element that has it
    bool gave_way = false;          // a node of a line is off it, by TOLSAME at most, as other things hold it
    std::size_t solids = 0, triangles = 0;

    bool breaks(Law law) const;
    bool is_unsound() const { return breaks(Law::shape) || breaks(Law::fit) || breaks(Law::border); }
    std::string text() const;  // a line for each
};

// Of a run that has finished.
Verdict judge(const CutDeck& deck, const CutRun& run);

}  // namespace brelan::test
