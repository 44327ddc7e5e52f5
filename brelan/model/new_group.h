// A group that is drawn with a pointer becomes cards of the deck.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/deck.h"
#include "model/deck_edit.h"

namespace brelan::tool {

enum class DrawnForm {
    outline,  // three points and more; a material inside
    line,     // two points and more; beams of a material along it
    arc,  // a line through three points on a circle; or a circle, with a material inside, by its centre and
          // a point on it
};

struct GroupSketch {
    DrawnForm form = DrawnForm::outline;
    std::vector<DeckPoint> points;
    std::int32_t material = 0;  // 0: the mesh is cut, and gets none
    std::string title;          // empty: it gets one
};

struct NewGroup {
    std::vector<TextEdit> edits;  // from the last to the first
    int line = 0;                 // of its first card in the new text, from 1
};

// The cards of a group behind the one that a line, from 1, is in; behind all groups where it is in front of
// their cards. A base mesh without an edit gets one that draws the group. Throws Failure with one sentence
// where nothing can be drawn like that.
NewGroup draw_group(const NotedDeck& deck, int line, const GroupSketch& drawn);

}  // namespace brelan::tool
