// What of a drawn deck can be dragged: points, arcs, block lines, parts of a dam, windows; and the numbers on
// cards that follow.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "model/deck.h"
#include "model/deck_edit.h"

namespace brelan::tool {

enum class HandleKind {
    point,   // of an outline or line, or a point that an edit names
    centre,  // of arcs
    radius,
    angle,  // where an arc begins or ends
    block,  // a side of block columns or rows
    dam,
    window,
};

// A number on a card, and how it follows a coordinate: it is factor * (coordinate - origin), and the origin
// has the coordinate where it is 0.
struct Lever {
    std::size_t card = 0, place = 0;  // as in ValueChange
    double origin = 0.0, factor = 1.0;
    bool is_length = false;  // it must stay above 0
};

struct DeckHandle {
    std::string id;  // stays as long as only numbers change
    HandleKind kind = HandleKind::point;
    DeckPoint place;
    int group = 0;      // from 1; 0: none
    std::string title;  // what it is, for a person
    // The numbers that follow x and y; with those of one alone it goes along that axis.
    std::vector<Lever> x, y;
    // Of a radius and of an angle: the centre, and the numbers, which follow the distance or the direction
    // from there.
    DeckPoint centre;
    std::vector<Lever> polar;

    std::size_t card() const { return (!x.empty() ? x : !y.empty() ? y : polar).front().card; }
};

std::vector<DeckHandle> handles_of(const NotedDeck& deck);

// A deck whose handle was moved.
struct Moved {
    std::vector<TextEdit> edits;
    DeckPoint place;  // of the handle now; a handle that goes along a line or a circle stays on it
};

// Moves a handle. Throws Failure with one sentence where it cannot be there and where there is no such
// handle.
Moved move_handle(const NotedDeck& deck, std::string_view id, const DeckPoint& to);

}  // namespace brelan::tool
