#include "commands/run_summary.h"

#include <fmt/core.h>

#include <algorithm>
#include <vector>

#include "analysis/counts.h"
#include "analysis/quality.h"
#include "analysis/soundness.h"
#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/words.h"
#include "drawing/soundness_text.h"
#include "formats/mesh_file.h"
#include "text/run_end.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t LINE_WIDTH = 100;

// "  name     text", the text broken at its commas.
std::string entry(std::string_view name, const std::vector<std::string>& items) {
    std::string lines = fmt::format("  {:<11}", name);
    std::size_t column = lines.size();
    for (std::size_t i = 0; i < items.size(); ++i) {
        const bool last = i + 1 == items.size();
        if (i > 0 && column + items[i].size() + 2 > LINE_WIDTH) {
            lines += "\n" + std::string(13, ' ');
            column = 13;
        } else if (i > 0) {
            lines += ' ';
            ++column;
        }
        lines += items[i] + (last ? "" : ",");
        column += items[i].size() + 1;
    }
    return lines + "\n";
}

std::vector<std::string> element_counts(const MeshLists& mesh, const Counts& counts) {
    std::vector<std::string> items{counted(mesh.nodes.size(), "node", "nodes")};
    if (counts.quadrilaterals > 0)
        items.push_back(counted(counts.quadrilaterals, "quadrilateral", "quadrilaterals"));
    if (counts.triangles > 0)
        items.push_back(counted(counts.triangles, "triangle", "triangles"));
    for (const ElementClass of : {ElementClass::joint, ElementClass::beam, ElementClass::truss})
        if (const std::size_t count = mesh.count(of); count > 0)
            items.push_back(counted(count, name_of(of), CLASS_PLURALS[static_cast<std::size_t>(of)]));
    return items;
}

std::vector<std::string> materials(const MeshLists& mesh, const Counts& counts) {
    std::vector<std::string> items;
    for (const MaterialRow& row : counts.materials) {
        const std::string number = row.of == ElementClass::solid
                                       ? fmt::format("{}", row.material)
                                       : fmt::format("{} {}", name_of(row.of), row.material);
        const std::string& name = mesh.names.of(row.of, row.material);
        items.push_back(fmt::format("{}{}{}: {}", number, name.empty() ? "" : " ", name, row.count));
    }
    return items;
}

std::string quoted(const fs::path& file) {
    std::string name = file.string();
    const bool plain = std::all_of(name.begin(), name.end(), [](unsigned char c) {
        return std::isalnum(c) != 0 || c == '.' || c == '/' || c == '-' || c == '_' || c > 127;
    });
    if (plain && !name.empty())
        return name;
    std::string text = "'";
    for (const char c : name)
        text += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return text + "'";
}

// Which mesh stands there and why; empty where that goes without saying.
std::string cut_text(const RunReport& run) {
    if (run.cut_reason.empty())
        return run.cut == CutMethod::sound ? "sound" : "";
    return fmt::format("{}; {}", run.cut == CutMethod::sound ? "sound" : "by the rules", run.cut_reason);
}

// The sound cut keeps every element sound, not every one well shaped: where it did worst.
std::string angle_entry(const MeshLists& mesh, const std::vector<CornerPlaces>& corners) {
    const Quality quality = measure_quality(mesh, corners, 1);
    if (quality.smallest_angle.worst.empty())
        return {};
    const Measure::Worst& worst = quality.smallest_angle.worst.front();
    const Position at = middle(mesh, corners[static_cast<std::size_t>(mesh.element_place(worst.element))]);
    return entry("angles", {fmt::format("{:.1f} degrees at the smallest (element {} at ({:.7g}, {:.7g}))",
                                        worst.value, worst.element, at.x, at.y)});
}

// Files of the project by their names alone.
std::vector<std::string> names_of(const std::vector<fs::path>& files, const fs::path& project) {
    std::vector<std::string> names;
    names.reserve(files.size());
    for (const fs::path& file : files)
        names.push_back(printable((file.parent_path() == project ? file.filename() : file).string()));
    return names;
}

}  // namespace

bool has_cut(const NotedDeck& deck) {
    constexpr std::int32_t dam = 3;
    return deck.mode == dam || !deck.groups.empty();
}

std::string mesh_summary(const MeshOfRun& made) {
    const MeshLists& mesh = made.mesh;
    const std::vector<CornerPlaces> corners = corners_of(mesh);
    const Counts counts = count_mesh(mesh, corners);
    const Soundness soundness = check_soundness(mesh, corners);
    std::string text;
    for (const std::string& remark : made.remarks)
        text += entry("remark", {printable(remark)});
    text += entry("mesh", element_counts(mesh, counts));
    text += entry("materials", materials(mesh, counts));
    const bool stages = !soundness.of(Check::double_element).places.empty();
    text += entry("area",
                  {fmt::format("{:.6g}{}", counts.area, stages ? " with each element of the stages" : "")});
    if (made.cut == CutMethod::sound)
        text += angle_entry(mesh, corners);
    const bool sound = soundness.sound();
    text += entry("soundness", {inked(stdout, sound ? Ink::green : Ink::yellow, soundness_line(soundness))});
    if (!sound && !made.file.empty())
        text += entry("", {fmt::format("to see where: brelan info {0}; brelan plot {0} -o mesh.html",
                                       quoted(made.file.lexically_normal()))});
    if (!sound && !made.deck.empty())
        text += entry("", {fmt::format("the sound cut may make a sound one: brelan run --cut sound {}",
                                       quoted(made.deck))});
    if (const std::string remarks = remarks_line(soundness); !remarks.empty())
        text += entry("remarks", {remarks});
    return text;
}

MeshLists mesh_of(const RunReport& run) {
    MeshLists mesh = read_mesh_file(run.result.lexically_normal(), run.edition.kind);
    mesh.names.take(run.names);
    return mesh;
}

std::string run_summary(const RunReport& run) {
    std::string text =
        fmt::format("{}: finished in {:.1f} s, edition {} ({})\n", printable(run.deck.string()), run.seconds,
                    run.edition.number, name_of(run.edition.kind));
    const bool there = !run.result.empty();
    if (there)
        text += entry("result", {printable(run.result.lexically_normal().string())});
    if (!run.also.empty())
        text += entry(there ? "also" : "written", names_of(run.also, run.project));
    if (!run.deleted.empty())
        text += entry("deleted", names_of(run.deleted, run.project));
    if (const std::string cut = cut_text(run); !cut.empty())
        text += entry("cut", {printable(cut)});
    for (const std::string& remark : run.remarks)
        text += entry("remark", {printable(remark)});
    if (!there)
        return text;
    try {
        const MeshLists mesh = mesh_of(run);
        text += mesh_summary({mesh, run.result, run.cuts ? run.deck : fs::path{}, {}, run.cut});
    } catch (const Failure& failure) {
        text += entry("mesh", {fmt::format("cannot be shown: {}", failure.what())});
    } catch (const RunEnd& end) {
        text += entry("mesh", {fmt::format("cannot be shown: {}", end.text)});
    }
    return text;
}

}  // namespace brelan::tool
