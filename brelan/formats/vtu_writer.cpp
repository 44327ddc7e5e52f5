#include <fmt/core.h>

#include <bit>
#include <cstring>

#include "cli/output_file.h"
#include "formats/vtu.h"
#include "formats/vtu_blocks.h"

namespace brelan::tool {

namespace {

static_assert(std::endian::native == std::endian::little, "arrays are written in the order of the machine");

template <class Value>
std::string bytes_of(const std::vector<Value>& values) {
    std::string bytes(values.size() * sizeof(Value), '\0');
    if (!bytes.empty())
        std::memcpy(bytes.data(), values.data(), bytes.size());
    return bytes;
}

std::string narrowed(const DataArray& array) {
    if (array.whole) {
        std::vector<std::int32_t> values;
        for (const double value : array.values)
            values.push_back(static_cast<std::int32_t>(value));
        return bytes_of(values);
    }
    std::vector<float> values;
    for (const double value : array.values)
        values.push_back(static_cast<float>(value));
    return bytes_of(values);
}

void write_array(OutputFile& out, std::string_view type, std::string_view name, int components,
                 const std::string& bytes) {
    const Compressed data = compress_blocks(bytes);
    out.write(fmt::format("        <DataArray type=\"{}\" Name=\"{}\"{} format=\"binary\">", type, name,
                          components > 1 ? fmt::format(" NumberOfComponents=\"{}\"", components) : ""));
    out.write(to_base64(data.header));
    out.write(to_base64(data.blocks));
    out.write("</DataArray>\n");
}

void write_data(OutputFile& out, std::string_view section, std::string_view active,
                const std::vector<DataArray>& arrays) {
    out.write(fmt::format("      <{} Scalars=\"{}\">\n", section, active));
    for (const DataArray& array : arrays)
        write_array(out, array.whole ? "Int32" : "Float32", array.name, 1, narrowed(array));
    out.write(fmt::format("      </{}>\n", section));
}

// A named material is an array of its name that holds number and dimension, as readers keep the physical
// groups of Gmsh: not every reader takes arrays of text.
void write_field_data(OutputFile& out, const CellMesh& cells) {
    if (!cells.flow_lines && cells.names.empty())
        return;
    constexpr std::string_view ARRAY =
        "      <DataArray type=\"Int32\" Name=\"{}\" NumberOfTuples=\"{}\" format=\"ascii\">{}</DataArray>\n";
    out.write("    <FieldData>\n");
    if (cells.flow_lines)
        out.write(fmt::format(ARRAY, "flow_lines", 1, 1));
    for (const auto& [key, name] : cells.names)
        out.write(fmt::format(ARRAY, for_xml(group_name(key.of, key.material) + ": " + name), 2,
                              fmt::format("{} {}", key.material, key.of == ElementClass::solid ? 2 : 1)));
    out.write("    </FieldData>\n");
}

}  // namespace

std::string for_xml(std::string_view text) {
    std::string out;
    for (const char c : text)
        out += c == '&'   ? "&amp;"
               : c == '<' ? "&lt;"
               : c == '>' ? "&gt;"
               : c == '"' ? "&quot;"
                          : std::string(1, c);
    return out;
}

void write_vtu(const CellMesh& cells, const std::filesystem::path& path) {
    OutputFile out(path);
    out.write(
        "<?xml version=\"1.0\"?>\n"
        "<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" byte_order=\"LittleEndian\" "
        "header_type=\"UInt64\" compressor=\"vtkZLibDataCompressor\">\n"
        "  <UnstructuredGrid>\n");
    write_field_data(out, cells);
    out.write(fmt::format("    <Piece NumberOfPoints=\"{}\" NumberOfCells=\"{}\">\n", cells.point_count(),
                          cells.cell_count()));
    write_data(out, "PointData", cells.point_data.empty() ? "" : cells.point_data.front().name,
               cells.point_data);
    write_data(out, "CellData", MATERIAL, cells.cell_data);
    out.write("      <Points>\n");
    write_array(out, "Float32", "Points", 3, bytes_of(cells.points));
    out.write("      </Points>\n      <Cells>\n");
    write_array(out, "Int32", "connectivity", 1, bytes_of(cells.nodes));
    write_array(out, "Int32", "offsets", 1, bytes_of(cells.offsets));
    write_array(out, "UInt8", "types", 1, bytes_of(cells.shapes));
    out.write("      </Cells>\n    </Piece>\n  </UnstructuredGrid>\n</VTKFile>\n");
    out.commit();
}

}  // namespace brelan::tool
