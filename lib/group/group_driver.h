// The driver of the group engine.
#pragma once

#include "group/engine.h"
#include "mesh/group_tables.h"
#include "mesh/tables.h"
#include "text/channels.h"

namespace brelan {

// Pass 14.2: works on the groups in turn. Returns their listing and leaves it in "GROUP.TMP".
GroupListing work_on_groups(Channels& channels, Mesh& mesh, const GroupCards& group_cards,
                            const Tolerances& tolerances, Engine& engine);

}  // namespace brelan
