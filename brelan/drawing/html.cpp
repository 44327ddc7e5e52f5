#include "drawing/html.h"

#include <fmt/core.h>
#include <zlib.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <utility>

#include "analysis/doubles.h"
#include "analysis/joined_nodes.h"
#include "cli/exit_status.h"
#include "cli/json.h"
#include "cli/output_file.h"
#include "cli/page_text.h"
#include "drawing/deck_overlay.h"
#include "drawing/numbers.h"
#include "drawing/page.h"
#include "drawing/soundness_text.h"
#include "drawing/supports.h"
#include "drawing/tangle.h"
#include "drawing/viewer.h"
#include "formats/vtu_blocks.h"

namespace brelan::tool {

namespace {

// Arrays one behind the other, compressed as one.
class Arrays {
public:
    template <class Value>
    void add(const std::string& name, const std::vector<Value>& values) {
        static_assert(sizeof(Value) == 4);
        const char* type = std::is_same_v<Value, float> ? "f32" : std::is_signed_v<Value> ? "i32" : "u32";
        list_.push_back(
            {{"name", name}, {"type", type}, {"offset", bytes_.size()}, {"count", values.size()}});
        const std::size_t at = bytes_.size();
        bytes_.resize(at + values.size() * sizeof(Value));
        if (!values.empty())
            std::memcpy(bytes_.data() + at, values.data(), values.size() * sizeof(Value));
    }

    Json json() const {
        std::string packed(compressBound(bytes_.size()), '\0');
        uLongf size = packed.size();
        constexpr int LEVEL = 5;
        if (compress2(reinterpret_cast<Bytef*>(packed.data()), &size,
                      reinterpret_cast<const Bytef*>(bytes_.data()), bytes_.size(), LEVEL) != Z_OK)
            throw Failure("data cannot be compressed");
        packed.resize(size);
        return {{"list", list_}, {"base64", to_base64(packed)}};
    }

private:
    std::string bytes_;
    Json list_ = Json::Array();
};

const char* symbol_of(std::string_view code) {
    static constexpr std::array<std::pair<std::string_view, const char*>, 8> SYMBOLS{{{"ISX", "x"},
                                                                                      {"IDX", "x"},
                                                                                      {"ISY", "y"},
                                                                                      {"IDY", "y"},
                                                                                      {"IFX", "ring"},
                                                                                      {"IFY", "ring"},
                                                                                      {"ID", "disc"},
                                                                                      {"IDF", "square"}}};
    for (const auto& [name, symbol] : SYMBOLS)
        if (name == code)
            return symbol;
    return "";
}

class PageData {
public:
    PageData(const MeshLists& mesh, const PictureOptions& options)
        : mesh_(mesh), options_(options), corners_(corners_of(mesh)), bounds_(mesh.bounds()) {
        origin_ = {(bounds_.low.x + bounds_.high.x) / 2.0, (bounds_.low.y + bounds_.high.y) / 2.0};
    }

    Json json() {
        data_["title"] = title();
        data_["summary"] = fmt::format("{} mesh, {} nodes, {} elements", name_of(mesh_.kind),
                                       mesh_.nodes.size(), mesh_.elements.size());
        data_["origin"] = Json::array({origin_.x, origin_.y});
        data_["bounds"] = window_json(bounds_);
        data_["window"] = options_.window ? window_json(*options_.window) : Json();
        data_["colors"] = {{"side", hex(MESH_LINE)},          {"region", hex(REGION_LINE)},
                           {"number", hex(ELEMENT_NUMBER)},   {"code", hex(CODE_COLOR)},
                           {"code2", hex(SECOND_CODE_COLOR)}, {"shape", hex(SHAPE_COLOR)},
                           {"fault", hex(FAULT_COLOR)}};
        add_groups();
        add_nodes();
        add_elements();
        add_lines();
        add_shapes();
        add_faults();
        data_["arrays"] = arrays_.json();
        return std::move(data_);
    }

    std::string title() const { return picture_text(title_of(mesh_, options_)); }

private:
    static std::size_t at(std::int32_t place) { return static_cast<std::size_t>(place); }

    Json window_json(const Bounds& b) const {
        return {{"x", Json::array({b.low.x - origin_.x, b.high.x - origin_.x})},
                {"y", Json::array({b.low.y - origin_.y, b.high.y - origin_.y})}};
    }

    void add_groups() {
        std::map<std::pair<ElementClass, std::int32_t>, std::size_t> counts;
        for (const Element& e : mesh_.elements)
            ++counts[{e.of, e.words.material.value}];
        data_["groups"] = Json::Array();
        for (const auto& [key, count] : counts) {
            const auto& [of, material] = key;
            const std::string& name = mesh_.names.of(of, material);
            const std::string number = std::to_string(material);
            groups_[key] = static_cast<std::int32_t>(data_["groups"].size());
            data_["groups"].push_back(
                {{"name", mesh_.group_title(of, material)},
                 {"class", name_of(of)},
                 {"material", name.empty() ? number : fmt::format("{}: {}", material, name)},
                 {"color", hex(material_color(of, material))},
                 {"count", count}});
        }
    }

    void add_nodes() {
        std::vector<std::int32_t> numbers;
        std::vector<float> x, y, h, cf;
        for (const Node& node : mesh_.nodes) {
            numbers.push_back(node.number.value);
            x.push_back(node.x);
            y.push_back(node.y);
            h.push_back(node.head);
            cf.push_back(node.coefficient);
        }
        arrays_.add("nodeNumber", numbers);
        arrays_.add("x", x);
        arrays_.add("y", y);
        arrays_.add("numberPlace", node_number_places(mesh_, corners_));
        std::vector<float> room;
        for (const double length : support_room(mesh_, corners_))
            room.push_back(static_cast<float>(length));
        arrays_.add("supportRoom", room);
        data_["codes"] = Json::Array();
        const std::vector<std::string_view> names = code_names(mesh_.kind);
        for (std::size_t k = 0; k < names.size(); ++k) {
            std::vector<std::int32_t> codes;
            for (const Node& node : mesh_.nodes)
                codes.push_back(node.codes[k]);
            arrays_.add("code" + std::to_string(k), codes);
            data_["codes"].push_back({{"name", names[k]}, {"symbol", symbol_of(names[k])}});
        }
        data_["nodeValues"] = Json::Array();
        if (const std::string value(value_name(mesh_.kind)); !value.empty()) {
            arrays_.add("node" + value, h);
            arrays_.add("nodeCF", cf);
            data_["nodeValues"] = Json::array({value, "CF"});
        }
    }

    void add_elements() {
        std::vector<std::int32_t> numbers, groups, corners, midsides;
        bool has_midsides = false;
        for (std::size_t i = 0; i < corners_.size(); ++i) {
            const Element& e = mesh_.elements[i];
            numbers.push_back(e.number.value);
            groups.push_back(groups_.at({e.of, e.words.material.value}));
            corners.insert(corners.end(), corners_[i].place.begin(), corners_[i].place.end());
            const ElementWords& w = e.words;
            midsides.insert(midsides.end(),
                            {w.midside_5.value, w.midside_6.value, w.midside_7.value, w.midside_8.value});
            has_midsides = has_midsides || w.midside_5.value != 0 || w.midside_6.value != 0 ||
                           w.midside_7.value != 0 || w.midside_8.value != 0;
        }
        arrays_.add("elementNumber", numbers);
        arrays_.add("numberLine", element_number_lines(mesh_, corners_));
        arrays_.add("elementGroup", groups);
        arrays_.add("corners", corners);
        if (has_midsides)
            arrays_.add("midsides", midsides);
        data_["attributes"] = Json::Array();
        for (const AttributeField& a : attribute_fields(mesh_.kind)) {
            std::vector<float> values;
            for (const Element& e : mesh_.elements)
                values.push_back(a.whole != nullptr ? static_cast<float>(e.*a.whole) : e.*a.real);
            arrays_.add("attribute" + std::string(a.name), values);
            data_["attributes"].push_back(a.name);
        }
    }

    void add_polylines(const std::string& name, const Polylines& lines) {
        std::vector<float> points;
        std::vector<std::uint32_t> ends;
        for (const Position& p : lines.points) {
            points.push_back(static_cast<float>(p.x - origin_.x));
            points.push_back(static_cast<float>(p.y - origin_.y));
        }
        for (const std::size_t end : lines.ends)
            ends.push_back(static_cast<std::uint32_t>(end));
        arrays_.add(name + "Points", points);
        arrays_.add(name + "Ends", ends);
    }

    // The outlines of each material: of the elements that stand by themselves, and of doubles over others.
    void add_lines() {
        std::vector<std::int32_t> solids, over(corners_.size(), 0);
        const auto closed = nodes_with_joints_closed(mesh_, corners_);
        for (const auto& [later, earlier] : solid_sets(mesh_, corners_, closed).doubles)
            over[at(later)] = 1;
        arrays_.add("over", over);
        const std::vector<bool> tangled = tangled_elements(mesh_, corners_);
        data_["leftOut"] = std::count(tangled.begin(), tangled.end(), true);
        double side = 0.0;
        for (const auto& [key, group] : groups_) {
            if (key.first != ElementClass::solid)
                continue;
            std::vector<std::int32_t> elements, doubles;
            for (std::size_t i = 0; i < corners_.size(); ++i)
                if (mesh_.elements[i].of == key.first &&
                    mesh_.elements[i].words.material.value == key.second && corners_[i].complete() &&
                    !tangled[i]) {
                    (over[i] != 0 ? doubles : elements).push_back(static_cast<std::int32_t>(i));
                    side += std::sqrt(std::abs(signed_area(mesh_, corners_[i])));
                }
            add_polylines("region" + std::to_string(group), region_outline(mesh_, corners_, elements));
            add_polylines("over" + std::to_string(group), region_outline(mesh_, corners_, doubles));
            solids.insert(solids.end(), elements.begin(), elements.end());
            solids.insert(solids.end(), doubles.begin(), doubles.end());
        }
        const double slack = bounds_.extent() * 1e-7;
        add_polylines("sides", element_sides(mesh_, corners_, solids, slack));
        data_["meanSide"] = solids.empty() ? std::max(bounds_.extent() / 100.0, 1e-12)
                                           : side / static_cast<double>(solids.size());
    }

    void add_shapes() {
        data_["shapes"] = Json::Array();
        const std::vector<int> marks = shape_numbers(options_.shapes);
        for (std::size_t k = 0; k < marks.size(); ++k) {
            const DeckShape& shape = options_.shapes[k];
            Json points = Json::Array();
            for (const DeckPoint& p : shape.points)
                points.push_back(Json::array({p.x - origin_.x, p.y - origin_.y}));
            data_["shapes"].push_back({{"title", marks[k] > 0 ? picture_text(shape.title) : ""},
                                       {"number", marks[k]},
                                       {"closed", shape.closed},
                                       {"dash", Json::array(shape_stroke(shape.role).dash)},
                                       {"points", points}});
        }
    }

    void add_faults() {
        constexpr std::size_t MOST = 5000;
        data_["faults"] = Json::Array();
        data_["faultCount"] = 0;
        if (options_.faults == nullptr)
            return;
        std::size_t count = 0;
        for (const Finding& finding : options_.faults->findings)
            for (const Place& place : finding.places) {
                if (!finding.unsound || finding.check == Check::missing_node ||
                    finding.check == Check::number_used_twice || ++count > MOST)
                    continue;
                data_["faults"].push_back(
                    {{"x", place.at.x - origin_.x},
                     {"y", place.at.y - origin_.y},
                     {"element", place.element},
                     {"text", fmt::format("{}: {}", finding.singular, place_text(finding, place))}});
            }
        data_["faultCount"] = count;
    }

    const MeshLists& mesh_;
    const PictureOptions& options_;
    std::vector<CornerPlaces> corners_;
    Bounds bounds_;
    Position origin_;
    Json data_;
    Arrays arrays_;
    std::map<std::pair<ElementClass, std::int32_t>, std::int32_t> groups_;
};

}  // namespace

void write_html(const MeshLists& mesh, const PictureOptions& options, const std::filesystem::path& path) {
    PageData data(mesh, options);
    const Json json = data.json();
    OutputFile out(path);
    write_page(out, VIEWER_PAGE,
               {{"%TITLE%", for_html(data.title())},
                {"%STYLE%", VIEWER_STYLE},
                {"%DATA%", for_script(json.compact())},
                {"%SCRIPT%", VIEWER_SCRIPT}});
    out.commit();
}

}  // namespace brelan::tool
