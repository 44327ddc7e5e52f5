#include "formats/group_codes.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "cli/exit_status.h"
#include "cli/words.h"

namespace brelan::tool {

namespace {

// --- reading -------------------------------------------------------------------------------------

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view BLANKS = " \t";
    text.remove_prefix(std::min(text.find_first_not_of(BLANKS), text.size()));
    return text.substr(0, text.find_last_not_of(BLANKS) + 1);
}

// The pieces between separators, trimmed; empty ones go.
std::vector<std::string> pieces(std::string_view text, std::string_view separators) {
    std::vector<std::string> list;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of(separators), text.size());
        if (const std::string_view piece = trimmed(text.substr(0, end)); !piece.empty())
            list.emplace_back(piece);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return list;
}

std::optional<double> number_in(std::string_view text) {
    double value = 0.0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    return !text.empty() && error == std::errc{} && stop == end && std::isfinite(value) ? std::optional(value)
                                                                                        : std::nullopt;
}

// --- setting -------------------------------------------------------------------------------------

// What base meshes have on a fixed side.
std::int32_t fixed_code(LayoutKind kind) {
    constexpr std::int32_t FIXED_TEMPERATURE = -100;
    return kind == LayoutKind::temperature ? FIXED_TEMPERATURE : 1;
}

// "fix_x" and "Fixed X" are "fix x" as well.
std::string plain(std::string_view name) {
    std::string words;
    for (const std::string& word : pieces(name, " _-"))
        words += (words.empty() ? "" : " ") + lower(word);
    return words;
}

// A setting as a member of the node that it changes.
struct NodeChange {
    std::size_t code = 0;
    float Node::*real = nullptr;  // in place of the code
    double value = 0.0;

    void apply(Node& node) const {
        if (real != nullptr)
            node.*real = static_cast<float>(value);
        else
            node.codes[code] = static_cast<std::int32_t>(value);
    }
};

NodeChange change_of(const CodeSetting& setting, LayoutKind kind) {
    const std::vector<std::string_view> codes = code_names(kind);
    const std::string_view value = value_name(kind);
    const auto named = std::find(codes.begin(), codes.end(), setting.name);
    NodeChange change;
    if (named != codes.end()) {
        change.code = static_cast<std::size_t>(named - codes.begin());
        change.value = setting.value.value_or(fixed_code(kind));
        if (change.value != std::trunc(change.value) ||
            std::abs(change.value) > std::numeric_limits<std::int32_t>::max())
            throw Failure(fmt::format("{}: expected a whole number, found {}", setting.name, change.value));
        return change;
    }
    if (value.empty() || (setting.name != value && setting.name != "CF")) {
        std::vector<std::string> known(codes.begin(), codes.end());
        if (!value.empty())
            known.insert(known.end(), {std::string(value), "CF"});
        throw Failure(fmt::format("expected codes of the {} kind ({}), found \"{}\"", name_of(kind),
                                  joined(known, ", "), setting.name));
    }
    if (!setting.value)
        throw Failure(fmt::format("{0}: expected a value, as in {0}=12.5", setting.name));
    change.real = setting.name == "CF" ? &Node::coefficient : &Node::head;
    change.value = *setting.value;
    if (!std::isfinite(static_cast<float>(change.value)))
        throw Failure(fmt::format("{}: expected a 32-bit number, found {}", setting.name, change.value));
    return change;
}

std::vector<NodeChange> changes_of(const std::vector<CodeSetting>& settings, LayoutKind kind) {
    std::vector<NodeChange> changes;
    changes.reserve(settings.size());
    for (const CodeSetting& setting : settings)
        changes.push_back(change_of(setting, kind));
    return changes;
}

class Giver {
public:
    Giver(MeshLists& mesh, const CellMesh& cells, const std::vector<Number>& numbers)
        : mesh_(mesh), cells_(cells), numbers_(numbers), cells_of_(cells.groups.size()) {
        for (std::size_t cell = 0; cell < cells.group_of.size(); ++cell)
            if (cells.group_of[cell] >= 0)
                cells_of_[static_cast<std::size_t>(cells.group_of[cell])].push_back(cell);
        for (const auto& [cell, group] : cells.further_groups)
            cells_of_[static_cast<std::size_t>(group)].push_back(cell);
    }

    void give(std::size_t group, const std::vector<NodeChange>& changes) {
        for (const std::size_t cell : cells_of_[group])
            for (std::int32_t k = cells_.first_node(cell); k < cells_.offsets[cell]; ++k) {
                const auto point = static_cast<std::size_t>(cells_.nodes[static_cast<std::size_t>(k)]);
                const std::int32_t place = mesh_.node_place(numbers_[point]);
                if (place == MeshLists::NONE)
                    continue;
                for (const NodeChange& change : changes)
                    change.apply(mesh_.nodes[static_cast<std::size_t>(place)]);
                given.groups.insert(static_cast<std::int32_t>(group));
            }
    }

    CodesGiven given;

private:
    MeshLists& mesh_;
    const CellMesh& cells_;
    const std::vector<Number>& numbers_;
    std::vector<std::vector<std::size_t>> cells_of_;  // by place of the group
};

bool is_meant(const CellGroup& group, const std::string& name) {
    return group.name == name || (group.dimension < 2 && std::to_string(group.tag) == name);
}

}  // namespace

GroupCodes group_codes_of(const std::string& text) {
    const std::size_t colon = text.rfind(':');
    GroupCodes wanted;
    if (colon != std::string::npos) {
        wanted.groups = pieces(std::string_view(text).substr(0, colon), ",");
        for (const std::string& word : pieces(std::string_view(text).substr(colon + 1), " \t,")) {
            const std::size_t equals = word.find('=');
            CodeSetting setting{word.substr(0, equals), std::nullopt};
            std::transform(setting.name.begin(), setting.name.end(), setting.name.begin(), [](char c) {
                return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
            });
            if (equals != std::string::npos) {
                setting.value = number_in(std::string_view(word).substr(equals + 1));
                if (!setting.value)
                    throw Failure(fmt::format("--code: expected a number behind \"{}=\", found \"{}\"",
                                              setting.name, word.substr(equals + 1)));
            }
            wanted.settings.push_back(setting);
        }
    }
    if (wanted.groups.empty() || wanted.settings.empty())
        throw Failure(
            fmt::format("--code: expected names of physical groups, a colon and codes, as in 'left,right: "
                        "IDX', found \"{}\"",
                        text));
    return wanted;
}

std::vector<CodeSetting> codes_in_name(std::string_view name, LayoutKind kind) {
    const std::string words = plain(name);
    if (kind == LayoutKind::displacement || kind == LayoutKind::coupled) {
        const bool coupled = kind == LayoutKind::coupled;
        const CodeSetting x{coupled ? "ISX" : "IDX", std::nullopt}, y{coupled ? "ISY" : "IDY", std::nullopt};
        if (words == "fix x" || words == "fixed x")
            return {x};
        if (words == "fix y" || words == "fixed y")
            return {y};
        if (words == "fix" || words == "fixed" || words == "fix x y" || words == "fix xy")
            return {x, y};
        return {};
    }
    const std::string_view word = kind == LayoutKind::head ? "head" : "temperature";
    const std::string_view rest = trimmed(name);
    if (rest.size() <= word.size() || lower(rest.substr(0, word.size())) != word ||
        std::string_view(" \t_=").find(rest[word.size()]) == std::string_view::npos)
        return {};
    const std::optional<double> value = number_in(trimmed(rest.substr(word.size() + 1)));
    if (!value)
        return {};
    return {{"ID", std::nullopt}, {std::string(value_name(kind)), *value}};
}

CodesGiven give_codes(MeshLists& mesh, const CellMesh& cells, const std::vector<GroupCodes>& wanted,
                      const std::vector<Number>& numbers) {
    Giver giver(mesh, cells, numbers);
    for (std::size_t g = 0; g < cells.groups.size(); ++g)
        if (const auto said = codes_in_name(cells.groups[g].name, mesh.kind);
            cells.groups[g].dimension < 2 && !said.empty())
            giver.give(g, changes_of(said, mesh.kind));
    for (const GroupCodes& codes : wanted) {
        const std::vector<NodeChange> changes = changes_of(codes.settings, mesh.kind);
        for (const std::string& name : codes.groups) {
            bool found = false;
            for (std::size_t g = 0; g < cells.groups.size(); ++g)
                if (is_meant(cells.groups[g], name)) {
                    giver.give(g, changes);
                    found = true;
                }
            if (!found)
                giver.given.unmatched.push_back(name);
        }
    }
    return std::move(giver.given);
}

std::string title_of(const CellGroup& group) {
    static constexpr std::array<std::string_view, 3> WORDS{"point", "curve", "surface"};
    return fmt::format("physical {} {}", WORDS[static_cast<std::size_t>(std::min(group.dimension, 2))],
                       group.name.empty() ? std::to_string(group.tag) : '"' + group.name + '"');
}

}  // namespace brelan::tool
