#include <fmt/core.h>

#include <cmath>

#include "cli/exit_status.h"
#include "formats/vtu.h"
#include "formats/vtu_arrays.h"

namespace brelan::tool {

namespace {

constexpr std::size_t MOST_CELLS = 10'000'000;
constexpr int POLYGON = 7, PIXEL = 8;

class VtuReader {
public:
    VtuReader(std::string_view content, const std::string& file) {
        cells_.file = file;
        parse(content);
    }

    CellMesh read() {
        const pugi::xml_node root = document_.child("VTKFile");
        const std::string_view type = root.attribute("type").value();
        if (type != "UnstructuredGrid")
            throw Failure(fmt::format("expected a VTKFile of type UnstructuredGrid, found \"{}\"", type));
        const std::string_view compressor = root.attribute("compressor").value();
        storage_.compressed = !compressor.empty();
        if (storage_.compressed && compressor != "vtkZLibDataCompressor")
            throw Failure(fmt::format("expected data compressed by zlib or not, found \"{}\"", compressor));
        storage_.swapped = std::string_view(root.attribute("byte_order").value()) == "BigEndian";
        storage_.header_size = std::string_view(root.attribute("header_type").value()) == "UInt64" ? 8 : 4;
        const pugi::xml_node grid = root.child("UnstructuredGrid");
        const pugi::xml_node piece = grid.child("Piece");
        if (!piece || piece.next_sibling("Piece"))
            throw Failure("expected one Piece in the UnstructuredGrid");
        read_piece(piece);
        for (const pugi::xml_node array : grid.child("FieldData").children("DataArray")) {
            const std::string_view name = array.attribute("Name").value();
            if (name == "flow_lines")
                cells_.flow_lines = read_array(array, storage_, 1).front() != 0.0;
            else
                cells_.names.take_comment("* " + std::string(name));
        }
        return std::move(cells_);
    }

private:
    // Raw appended data is no XML: what stands before it is parsed with the open elements closed.
    void parse(std::string_view content) {
        std::string text(content);
        if (const std::size_t appended = content.find("<AppendedData"); appended != std::string_view::npos) {
            const std::size_t data = content.find('_', content.find('>', appended));
            if (data == std::string_view::npos)
                throw Failure("expected \"_\" at the start of the appended data");
            const std::string_view tag = content.substr(appended, content.find('>', appended) - appended);
            storage_.raw = tag.find("\"raw\"") != std::string_view::npos;
            storage_.appended = content.substr(data + 1);
            text = std::string(content.substr(0, appended)) + "</VTKFile>";
        }
        const pugi::xml_parse_result result = document_.load_string(text.c_str());
        if (!result || !document_.child("VTKFile"))
            throw Failure(fmt::format("expected a VTU file, found no such XML: {}", result.description()));
    }

    void read_piece(const pugi::xml_node& piece) {
        const std::size_t points = piece.attribute("NumberOfPoints").as_ullong();
        const std::size_t cells = piece.attribute("NumberOfCells").as_ullong();
        if (points > MOST_CELLS || cells > MOST_CELLS)
            throw Failure(fmt::format("expected at most {} points and cells", MOST_CELLS));
        const pugi::xml_node coordinates = piece.child("Points").child("DataArray");
        if (!coordinates)
            throw Failure("expected the array of the points");
        for (const double v : read_array(coordinates, storage_, 3 * points))
            cells_.points.push_back(static_cast<float>(v));
        read_cells(piece.child("Cells"), points, cells);
        cells_.point_data = read_data(piece.child("PointData"), points);
        cells_.cell_data = read_data(piece.child("CellData"), cells);
    }

    pugi::xml_node cell_array(const pugi::xml_node& section, const char* name) const {
        const pugi::xml_node array = section.find_child_by_attribute("DataArray", "Name", name);
        if (!array)
            throw Failure(fmt::format("expected the array \"{}\" of the cells", name));
        return array;
    }

    void read_cells(const pugi::xml_node& section, std::size_t points, std::size_t count) {
        constexpr std::size_t MOST_NODES = 30;  // of one cell
        constexpr double LAST_TYPE = 255.0;
        const std::vector<double> types = read_array(cell_array(section, "types"), storage_, count);
        const std::vector<double> offsets = read_array(cell_array(section, "offsets"), storage_, count);
        const std::vector<double> nodes =
            read_array_of_any_size(cell_array(section, "connectivity"), storage_, MOST_NODES * count);
        double begin = 0.0;
        for (std::size_t c = 0; c < count; ++c) {
            const double end = offsets[c];
            if (!(end >= begin) || end > static_cast<double>(nodes.size()) || end != std::floor(end))
                throw Failure(fmt::format("cell {}: expected an offset within the connectivity", c));
            if (!(types[c] >= 0.0 && types[c] <= LAST_TYPE))
                throw Failure(
                    fmt::format("cell {}: expected the number of a VTK type, found {}", c, types[c]));
            add_cell(c, static_cast<int>(types[c]), nodes.data() + static_cast<std::size_t>(begin),
                     static_cast<std::size_t>(end - begin), points);
            begin = end;
        }
    }

    void add_cell(std::size_t cell, int type, const double* nodes, std::size_t count, std::size_t points) {
        if (type == POLYGON && (count == 3 || count == 4))
            type = static_cast<int>(count == 3 ? Shape2D::triangle : Shape2D::quad);
        const auto shape = static_cast<Shape2D>(type == PIXEL ? static_cast<int>(Shape2D::quad) : type);
        if (nodes_of(shape) == 0)
            throw Failure(fmt::format(
                "cell {}: expected vertices, lines, triangles and quadrilaterals, found VTK type {}", cell,
                type));
        if (static_cast<std::size_t>(nodes_of(shape)) != count)
            throw Failure(fmt::format("cell {}: expected {} nodes, found {}", cell, nodes_of(shape), count));
        std::array<std::int32_t, 9> places{};
        for (std::size_t k = 0; k < count; ++k) {
            if (!(nodes[k] >= 0.0) || nodes[k] >= static_cast<double>(points))
                throw Failure(
                    fmt::format("cell {}: expected places of the {} points, counted from 0", cell, points));
            places[k] = static_cast<std::int32_t>(nodes[k]);
        }
        if (type == PIXEL)
            std::swap(places[2], places[3]);
        cells_.add_cell(shape, places.data());
    }

    // Arrays of one number for each point or cell; others are passed over.
    std::vector<DataArray> read_data(const pugi::xml_node& section, std::size_t count) const {
        std::vector<DataArray> data;
        for (const pugi::xml_node array : section.children("DataArray")) {
            if (array.attribute("NumberOfComponents").as_int(1) > 1 ||
                std::string_view(array.attribute("type").value()) == "String")
                continue;
            DataArray values{array.attribute("Name").value(), true, read_array(array, storage_, count)};
            data.push_back(std::move(values));
        }
        return data;
    }

    pugi::xml_document document_;
    VtuStorage storage_;
    CellMesh cells_;
};

}  // namespace

CellMesh read_vtu(std::string_view content, const std::string& file) {
    try {
        return VtuReader(content, file).read();
    } catch (const Failure& failure) {
        throw Failure(fmt::format("{}: {}", file, failure.what()));
    }
}

}  // namespace brelan::tool
