// The study that `brelan study new` writes.
#pragma once

#include <string_view>

namespace brelan::tool {

// With "@NAME@" where the name of the study stands.
extern const std::string_view STARTER_STUDY, STARTER_STUDY_DECK;

}  // namespace brelan::tool
