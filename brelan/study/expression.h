// Simple arithmetic in a placeholder of a deck.
#pragma once

#include <string_view>

#include "study/value.h"

namespace brelan::tool {

// The value of an expression: numbers, parameters by name, + - * / ^, brackets, pi, and the functions min,
// max, abs, sqrt, floor, ceil, round (with a count of digits, if wanted), and sin, cos, tan, asin, acos, atan
// of degrees. A parameter alone keeps its value, be it a text. Throws Failure without a place.
StudyValue evaluate(std::string_view expression, const NamedValues& values);

}  // namespace brelan::tool
