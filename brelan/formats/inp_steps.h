// The steps of an analysis in the .inp dialect.
#pragma once

#include <string>
#include <vector>

#include "cli/formatted_text.h"
#include "formats/inp_joints.h"
#include "formats/inp_sets.h"

namespace brelan::tool {

// A set of elements that come and go together, under its name in the file.
struct InpStageSet {
    std::string name;
    std::int32_t comes = 0, goes = 0;  // 0 for what they do not
    bool never_there = false;

    bool is_away_at_first() const { return comes > 0 || never_there; }
};

// Writes the element sets of the stages; those of joints hold their springs, which are there from the start
// and may go, and where joints are tied there are none.
std::vector<InpStageSet> add_stage_sets(FormattedText& text, const Stages& stages, const InpJoints& joints,
                                        SetNames& names);

// Writes the steps: the state before the first stage under its own weight, then one for each number at which
// elements come or go. Elements that come later are taken away in the beginning, behind a step in which
// nothing happens: the first one is too early for it. Elements come without strain into ground that has
// moved, which the solver does in geometrically non-linear steps only; these are all steps, where anything
// comes.
void add_steps(FormattedText& text, const std::vector<InpStageSet>& sets, const Stages& stages,
               const std::vector<std::string>& heavy_sets, double gravity);

}  // namespace brelan::tool
