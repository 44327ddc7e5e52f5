#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <map>
#include <numeric>
#include <utility>

#include "cli/formatted_text.h"
#include "formats/gmsh.h"

namespace brelan::tool {

namespace {

constexpr std::array<std::pair<Shape2D, int>, 8> TYPES{{{Shape2D::line, 1},
                                                        {Shape2D::triangle, 2},
                                                        {Shape2D::quad, 3},
                                                        {Shape2D::line3, 8},
                                                        {Shape2D::triangle6, 9},
                                                        {Shape2D::quad9, 10},
                                                        {Shape2D::vertex, 15},
                                                        {Shape2D::quad8, 16}}};

class Writer {
public:
    Writer(const CellMesh& cells, const std::filesystem::path& path) : cells_(cells), out_(path) {}

    void write(GmshVersion version) {
        order_.resize(cells_.cell_count());
        std::iota(order_.begin(), order_.end(), 0);
        text_.add("$MeshFormat\n{} 0 8\n$EndMeshFormat\n", version == GmshVersion::v2_2 ? "2.2" : "4.1");
        write_names();
        if (version == GmshVersion::v2_2) {
            write_nodes_2();
            write_elements_2();
        } else {
            write_entities_4();
            write_nodes_4();
            write_elements_4();
        }
        for (const DataArray& array : cells_.point_data)
            write_point_data(array);
        for (const DataArray& array : cells_.cell_data)
            write_cell_data(array);
        text_.flush();
        out_.commit();
    }

private:
    // The digits of the 32-bit value as a 64-bit one, so that reading gives the same value back.
    static double wide(float value) { return value; }

    // What ends a name cannot stand in it.
    static std::string without_quotes(std::string name) {
        std::replace(name.begin(), name.end(), '"', '\'');
        return name;
    }

    void write_names() {
        text_.add("$PhysicalNames\n{}\n", cells_.groups.size());
        for (const CellGroup& group : cells_.groups)
            text_.add("{} {} \"{}\"\n", group.dimension, group.tag, without_quotes(group.name));
        text_.add("$EndPhysicalNames\n");
    }

    const CellGroup& group_of(std::size_t cell) const {
        return cells_.groups[static_cast<std::size_t>(cells_.group_of[cell])];
    }

    void add_nodes_of(std::size_t cell) {
        for (std::int32_t k = cells_.first_node(cell); k < cells_.offsets[cell]; ++k)
            text_.add(" {}",
                      cells_.point_tags[static_cast<std::size_t>(cells_.nodes[static_cast<std::size_t>(k)])]);
        text_.add("\n");
    }

    // --- version 2.2 -----------------------------------------------------------------------------

    void write_nodes_2() {
        text_.add("$Nodes\n{}\n", cells_.point_count());
        for (std::size_t n = 0; n < cells_.point_count(); ++n)
            text_.add("{} {} {} {}\n", cells_.point_tags[n], wide(cells_.points[3 * n]),
                      wide(cells_.points[3 * n + 1]), wide(cells_.points[3 * n + 2]));
        text_.add("$EndNodes\n");
    }

    void write_elements_2() {
        text_.add("$Elements\n{}\n", cells_.cell_count());
        for (std::size_t c = 0; c < cells_.cell_count(); ++c) {
            text_.add("{} {} 2 {} {}", cells_.cell_tags[c], gmsh_type(cells_.shapes[c]), group_of(c).tag,
                      group_of(c).tag);
            add_nodes_of(c);
        }
        text_.add("$EndElements\n");
    }

    // --- version 4.1: one entity for each group --------------------------------------------------

    void write_entities_4() {
        std::stable_sort(order_.begin(), order_.end(), [&](std::size_t a, std::size_t b) {
            return std::pair(cells_.group_of[a], cells_.shapes[a]) <
                   std::pair(cells_.group_of[b], cells_.shapes[b]);
        });
        const auto count = [&](int dimension) {
            return std::count_if(cells_.groups.begin(), cells_.groups.end(),
                                 [dimension](const CellGroup& g) { return g.dimension == dimension; });
        };
        std::vector<std::array<float, 6>> box(cells_.groups.size());
        std::vector<bool> begun(cells_.groups.size(), false);
        for (std::size_t c = 0; c < cells_.cell_count(); ++c)
            for (std::int32_t k = cells_.first_node(c); k < cells_.offsets[c]; ++k)
                widen(box, begun, static_cast<std::size_t>(cells_.group_of[c]),
                      cells_.points.data() + 3 * cells_.nodes[static_cast<std::size_t>(k)]);
        text_.add("$Entities\n0 {} {} 0\n", count(1), count(2));
        for (const int dimension : {1, 2})
            for (std::size_t g = 0; g < cells_.groups.size(); ++g) {
                if (cells_.groups[g].dimension != dimension)
                    continue;
                text_.add("{}", cells_.groups[g].tag);
                for (const float v : box[g])
                    text_.add(" {}", wide(v));
                text_.add(" 1 {} 0\n", cells_.groups[g].tag);
            }
        text_.add("$EndEntities\n");
    }

    static void widen(std::vector<std::array<float, 6>>& box, std::vector<bool>& begun, std::size_t group,
                      const float* point) {
        for (std::size_t k = 0; k < 3; ++k) {
            box[group][k] = begun[group] ? std::min(box[group][k], point[k]) : point[k];
            box[group][k + 3] = begun[group] ? std::max(box[group][k + 3], point[k]) : point[k];
        }
        begun[group] = true;
    }

    void write_nodes_4() {
        const std::size_t count = cells_.point_count();
        const auto [low, high] = std::minmax_element(cells_.point_tags.begin(), cells_.point_tags.end());
        text_.add("$Nodes\n{} {} {} {}\n", count == 0 ? 0 : 1, count, count == 0 ? 0 : *low,
                  count == 0 ? 0 : *high);
        if (count > 0) {
            const CellGroup whole = cells_.groups.empty() ? CellGroup{2, 1, ""} : cells_.groups.front();
            text_.add("{} {} 0 {}\n", whole.dimension, whole.tag, count);
        }
        for (const std::int64_t tag : cells_.point_tags)
            text_.add("{}\n", tag);
        for (std::size_t n = 0; n < count; ++n)
            text_.add("{} {} {}\n", wide(cells_.points[3 * n]), wide(cells_.points[3 * n + 1]),
                      wide(cells_.points[3 * n + 2]));
        text_.add("$EndNodes\n");
    }

    void write_elements_4() {
        const auto same_block = [&](std::size_t a, std::size_t b) {
            return cells_.group_of[a] == cells_.group_of[b] && cells_.shapes[a] == cells_.shapes[b];
        };
        std::vector<std::size_t> begin;
        for (std::size_t i = 0; i < order_.size(); ++i)
            if (i == 0 || !same_block(order_[i - 1], order_[i]))
                begin.push_back(i);
        const auto [low, high] = std::minmax_element(cells_.cell_tags.begin(), cells_.cell_tags.end());
        text_.add("$Elements\n{} {} {} {}\n", begin.size(), order_.size(), order_.empty() ? 0 : *low,
                  order_.empty() ? 0 : *high);
        begin.push_back(order_.size());
        for (std::size_t b = 0; b + 1 < begin.size(); ++b) {
            const std::size_t first = order_[begin[b]];
            text_.add("{} {} {} {}\n", group_of(first).dimension, group_of(first).tag,
                      gmsh_type(cells_.shapes[first]), begin[b + 1] - begin[b]);
            for (std::size_t i = begin[b]; i < begin[b + 1]; ++i) {
                text_.add("{}", cells_.cell_tags[order_[i]]);
                add_nodes_of(order_[i]);
            }
        }
        text_.add("$EndElements\n");
    }

    // --- data, in the order of the nodes and elements above --------------------------------------

    void begin_data(std::string_view section, const DataArray& array) {
        text_.add("${}\n1\n\"{}\"\n1\n0\n3\n0\n1\n{}\n", section, array.name, array.values.size());
    }

    // Integers are most of the values and quicker to write as such.
    void add_value(std::int64_t tag, const DataArray& array, double value) {
        if (array.whole)
            text_.add("{} {}\n", tag, static_cast<std::int64_t>(value));
        else
            text_.add("{} {}\n", tag, value);
    }

    void write_point_data(const DataArray& array) {
        begin_data("NodeData", array);
        for (std::size_t n = 0; n < array.values.size(); ++n)
            add_value(cells_.point_tags[n], array, array.values[n]);
        text_.add("$EndNodeData\n");
    }

    void write_cell_data(const DataArray& array) {
        begin_data("ElementData", array);
        for (const std::size_t c : order_)
            add_value(cells_.cell_tags[c], array, array.values[c]);
        text_.add("$EndElementData\n");
    }

    const CellMesh& cells_;
    OutputFile out_;
    FormattedText text_{out_};
    std::vector<std::size_t> order_;  // of the cells in the file
};

}  // namespace

int gmsh_type(Shape2D shape) {
    for (const auto& [known, type] : TYPES)
        if (known == shape)
            return type;
    return 0;
}

std::optional<Shape2D> shape_of_gmsh_type(int type) {
    for (const auto& [shape, known] : TYPES)
        if (known == type)
            return shape;
    return std::nullopt;
}

void write_gmsh(const CellMesh& cells, const std::filesystem::path& path, GmshVersion version) {
    Writer(cells, path).write(version);
}

}  // namespace brelan::tool
