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

}  // namespace

void write_vtu(const CellMesh& cells, const std::filesystem::path& path) {
    OutputFile out(path);
    out.write(
        "<?xml version=\"1.0\"?>\n"
        "<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" byte_order=\"LittleEndian\" "
        "header_type=\"UInt64\" compressor=\"vtkZLibDataCompressor\">\n"
        "  <UnstructuredGrid>\n");
    if (cells.flow_lines)
        out.write(
            "    <FieldData>\n"
            "      <DataArray type=\"Int32\" Name=\"flow_lines\" NumberOfTuples=\"1\" "
            "format=\"ascii\">1</DataArray>\n"
            "    </FieldData>\n");
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
