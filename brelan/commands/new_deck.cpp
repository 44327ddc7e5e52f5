// brelan new: starter decks.
#include <fmt/core.h>

#include <filesystem>

#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "cli/output_file.h"
#include "cli/words.h"
#include "commands/commands.h"
#include "commands/starter_decks.h"
#include "formats/mesh_file.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

void show_list() {
    for (const StarterDeck& deck : starter_decks()) {
        print(fmt::format("{:<12}  {}", deck.name, deck.purpose));
        for (std::size_t i = 0; i < deck.meshes.size(); ++i)
            print(fmt::format("{}{}", i == 0 ? "; reads " : " and ", deck.meshes[i]));
        print("\n");
    }
}

void require_free(const fs::path& file, bool force) {
    std::error_code error;
    if (!force && fs::exists(file, error))
        throw Failure(fmt::format("{}: there is a file of this name; --force replaces it", file.string()));
}

// The deck and its meshes, or nothing of it.
void write_files(const Context& context, const StarterDeck& deck, LayoutKind kind,
                 const NewOptions& options) {
    const fs::path directory = options.directory;
    const std::string name = options.name.empty() ? std::string(deck.name) + ".dat" : options.name;
    std::error_code error;
    fs::create_directories(directory, error);
    if (!fs::is_directory(directory, error))
        throw Failure(
            fmt::format("{}: expected a directory to write to, or a name for a new one", directory.string()));
    require_free(directory / name, options.force);
    for (const std::string_view mesh : deck.meshes)
        require_free(directory / mesh, options.force);
    for (const std::string_view mesh : deck.meshes)
        write_mesh_file(starter_mesh(mesh, kind), directory / mesh);
    write_file(directory / name, starter_text(deck, kind, name));
    for (const std::string_view mesh : deck.meshes)
        note(context, fmt::format("{}: written", (directory / mesh).string()));
    note(context, fmt::format("{}: written; next: brelan run {}", (directory / name).string(),
                              (directory / name).string()));
}

}  // namespace

int new_deck(const NewOptions& options, const Context& context) {
    if (options.list) {
        show_list();
        return STATUS_OK;
    }
    const StarterDeck* deck = starter_deck(options.kind_of_deck);
    if (deck == nullptr)
        throw Failure(fmt::format("{}: expected one of {}",
                                  options.kind_of_deck.empty() ? "no deck is named" : options.kind_of_deck,
                                  starter_names()));
    const LayoutKind kind = *kind_named(options.kind);
    if (!options.directory.empty() && options.directory != STANDARD_STREAM) {
        write_files(context, *deck, kind, options);
        return STATUS_OK;
    }
    print(starter_text(*deck, kind, options.name.empty() ? std::string(deck->name) + ".dat" : options.name));
    if (!deck->meshes.empty())
        note(context, fmt::format("this deck reads {}; \"brelan new {} -o DIR\" writes {} beside it",
                                  joined({deck->meshes.begin(), deck->meshes.end()}, " and "), deck->name,
                                  deck->meshes.size() == 1 ? "it" : "them"));
    return STATUS_OK;
}

}  // namespace brelan::tool
