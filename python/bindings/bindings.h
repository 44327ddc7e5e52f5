// The module brelan._core: what the package brelan is made on. Its classes hold values of the library; names,
// units and errors for people stand in the package.
#pragma once

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "analysis/geometry.h"
#include "analysis/mesh_lists.h"
#include "cli/exit_status.h"
#include "commands/batch/edition.h"
#include "commands/checking/doubts.h"
#include "commands/placed_remark.h"
#include "model/deck.h"
#include "text/run_end.h"

namespace brelan::python {

// A mesh that NumPy arrays look into.
struct HeldMesh {
    explicit HeldMesh(MeshLists made) : lists(std::move(made)), corners(corners_of(lists)) {}
    HeldMesh(MeshLists made, std::vector<CornerPlaces> its_corners)
        : lists(std::move(made)), corners(std::move(its_corners)) {}

    MeshLists lists;
    std::vector<CornerPlaces> corners;
    std::vector<std::string> remarks;  // what was left out or changed when it was read
};

// A deck's text as it was noted, and where its files lie. It does not change: a changed text is another one.
struct HeldDeck {
    tool::NotedDeck noted;
    tool::Edition edition;
    tool::DeckPlace place;
    std::string kind_wish;  // as it was asked for
};

// A kind by its name; none for an empty one. Throws Failure for a name that is none.
std::optional<LayoutKind> kind_of_name(const std::string& name);

// Throws brelan.Error. `field` is a place on the card at the line.
[[noreturn]] void throw_error(const tool::PlacedRemark& remark,
                              std::optional<std::size_t> field = std::nullopt);

// Calls a routine and throws brelan.Error for what the library throws. `file` is what messages begin with
// where they are about a file.
template <class Routine>
auto reported(const std::string& file, Routine routine) {
    try {
        return routine();
    } catch (const RunEnd& end) {
        throw_error(end.place ? tool::PlacedRemark{end.message(), end.place->file, end.place->line}
                              : tool::taken_apart(end.text, file),
                    end.field);
    } catch (const tool::Failure& failure) {
        throw_error(tool::taken_apart(failure.what(), file));
    }
}

// A class of elements by its name. Throws ValueError for a name that is none.
ElementClass class_named(const std::string& name);

void bind_mesh(pybind11::module_& module);
void bind_analysis(pybind11::module_& module, pybind11::class_<HeldMesh, std::shared_ptr<HeldMesh>>& type);
void bind_deck(pybind11::module_& module);
void bind_study(pybind11::module_& module);

}  // namespace brelan::python
