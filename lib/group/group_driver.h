// The driver of the group engine.
#pragma once

#include "group/engine.h"
#include "mesh/cut_method.h"
#include "mesh/group_tables.h"
#include "mesh/tables.h"
#include "text/channels.h"

namespace brelan {

// Pass 14.2: works on the groups in turn, cutting elements by the given method. Returns their listing and
// leaves it in "GROUP.TMP".
GroupListing work_on_groups(Channels& channels, Mesh& mesh, const GroupCards& group_cards,
                            const Tolerances& tolerances, CutMethod method, Engine& engine);

}  // namespace brelan
