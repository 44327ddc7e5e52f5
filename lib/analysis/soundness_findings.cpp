// What is looked for, by name.
#include <algorithm>
#include <array>

#include "analysis/soundness.h"

namespace brelan {

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

}  // namespace brelan
