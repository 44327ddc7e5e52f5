#include "formats/vtu_series.h"

#include <fmt/core.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "analysis/stage_areas.h"
#include "cli/output_file.h"
#include "formats/vtu.h"

namespace brelan::tool {

void add_stage_arrays(const MeshLists& mesh, const Stages& stages, CellMesh& cells) {
    DataArray comes{"comes", true, std::vector<double>(mesh.elements.size())};
    DataArray goes{"goes", true, std::vector<double>(mesh.elements.size())};
    for (const StageSet& set : stages.sets())
        for (const Number number : set.elements)
            if (const std::int32_t place = mesh.element_place(number); place != MeshLists::NONE) {
                comes.values[static_cast<std::size_t>(place)] = set.comes();
                goes.values[static_cast<std::size_t>(place)] = set.goes();
            }
    cells.cell_data.push_back(std::move(comes));
    cells.cell_data.push_back(std::move(goes));
}

void write_vtu_series(const MeshLists& mesh, const Stages& stages, const std::filesystem::path& path,
                      const std::function<CellMesh(const MeshLists&)>& cells_of_part) {
    std::vector<std::int32_t> steps{0};
    steps.insert(steps.end(), stages.steps().begin(), stages.steps().end());
    std::string series =
        "<?xml version=\"1.0\"?>\n"
        "<VTKFile type=\"Collection\" version=\"1.0\" byte_order=\"LittleEndian\">\n"
        "  <Collection>\n";
    for (const std::int32_t step : steps) {
        const std::string name = fmt::format("{}-{}.vtu", path.stem().string(), step);
        write_vtu(cells_of_part(mesh_in_step(mesh, stages, step)), path.parent_path() / name);
        series += fmt::format("    <DataSet timestep=\"{}\" part=\"0\" file=\"{}\"/>\n", step, for_xml(name));
    }
    std::filesystem::path collection = path;
    write_file(collection.replace_extension(".pvd"), series + "  </Collection>\n</VTKFile>\n");
}

}  // namespace brelan::tool
