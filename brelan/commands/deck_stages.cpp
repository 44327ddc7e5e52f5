#include "commands/deck_stages.h"

#include <fmt/core.h>

#include <filesystem>
#include <optional>
#include <utility>

#include "analysis/difference.h"
#include "cli/console.h"
#include "cli/exit_status.h"
#include "commands/batch/edition.h"
#include "commands/dry_run.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

// What is another than in the mesh that is converted; none where numbers, places and nodes agree. Codes,
// materials and attributes may have been changed since.
std::optional<std::string> other_than(const MeshLists& mesh, const MeshLists& made) {
    if (mesh.nodes.size() != made.nodes.size() || mesh.elements.size() != made.elements.size())
        return fmt::format("{} nodes and {} elements instead of {} and {}", made.nodes.size(),
                           made.elements.size(), mesh.nodes.size(), mesh.elements.size());
    const Difference d = difference_by_number(mesh, made, 0.0);
    const auto node = [&](std::int32_t place) {
        return mesh.nodes[static_cast<std::size_t>(place)].number.value;
    };
    if (!d.nodes_only_a.empty())
        return fmt::format("no node {}", node(d.nodes_only_a.front()));
    if (!d.nodes_moved.empty())
        return fmt::format("node {} at another place", node(d.nodes_moved.front().first));
    if (!d.elements_only_a.empty())
        return fmt::format("no element {}",
                           mesh.elements[static_cast<std::size_t>(d.elements_only_a.front())].number.value);
    for (const auto& [a, b] : d.elements_changed) {
        const Element &ours = mesh.elements[static_cast<std::size_t>(a)],
                      &theirs = made.elements[static_cast<std::size_t>(b)];
        if (ours.section() != theirs.section() || !same_nodes(ours.words, theirs.words))
            return fmt::format("element {} with other nodes", ours.number.value);
    }
    return {};
}

DeckStages with_names(const MeshLists& mesh, MaterialNames names, Stages stages) {
    names.take(mesh.names);
    for (const Element& e : mesh.elements) {
        const MaterialNumber old = stages.old_material(e.number.value);
        if (!old.names_one() || !names.of(e.of, e.words.material.value).empty())
            continue;
        const std::string name = names.of(e.of, old.value);
        if (!name.empty())
            names.set(e.of, e.words.material.value, name);
    }
    return {std::move(stages), std::move(names)};
}

}  // namespace

DeckStages stages_of_deck(const std::string& deck, const MeshLists& mesh, const Context& context) {
    const DeckSource source = deck_source(deck);
    fs::path project = source.file.parent_path();
    if (project.empty())
        project = ".";
    const DeckPlace place{project, {}};
    EditionOptions kind;
    kind.kind = name_of(mesh.kind);
    const Edition edition = edition_of_deck(source, project, {}, kind).edition;
    const DeckCheck check = check_of(read_deck(source, edition.kind), edition, place);
    if (check.verdict.status != STATUS_OK)
        throw Failure(check.verdict.message);
    std::string by_rules;  // what is wrong with the mesh of the cut that most meshes are made by
    for (const CutMethod cut : {CutMethod::by_rules, CutMethod::sound}) {
        const DryRun ran = dry_run(check, place, cut, context.program);
        if (ran.status == STATUS_OK && !ran.mesh)
            throw Failure(fmt::format("{}: expected a deck that makes a mesh", deck));
        const std::optional<std::string> fault =
            ran.status != STATUS_OK ? ran.message : other_than(mesh, *ran.mesh);
        if (!fault)
            return with_names(mesh, check.deck.names, {mesh, ran.activity});
        if (by_rules.empty())
            by_rules = ran.status != STATUS_OK
                           ? *fault
                           : fmt::format("{}: expected the deck that made {}, but its mesh has {}", deck,
                                         mesh.file, *fault);
    }
    throw Failure(by_rules);
}

}  // namespace brelan::tool
