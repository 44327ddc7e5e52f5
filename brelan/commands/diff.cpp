#include <fmt/core.h>

#include <algorithm>
#include <functional>

#include "analysis/difference.h"
#include "analysis/geometry.h"
#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "cli/json.h"
#include "commands/commands.h"
#include "commands/field_changes.h"
#include "formats/any_mesh.h"

namespace brelan::tool {

namespace {

Number number_of(const Node& node) {
    return node.number.value;
}
Number number_of(const Element& element) {
    return element.number.value;
}

// "12, 15 to 19": numbers with their runs closed up, at most `list` of them.
template <class Record>
std::string number_list(const std::vector<Record>& records, const std::vector<std::int32_t>& places,
                        std::size_t list) {
    std::vector<Number> numbers;
    numbers.reserve(places.size());
    for (const std::int32_t place : places)
        numbers.push_back(number_of(records[static_cast<std::size_t>(place)]));
    std::sort(numbers.begin(), numbers.end());
    std::string text;
    std::size_t shown = 0;
    for (std::size_t i = 0; i < numbers.size(); ++shown) {
        if (list > 0 && shown == list)
            return text + fmt::format(" and {} more", numbers.size() - i);
        std::size_t end = i + 1;
        while (end < numbers.size() && numbers[end] == numbers[end - 1] + 1)
            ++end;
        text += fmt::format("{}{}", text.empty() ? "" : ", ", numbers[i]);
        if (end - i > 1)
            text += fmt::format(" to {}", numbers[end - 1]);
        i = end;
    }
    return text;
}

std::string_view plural(std::size_t count) {
    return count == 1 ? "" : "s";
}

class Report {
public:
    Report(const MeshLists& a, const MeshLists& b, const Difference& d, const DiffOptions& options)
        : a_(a), b_(b), d_(d), options_(options) {}

    std::string text() const {
        if (d_.none())
            return fmt::format("{} and {} are the same: {} nodes, {} elements\n", a_.file, b_.file,
                               a_.nodes.size(), a_.elements.size());
        std::string text = fmt::format("--- {}\n+++ {}\n", printable(a_.file), printable(b_.file));
        if (d_.other_kind)
            text += fmt::format("kind: {} -> {}\n", name_of(a_.kind), name_of(b_.kind));
        text += only("node", a_.nodes, d_.nodes_only_a, '-') + only("node", b_.nodes, d_.nodes_only_b, '+');
        text += some("node{} moved" + largest_move(), d_.nodes_moved, [&](const PlacePair& p) {
            const Position from = a_.point(p.first), to = b_.point(p.second);
            return fmt::format("node {} ({:.7g}, {:.7g}) -> ({:.7g}, {:.7g})", node_name(p), from.x, from.y,
                               to.x, to.y);
        });
        text += some("node{} with other codes or values", d_.nodes_changed, [&](const PlacePair& p) {
            return fmt::format("node {}{}", node_name(p), fields(node_changes(a_, b_, p)));
        });
        text += only("element", a_.elements, d_.elements_only_a, '-') +
                only("element", b_.elements, d_.elements_only_b, '+');
        text += some("element{} changed", d_.elements_changed, [&](const PlacePair& p) {
            return fmt::format("element {}{}", element_name(p), fields(changes(p)));
        });
        return text;
    }

    Json json() const {
        Json j;
        j["same"] = d_.none();
        j["a"] = a_.file;
        j["b"] = b_.file;
        j["kinds"] = Json::array({name_of(a_.kind), name_of(b_.kind)});
        j["tolerance"] = d_.tolerance;
        j["nodes"] = {{"only_a", only_json(a_.nodes, d_.nodes_only_a)},
                      {"only_b", only_json(b_.nodes, d_.nodes_only_b)},
                      {"moved", some_json(d_.nodes_moved,
                                          [&](const PlacePair& p) {
                                              const Position from = a_.point(p.first),
                                                             to = b_.point(p.second);
                                              return Json{{"node", numbers_of(p).first},
                                                          {"from", Json::array({from.x, from.y})},
                                                          {"to", Json::array({to.x, to.y})}};
                                          })},
                      {"changed", some_json(d_.nodes_changed, [&](const PlacePair& p) {
                           return Json{{"node", numbers_of(p).first},
                                       {"other_node", numbers_of(p).second},
                                       {"fields", fields_json(node_changes(a_, b_, p))}};
                       })}};
        j["elements"] = {
            {"only_a", only_json(a_.elements, d_.elements_only_a)},
            {"only_b", only_json(b_.elements, d_.elements_only_b)},
            {"changed", some_json(d_.elements_changed, [&](const PlacePair& p) {
                 return Json{{"element", a_.elements[static_cast<std::size_t>(p.first)].number.value},
                             {"other_element", b_.elements[static_cast<std::size_t>(p.second)].number.value},
                             {"fields", fields_json(changes(p))}};
             })}};
        return j;
    }

private:
    using Show = std::function<std::string(const PlacePair&)>;
    using ShowJson = std::function<Json(const PlacePair&)>;

    template <class Record>
    std::string only(std::string_view what, const std::vector<Record>& records,
                     const std::vector<std::int32_t>& places, char sign) const {
        if (places.empty())
            return "";
        const std::string line =
            fmt::format("{} {} {}{} only in {}: {}", sign, places.size(), what, plural(places.size()),
                        sign == '-' ? a_.file : b_.file, number_list(records, places, options_.list));
        return inked(stdout, sign == '-' ? Ink::red : Ink::green, line) + "\n";
    }

    std::string some(const std::string& what, const std::vector<PlacePair>& pairs, const Show& show) const {
        if (pairs.empty())
            return "";
        std::string text =
            fmt::format("! {} {}\n", pairs.size(), fmt::format(fmt::runtime(what), plural(pairs.size())));
        for (std::size_t k = 0; k < pairs.size(); ++k) {
            if (options_.list > 0 && k == options_.list)
                return text + fmt::format("    and {} more\n", pairs.size() - k);
            text += "    " + show(pairs[k]) + "\n";
        }
        return text;
    }

    std::string largest_move() const {
        double largest = 0.0;
        for (const PlacePair& p : d_.nodes_moved)
            largest = std::max(largest, distance(a_.point(p.first), b_.point(p.second)));
        return fmt::format(", at most by {:.4g}", largest);
    }

    std::pair<Number, Number> numbers_of(const PlacePair& p) const {
        return {a_.nodes[static_cast<std::size_t>(p.first)].number.value,
                b_.nodes[static_cast<std::size_t>(p.second)].number.value};
    }

    static std::string pair_name(Number a, Number b) {
        return a == b ? std::to_string(a) : fmt::format("{} -> {}", a, b);
    }
    std::string node_name(const PlacePair& p) const {
        return pair_name(numbers_of(p).first, numbers_of(p).second);
    }
    std::string element_name(const PlacePair& p) const {
        return pair_name(a_.elements[static_cast<std::size_t>(p.first)].number.value,
                         b_.elements[static_cast<std::size_t>(p.second)].number.value);
    }

    std::vector<FieldChange> changes(const PlacePair& p) const {
        std::vector<FieldChange> list = element_changes(a_, b_, p, !options_.by_place);
        if (std::binary_search(d_.other_midsides.begin(), d_.other_midsides.end(), p))
            list.push_back(midside_change(a_, b_, p));
        return list;
    }

    static std::string fields(const std::vector<FieldChange>& changes) {
        std::string text;
        for (const FieldChange& c : changes)
            text += fmt::format("{} {} {} -> {}", text.empty() ? ":" : ";", c.name, c.from, c.to);
        return text;
    }

    static Json fields_json(const std::vector<FieldChange>& changes) {
        Json json = Json::Object();
        for (const FieldChange& c : changes)
            json[c.name] = Json::array({c.from, c.to});
        return json;
    }

    template <class Record>
    Json only_json(const std::vector<Record>& records, const std::vector<std::int32_t>& places) const {
        Json numbers = Json::Array();
        for (const std::int32_t place : places)
            if (options_.list == 0 || numbers.size() < options_.list)
                numbers.push_back(number_of(records[static_cast<std::size_t>(place)]));
        return {{"count", places.size()}, {"numbers", numbers}};
    }

    Json some_json(const std::vector<PlacePair>& pairs, const ShowJson& show) const {
        Json list = Json::Array();
        for (const PlacePair& p : pairs)
            if (options_.list == 0 || list.size() < options_.list)
                list.push_back(show(p));
        return {{"count", pairs.size()}, {"list", list}};
    }

    const MeshLists& a_;
    const MeshLists& b_;
    const Difference& d_;
    const DiffOptions& options_;
};

}  // namespace

int diff(const DiffOptions& options, const Context& context) {
    require_one_standard_input({options.a, options.b});
    const auto remark = [&](const std::string& text) { note(context, text); };
    const MeshLists a = read_any_mesh(mesh_source(options.a), options.kind.kind(), remark);
    const MeshLists b = read_any_mesh(mesh_source(options.b), options.kind.kind(), remark);
    const Difference d = options.by_place ? difference_by_place(a, b, options.tolerance)
                                          : difference_by_number(a, b, options.tolerance);
    const Report report(a, b, d, options);
    if (options.json)
        print(report.json().text());
    else if (!context.quiet)
        print(report.text());
    return d.none() ? STATUS_OK : STATUS_FOUND;
}

}  // namespace brelan::tool
