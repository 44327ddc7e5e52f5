// Starter decks: a commented deck of each mode and edit that runs as it is, and the small meshes that it
// reads.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "analysis/mesh_lists.h"

namespace brelan::tool {

// What a deck of a kind differs in stands between two "@": a key of `words_of_kind`.
struct StarterDeck {
    std::string_view name;     // as on the command line
    std::string_view purpose;  // one line
    std::string_view text;
    std::string_view result;               // mesh that it writes
    std::vector<std::string_view> meshes;  // that it reads, by name
};

const std::vector<StarterDeck>& starter_decks();
std::string starter_names();  // of all, for a person

// The deck of a name, or by another name that is as clear ("base", "edit0", "0"); nullptr where there is
// none.
const StarterDeck* starter_deck(std::string_view name);

// Its text for a kind, as a file of the name.
std::string starter_text(const StarterDeck& deck, LayoutKind kind, std::string_view file);

// A mesh that the starter decks read.
MeshLists starter_mesh(std::string_view name, LayoutKind kind);

// Texts of the decks, in the files beside this one.
extern const std::string_view STARTER_BASE_MESH, STARTER_COMBINATION, STARTER_DAM;
extern const std::string_view STARTER_EDIT_0, STARTER_EDIT_1, STARTER_EDIT_2, STARTER_EDIT_3, STARTER_EDIT_4,
    STARTER_EDIT_5, STARTER_EDIT_6;
extern const std::string_view STARTER_GROUPS;

}  // namespace brelan::tool
