// One switch for all indexes of the group engine: the places of elements and of nodes, the rows of a cut by
// their nodes, the boxes of paths and of listing rows. An index saves looks that would find nothing and never
// changes a result, so the program always runs with them; tests run both ways and hold the results against
// each other.
#pragma once

namespace brelan {

inline bool indexes_are_on = true;

// With false, every search of the engine is a plain scan in ascending order.
inline void use_indexes(Engine& engine, bool on) {
    engine.uses_indexes = on;
}

}  // namespace brelan
