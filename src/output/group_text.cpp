#include "output/group_text.h"

#include "run/channel_numbers.h"

namespace brelan {

Channel& begin_group_text() {
    if (!channel_is_open(CH_GROUP_TEXT))
        return open_channel(CH_GROUP_TEXT, "Group.dat", OpenStatus::scratch);
    Channel& text = channel(CH_GROUP_TEXT);
    text.rewind();
    return text;
}

void end_group_text() {
    close_channel(CH_GROUP_TEXT, CloseAction::remove);
}

}  // namespace brelan
