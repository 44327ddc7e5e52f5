// A deck as it is noted for a person: its cards in order, each with its heading, its fields by name and the
// line of the file that it stands on; and what the cards draw, as outlines and lines.
//
// The cards are those that the batch program reads. Where the program would refuse the deck the cards end,
// and `fault` says why.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/material_names.h"
#include "deck/card.h"

namespace brelan::tool {

// --- cards ---------------------------------------------------------------------------------------

// The integer that a value is cut to, as the program does it; but none whose opposite has no room. Cards have
// no room for either.
std::int32_t whole_number(float value);

struct DeckField {
    std::string name;
    bool written = true;  // false: the program drops the value
    FieldForm form = FieldForm::integer;
    float value = 0.0F;
    bool known = false;                     // false: the card is refused before the value is read
    bool given = false;                     // false: the value is the card's default, or a null value
    std::string text;                       // as written, empty where the card has none
    int first_column = 0, last_column = 0;  // of its text on the card, 0 where it has none

    std::int32_t integer() const;
};

enum class CardType { values, name, title, list };

struct DeckCard {
    CardType type = CardType::values;
    std::string number;           // as the manual numbers it, "3.3.5.4.2-1"
    std::string label;            // as messages of the batch program name it, "3.3.5.4.2.2"
    std::string heading;          // what it is, "point of the outline"
    int line = 0, last_line = 0;  // of the file, from 1; a list may run over several lines
    std::string text;             // the line as it stands, without trailing blanks
    std::vector<DeckField> fields;
    std::vector<float> list;    // numbers as written
    std::string name;           // of a file, or a title
    const Card* row = nullptr;  // in the card table; nullptr for names and titles
    int group = 0;              // the group it belongs to, from 1; 0 none

    const DeckField* field(std::string_view name) const;      // nullptr: no such field
    std::int32_t integer(std::string_view field_name) const;  // 0 where there is no such field
    float real(std::string_view field_name) const;
};

// Why the batch program refuses the deck.
struct DeckFault {
    std::string message;       // one line, without file and line
    int line = 0;              // of the file; 0 where no line is to blame
    bool wrong_count = false;  // the error report of a card with too few or too many values (stop 300)
    int minimum = 0, maximum = 0, found = 0;  // counts of values, when wrong_count
    // The field in question, from 0: the first that is missing or too many, or the one whose text is no
    // number.
    std::optional<std::size_t> field;
    std::optional<std::size_t> card;  // its place in NotedDeck::cards
};

// --- what the cards draw -------------------------------------------------------------------------

struct DeckPoint {
    double x = 0.0, y = 0.0;
};

struct DeckSegment {
    std::int32_t segment_type = 0, divisions = 0, end_rule = 0;
    std::vector<DeckPoint> path;  // its points, from the end of the segment before it; none: it draws nothing
    std::size_t card = 0;         // place of Card 3.3.5.4.3.1 in NotedDeck::cards
};

struct DeckGroup {
    int number = 0;  // from 1
    std::string title;
    std::int32_t group_type = 0, overlay = 0;
    std::vector<DeckPoint> points;      // of the outline, in its order
    std::vector<DeckSegment> segments;  // none: the points are the path, and nothing is cut
    bool closed = false;
    std::vector<DeckPoint> path;  // all of it, as the engine has it
    std::size_t card = 0;         // place of Card 3.3.5.4.1 in NotedDeck::cards
};

enum class ShapeRole {
    outline,    // closed: material, stage or deletion inside
    line,       // beams or trusses along it
    free_line,  // beams or trusses that do not touch the mesh
    joint,      // open or closed, with twins on its left
    block,      // a block column or row of a base mesh
    window,     // of a selection, or the limits of groups
    dam,        // profile, core, wall and layers of an earth dam
};

struct DeckShape {
    ShapeRole role = ShapeRole::outline;
    std::string title;  // of the group, "group 3" where it has none; else what it is
    int group = 0;      // from 1; 0: not a group
    bool closed = false;
    std::vector<DeckPoint> points;  // a polyline; a closed one does not repeat its first point
};

// --- the deck ------------------------------------------------------------------------------------

// The mesh that the cards of a base mesh make, in the project.
inline constexpr std::string_view BASE_MESH = "Bmesh.dat";

// What a deck is read from: a file, or standard input, which comes but once.
struct DeckSource {
    std::filesystem::path file;  // as the user knows it
    std::string text;            // all of it, without a byte order mark in front
    bool byte_order_mark = false;
};

// The source for a name on the command line. Throws Failure where the file is not there, is empty, or is no
// text.
DeckSource deck_source(const std::filesystem::path& file);

struct NotedDeck : DeckSource {
    LayoutKind kind = LayoutKind::displacement;
    std::vector<DeckCard> cards;
    std::optional<DeckFault> fault;
    int surplus_line = 0;  // first line behind the last card that is no comment; 0 none
    std::int32_t mode = 0;
    std::vector<DeckGroup> groups;

    MaterialNames names;  // of its comment lines

    // Names of meshes as they stand on the cards; empty where the deck has no such card.
    std::string first_mesh, second_mesh, result;

    const DeckCard* card(std::string_view number) const;  // the first of that number
};

// Reads a deck for an edition of a kind. A deck that the batch program refuses comes back with its fault.
NotedDeck read_deck(const DeckSource& source, LayoutKind kind);

// The same for a file. Throws Failure as deck_source does.
NotedDeck read_deck(const std::filesystem::path& file, LayoutKind kind);

// X1 Y1 to X4 Y4 of a card of a dam's core or wall.
std::vector<DeckPoint> four_points(const DeckCard& card);

// What the deck draws, in the order of its cards. Coordinates are those of the mesh.
std::vector<DeckShape> shapes_of(const NotedDeck& deck);

// True for a name that is taken from the working directory of the run, as old\Row.Mes is.
bool in_working_directory(std::string_view name);

// The file that a name on a card stands for, in a project: a bare name is a file of the project. Empty where
// two files go by the name, and for a name in the working directory where that is not given: each run has
// another one.
std::filesystem::path file_of_card(const std::filesystem::path& project, std::string_view name,
                                   const std::filesystem::path& work = {});

}  // namespace brelan::tool
