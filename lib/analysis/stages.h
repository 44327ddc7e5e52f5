// The stages of an analysis: which elements of a mesh come and go, and when.
#pragma once

#include <span>
#include <vector>

#include "analysis/mesh_lists.h"
#include "mesh/element_activity.h"

namespace brelan {

// True when elements of the pair stand in a step: from step `activated` on and before step `deactivated`.
// Step 0 is the state before the first step. An `activated` of 0 or below is there from the start, a
// `deactivated` of 0 or below stays. What goes no later than it comes is never there.
bool is_there(const ActivityPair& pair, std::int32_t step);

// Elements of one class that come and go together.
struct StageSet {
    ElementClass of = ElementClass::solid;
    ActivityPair pair;
    std::vector<Number> elements;  // ascending

    // The steps at which they come and go; 0 for what they do not.
    std::int32_t comes() const;
    std::int32_t goes() const;
    bool never_there() const { return pair.deactivated > 0 && pair.activated >= pair.deactivated; }
};

class Stages {
public:
    // No stages: every element is there at any time.
    Stages() = default;

    // Those of a mesh whose elements have activity (RunResult::activity). What the mesh does not have is left
    // out.
    Stages(const MeshLists& mesh, std::span<const ElementActivity> activity);

    // Ascending: the steps at which anything comes or goes, all above 0.
    const std::vector<std::int32_t>& steps() const { return steps_; }

    // By class, then by pair. Elements in no set are there at any time.
    const std::vector<StageSet>& sets() const { return sets_; }

    // Zeros for an element that is in no set.
    ActivityPair pair_of(Number element) const;
    bool is_there(Number element, std::int32_t step) const {
        return brelan::is_there(pair_of(element), step);
    }

    // The material that a continuum element had before it got one of its group's own; 0 where it got none.
    MaterialNumber old_material(Number element) const;

private:
    const ElementActivity* find(Number element) const;

    std::vector<ElementActivity> elements_;  // in ascending number
    std::vector<std::int32_t> steps_;
    std::vector<StageSet> sets_;
};

}  // namespace brelan
