#include "run/group_run.h"

#include <algorithm>
#include <string>

#include "deck/defaults_file.h"
#include "group/group_driver.h"
#include "group/listing.h"
#include "group/loader.h"
#include "group/membership.h"
#include "mesh/edit_tables.h"
#include "mesh/group_tables.h"
#include "mesh/line_up.h"
#include "mesh/moves.h"
#include "output/group_out.h"
#include "run/run.h"
#include "text/channel_numbers.h"
#include "text/channels.h"
#include "text/trace.h"

namespace brelan {

namespace {

constexpr std::string_view GROUP_FILE = "GROUP.TMP";

}  // namespace

void run_groups(Run& run) {
    run.trace.pass(" Pass 14.1 ", 14.1F);
    run.deck.require(DeckPart::groups);
    load_defaults(run.channels, run.tolerances, run.moves);
    ElementNumber highest;
    for (const NumberRange<ElementNumber>& range : run.source.elements)
        highest = std::max(highest, range.highest);
    load_engine(run.mesh, run.deck.groups, run.engine, run.source.nodes.highest, highest);
    set_tolerances(run.mesh, run.tolerances, run.engine);
    run.trace.pass(" Pass 14.2 ", 14.2F);
    run.engine.watch = &run.watch;
    run.listing =
        work_on_groups(run.channels, run.mesh, run.deck.groups, run.tolerances, run.cut, run.engine);
    run.trace.pass(" Pass 14.3 ", 14.3F);
    require_numbers(run.listing);
    run.channels.open(CHANNEL_GROUP, GROUP_FILE, OpenStatus::old);
    run.channels.close(CHANNEL_GROUP, CloseAction::remove);
    run.channels.open(CHANNEL_GROUP, GROUP_FILE, OpenStatus::work).set_write_only(true);
    run.trace.pass(" Pass 14.4 ", 14.4F);
}

void run_line_up(Run& run) {
    read_line_up(run.channels, run.line_up);
    if (run.deck.edit.operation != 4 || run.line_up.is_on == 0)
        return;
    run.trace.pass(" Pass 14.5  LINEUP = ", 14.5F, run.line_up.is_on);
    search_line_up(run.mesh, run.moves, run.line_up);
    run.trace.pass(" Pass 14.6  NLNP = ", 14.6F, static_cast<std::int32_t>(run.line_up.nodes.size()));
    apply_line_up(run.mesh, run.line_up);
}

void run_collapse_and_moves(Run& run) {
    if (run.moves.collapse_mode != 0)
        collapse_short_elements(run.mesh, run.listing, run.moves);
    move_nodes(run.mesh, run.listing, run.moves);
}

void renumber_lines(Run& run, const PackedNodes& nodes, NodeNumber first_node) {
    for (ListingRow& row : run.listing.rows)
        for (NodeNumber& node : row.nodes)
            node = nodes.position[node].names_one() ? placed(first_node, nodes.position[node]) : NodeNumber{};
}

Membership prepare_members(Run& run, const NumberRange<ElementNumber>& elements) {
    Membership membership = begin_membership(run.tolerances, run.engine, run.listing);
    for (ElementNumber e = elements.lowest; e <= elements.highest; ++e) {
        run.watch.look();
        const std::int8_t type = run.mesh.type_in_use[e];
        if (type < ELEMENT_CONTINUUM || run.mesh.words[e].material >= MaterialNumber{})
            continue;
        for (const MemberRecord& member : members_of(membership, run.mesh, run.tolerances, e, type)) {
            const GroupPost& outputs = run.deck.groups.outputs[member.group];
            if (outputs_list(run.settings.kind(), run.deck.groups, member))
                fail_at(outputs.place,
                        "Card 3.3.5.4.1: expected materials of 1 or more in a group with outputs (IGPOST " +
                            std::to_string(outputs.wants_outputs) + "), but group " +
                            std::to_string(member.group) + " lists element " + to_string(e) +
                            " with material " + to_string(member.material));
        }
    }
    return membership;
}

void write_group_elements(Run& run, Channel& mesh_file, const ResultMesh& result, std::int8_t type,
                          const Membership& membership, MemberCollector& members) {
    write_result_elements(run.mesh, mesh_file, result, type);
    Channel& file = run.channels.at(CHANNEL_GROUP);
    for (ElementNumber n = result.elements.lowest; n <= result.elements.highest; ++n) {
        run.watch.look();
        if (run.mesh.type_in_use[n] != type)
            continue;
        members.add_material(type, run.mesh.words[n].material);
        for (const MemberRecord& member : members_of(membership, run.mesh, run.tolerances, n, type)) {
            write_member(file, member);
            members.add(member);
        }
    }
}

}  // namespace brelan
