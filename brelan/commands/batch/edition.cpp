#include "commands/batch/edition.h"

#include <fmt/core.h>

#include "cli/exit_status.h"
#include "cli/words.h"
#include "formats/mesh_file.h"
#include "model/deck.h"
#include "text/run_end.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

// The first edition of a kind.
std::int32_t edition_of(LayoutKind kind) {
    std::int32_t edition = 1;
    while (kind_of(edition) != kind)
        ++edition;
    return edition;
}

std::string word_behind(std::string_view line, std::string_view key) {
    std::size_t at = line.find(key);
    if (at == std::string_view::npos)
        return "";
    at = line.find_first_not_of(' ', at + key.size());
    if (at == std::string_view::npos)
        return "";
    std::string word;
    for (; at < line.size() && line[at] >= 'a' && line[at] <= 'z'; ++at)
        word += line[at];
    return word;
}

// The kind that a comment in front of the first card names.
std::optional<LayoutKind> kind_in_comments(const DeckSource& deck) {
    for (const std::string_view line : lines_of(deck.text)) {
        if (line.empty() || line.front() != '*')
            break;
        if (const auto kind = kind_named(word_behind(line, "Kind:")))
            return kind;
    }
    return std::nullopt;
}

// Kinds of the meshes that the deck reads; none of those that are not there or cannot be read.
struct KnownMesh {
    std::string name;
    LayoutKind kind;
};
std::vector<KnownMesh> meshes_of(const NotedDeck& deck, const fs::path& project, const fs::path& work) {
    std::vector<KnownMesh> meshes;
    // Behind a base mesh FILEA is the file that the run makes.
    if (deck.mode == 2)
        return meshes;
    for (const std::string& name : {deck.first_mesh, deck.second_mesh}) {
        const fs::path file = file_of_card(project, name, work);
        std::error_code error;
        if (file.empty() || !fs::is_regular_file(file, error))
            continue;
        try {
            meshes.push_back({name, read_mesh_file(file).kind});
        } catch (const Failure&) {
            // The run says what is wrong with it.
        } catch (const RunEnd&) {
        }
    }
    return meshes;
}

// The value of Card 4.2 whose meaning goes by the kind: Ywater, T or H. nullptr where it is not given.
const DeckField* third_value(const NotedDeck& deck) {
    const DeckCard* card = deck.card("4.2");
    return card != nullptr && card->fields.size() > 2 && card->fields[2].given &&
                   !card->fields[2].name.empty()
               ? &card->fields[2]
               : nullptr;
}

// ", in which 12.5 on Card 4.2 is H; here it is Ywater"; empty where the deck has no such value.
std::string change_of_meaning(const NotedDeck& deck, LayoutKind other) {
    const DeckField* here = third_value(deck);
    const NotedDeck there_deck = read_deck(deck, other);
    const DeckField* there = third_value(there_deck);
    return here == nullptr || there == nullptr ? ""
                                               : fmt::format(", in which {} on Card 4.2 is {}; here it is {}",
                                                             there->text, there->name, here->name);
}

Edition first_choice(const DeckSource& deck, const EditionOptions& options,
                     const std::optional<std::int32_t>& of_data) {
    if (of_data)
        return {*of_data, kind_of(*of_data), "PROGRAM.DAT"};
    if (options.edition != 0)
        return {options.edition, kind_of(options.edition), "--edition"};
    if (const auto kind = kind_named(options.kind))
        return {edition_of(*kind), *kind, "--kind"};
    if (const auto kind = kind_in_comments(deck))
        return {edition_of(*kind), *kind, "the deck's comment"};
    return {};
}

}  // namespace

std::string contradiction_of_deck(const NotedDeck& deck, const fs::path& project) {
    if (const auto kind = kind_in_comments(deck))
        return *kind == deck.kind ? ""
                                  : fmt::format("its comment names the {} kind{}", name_of(*kind),
                                                change_of_meaning(deck, *kind));
    const fs::path file = file_of_card(project, std::string(BASE_MESH));
    std::error_code error;
    if (deck.mode != 2 || !fs::is_regular_file(file, error))
        return "";
    try {
        const std::optional<LayoutKind> kind = kind_of_mesh_file(file);
        if (!kind || *kind == deck.kind)
            return "";
        if (const std::string change = change_of_meaning(deck, *kind); !change.empty())
            return fmt::format("{}, which is made anew, is a mesh of the {} kind{}", BASE_MESH,
                               name_of(*kind), change);
    } catch (const Failure&) {
        // It goes, whatever is wrong with it.
    } catch (const RunEnd&) {
    }
    return "";
}

EditionOfDeck edition_of_deck(const DeckSource& source, const fs::path& project, const fs::path& work,
                              const EditionOptions& options, std::optional<std::int32_t> of_data) {
    EditionOfDeck found;
    found.edition = first_choice(source, options, of_data);
    const NotedDeck deck = read_deck(source, found.edition.kind);
    for (const KnownMesh& mesh : meshes_of(deck, project, work)) {
        if (found.edition.source.empty())
            found.edition = {edition_of(mesh.kind), mesh.kind, mesh.name};
        else if (mesh.kind != found.edition.kind && found.contradiction.empty())
            found.contradiction = fmt::format("{} is a mesh of the {} kind", mesh.name, name_of(mesh.kind));
    }
    if (found.contradiction.empty())
        found.contradiction = contradiction_of_deck(deck, project);
    return found;
}

}  // namespace brelan::tool
