#include "output/group_text.h"

#include "run/channel_numbers.h"

namespace brelan {

Channel& begin_group_text() {
    return open_channel(CH_GROUP_TEXT, "Group.dat", OpenStatus::scratch);
}

Channel& group_text() {
    return channel(CH_GROUP_TEXT);
}

void end_group_text() {
    close_channel(CH_GROUP_TEXT, CloseAction::remove);
}

}  // namespace brelan
