// The edition that a deck is meant for.
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "run/settings.h"

namespace brelan::tool {

// What the command line says.
struct EditionOptions {
    std::int32_t edition = 0;  // 0: not given
    std::string kind;          // empty: not given

    bool given() const { return edition != 0 || !kind.empty(); }
};

// Adds --edition and --kind to a command.
void add_edition_options(CLI::App& command, const std::shared_ptr<EditionOptions>& options);

struct Edition {
    std::int32_t number = 1;
    LayoutKind kind = LayoutKind::displacement;
    std::string source;  // where it is known from, for a person: "--kind", "Row.Mes"; empty: nothing says so
};

// The edition of the command line; else that of a comment "* Kind: head" in front of the deck's first card;
// else the kind of the mesh that the deck reads; else the displacement edition. Meshes of the deck that are
// of another kind are named in `contradiction`. `work` is the working directory, where it stays.
struct EditionOfDeck {
    Edition edition;
    std::string contradiction;  // "Row.Mes is a mesh of the head kind"; empty where there is none
};
EditionOfDeck edition_of_deck(const std::filesystem::path& deck, const std::filesystem::path& project,
                              const std::filesystem::path& work, const EditionOptions& options,
                              std::optional<std::int32_t> of_data = {});

}  // namespace brelan::tool
