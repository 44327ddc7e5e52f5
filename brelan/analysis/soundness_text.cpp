// What soundness is told in.
#include <fmt/core.h>

#include <algorithm>

#include "analysis/soundness.h"

namespace brelan::tool {

namespace {

struct Row {
    Check check;
    std::string_view id, singular, plural;
    bool unsound;
};

constexpr std::array<Row, CHECKS> ROWS{{
    {Check::number_used_twice, "numbers_used_twice", "number used twice", "numbers used twice", true},
    {Check::missing_node, "missing_nodes", "missing node", "missing nodes", true},
    {Check::degenerate_element, "degenerate_elements", "degenerate element", "degenerate elements", true},
    {Check::inverted_element, "inverted_elements", "inverted element", "inverted elements", true},
    {Check::concave_element, "concave_elements", "concave element", "concave elements", true},
    {Check::hanging_node, "hanging_nodes", "hanging node", "hanging nodes", true},
    {Check::coincident_nodes, "coincident_nodes", "pair of unconnected nodes at one place",
     "pairs of unconnected nodes at one place", true},
    {Check::duplicate_element, "duplicate_elements", "duplicate element", "duplicate elements", true},
    {Check::crowded_side, "crowded_sides", "side of more than two elements",
     "sides of more than two elements", true},
    {Check::double_element, "double_elements", "double of another material", "doubles of another material",
     false},
    {Check::unjoined_line, "unjoined_lines", "node within a beam or truss", "nodes within beams or trusses",
     false},
    {Check::unused_node, "unused_nodes", "unused node", "unused nodes", false},
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
        findings.push_back({row.check, row.id, row.singular, row.plural, row.unsound, {}});
    return findings;
}

bool Soundness::sound() const {
    return std::none_of(findings.begin(), findings.end(),
                        [](const Finding& f) { return f.unsound && !f.places.empty(); });
}

std::string place_text(const Finding& finding, const Place& p) {
    const std::string at = fmt::format(" at ({:.7g}, {:.7g})", p.at.x, p.at.y);
    switch (finding.check) {
        case Check::number_used_twice:
            return p.element != 0 ? fmt::format("element {}", p.element) : fmt::format("node {}", p.node);
        case Check::missing_node:
            return fmt::format("node {} of element {}", p.node, p.element);
        case Check::degenerate_element:
        case Check::inverted_element:
            return fmt::format("element {}{}", p.element, at);
        case Check::concave_element:
            return fmt::format("element {} at node {}{}", p.element, p.node, at);
        case Check::hanging_node:
            return fmt::format("node {} on a side of element {}{}", p.node, p.element, at);
        case Check::coincident_nodes:
            return fmt::format("nodes {} and {}{}", p.node, p.other, at);
        case Check::duplicate_element:
        case Check::double_element:
            return fmt::format("element {} over element {}{}", p.element, p.other, at);
        case Check::crowded_side:
            return fmt::format("element {} at the side from node {} to {}{}", p.element, p.node, p.other, at);
        case Check::unjoined_line:
            return fmt::format("node {} within element {}{}", p.node, p.element, at);
        case Check::unused_node:
            break;
    }
    return fmt::format("node {}{}", p.node, at);
}

std::string soundness_line(const Soundness& soundness) {
    std::string line;
    for (const Finding& finding : soundness.findings) {
        if (!finding.unsound || finding.places.empty())
            continue;
        const std::size_t count = finding.places.size();
        line += fmt::format("{}{} {} ({}{})", line.empty() ? "unsound: " : "; ", count,
                            count == 1 ? finding.singular : finding.plural,
                            count == 1 ? "" : "first: ", place_text(finding, finding.places.front()));
    }
    return line.empty() ? "sound" : line;
}

}  // namespace brelan::tool
