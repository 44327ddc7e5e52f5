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
#include "run/channel_numbers.h"
#include "run/trace.h"

namespace brelan {

namespace {

constexpr std::string_view GROUP_FILE = "GROUP.TMP";

}  // namespace

bool outputs_list(const ListingRow& row, std::int8_t type, std::int32_t material) {
    return GROUPPOST[row.group].IGPOST != 0 && (activity_of(row.group, type, material) != ActivityPair{} ||
                                                plots_list(row.group, type, row.sub_kind));
}

void GROUPOUT(std::string_view FILEM, const MeshCounts& counts) {
    close_channel(CH_GROUP);
    UNITTAB();
    trace_values(1, " Pass 27.1.1 ");
    trace_values(1, " GROUP_SORT: Beginning NGROUP = ", NGROUP);
    const std::vector<GroupMembers> members =
        READMEMBERS(open_channel(CH_GROUP, GROUP_FILE, OpenStatus::forward));
    close_channel(CH_GROUP);
    begin_group_text();  // also where no group has a block: a file that a broken-off run left goes with it
    const Activity activity = MAKEACTIVITY(members);
    if (activity.NFAD != 0) {
        if (!activity.materials.empty())
            REWRITEMESH(FILEM, counts, activity.NEWMAT);
        WRITEMATERIALS(activity);
        WRITEGROUPACTIVITY(activity, members);
    }
    Channel& post = open_channel(CH_POST, "..\\Group.Pos", OpenStatus::result);
    post.set_write_only(true);
    WRITEGRAF2D(post, members, counts);
    WRITEGRAFXY(post);
    open_channel(CH_GROUP, GROUP_FILE, OpenStatus::forward);
    close_channel(CH_GROUP, CloseAction::remove);
    end_group_text();
    close_channel(CH_POST);
}

}  // namespace brelan
