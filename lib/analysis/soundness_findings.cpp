// What is looked for, by name.
#include <algorithm>
#include <array>

#include "analysis/soundness.h"

namespace brelan {

namespace {

struct Row {
    Check check;
    std::string_view id, singular, plural;
    PairOf pair_of = PairOf::nodes;
    std::string_view amount = {};
};

constexpr Check LAST_UNSOUND = Check::folded_line;

constexpr std::array<Row, CHECKS> ROWS{{
    {Check::number_used_twice, "numbers_used_twice", "number used twice", "numbers used twice"},
    {Check::missing_node, "missing_nodes", "missing node", "missing nodes"},
    {Check::missing_midside, "missing_midsides", "missing midside node", "missing midside nodes"},
    {Check::degenerate_element, "degenerate_elements", "degenerate element", "degenerate elements"},
    {Check::inverted_element, "inverted_elements", "inverted element", "inverted elements"},
    {Check::concave_element, "concave_elements", "concave element", "concave elements"},
    {Check::hanging_node, "hanging_nodes", "hanging node", "hanging nodes"},
    {Check::coincident_nodes, "coincident_nodes", "pair of unconnected nodes at one place",
     "pairs of unconnected nodes at one place"},
    {Check::duplicate_element, "duplicate_elements", "duplicate element", "duplicate elements",
     PairOf::elements},
    {Check::crowded_side, "crowded_sides", "side of more than two elements",
     "sides of more than two elements"},
    {Check::overlapping_solid, "overlapping_elements", "overlap of elements", "overlaps of elements",
     PairOf::elements, "area"},
    {Check::pinned_part, "pinned_parts", "part that hangs on single nodes",
     "parts that hang on single nodes"},
    {Check::collapsed_joint, "collapsed_joints", "collapsed joint", "collapsed joints"},
    {Check::triangular_joint, "triangular_joints", "triangular joint within a line",
     "triangular joints within a line"},
    {Check::crossed_joint, "crossed_joints", "joint whose sides do not face each other",
     "joints whose sides do not face each other"},
    {Check::stacked_joint, "stacked_joints", "joint over another joint", "joints over another joint",
     PairOf::elements},
    {Check::unjoined_joint, "unjoined_joints", "node within a joint", "nodes within joints"},
    {Check::open_wedge, "open_wedges", "open wedge at a joint", "open wedges at joints", PairOf::nodes,
     "area"},
    {Check::stray_midside, "stray_midsides", "midside node off its side", "midside nodes off their sides"},
    {Check::unshared_midside, "unshared_midsides", "midside node that neighbours do not share",
     "midside nodes that neighbours do not share"},
    {Check::folded_line, "folded_lines", "beam or truss folded back", "beams or trusses folded back",
     PairOf::elements},
    {Check::separate_part, "separate_parts", "separate part of the ground", "separate parts of the ground"},
    {Check::unjoined_line, "unjoined_lines", "node within a beam or truss", "nodes within beams or trusses"},
    {Check::line_beside_side, "lines_beside_sides", "beam or truss along a side without its nodes",
     "beams or trusses along sides without their nodes", PairOf::elements},
    {Check::loose_end, "loose_ends", "loose end of a beam or truss", "loose ends of beams or trusses"},
    {Check::crossing_lines, "crossing_lines", "crossing of beams or trusses without a node",
     "crossings of beams or trusses without a node", PairOf::elements},
    {Check::uneven_joint, "uneven_joints", "joint of another width than its line",
     "joints of another width than their line", PairOf::nodes, "width"},
    {Check::overlapped_joint, "overlapped_joints", "joint of a width over solids",
     "joints of a width over solids", PairOf::elements, "area"},
    {Check::stacked_double, "stacked_doubles", "third element over one place",
     "third and further elements over one place", PairOf::elements},
    {Check::free_side_node, "free_side_nodes", "free node on a side of which others are fixed",
     "free nodes on sides of which others are fixed"},
    {Check::fixed_inside, "fixed_inside", "fixed node inside the ground", "fixed nodes inside the ground"},
    {Check::midside_beside_line, "midsides_beside_lines", "midside node beside a joint, beam or truss",
     "midside nodes beside joints, beams or trusses", PairOf::elements},
    {Check::unused_node, "unused_nodes", "unused node", "unused nodes"},
    {Check::double_element, "double_elements", "double of another material", "doubles of another material",
     PairOf::elements},
    {Check::free_line, "free_lines", "strut or anchor that passes over nodes",
     "struts or anchors that pass over nodes", PairOf::nodes, "nodes"},
}};

static_assert([] {
    for (std::size_t i = 0; i < ROWS.size(); ++i)
        if (static_cast<std::size_t>(ROWS[i].check) != i)
            return false;
    return true;
}());

}  // namespace

std::vector<Finding> nothing_found() {
    std::vector<Finding> findings;
    findings.reserve(ROWS.size());
    for (const Row& row : ROWS)
        findings.push_back({row.check,
                            row.id,
                            row.singular,
                            row.plural,
                            row.check <= LAST_UNSOUND,
                            row.pair_of,
                            row.amount,
                            {}});
    return findings;
}

bool Soundness::sound() const {
    return std::none_of(findings.begin(), findings.end(),
                        [](const Finding& f) { return f.unsound && !f.places.empty(); });
}

}  // namespace brelan
