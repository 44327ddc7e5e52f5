#include "mesh/boundary_file.h"

#include <cstdlib>
#include <set>
#include <string_view>
#include <vector>

#include "mesh/edition.h"
#include "mesh/group_tables.h"
#include "mesh/result_names.h"
#include "mesh/tables.h"
#include "text/channel_numbers.h"
#include "text/fixed_lines.h"
#include "text/layout.h"

namespace brelan {

namespace {

constexpr std::int32_t PIPE_NODE = 2, CONVECTION_NODE = 3;  // word 1 of a node

constexpr Layout<"(2X,I4)"> PROPERTY_COUNT;
constexpr Layout<"('  Property No : ',I3)"> PROPERTY_TITLE;
constexpr Layout<"(2X,I5,4(1X,F10.3))"> PROPERTY_LINE;
constexpr Layout<"(2X,I5)"> COUNT;
constexpr Layout<"('  Group No : ',I3)"> GROUP_TITLE;
constexpr Layout<"(4(2X,I5))"> GROUP_LINE;
constexpr Layout<"(10(2X,I5))"> GROUP_NODES;
constexpr Layout<"(2X,I5,2X,I5)"> SECTION_COUNT;
constexpr Layout<"('* FLOW SECTION',I3)"> SECTION_NUMBER;
constexpr Layout<"('* ',A80)"> SECTION_NAME;
constexpr Layout<"(10(1X,I6))"> SECTION_NODES;
constexpr std::string_view SECTION_ROW =
    "* ====================================================================";

// --- pipes and convection lines ------------------------------------------------------------------

// The words of a node as the group engine leaves them on a pipe or convection line.
struct LineNode {
    std::int32_t mark, material, line, position, count;

    LineNode(const Mesh& mesh, NodeNumber n)
        : mark(mesh.codes[n][0]),
          material(mesh.codes[n][1]),
          line(mesh.codes[n][2]),
          position(mesh.codes[n][3]),
          count(mesh.codes[n][4]) {}
};

// A line's nodes by position, 0 where none has been found.
struct LineGroup {
    std::int32_t number = 0, material = 0, taken = 0;
    std::vector<NodeNumber> nodes;

    bool complete() const { return number > 0 && taken >= static_cast<std::int32_t>(nodes.size()); }

    void take(NodeNumber n, const LineNode& node) {
        if (number == 0) {
            number = node.line;
            material = node.material;
            nodes.resize(static_cast<std::size_t>(std::abs(node.count)));
        }
        if (node.position >= 1 && node.position <= static_cast<std::int32_t>(nodes.size()))
            nodes[static_cast<std::size_t>(node.position - 1)] = n;
        ++taken;
    }
};

// The lines of a mark, from 1 to their count; the codes of their nodes are cleared.
std::vector<LineGroup> take_lines(Mesh& mesh, const ResultMesh& result, std::int32_t mark,
                                  std::int32_t lines) {
    std::vector<LineGroup> groups(static_cast<std::size_t>(lines));
    for (NodeNumber n = result.nodes.lowest; n <= result.nodes.highest; ++n) {
        if (mesh.node_in_use[n] != 1)
            continue;
        const LineNode node(mesh, n);
        if (node.mark != mark || node.line < 1 || node.line > lines)
            continue;
        LineGroup& group = groups[static_cast<std::size_t>(node.line - 1)];
        if (group.complete())
            continue;
        group.take(n, node);
        mesh.codes[n][0] = mesh.codes[n][1] = 0;
    }
    return groups;
}

// One property for each material among the pipes' nodes; the user fills in its values.
void write_properties(const Mesh& mesh, const GroupListing& listing, Channel& file,
                      const ResultMesh& result) {
    std::set<std::int32_t> materials;
    for (NodeNumber n = result.nodes.lowest; n <= result.nodes.highest; ++n) {
        const LineNode node(mesh, n);
        if (mesh.node_in_use[n] == 1 && node.mark == PIPE_NODE && node.line >= 1 &&
            node.line <= listing.pipes)
            materials.insert(node.material);
    }
    write_lines(file, {"* Card 9.1.1", "* NTNP "});
    PROPERTY_COUNT.write(file, static_cast<std::int32_t>(materials.size()));
    file.write_line("*");
    std::int32_t number = 0;
    for (const std::int32_t material : materials) {
        constexpr float flow_volume = 0.0F, specific_heat = 0.0F, fluid_density = 0.0F,
                        heat_conductivity = 0.0F;
        write_lines(file, {"* Card 9.1.2.1", "* TITLE       "});
        PROPERTY_TITLE.write(file, ++number);
        write_lines(file, {"* Card 9.1.2.2", "*  MATP       FVOL       SPHL        ROL        HCL"});
        PROPERTY_LINE.write(file, material, flow_volume, specific_heat, fluid_density, heat_conductivity);
    }
}

// The cards of pipes and of convection lines have the same values under other names.
struct LineCards {
    std::string_view count_card, count_heading, title_card, value_card, value_heading, list_card;
};
constexpr LineCards PIPE_CARDS = {
    "* Card 9.2.1",    "* NPIPE", "* Card 9.2.2.1", "* Card 9.2.2.2-1", "*   IDP   MATP  IDFNP  NODEP",
    "* Card 9.2.2.2-2"};
constexpr LineCards CONVECTION_CARDS = {
    "* Card 9.3.1",    "* NCONV", "* Card 9.3.2.1", "* Card 9.3.2.2-1", "*   IDC  IDFNC  IDFNT  NODEC",
    "* Card 9.3.2.2-2"};

void write_line_groups(Channel& file, const LineCards& cards, const std::vector<LineGroup>& groups) {
    write_lines(file, {cards.count_card, cards.count_heading});
    COUNT.write(file, static_cast<std::int32_t>(groups.size()));
    file.write_line("*");
    std::int32_t number = 0;
    for (const LineGroup& group : groups) {
        constexpr std::int32_t function = 0;  // IDFNP, IDFNT: the user's
        write_lines(file, {cards.title_card, "* TITLE       "});
        GROUP_TITLE.write(file, ++number);
        write_lines(file, {cards.value_card, cards.value_heading});
        GROUP_LINE.write(file, number, group.material, function,
                         static_cast<std::int32_t>(group.nodes.size()));
        write_lines(file, {cards.list_card, "* Listing of Nodes --- "});
        GROUP_NODES.write_list(file, std::span<const std::int32_t>(values_of(group.nodes)));
    }
}

// --- flow sections -------------------------------------------------------------------------------

// A run of trusses, end to end, of one group.
struct FlowRun {
    std::vector<NodeNumber> nodes;
    std::uint8_t mark = 0;

    FlowRun(const Mesh& mesh, const ElementWords& truss)
        : nodes{truss.corner_1, truss.corner_2},
          mark(static_cast<std::uint8_t>(mesh.node_mark[truss.corner_2])) {}

    bool goes_on_with(const Mesh& mesh, const ElementWords& truss) const {
        return truss.corner_1 == nodes.back() &&
               static_cast<std::uint8_t>(mesh.node_mark[truss.corner_1]) == mark;
    }
};

void write_section_head(const GroupCards& group_cards, Channel& file, std::int32_t number,
                        const FlowRun& run) {
    file.write_line("* ");
    SECTION_NUMBER.write(file, number);
    file.write_line(SECTION_ROW);
    const bool named = run.mark >= 1 && run.mark <= group_cards.count;
    SECTION_NAME.write(file, named ? group_cards.outputs[run.mark].title.view() : std::string_view{});
    write_lines(file, {SECTION_ROW, "*"});
}

void write_section_nodes(Channel& file, const FlowRun& run) {
    write_lines(file, {"* Card 10.8.1", "* NODES"});
    COUNT.write(file, static_cast<std::int32_t>(run.nodes.size()));
    file.write_line("* LIST OF NODES");
    SECTION_NODES.write_list(file, std::span<const std::int32_t>(values_of(run.nodes)));
}

}  // namespace

void write_pipes(Channels& channels, Mesh& mesh, GroupListing& listing, const ResultMesh& result) {
    if (mesh.kind != LayoutKind::temperature || (listing.pipes == 0 && listing.convection_lines == 0))
        return;
    Channel& file = channels.open(CHANNEL_BOUNDARY, BOUNDARY_FILE, OpenStatus::side_result);
    write_properties(mesh, listing, file, result);
    write_line_groups(file, PIPE_CARDS, take_lines(mesh, result, PIPE_NODE, listing.pipes));
    write_line_groups(file, CONVECTION_CARDS,
                      take_lines(mesh, result, CONVECTION_NODE, listing.convection_lines));
    channels.close(CHANNEL_BOUNDARY);
}

void write_flow_sections(Channels& channels, const Mesh& mesh, const GroupCards& group_cards,
                         const GroupListing& listing, const ResultMesh& result) {
    if (listing.flow_sections <= 0)
        return;
    constexpr std::int32_t flow_code = 0;
    Channel& file = channels.open(CHANNEL_BOUNDARY, BOUNDARY_FILE, OpenStatus::side_result);
    write_lines(file, {"* Card 10.8 ", "* NFSEC   IBFQ"});
    SECTION_COUNT.write(file, listing.flow_sections, flow_code);
    file.write_line("*");
    std::vector<FlowRun> runs;
    for (ElementNumber n = result.elements.lowest; n <= result.elements.highest; ++n) {
        if (mesh.type_in_use[n] != ELEMENT_TRUSS)
            continue;
        const ElementWords& truss = mesh.words[n];
        if (!runs.empty() && runs.back().goes_on_with(mesh, truss))
            runs.back().nodes.push_back(truss.corner_2);
        else
            runs.emplace_back(mesh, truss);
    }
    // Only as many sections as are counted have a head, and of those behind them the last is not listed.
    std::int32_t section = 0;
    for (const FlowRun& run : runs) {
        ++section;
        const bool counted = section <= listing.flow_sections;
        if (counted)
            write_section_head(group_cards, file, section, run);
        if (counted || &run != &runs.back())
            write_section_nodes(file, run);
    }
    channels.close(CHANNEL_BOUNDARY);
}

}  // namespace brelan
