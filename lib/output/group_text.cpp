#include "output/group_text.h"

#include "text/channel_numbers.h"

namespace brelan {

Channel& begin_group_text(Channels& channels) {
    if (!channels.is_open(CHANNEL_GROUP_TEXT))
        return channels.open(CHANNEL_GROUP_TEXT, "Group.dat", OpenStatus::scratch);
    Channel& text = channels.at(CHANNEL_GROUP_TEXT);
    text.rewind();
    return text;
}

void end_group_text(Channels& channels) {
    channels.close(CHANNEL_GROUP_TEXT, CloseAction::remove);
}

}  // namespace brelan
