// What the page of an editor is told of a deck's text, without a run of it.
#pragma once

#include "cli/json.h"
#include "commands/batch/edition.h"
#include "commands/checking/doubts.h"
#include "model/deck.h"

namespace brelan::tool {

// Cards with the columns of their fields, what their numbers mean, findings of the text alone, groups, what
// is drawn and what of it can be dragged. Lines and columns are those of DeckColumns.
Json deck_json(const NotedDeck& deck, const Edition& edition);

// The findings with those for which the files of the deck's place are read and a base mesh is made: all that
// brelan check tells. It takes as long as the mesh is large.
Json findings_json(const NotedDeck& deck, const Edition& edition, const DeckPlace& place);

// The edits that move a handle, {handle, x, y}, and where it is then. Throws Failure where it cannot be
// there.
Json move_json(const NotedDeck& deck, const Json& question);

// The edits that draw a group, {line, form, points, material, title}, and the line where its cards begin.
// Throws Failure where nothing can be drawn like that.
Json draw_json(const NotedDeck& deck, const Json& question);

}  // namespace brelan::tool
