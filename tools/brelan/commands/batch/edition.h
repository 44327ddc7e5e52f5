// The edition that a deck is meant for.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "commands/options.h"
#include "model/deck.h"

namespace brelan::tool {

struct Edition {
    std::int32_t number = 1;
    LayoutKind kind = LayoutKind::displacement;
    std::string source;  // where it is known from, for a person: "--kind", "Row.Mes"; empty: nothing says so
};

// The edition of the command line; else that of a comment "* Kind: head" in front of the deck's first card;
// else the kind of the mesh that the deck reads; else the displacement edition. Meshes of the deck that are
// of another kind are named in `contradiction`.
struct EditionOfDeck {
    Edition edition;
    std::string contradiction;  // "Row.Mes is a mesh of the head kind"; empty where there is none
};
EditionOfDeck edition_of_deck(const DeckSource& deck, const std::filesystem::path& project,
                              const EditionOptions& options, std::optional<std::int32_t> of_data = {});

}  // namespace brelan::tool
