#include "commands/info_text.h"

#include <fmt/core.h>

#include "cli/console.h"
#include "cli/words.h"
#include "drawing/soundness_text.h"

namespace brelan::tool {

namespace {

constexpr std::size_t CODE_ROWS = 12;  // shown as text; JSON has all

std::string heading(std::string_view text) {
    return "\n" + inked(stdout, Ink::bold, text) + "\n";
}

std::string span_text(const NumberSpan& span) {
    return span.low == 0 ? "" : fmt::format("numbers {} to {}", span.low, span.high);
}

std::string summary(const MeshReport& r) {
    const MeshLists& mesh = r.mesh;
    std::string text = inked(stdout, Ink::bold, printable(mesh.file));
    text += fmt::format(": {} mesh", name_of(mesh.kind));
    if (const std::size_t first = mesh.name.find_first_not_of(' '); first != std::string::npos)
        text += fmt::format(" \"{}\"", printable(mesh.name.substr(first)));
    text += fmt::format("\n  {:<9} {:>8}  {}\n", "nodes", mesh.nodes.size(), span_text(r.counts.nodes));
    text +=
        fmt::format("  {:<9} {:>8}  {}\n", "elements", mesh.elements.size(), span_text(r.counts.elements));
    const std::size_t solids = mesh.count(ElementClass::solid);
    if (solids > 0)
        text += fmt::format("  {:<9} {:>8}  {}, {}\n", "solids", solids,
                            counted(r.counts.quadrilaterals, "quadrilateral", "quadrilaterals"),
                            counted(r.counts.triangles, "triangle", "triangles"));
    for (const ElementClass of : {ElementClass::joint, ElementClass::beam, ElementClass::truss})
        if (const std::size_t count = mesh.count(of); count > 0)
            text += fmt::format("  {:<9} {:>8}{}\n", CLASS_PLURALS[static_cast<std::size_t>(of)], count,
                                of == ElementClass::truss && mesh.flow_lines
                                    ? "  flow lines, which the head of the file hides"
                                    : "");
    if (mesh.deleted > 0)
        text += fmt::format("  {:<9} {:>8}  records marked as deleted\n", "left out", mesh.deleted);
    const Bounds& b = r.counts.bounds;
    text += fmt::format("  {:<9} x {:.7g} to {:.7g}, y {:.7g} to {:.7g}\n", "extent", b.low.x, b.high.x,
                        b.low.y, b.high.y);
    return text;
}

std::string material_table(const MeshLists& mesh, const Counts& counts) {
    std::string text = heading(fmt::format("{:<14} {:>8} {:>14} {:>14}{}", "Materials", "elements", "area",
                                           "length", mesh.names.empty() ? "" : "   name"));
    for (const MaterialRow& row : counts.materials) {
        const bool area = row.of == ElementClass::solid || row.of == ElementClass::joint;
        const bool length = row.of != ElementClass::solid;
        text +=
            fmt::format("  {:<12} {:>8} {:>14} {:>14}   {}", group_name(row.of, row.material), row.count,
                        area ? fmt::format("{:.8g}", row.area) : "",
                        length ? fmt::format("{:.8g}", row.length) : "", mesh.names.of(row.of, row.material));
        text.erase(text.find_last_not_of(' ') + 1);
        text += "\n";
    }
    text += fmt::format("  {:<12} {:>8} {:>14.8g}\n", "all solids", counts.triangles + counts.quadrilaterals,
                        counts.area);
    return text;
}

std::string code_table(const MeshReport& r) {
    const std::vector<std::string_view> names = code_names(r.mesh.kind);
    std::string title;
    for (const std::string_view name : names)
        title += fmt::format("{:>6}", name);
    std::string text = heading(fmt::format("{:<10}{} {:>10}", "Node codes", title, "nodes"));
    std::size_t shown = 0;
    for (const CodeRow& row : r.counts.codes) {
        if (shown++ == CODE_ROWS) {
            text += fmt::format("  and {} more combinations\n", r.counts.codes.size() - CODE_ROWS);
            break;
        }
        text += std::string(10, ' ');
        for (std::size_t k = 0; k < names.size(); ++k)
            text += fmt::format("{:>6}", row.codes[k]);
        text += fmt::format(" {:>10}\n", row.count);
    }
    return text;
}

std::string worst_text(const Measure& measure) {
    std::string text;
    for (const Measure::Worst& w : measure.worst)
        text += fmt::format("{}{} ({:.4g})", text.empty() ? "" : ", ", w.element, w.value);
    return text;
}

std::string quality_table(const Quality& q) {
    if (q.solids == 0)
        return "";
    std::string text = heading(fmt::format("{:<16} {:>10} {:>10} {:>10}   {}", "Quality of solids",
                                           "smallest", "mean", "largest", "worst elements"));
    const auto row = [&](std::string_view name, const Measure& m) {
        text += fmt::format("  {:<15} {:>10.4g} {:>10.4g} {:>10.4g}   {}\n", name, m.smallest, m.mean,
                            m.largest, worst_text(m));
    };
    row("smallest angle", q.smallest_angle);
    row("largest angle", q.largest_angle);
    row("aspect ratio", q.aspect_ratio);
    row("area", q.area);
    row("shortest side", q.side);
    text += "  smallest angle";
    static constexpr std::array<std::string_view, 5> BINS{"below 5", "5 to 15", "15 to 30", "30 to 45",
                                                          "45 and more"};
    for (std::size_t k = 0; k < BINS.size(); ++k)
        text += fmt::format("{} {}: {}", k == 0 ? "" : ",", BINS[k], q.by_angle[k]);
    return text + "\n";
}

std::string soundness_table(const Soundness& s, std::size_t list) {
    std::string text = heading("Soundness");
    text += s.sound() ? "  " + inked(stdout, Ink::green, "sound") + "\n" : "";
    for (const Finding& f : s.findings) {
        if (f.places.empty())
            continue;
        const std::string count = counted(f.places.size(), f.singular, f.plural);
        text += fmt::format("  {}{}\n", f.unsound ? inked(stdout, Ink::red, "unsound: ") : "remark: ", count);
        for (std::size_t k = 0; k < f.places.size(); ++k) {
            if (list > 0 && k == list) {
                text += fmt::format("      and {} more\n", f.places.size() - list);
                break;
            }
            text += fmt::format("      {}\n", place_text(f, f.places[k]));
        }
    }
    text += fmt::format("  {}, {} of length {:.7g} in {}\n", counted(s.parts, "part", "parts"),
                        counted(s.free_edges.count, "free edge", "free edges"), s.free_edges.length,
                        counted(s.free_edges.loops, "loop", "loops"));
    return text;
}

// --- JSON ----------------------------------------------------------------------------------------

Json measure_json(const Measure& m) {
    Json worst = Json::Array();
    for (const Measure::Worst& w : m.worst)
        worst.push_back({{"element", w.element}, {"value", w.value}});
    return {{"smallest", m.smallest}, {"mean", m.mean}, {"largest", m.largest}, {"worst", worst}};
}

Json span_json(std::size_t count, const NumberSpan& span) {
    return {{"count", count}, {"lowest", span.low}, {"highest", span.high}};
}

Json finding_json(const Finding& f, std::size_t list) {
    Json places = Json::Array();
    for (const Place& p : f.places) {
        if (list > 0 && places.size() == list)
            break;
        Json place;
        if (p.element != 0)
            place["element"] = p.element;
        if (p.node != 0)
            place["node"] = p.node;
        if (p.other != 0)
            place[f.pair_of == PairOf::elements ? "other_element" : "other_node"] = p.other;
        place["x"] = p.at.x;
        place["y"] = p.at.y;
        if (f.check == Check::free_line)
            place[f.amount] = static_cast<std::size_t>(p.amount);
        else if (!f.amount.empty())
            place[f.amount] = p.amount;
        places.push_back(place);
    }
    return {{"count", f.places.size()}, {"unsound", f.unsound}, {"places", places}};
}

}  // namespace

MeshReport report_of(const MeshLists& mesh, double tolerance) {
    const std::vector<CornerPlaces> corners = corners_of(mesh);
    return {mesh, count_mesh(mesh, corners), measure_quality(mesh, corners),
            check_soundness(mesh, corners, tolerance)};
}

std::string report_text(const MeshReport& r, std::size_t list) {
    return summary(r) + material_table(r.mesh, r.counts) + code_table(r) + quality_table(r.quality) +
           soundness_table(r.soundness, list);
}

Json report_json(const MeshReport& r, std::size_t list) {
    const MeshLists& mesh = r.mesh;
    const Bounds& b = r.counts.bounds;
    Json json;
    json["file"] = mesh.file;
    json["name"] = mesh.name;
    json["kind"] = name_of(mesh.kind);
    json["sound"] = r.soundness.sound();
    json["nodes"] = span_json(mesh.nodes.size(), r.counts.nodes);
    json["elements"] = span_json(mesh.elements.size(), r.counts.elements);
    for (const ElementClass of :
         {ElementClass::solid, ElementClass::joint, ElementClass::beam, ElementClass::truss})
        json[CLASS_PLURALS[static_cast<std::size_t>(of)]] = mesh.count(of);
    json["triangles"] = r.counts.triangles;
    json["quadrilaterals"] = r.counts.quadrilaterals;
    json["flow_lines"] = mesh.flow_lines;
    json["deleted"] = mesh.deleted;
    json["bounds"] = {{"x", Json::array({b.low.x, b.high.x})}, {"y", Json::array({b.low.y, b.high.y})}};
    json["area"] = r.counts.area;
    json["materials"] = Json::Array();
    for (const MaterialRow& row : r.counts.materials) {
        const std::string& name = mesh.names.of(row.of, row.material);
        json["materials"].push_back({{"class", name_of(row.of)},
                                     {"material", row.material},
                                     {"name", name.empty() ? Json() : Json(name)},
                                     {"count", row.count},
                                     {"area", row.area},
                                     {"length", row.length}});
    }
    json["node_codes"] = Json::Array();
    const std::vector<std::string_view> names = code_names(mesh.kind);
    for (const CodeRow& row : r.counts.codes) {
        Json codes;
        for (std::size_t k = 0; k < names.size(); ++k)
            codes[names[k]] = row.codes[k];
        json["node_codes"].push_back({{"codes", codes}, {"count", row.count}});
    }
    const Quality& q = r.quality;
    json["quality"] = {{"solids", q.solids},
                       {"smallest_angle", measure_json(q.smallest_angle)},
                       {"largest_angle", measure_json(q.largest_angle)},
                       {"aspect_ratio", measure_json(q.aspect_ratio)},
                       {"area", measure_json(q.area)},
                       {"shortest_side", measure_json(q.side)},
                       {"angle_limits", Json::array(ANGLE_LIMITS)},
                       {"by_angle", Json::array(q.by_angle)}};
    Json findings;
    for (const Finding& f : r.soundness.findings)
        findings[f.id] = finding_json(f, list);
    json["soundness"] = {{"tolerance", r.soundness.tolerance},
                         {"parts", r.soundness.parts},
                         {"free_edges",
                          {{"count", r.soundness.free_edges.count},
                           {"loops", r.soundness.free_edges.loops},
                           {"length", r.soundness.free_edges.length}}},
                         {"findings", findings}};
    return json;
}

}  // namespace brelan::tool
