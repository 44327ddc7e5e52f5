#include "output/group_out.h"

#include <vector>

#include "channel/channels.h"
#include "group/tables.h"
#include "output/activity.h"
#include "output/graf_2d.h"
#include "output/graf_xy.h"
#include "output/group_members.h"
#include "output/group_text.h"
#include "output/main_file.h"
#include "output/rewrite_mesh.h"
#include "output/unit_table.h"
#include "channel/channel_numbers.h"
#include "channel/trace.h"

namespace brelan {

namespace {

constexpr std::string_view GROUP_FILE = "GROUP.TMP";

}  // namespace

bool outputs_list(LayoutKind kind, const GroupCards& group_cards, const ListingRow& row, std::int8_t type, std::int32_t material) {
    return group_cards.outputs[row.group].IGPOST != 0 && (activity_of(group_cards, row.group, type, material) != ActivityPair{} ||
                                                plots_list(kind, group_cards, row.group, type, row.sub_kind));
}

void GROUPOUT(Channels& channels, Trace& trace, const Settings& settings, const GroupCards& group_cards, GroupListing& listing, UnitLabels& units, std::string_view FILEM, const MeshCounts& counts) {
    channels.close(CH_GROUP);
    UNITTAB(channels, settings.kind(), units);
    trace.values(1, " Pass 27.1.1 ");
    trace.values(1, " GROUP_SORT: Beginning NGROUP = ", group_cards.count);
    const std::vector<GroupMembers> members =
        READMEMBERS(group_cards, channels.open(CH_GROUP, GROUP_FILE, OpenStatus::forward));
    channels.close(CH_GROUP);
    begin_group_text(channels);  // also where no group has a block: a file that a broken-off run left goes with it
    const Activity activity = MAKEACTIVITY(trace, group_cards, listing, members);
    if (activity.NFAD != 0) {
        if (!activity.materials.empty())
            REWRITEMESH(channels, trace, settings, FILEM, counts, activity.NEWMAT);
        WRITEMATERIALS(channels, settings, activity);
        WRITEGROUPACTIVITY(channels, settings.kind(), group_cards, activity, members);
    }
    Channel& post = channels.open(CH_POST, "..\\Group.Pos", OpenStatus::result);
    post.set_write_only(true);
    WRITEGRAF2D(channels, settings.kind(), group_cards, listing, units, post, members, counts);
    WRITEGRAFXY(settings.kind(), units, post);
    channels.open(CH_GROUP, GROUP_FILE, OpenStatus::forward);
    channels.close(CH_GROUP, CloseAction::remove);
    end_group_text(channels);
    channels.close(CH_POST);
}

}  // namespace brelan
