// "Group.dat": the blocks of the groups while they are put together, written anew for each output. It stays
// in memory.
#pragma once

#include "channel/channels.h"

namespace brelan {

// Opens the text anew, empty.
Channel& begin_group_text();

Channel& group_text();

void end_group_text();

}  // namespace brelan
