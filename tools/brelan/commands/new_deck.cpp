// brelan new: starter decks.
#include <fmt/core.h>
#include <fmt/ranges.h>

#include <filesystem>
#include <memory>

#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "cli/output_file.h"
#include "commands/commands.h"
#include "commands/starter_decks.h"
#include "model/mesh_file.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

struct NewOptions {
    std::string kind_of_deck, directory, name, kind = "displacement";
    bool list = false, force = false;
};

constexpr const char* EXAMPLES =
    R"(  brelan new base-mesh > pit.dat     a base mesh, to be changed to your needs
  brelan new groups -o quay          quay/groups.dat: an excavation in stages
  brelan new edit-2 -o quay          quay/edit-2.dat and the mesh that it reads
  brelan new --list                  what there is
)";

std::string names_of_all() {
    std::string names;
    for (const StarterDeck& deck : starter_decks())
        names += (names.empty() ? "" : ", ") + std::string(deck.name);
    return names;
}

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

int new_deck(const Context& context, const NewOptions& options) {
    if (options.list) {
        show_list();
        return STATUS_OK;
    }
    const StarterDeck* deck = starter_deck(options.kind_of_deck);
    if (deck == nullptr)
        throw Failure(fmt::format("{}: expected one of {}",
                                  options.kind_of_deck.empty() ? "no deck is named" : options.kind_of_deck,
                                  names_of_all()));
    const LayoutKind kind = *kind_named(options.kind);
    if (!options.directory.empty() && options.directory != STANDARD_STREAM) {
        write_files(context, *deck, kind, options);
        return STATUS_OK;
    }
    print(starter_text(*deck, kind, options.name.empty() ? std::string(deck->name) + ".dat" : options.name));
    if (!deck->meshes.empty())
        note(context, fmt::format("this deck reads {}; \"brelan new {} -o DIR\" writes {} beside it",
                                  fmt::join(deck->meshes, " and "), deck->name,
                                  deck->meshes.size() == 1 ? "it" : "them"));
    return STATUS_OK;
}

}  // namespace

void add_new(CLI::App& app, Context& context) {
    auto options = std::make_shared<NewOptions>();
    CLI::App* command = app.add_subcommand("new", "Write a commented starter deck that runs as it is");
    command->footer(EXAMPLES);
    command->add_option("DECK", options->kind_of_deck, names_of_all())->option_text(" ");
    command->add_flag("--list", options->list, "Show what there is");
    command->add_option("--kind", options->kind, "coupled, temperature, head or displacement (default)")
        ->check(CLI::IsMember({"coupled", "temperature", "head", "displacement"}))
        ->option_text("KIND");
    command
        ->add_option("-o,--output", options->directory,
                     "Write the deck, and the meshes that it reads, to this directory; - is standard output")
        ->option_text("DIR");
    command->add_option("--name", options->name, "Name of the deck's file")->option_text("FILE");
    command->add_flag("--force", options->force, "Replace files that are there");
    command->callback([options, &context] {
        context.action = [options, &context] { return new_deck(context, *options); };
    });
}

}  // namespace brelan::tool
