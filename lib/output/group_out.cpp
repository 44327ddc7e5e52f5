#include "output/group_out.h"

#include <utility>
#include <vector>

#include "mesh/group_tables.h"
#include "mesh/result_names.h"
#include "output/activity.h"
#include "output/graf_2d.h"
#include "output/graf_xy.h"
#include "output/group_members.h"
#include "output/group_text.h"
#include "output/main_file.h"
#include "output/rewrite_mesh.h"
#include "output/unit_table.h"
#include "text/channel_numbers.h"
#include "text/channels.h"
#include "text/trace.h"

namespace brelan {

namespace {

constexpr std::string_view GROUP_FILE = "GROUP.TMP";

}  // namespace

bool outputs_list(LayoutKind kind, const GroupCards& group_cards, const MemberRecord& member) {
    const auto type = static_cast<std::int8_t>(member.type);
    return group_cards.outputs[member.group].wants_outputs != 0 &&
           (activity_of(group_cards, member.group, type, member.material) != ActivityPair{} ||
            plots_list(kind, group_cards, member.group, type, member.sub_kind));
}

std::vector<ElementActivity> write_group_outputs(Channels& channels, Trace& trace, const Settings& settings,
                                                 const GroupCards& group_cards, const GroupListing& listing,
                                                 const FinishedMembers& members, UnitLabels& units,
                                                 std::string_view result_name, const MeshCounts& counts) {
    channels.close(CHANNEL_GROUP);
    read_unit_table(channels, settings.kind(), units);
    trace.values(1, " Pass 27.1.1 ");
    trace.values(1, " GROUP_SORT: Beginning NGROUP = ", group_cards.count);
    begin_group_text(
        channels);  // also where no group has a block: a file that a broken-off run left goes with it
    Activity activity = make_activity(trace, group_cards, members);
    if (activity.line_count != 0) {
        if (!activity.materials.empty())
            rewrite_mesh(channels, trace, settings, result_name, counts, activity.new_material);
        write_materials(channels, settings, activity);
        write_group_activity(channels, settings.kind(), group_cards, activity, members.groups);
    }
    Channel& post = channels.open(CHANNEL_POST, POST_FILE, OpenStatus::side_result);
    post.set_write_only(true);
    write_graf_2d(channels, settings.kind(), group_cards, listing, units, post, members.groups, counts);
    write_graf_xy(settings.kind(), units, post);
    channels.open(CHANNEL_GROUP, GROUP_FILE, OpenStatus::forward);
    channels.close(CHANNEL_GROUP, CloseAction::remove);
    end_group_text(channels);
    channels.close(CHANNEL_POST);
    return std::move(activity.elements);
}

}  // namespace brelan
