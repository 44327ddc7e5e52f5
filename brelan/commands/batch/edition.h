// The edition that a deck is meant for.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "commands/options.h"
#include "mesh/edition.h"
#include "model/deck.h"

namespace brelan::tool {

struct Edition {
    std::int32_t number = 1;
    LayoutKind kind = LayoutKind::displacement;
    std::string source;  // where it is known from, for a person: "--kind", "Row.Mes"; empty: nothing says so
};

// The edition of the command line; else that of a comment "* Kind: head" in front of the deck's first card;
// else the kind of the mesh that the deck reads; else the displacement edition. `contradiction` says what is
// of another kind: the deck by its comment, a mesh that it reads, the base mesh that it replaces. `work` is
// the working directory, where it stays.
struct EditionOfDeck {
    Edition edition;
    std::string contradiction;  // "Row.Mes is a mesh of the head kind"; empty where there is none
};
EditionOfDeck edition_of_deck(const DeckSource& deck, const std::filesystem::path& project,
                              const std::filesystem::path& work, const EditionOptions& options,
                              std::optional<std::int32_t> of_data = {});

// "its comment names the head kind, in which ..."; empty when nothing says that the deck is for another kind
// than its own. Where it has no such comment that is the base mesh that it makes anew, if a value of Card 4.2
// has another meaning in the kind of that mesh.
std::string contradiction_of_deck(const NotedDeck& deck, const std::filesystem::path& project);

}  // namespace brelan::tool
