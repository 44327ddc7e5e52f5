// Denormal results count as 0 in all arithmetic, on every processor.
#pragma once

namespace brelan {

void flush_to_zero();

}  // namespace brelan
