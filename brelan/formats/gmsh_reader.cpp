#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <unordered_map>

#include "cli/exit_status.h"
#include "formats/gmsh.h"
#include "formats/gmsh_scanner.h"
#include "formats/group_meaning.h"

namespace brelan::tool {

namespace {

using Key = std::pair<int, std::int64_t>;  // dimension and tag

int dimension_of(Shape2D shape) {
    const int corners = corners_of(shape);
    return corners > 2 ? 2 : corners - 1;
}

class Reader {
public:
    explicit Reader(std::string_view content) : in_(content) {}

    CellMesh read() {
        std::string_view line;
        while (in_.next_line(line)) {
            if (line.front() != '$')
                in_.fail(fmt::format("expected a section, found \"{}\"", line.substr(0, 24)));
            const std::string section(line.substr(1));
            if (section == "MeshFormat")
                read_format();
            else if (version_ == 0)
                in_.fail("expected $MeshFormat first");
            else if (section == "PhysicalNames")
                read_names();
            else if (section == "Entities" && version_ == 4)
                read_entities();
            else if (section == "Nodes")
                version_ == 4 ? read_nodes_4() : read_nodes_2();
            else if (section == "Elements")
                version_ == 4 ? read_elements_4() : read_elements_2();
            else if (section == "NodeData" || section == "ElementData")
                read_data(section == "NodeData");
            else {
                in_.skip_section(section);
                continue;
            }
            in_.end_section(section);
        }
        if (!has_elements_)
            in_.fail("the file ends here; expected $Elements");
        for (const auto& [key, name] : names_)  // also of groups that the elements do not tell of
            cells_.names.take_comment("* " + name);
        drop_incomplete(cells_.point_data);
        drop_incomplete(cells_.cell_data);
        return std::move(cells_);
    }

private:
    void read_format() {
        const double version = in_.text_real();
        const std::int64_t binary = in_.text_integer(), size = in_.text_integer();
        version_ = version >= 2.0 && version < 3.0 ? 2 : version == 4.1 ? 4 : 0;
        if (version_ == 0)
            in_.fail(fmt::format("expected version 2.2 or 4.1 of the format, found {}", version));
        if (size != 8)
            in_.fail(fmt::format("expected data of 8 bytes, found {}", size));
        in_.finish_line();
        in_.binary = binary == 1;
        if (in_.binary && in_.integer_32() != 1)
            in_.fail("expected binary data in the byte order of this machine");
    }

    void read_names() {
        const std::size_t count = in_.count(in_.text_integer());
        for (std::size_t i = 0; i < count; ++i) {
            const auto dimension = static_cast<int>(in_.text_integer());
            const std::int64_t tag = in_.text_integer();
            names_[{dimension, tag}] = in_.quoted();
        }
    }

    // The place of the group of a dimension and tag; -1 for no group.
    std::int32_t group(int dimension, std::int64_t tag) {
        if (tag == 0)
            return -1;
        tag = std::abs(tag);
        if (tag > 2147483647)
            in_.fail(fmt::format("expected a physical tag of 32 bits, found {}", tag));
        const auto [known, fresh] =
            groups_.try_emplace({dimension, tag}, static_cast<std::int32_t>(groups_.size()));
        if (fresh) {
            const auto name = names_.find({dimension, tag});
            cells_.groups.push_back(
                {dimension, static_cast<std::int32_t>(tag), name == names_.end() ? "" : name->second});
        }
        return known->second;
    }

    void add_point(std::int64_t tag, double x, double y, double z) {
        if (!places_.try_emplace(tag, static_cast<std::int32_t>(cells_.point_tags.size())).second)
            in_.fail(fmt::format("node {} stands twice", tag));
        cells_.point_tags.push_back(tag);
        for (const double v : {x, y, z})
            cells_.points.push_back(static_cast<float>(v));
    }

    Shape2D shape(std::int64_t type) const {
        const auto known = shape_of_gmsh_type(static_cast<int>(type));
        if (!known)
            in_.fail(fmt::format(
                "expected points, lines, triangles and quadrilaterals, found the element type {}", type));
        return *known;
    }

    void add_cell(std::int64_t tag, Shape2D of, std::int32_t group_place,
                  const std::vector<std::int64_t>& nodes) {
        std::array<std::int32_t, 9> places{};
        for (std::size_t k = 0; k < nodes.size(); ++k) {
            const auto found = places_.find(nodes[k]);
            if (found == places_.end())
                in_.fail(fmt::format("element {} names node {}, which is not there", tag, nodes[k]));
            places[k] = found->second;
        }
        cells_.cell_tags.push_back(tag);
        cells_.group_of.push_back(group_place);
        cells_.add_cell(of, places.data());
    }

    // --- version 2 -------------------------------------------------------------------------------

    void read_nodes_2() {
        const std::size_t count = in_.count(in_.text_integer());
        in_.finish_line();
        for (std::size_t n = 0; n < count; ++n) {
            const std::int64_t tag = in_.integer_32();
            const double x = in_.real(), y = in_.real(), z = in_.real();
            add_point(tag, x, y, z);
        }
    }

    void read_elements_2() {
        has_elements_ = true;
        const std::size_t count = in_.count(in_.text_integer());
        in_.finish_line();
        std::vector<std::int64_t> nodes;
        for (std::size_t done = 0; done < count;) {
            std::int64_t tag = 0, type = 0, tags = 0;
            std::size_t block = 1;
            if (in_.binary) {
                type = in_.integer_32();
                block = in_.count(in_.integer_32());
                tags = in_.integer_32();
                if (block == 0)
                    in_.fail("expected a block of elements, found an empty one");
            } else {
                tag = in_.integer_32();
                type = in_.integer_32();
                tags = in_.integer_32();
            }
            const Shape2D of = shape(type);
            for (std::size_t i = 0; i < block; ++i) {
                if (in_.binary)
                    tag = in_.integer_32();
                std::int64_t physical = 0;
                for (std::size_t k = 0; k < in_.count(tags); ++k) {
                    const std::int64_t value = in_.integer_32();
                    if (k == 0)
                        physical = value;
                }
                nodes.resize(static_cast<std::size_t>(nodes_of(of)));
                for (std::int64_t& node : nodes)
                    node = in_.integer_32();
                add_cell(tag, of, group(dimension_of(of), physical), nodes);
            }
            done += block;
        }
    }

    // --- version 4.1 -----------------------------------------------------------------------------

    void read_entities() {
        std::array<std::size_t, 4> count{};
        for (std::size_t& c : count)
            c = in_.count(in_.integer_64());
        for (int dimension = 0; dimension < 4; ++dimension)
            for (std::size_t i = 0; i < count[static_cast<std::size_t>(dimension)]; ++i) {
                const std::int64_t tag = in_.integer_32();
                for (int k = 0; k < (dimension == 0 ? 3 : 6); ++k)
                    in_.real();
                const std::size_t physicals = in_.count(in_.integer_64());
                for (std::size_t k = 0; k < physicals; ++k) {
                    const std::int64_t physical = in_.integer_32();
                    physical_[{dimension, tag}].push_back(physical);
                }
                if (dimension == 0)
                    continue;
                const std::size_t bounding = in_.count(in_.integer_64());
                for (std::size_t k = 0; k < bounding; ++k)
                    in_.integer_32();
            }
    }

    void read_nodes_4() {
        const std::size_t blocks = in_.count(in_.integer_64());
        in_.integer_64();
        in_.integer_64();
        in_.integer_64();
        std::vector<std::int64_t> tags;
        for (std::size_t b = 0; b < blocks; ++b) {
            const std::int64_t dimension = in_.integer_32();
            in_.integer_32();
            const std::int64_t parametric = in_.integer_32();
            tags.resize(in_.count(in_.integer_64()));
            for (std::int64_t& tag : tags)
                tag = in_.integer_64();
            for (const std::int64_t tag : tags) {
                const double x = in_.real(), y = in_.real(), z = in_.real();
                for (std::int64_t k = 0; parametric != 0 && k < dimension; ++k)
                    in_.real();
                add_point(tag, x, y, z);
            }
        }
    }

    void read_elements_4() {
        has_elements_ = true;
        const std::size_t blocks = in_.count(in_.integer_64());
        in_.integer_64();
        in_.integer_64();
        in_.integer_64();
        std::vector<std::int64_t> nodes;
        for (std::size_t b = 0; b < blocks; ++b) {
            const auto dimension = static_cast<int>(in_.integer_32());
            const std::int64_t entity = in_.integer_32();
            const Shape2D of = shape(in_.integer_32());
            const std::size_t count = in_.count(in_.integer_64());
            const std::vector<std::int32_t> groups = groups_of({dimension, entity});
            for (std::size_t i = 0; i < count; ++i) {
                const std::int64_t tag = in_.integer_64();
                nodes.resize(static_cast<std::size_t>(nodes_of(of)));
                for (std::int64_t& node : nodes)
                    node = in_.integer_64();
                for (std::size_t g = 1; g < groups.size(); ++g)
                    cells_.further_groups.emplace_back(cells_.cell_count(), groups[g]);
                add_cell(tag, of, groups.front(), nodes);
            }
        }
    }

    // Places of an entity's groups, in front the one that says what its cells are; -1 alone for none.
    std::vector<std::int32_t> groups_of(const Key& entity) {
        std::vector<std::int32_t> groups;
        if (const auto physical = physical_.find(entity); physical != physical_.end())
            for (const std::int64_t tag : physical->second)
                if (const std::int32_t place = group(entity.first, tag);
                    place >= 0 && std::find(groups.begin(), groups.end(), place) == groups.end())
                    groups.push_back(place);
        const auto telling = std::find_if(groups.begin(), groups.end(), [&](std::int32_t place) {
            return meaning_of_group(cells_.groups[static_cast<std::size_t>(place)].name);
        });
        if (telling != groups.end())
            std::rotate(groups.begin(), telling, telling + 1);
        return groups.empty() ? std::vector<std::int32_t>{-1} : groups;
    }

    // --- data ------------------------------------------------------------------------------------

    // Values of one component become an array; those of more are passed over.
    void read_data(bool of_nodes) {
        std::string name;
        const std::size_t strings = in_.count(in_.text_integer());
        for (std::size_t i = 0; i < strings; ++i) {
            const std::string text = in_.quoted();
            if (i == 0)
                name = text;
        }
        const std::size_t reals = in_.count(in_.text_integer());
        for (std::size_t i = 0; i < reals; ++i)
            in_.text_real();
        const std::size_t integers = in_.count(in_.text_integer());
        std::int64_t components = 1, rows = 0;
        for (std::size_t i = 0; i < integers; ++i) {
            const std::int64_t value = in_.text_integer();
            if (i == 1)
                components = value;
            else if (i == 2)
                rows = value;
        }
        in_.finish_line();
        if (components < 1 || components > 9)
            in_.fail(fmt::format("expected 1 to 9 components, found {}", components));
        if (!of_nodes && cell_places_.empty())
            for (std::size_t c = 0; c < cells_.cell_tags.size(); ++c)
                cell_places_.emplace(cells_.cell_tags[c], static_cast<std::int32_t>(c));
        const auto& places = of_nodes ? places_ : cell_places_;
        DataArray array{name, true,
                        std::vector<double>(of_nodes ? cells_.point_count() : cells_.cell_count(), NAN)};
        const std::size_t count = in_.count(rows);
        for (std::size_t i = 0; i < count; ++i) {
            const auto place = places.find(in_.integer_32());
            for (std::int64_t k = 0; k < components; ++k) {
                const double value = in_.real();
                if (place != places.end())
                    array.values[static_cast<std::size_t>(place->second)] = value;
            }
        }
        if (components == 1)
            (of_nodes ? cells_.point_data : cells_.cell_data).push_back(std::move(array));
    }

    static void drop_incomplete(std::vector<DataArray>& arrays) {
        std::erase_if(arrays, [](const DataArray& a) {
            for (const double value : a.values)
                if (std::isnan(value))
                    return true;
            return false;
        });
    }

    GmshScanner in_;
    CellMesh cells_;
    int version_ = 0;
    bool has_elements_ = false;
    std::map<Key, std::string> names_;
    std::map<Key, std::vector<std::int64_t>> physical_;  // tags of an entity's groups
    std::map<Key, std::int32_t> groups_;
    std::unordered_map<std::int64_t, std::int32_t> places_, cell_places_;  // by tag
};

}  // namespace

CellMesh read_gmsh(std::string_view content, const std::string& file) {
    try {
        CellMesh cells = Reader(content).read();
        cells.file = file;
        return cells;
    } catch (const Failure& failure) {
        const std::string what = failure.what();
        throw Failure(fmt::format("{}{}{}", file, what.starts_with("line ") ? ", " : ": ", what));
    }
}

}  // namespace brelan::tool
