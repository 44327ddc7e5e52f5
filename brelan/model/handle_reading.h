// Numbers of a deck as its handles need them.
#pragma once

#include <cstddef>
#include <numbers>
#include <string_view>

#include "model/deck_handles.h"

namespace brelan::tool {

inline constexpr double FULL_TURN = 360.0, DEGREES = 180.0 / std::numbers::pi;  // of one radian

// A number with the five digits that arrive in the run.
double arriving(float value);

// The place of a field in a card that has it.
std::size_t place_of_field(const DeckCard& card, std::string_view name);

// The number of a field as it arrives.
double number_on(const DeckCard& card, std::string_view name);

// The handles of base mesh, edits and dam; those of the groups.
void add_plan_handles(const NotedDeck& deck, std::vector<DeckHandle>& handles);
void add_group_handles(const NotedDeck& deck, std::vector<DeckHandle>& handles);

}  // namespace brelan::tool
