#include "drawing/soundness_text.h"

#include <fmt/core.h>

namespace brelan::tool {

std::string place_text(const Finding& finding, const Place& p) {
    const std::string at = fmt::format(" at ({:.7g}, {:.7g})", p.at.x, p.at.y);
    switch (finding.check) {
        case Check::number_used_twice:
            return p.element != 0 ? fmt::format("element {}{}", p.element, at)
                                  : fmt::format("node {}{}", p.node, at);
        case Check::missing_node:
        case Check::missing_midside:
        case Check::stray_midside:
        case Check::unshared_midside:
        case Check::loose_end:
            return fmt::format("node {} of element {}{}", p.node, p.element, at);
        case Check::degenerate_element:
        case Check::inverted_element:
        case Check::collapsed_joint:
        case Check::triangular_joint:
        case Check::crossed_joint:
        case Check::separate_part:
            return fmt::format("element {}{}", p.element, at);
        case Check::concave_element:
        case Check::pinned_part:
            return fmt::format("element {} at node {}{}", p.element, p.node, at);
        case Check::hanging_node:
            return fmt::format("node {} on a side of element {}{}", p.node, p.element, at);
        case Check::coincident_nodes:
            return fmt::format("nodes {} and {}{}", p.node, p.other, at);
        case Check::duplicate_element:
        case Check::double_element:
        case Check::stacked_joint:
        case Check::stacked_double:
        case Check::folded_line:
            return fmt::format("element {} over element {}{}", p.element, p.other, at);
        case Check::overlapping_solid:
        case Check::overlapped_joint:
            return fmt::format("element {} over element {}, area {:.4g}{}", p.element, p.other, p.amount, at);
        case Check::crossing_lines:
            return fmt::format("elements {} and {}{}", p.element, p.other, at);
        case Check::line_beside_side:
            return fmt::format("element {} along element {}{}", p.element, p.other, at);
        case Check::midside_beside_line:
            return fmt::format("node {} of element {} beside element {}{}", p.node, p.element, p.other, at);
        case Check::crowded_side:
            return fmt::format("element {} at the side from node {} to {}{}", p.element, p.node, p.other, at);
        case Check::open_wedge:
            return fmt::format("between nodes {} and {}, area {:.4g}{}", p.node, p.other, p.amount, at);
        case Check::uneven_joint:
            return fmt::format("element {}, width {:.4g}{}", p.element, p.amount, at);
        case Check::unjoined_line:
        case Check::unjoined_joint:
            return fmt::format("node {} within element {}{}", p.node, p.element, at);
        case Check::free_line:
            return fmt::format("element {} over {} nodes{}", p.element, p.amount, at);
        case Check::free_side_node:
        case Check::fixed_inside:
        case Check::unused_node:
            break;
    }
    return fmt::format("node {}{}", p.node, at);
}

namespace {

// "2 hanging nodes (first: node 7 on ...)".
std::string count_text(const Finding& finding) {
    const std::size_t count = finding.places.size();
    return fmt::format("{} {} ({}{})", count, count == 1 ? finding.singular : finding.plural,
                       count == 1 ? "" : "first: ", place_text(finding, finding.places.front()));
}

}  // namespace

std::string soundness_line(const Soundness& soundness) {
    std::string line;
    for (const Finding& finding : soundness.findings)
        if (finding.unsound && !finding.places.empty())
            line += (line.empty() ? "unsound: " : "; ") + count_text(finding);
    return line.empty() ? "sound" : line;
}

std::string remarks_line(const Soundness& soundness) {
    std::string line;
    for (const Finding& finding : soundness.findings)
        if (!finding.unsound && !finding.places.empty() && finding.check != Check::double_element &&
            finding.check != Check::free_line)
            line += (line.empty() ? "" : "; ") + count_text(finding);
    return line;
}

}  // namespace brelan::tool
