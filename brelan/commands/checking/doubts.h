// What the checker does not look at: values that can hardly be meant.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "commands/checking/mesh_places.h"
#include "model/deck.h"

namespace brelan::tool {

struct Doubt {
    std::string id;  // for programs: "unknown-code"
    int line = 0;    // of the deck, 0 where none is to blame
    std::string message;
    bool ends_run = false;  // the batch program will end with a message there
    // Places in NotedDeck::cards and in its fields: the first field that the message names.
    std::optional<std::size_t> card, field;
};

// Collects doubts of a deck.
class Doubts {
public:
    explicit Doubts(const NotedDeck& deck) : deck_(deck) {}

    const NotedDeck& deck() const { return deck_; }
    const std::vector<Doubt>& list() const { return list_; }

    // About a card; nullptr for none.
    void doubt(std::string_view id, const DeckCard* card, std::string message);
    void end_of_run(std::string_view id, const DeckCard* card, std::string message);

    // In the order of the deck.
    void sort();

private:
    const NotedDeck& deck_;
    std::vector<Doubt> list_;
};

// Where the deck runs.
struct DeckPlace {
    std::filesystem::path project;
    std::filesystem::path work;  // the working directory of the run; empty for one of its own
};

// The meshes that a deck reads, as far as they are known.
struct DeckMeshes {
    const MeshLists* a = nullptr;        // FILEA, or the base mesh
    const MeshLists* b = nullptr;        // FILEB
    const MeshPlaces* places = nullptr;  // of a
};

// Codes that mean nothing; whole numbers that are cut, do not fit or lose digits on the way; lines whose
// start or end is not seen.
void doubt_codes(Doubts& doubts);
void doubt_numbers(Doubts& doubts);
// Counts that disagree, switches that exclude each other, lengths that make no sense.
void doubt_cards(Doubts& doubts);
// An earth dam: lengths that make no sense, profiles whose mesh may come out unsound, slopes that are fixed,
// and a core or wall that its shells cut off; `body` is its mesh by the rules without them, nullptr where it
// is not known.
void doubt_dam(Doubts& doubts, const MeshLists* body);
// Files that are not there or in each other's way.
void doubt_files(Doubts& doubts, const DeckPlace& place, const DeckMeshes& meshes);
// Numbers and materials that the mesh does not have, windows with nothing in them, combinations without
// common nodes.
void doubt_mesh(Doubts& doubts, const DeckMeshes& meshes);
// Outlines and lines: their counts and shape, and how they lie on the mesh.
void doubt_outlines(Doubts& doubts);
void doubt_cuts(Doubts& doubts, const DeckMeshes& meshes);
// Joints along lines on which two nodes lie at one place.
void doubt_joints(Doubts& doubts, const DeckMeshes& meshes);

}  // namespace brelan::tool
