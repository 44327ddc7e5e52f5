// The blocks in which the main file and the plot decks list a group's elements: group, class, material,
// ranges.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "mesh/group_tables.h"
#include "text/channels.h"
#include "text/fixed_lines.h"

namespace brelan {

inline constexpr std::string_view EQUALS_ROW = "*=================================================";
inline constexpr std::string_view DASHES_ROW = "*-------------------------------------------------";
inline constexpr std::string_view STARS_ROW = "**************************************************";
static_assert(EQUALS_ROW.size() == 50 && DASHES_ROW.size() == 50 && STARS_ROW.size() == 50);

inline constexpr std::string_view CLASS_LINES[3] = {"* Continuum Element", "* Beam Element",
                                                    "* Truss Element"};

inline constexpr std::int32_t ACTIVITY_CODE = 0;  // a column of edition 1, for the user to fill in

// Opens the block of a group with its number and title, of a class in it, of a material in that.
void write_group_head(const GroupCards& group_cards, Channel& file, std::int32_t g);
void write_class_head(Channel& file, std::int8_t type);
void write_material_head(Channel& file, MaterialNumber material, std::span<const std::string_view> heading);

// Copies the lines of a text from its start, trailing blanks cut.
void copy_lines(Channel& from, Channel& to);

// The seven lines over a fragment: two of 50 columns in a frame.
void write_banner(Channel& file, std::string_view title, std::string_view card);

}  // namespace brelan
