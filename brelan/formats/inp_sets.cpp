#include "formats/inp_sets.h"

#include <algorithm>
#include <map>

#include "cli/words.h"

namespace brelan::tool {

namespace {

constexpr std::size_t LONGEST_NAME = 72;  // the dialect takes 80; a number may come behind it

bool is_letter(char c) {
    return c >= 'A' && c <= 'Z';
}

// Nodes of the lines that have a type, ascending.
std::vector<Number> nodes_of_types(const InpElements& elements,
                                   std::initializer_list<std::string_view> types) {
    std::set<Number> nodes;
    for (const InpSection& section : elements.sections)
        for (const InpBlock& block : section.blocks)
            if (std::ranges::find(types, block.type) != types.end())
                for (const InpElement& e : block.elements)
                    nodes.insert(e.nodes.begin(), e.nodes.end());
    return {nodes.begin(), nodes.end()};
}

std::string with_value(std::string_view code, std::int32_t value) {
    return value < 0 ? fmt::format("{}_MINUS_{}", code, -static_cast<std::int64_t>(value))
                     : fmt::format("{}_{}", code, value);
}

}  // namespace

std::string SetNames::take(std::string_view wanted) {
    std::string name;
    for (const char c : wanted) {
        const char letter = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
        if (is_letter(letter) || (letter >= '0' && letter <= '9'))
            name += letter;
        else if (!name.empty() && name.back() != '_')
            name += '_';
    }
    name.resize(std::min(name.size(), LONGEST_NAME));
    while (name.ends_with('_'))
        name.pop_back();
    if (name.empty() || !is_letter(name.front()))
        name.insert(0, "SET_");
    std::string free = name;
    for (int n = 2; !taken_.insert(free).second; ++n)
        free = fmt::format("{}_{}", name, n);
    return free;
}

std::string real_text(double value) {
    std::string text = fmt::format("{:.12g}", value);
    if (text.find('.') == std::string::npos)
        text.insert(std::min(text.find('e'), text.size()), ".");
    return text;
}

void add_numbers(FormattedText& text, const std::vector<Number>& numbers) {
    constexpr std::size_t IN_A_LINE = 16;
    for (std::size_t i = 0; i < numbers.size(); ++i)
        text.add("{}{}", numbers[i], i + 1 == numbers.size() || i % IN_A_LINE == IN_A_LINE - 1 ? "\n" : ", ");
}

void add_names(FormattedText& text, const std::vector<std::string>& names) {
    for (const std::string& name : names)
        text.add("{}\n", name);
}

void add_block(FormattedText& text, const InpBlock& block, std::string_view set) {
    text.add("*ELEMENT, TYPE={}, ELSET={}\n", block.type, set);
    for (const InpElement& e : block.elements) {
        text.add("{}", e.number);
        for (const Number n : e.nodes)
            text.add(", {}", n);
        text.add("\n");
    }
}

void add_supports(FormattedText& text, const MeshLists& mesh, const InpElements& elements, SetNames& names,
                  const std::function<void(const std::string&)>& remark) {
    const std::vector<std::string_view> codes = code_names(mesh.kind);
    const std::size_t rotation = codes.size() - 1;
    std::string held, unusual;
    for (std::size_t c = 0; c < codes.size(); ++c) {
        std::map<std::int32_t, std::vector<Number>> nodes;
        for (const Node& node : mesh.nodes)
            if (node.codes[c] != 0)
                nodes[node.codes[c]].push_back(node.number.value);
        for (const auto& [value, list] : nodes) {
            const std::string name = names.take(with_value(codes[c], value));
            text.add("*NSET, NSET={}\n", name);
            add_numbers(text, list);
            if (c < 2)
                held += fmt::format("{}, {}, {}\n", name, c + 1, c + 1);
            if (c < 2 && value != 1)
                unusual += fmt::format("{}{} {}", unusual.empty() ? "" : ", ", codes[c], value);
        }
    }
    const auto add_held = [&](std::string_view name, const std::vector<Number>& nodes, int first, int last) {
        if (nodes.empty())
            return;
        const std::string set = names.take(name);
        text.add("*NSET, NSET={}\n", set);
        add_numbers(text, nodes);
        held += fmt::format("{}, {}, {}\n", set, first, last);
    };
    std::vector<Number> rotations = nodes_of_types(elements, {"B21", "B32"});
    std::erase_if(rotations, [&](Number n) {
        return mesh.nodes[static_cast<std::size_t>(mesh.node_place(n))].codes[rotation] == 0;
    });
    add_held("ROTATION_HELD", rotations, 6, 6);
    // Trusses and beams of three nodes are elements in space, and would move out of the plane.
    add_held("TRUSS_NODES", nodes_of_types(elements, {"T2D2", "T3D3"}), 3, 3);
    add_held("BEAM_NODES", nodes_of_types(elements, {"B32"}), 3, 5);
    if (!held.empty())
        text.add("*BOUNDARY\n{}", held);
    if (!unusual.empty())
        remark(fmt::format("codes other than 0 and 1 hold their nodes too: {}", unusual));
}

}  // namespace brelan::tool
