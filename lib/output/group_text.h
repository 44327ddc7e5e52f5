// "Group.dat": the block of a group while it is put together, written anew for each group and output: what a
// deck lists may be far longer than the mesh. It stays in memory.
#pragma once

#include "text/channels.h"

namespace brelan {

// The text at its start: the first line that is written replaces what stood in it.
Channel& begin_group_text(Channels& channels);

void end_group_text(Channels& channels);

}  // namespace brelan
