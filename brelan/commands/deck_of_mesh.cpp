#include "commands/deck_of_mesh.h"

#include <fmt/core.h>

#include <algorithm>
#include <optional>

#include "cli/words.h"

namespace brelan::tool {

namespace {

enum Mode : std::int32_t { base_mesh = 2, dam = 3 };

// A name of a file as it is compared: without directories and ending, so that a converted mesh keeps it.
std::string stem(std::string_view name) {
    name.remove_prefix(std::min(name.find_last_of("/\\") + 1, name.size()));
    name.remove_prefix(std::min(name.find_first_not_of(' '), name.size()));
    return lower(name.substr(0, name.find_last_of('.')));
}

// Names of the meshes that the deck reads and writes.
std::vector<std::string> mesh_names(const NotedDeck& deck) {
    if (deck.mode == dam)  // stand on no card; the second is that of a dam with shells
        return {"EarthDam.Mes", "Earth_Dam.Mes", std::string(BASE_MESH)};
    std::vector<std::string> names;
    for (const std::string& name : {deck.first_mesh, deck.second_mesh,
                                    std::string(deck.mode == base_mesh ? BASE_MESH : ""), deck.result})
        if (!name.empty() && std::find(names.begin(), names.end(), name) == names.end())
            names.push_back(name);
    return names;
}

void widen(Bounds& box, const DeckPoint& p) {
    box.low = {std::min(box.low.x, p.x), std::min(box.low.y, p.y)};
    box.high = {std::max(box.high.x, p.x), std::max(box.high.y, p.y)};
}

// Round the shapes of some roles.
template <class Wanted>
std::optional<Bounds> box_of(const std::vector<DeckShape>& shapes, const Wanted& wanted) {
    std::optional<Bounds> box;
    for (const DeckShape& shape : shapes)
        for (const DeckPoint& p : shape.points)
            if (wanted(shape)) {
                if (!box)
                    box = Bounds{{p.x, p.y}, {p.x, p.y}};
                widen(*box, p);
            }
    return box;
}

bool reaches_beyond(const Bounds& inner, const Bounds& outer) {
    constexpr double SHARE = 0.01;  // nodes on a border may have been moved a little
    const double slack = SHARE * outer.extent();
    return inner.low.x < outer.low.x - slack || inner.low.y < outer.low.y - slack ||
           inner.high.x > outer.high.x + slack || inner.high.y > outer.high.y + slack;
}

}  // namespace

std::string extent_text(const Bounds& b) {
    return fmt::format("from ({:.6g}, {:.6g}) to ({:.6g}, {:.6g})", b.low.x, b.low.y, b.high.x, b.high.y);
}

std::string told_of_other_mesh(const NotedDeck& deck, const std::vector<DeckShape>& shapes,
                               const MeshLists& mesh) {
    const std::vector<std::string> names = mesh_names(deck);
    const auto is_mesh = [&](const std::string& name) {
        return stem(name) == stem(mesh.file) || stem(name) == stem(mesh.name);
    };
    // What a base mesh has in its first line instead of a name.
    const bool copy_of_base = stem(mesh.name) == "base mesh" && deck.mode >= base_mesh;
    if (!names.empty() && !copy_of_base && std::none_of(names.begin(), names.end(), is_mesh))
        return fmt::format("its meshes are {}", joined(names, ", "));
    const Bounds bounds = mesh.bounds();
    constexpr std::int32_t with_groups = 4;
    const DeckCard* edit = deck.card("3.3");
    const bool reshaped =
        edit != nullptr && edit->integer("IEDIT") != with_groups;  // the mesh may go anywhere
    const auto ground = box_of(shapes, [](const DeckShape& shape) {
        return shape.role == ShapeRole::block || shape.role == ShapeRole::dam;
    });
    if (ground && !reshaped && reaches_beyond(bounds, *ground))
        return fmt::format("it makes a mesh {}, and this one reaches {}", extent_text(*ground),
                           extent_text(bounds));
    const auto drawn = box_of(shapes, [](const DeckShape& shape) { return shape.role != ShapeRole::window; });
    if (drawn && (drawn->high.x < bounds.low.x || drawn->low.x > bounds.high.x ||
                  drawn->high.y < bounds.low.y || drawn->low.y > bounds.high.y))
        return fmt::format("it draws {}, and the mesh reaches {}", extent_text(*drawn), extent_text(bounds));
    return "";
}

}  // namespace brelan::tool
