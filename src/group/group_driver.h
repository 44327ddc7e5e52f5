// The driver of the group engine.
#pragma once

namespace brelan {

// Pass 14.2: works on the groups in turn and leaves their listing in "GROUP.TMP".
void GROUPDRV(Channels& channels, Mesh& mesh, GroupCards& group_cards, Tolerances& tolerances, Engine& engine, GroupListing& listing);

}  // namespace brelan
