#include "run/group_run.h"

#include <algorithm>
#include <string>

#include "channel/channels.h"
#include "deck/defaults_file.h"
#include "group/group_driver.h"
#include "group/listing.h"
#include "group/loader.h"
#include "group/membership.h"
#include "group/tables.h"
#include "mesh/edit_tables.h"
#include "mesh/line_up.h"
#include "mesh/moves.h"
#include "output/group_out.h"
#include "run/channel_numbers.h"
#include "run/read_group_cards.h"
#include "run/trace.h"

namespace brelan {

namespace {

constexpr std::string_view GROUP_FILE = "GROUP.TMP";

}  // namespace

void run_groups() {
    TRACE(" Pass 14.1 ", 14.1F);
    read_group_cards();
    DEFLOAD();
    std::int32_t highest_element = 0;
    for (const NumberRange& range : SOURCE.elements)
        highest_element = std::max(highest_element, range.highest);
    LOADENGINE(SOURCE.nodes.highest, highest_element);
    SETTOLERANCES();
    TRACE(" Pass 14.2 ", 14.2F);
    GROUPDRV();
    TRACE(" Pass 14.3 ", 14.3F);
    READLISTING(open_channel(CH_GROUP, GROUP_FILE, OpenStatus::old));
    close_channel(CH_GROUP, CloseAction::remove);
    open_channel(CH_GROUP, GROUP_FILE, OpenStatus::work).set_write_only(true);
    TRACE(" Pass 14.4 ", 14.4F);
}

void run_line_up() {
    READLINEUP();
    if (EDIT.IEDIT != 4 || LINEUP == 0)
        return;
    TRACE(" Pass 14.5  LINEUP = ", 14.5F, LINEUP);
    SEARCHLINEUP();
    TRACE(" Pass 14.6  NLNP = ", 14.6F, static_cast<std::int32_t>(LNP.size()));
    APPLYLINEUP();
}

void run_collapse_and_moves() {
    if (IDCOL != 0)
        COLLAPSE();
    MOVENODES();
}

void renumber_lines(std::int32_t NSNODE) {
    for (std::int32_t i = 1; i <= NGRP; ++i)
        for (std::int32_t& node : KEPTLINES[i].nodes)
            node = NUSED[node] != 0 ? NSNODE - 1 + NMAP[node] : 0;
}

void prepare_members(const NumberRange& elements) {
    begin_membership();
    for (std::int32_t e = elements.lowest; e <= elements.highest; ++e) {
        const std::int8_t type = EACT1[e];
        const std::int32_t material = IEL[e].MATNO;
        if (type < EL_CONTINUUM || material >= 0)
            continue;
        for (const std::int32_t i : listing_rows_of(IEL[e], type)) {
            const std::int32_t g = LISTING[i].group;
            if (outputs_list(LISTING[i], type, material))
                FAIL(GROUPPOST[g].place +
                     ": Card 3.3.5.4.1: expected materials of 1 or more in a group with outputs (IGPOST " +
                     std::to_string(GROUPPOST[g].IGPOST) + "), but group " + std::to_string(g) +
                     " lists element " + std::to_string(e) + " with material " + std::to_string(material));
        }
    }
}

void write_group_elements(Channel& mesh, const ResultMesh& result, std::int8_t type) {
    WRITEELEMENTS(mesh, result, type);
    Channel& members = channel(CH_GROUP);
    for (std::int32_t n = result.elements.lowest; n <= result.elements.highest; ++n)
        if (EACT1[n] == type)
            GROUPMEMBER(members, n, IEL[n], type);
}

}  // namespace brelan
