#include "formats/any_target.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <utility>

#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "cli/words.h"
#include "formats/cell_mesh.h"
#include "formats/gmsh.h"
#include "formats/mdpa.h"
#include "formats/mesh_file.h"
#include "formats/vtu.h"
#include "formats/vtu_series.h"

namespace brelan::tool {

namespace {

constexpr std::array<std::pair<std::string_view, Target>, 8> TARGET_WORDS{{{"mes", Target::mesh},
                                                                           {"vtu", Target::vtu},
                                                                           {"msh2", Target::gmsh_2},
                                                                           {"msh4", Target::gmsh_4},
                                                                           {"msh", Target::gmsh_4},
                                                                           {"mdpa", Target::mdpa},
                                                                           {"inp", Target::inp},
                                                                           {"csv", Target::materials}}};
// Of mesh files besides ".Mes".
constexpr std::array<std::string_view, 2> ENDINGS_OF_MESHES{".meg", ".dat"};

void require_place_for_stages(const Carried& carried, const std::filesystem::path& path) {
    if (carried.stage_files && path == STANDARD_STREAM)
        throw Failure(fmt::format("{}: expected the name of a file, as --stages writes others beside it",
                                  STANDARD_OUTPUT));
}

void write_for_geotechnics(const MeshLists& mesh, const std::filesystem::path& path, const Carried& carried,
                           const std::function<void(const std::string&)>& remark) {
    require_place_for_stages(carried, path);
    const MdpaModel model = mdpa_model(mesh, cells_of(mesh), carried.stages, carried.cables);
    if (carried.stage_files)
        write_mdpa_stages(model, path);
    write_mdpa(model, path);
    for (const std::string& text : model.remarks)
        remark(fmt::format("{}: {}", mesh.file, text));
}

CellMesh cells_for(const MeshLists& mesh, const Carried& carried,
                   const std::function<void(const std::string&)>& remark) {
    CellMesh cells = cells_of(mesh);
    if (cells.straightened > 0)
        remark(fmt::format(
            "{}: {} written with straight sides", mesh.file,
            counted(cells.straightened, "element has midside nodes on some of its sides alone and is",
                    "elements have midside nodes on some of their sides alone and are")));
    if (!carried.arrays) {
        cells.point_data.clear();
        cells.cell_data.clear();
        cells.names = {};  // of numbers that are gone
    }
    return cells;
}

// The whole mesh, of which a threshold shows a step; and a file for each step beside it.
void write_for_paraview(const MeshLists& mesh, const std::filesystem::path& path, const Carried& carried,
                        const std::function<void(const std::string&)>& remark) {
    require_place_for_stages(carried, path);
    if (carried.stage_files && carried.stages.steps().empty())
        throw Failure(
            fmt::format("{}: expected elements that come and go in steps, but none does", mesh.file));
    const auto cells_in = [&](const MeshLists& part, const std::function<void(const std::string&)>& told) {
        CellMesh cells = cells_for(part, carried, told);
        if (carried.arrays && !carried.stages.steps().empty())
            add_stage_arrays(part, carried.stages, cells);
        return cells;
    };
    const CellMesh whole = cells_in(mesh, remark);
    if (carried.stage_files)
        write_vtu_series(mesh, carried.stages, path,
                         [&](const MeshLists& part) { return cells_in(part, [](const std::string&) {}); });
    write_vtu(whole, path);
}

}  // namespace

std::optional<Target> target_named(std::string_view word) {
    for (const auto& [name, target] : TARGET_WORDS)
        if (name == word)
            return target;
    return std::nullopt;
}

std::optional<Target> target_of_name(const std::filesystem::path& path) {
    const std::string ending = lower(path.extension().string());
    if (std::find(ENDINGS_OF_MESHES.begin(), ENDINGS_OF_MESHES.end(), ending) != ENDINGS_OF_MESHES.end())
        return Target::mesh;
    return ending.empty() || ending == ".msh2" || ending == ".msh4" ? std::nullopt
                                                                    : target_named(ending.substr(1));
}

void write_any_mesh(const MeshLists& mesh, Target target, const std::filesystem::path& path,
                    const Carried& carried, const std::function<void(const std::string&)>& remark) {
    switch (target) {
        case Target::mesh:
            return write_mesh_file(mesh, path);
        case Target::materials:
            return write_properties(mesh, path);
        case Target::inp:
            return write_inp(mesh, carried.stages, carried.inp, path, remark);
        case Target::mdpa:
            return write_for_geotechnics(mesh, path, carried, remark);
        case Target::vtu:
            return write_for_paraview(mesh, path, carried, remark);
        case Target::gmsh_2:
            return write_gmsh(cells_for(mesh, carried, remark), path, GmshVersion::v2_2);
        case Target::gmsh_4:
            return write_gmsh(cells_for(mesh, carried, remark), path, GmshVersion::v4_1);
    }
}

}  // namespace brelan::tool
