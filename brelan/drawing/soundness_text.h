// What soundness is told in.
#pragma once

#include <string>

#include "analysis/soundness.h"

namespace brelan::tool {

// One place in words, as "node 12 on a side of element 7 at (3, 4.5)".
std::string place_text(const Finding& finding, const Place& place);

// The verdict in one line: "sound", or how many of each fault there are and where the first is.
std::string soundness_line(const Soundness& soundness);

// The remarks in one line, without what is drawn so: stages, struts and anchors. Empty where there is none.
std::string remarks_line(const Soundness& soundness);

}  // namespace brelan::tool
