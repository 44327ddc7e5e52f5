#include "formats/kept_points.h"

#include <algorithm>
#include <unordered_map>

namespace brelan::tool {

namespace {

// What a point is to the elements, the weightiest last.
enum class Role : std::uint8_t { none, centre, midside, node };

class Roles {
public:
    Roles(const CellMesh& cells, LayoutKind kind)
        : cells_(cells), midside_(has_midside_nodes(kind) ? Role::node : Role::midside) {
        roles_.resize(cells.point_count(), Role::none);
    }

    void add_cell(std::size_t cell) {
        const Shape2D shape = cells_.shapes[cell];
        const int corners = corners_of(shape);
        const std::int32_t* nodes = cells_.nodes.data() + cells_.first_node(cell);
        for (int k = 0; k < nodes_of(shape); ++k)
            raise(nodes[k], k < corners        ? Role::node
                            : k >= 2 * corners ? Role::centre
                            : corners == 2     ? Role::midside
                                               : midside_);
    }

    // An element with midside nodes on some of its sides alone has a cell without them.
    void add_midsides(const std::vector<std::size_t>& elements) {
        const DataArray* numbers = cells_.point_array(NUMBER);
        if (numbers == nullptr)
            return;
        std::unordered_map<double, std::int32_t> places;
        for (std::size_t n = 0; n < numbers->values.size(); ++n)
            places.emplace(numbers->values[n], static_cast<std::int32_t>(n));
        for (const auto& [name, word] : MIDSIDES)
            if (const DataArray* array = cells_.cell_array(name))
                for (const std::size_t cell : elements)
                    if (const auto found = places.find(array->values[cell]); found != places.end())
                        raise(found->second, midside_);
    }

    KeptPoints kept() const {
        KeptPoints result;
        result.kept.reserve(roles_.size());
        for (const Role role : roles_)
            result.kept.push_back(role == Role::none || role == Role::node);
        result.centres = static_cast<std::size_t>(std::count(roles_.begin(), roles_.end(), Role::centre));
        result.midsides = static_cast<std::size_t>(std::count(roles_.begin(), roles_.end(), Role::midside));
        return result;
    }

private:
    void raise(std::int32_t place, Role role) {
        Role& known = roles_[static_cast<std::size_t>(place)];
        known = std::max(known, role);
    }

    const CellMesh& cells_;
    Role midside_;
    std::vector<Role> roles_;  // by place of the point
};

}  // namespace

KeptPoints kept_points(const CellMesh& cells, const std::vector<std::size_t>& elements, LayoutKind kind) {
    Roles roles(cells, kind);
    for (const std::size_t cell : elements)
        roles.add_cell(cell);
    roles.add_midsides(elements);
    return roles.kept();
}

}  // namespace brelan::tool
