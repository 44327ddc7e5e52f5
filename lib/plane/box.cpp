#include "plane/box.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace brelan {

namespace {

// Where a test finds something beyond a box, and how far:
//
// A crossing of a slanting segment with one along an axis is accepted when its computed place, of the one
// coordinate, lies in the spans of both; of the other coordinate it may lie beyond the slanting one's end, by
// that one's whole height (or width, with the axes changed):
//
//     computed:  x = x0 + (y - y0) * (w / h)     from the end (x0, y0), over w and h to the other
//     accepted:  x from x0 to x0 + w             w and h at least 1e-10: the segment slants
//
// The last sum rounds by at most half the spacing of reals outside the span, where the spacing is at most
// twice that inside; two different ends stand at least the inner spacing apart, so it rounds by at most w.
// Hence (y - y0) * (w / h) is at most 2 w, and backwards w: y lies at most one h beyond either end, but for
// five roundings of 6e-8 each. What is below 1e-38 and taken as 0 is less than 1e-12 of y. Beyond FARTHEST
// products leave the range of the reals and the bound with it: such a box reaches everywhere. Two slanting
// segments cross only where their boxes meet, and so do two along the axes.
//
// A triangle contains points to 5e-5 of its own width and height beyond it; areas of less than 1e-10 of size
// and coordinate, whose rounding could take more, must be kept apart. A node at most `reach` from a segment
// is found by its computed distance; 1e-6 of a coordinate is room for the rounding of middles and of a
// polygon's crossings.
constexpr float FARTHEST = 1.0E15F;
constexpr float EVERYWHERE = std::numeric_limits<float>::infinity();
constexpr float IN_TRIANGLE = 2.0E-4F;

}  // namespace

void Extent::include(const Point& a, const Point& b) {
    const float w = std::abs(b.x - a.x), h = std::abs(b.y - a.y);
    if (w == 0.0F || h == 0.0F)
        return;
    width = std::max(width, w);
    height = std::max(height, h);
}

float Box::size() const {
    return std::max(x1 - x0, y1 - y0);
}

Box Box::with_room(const Extent& slanting, float reach) const {
    const float far = std::max({std::abs(x0), std::abs(x1), std::abs(y0), std::abs(y1)});
    if (!(far <= FARTHEST))
        return {-EVERYWHERE, -EVERYWHERE, EVERYWHERE, EVERYWHERE};
    const float more = reach * 1.01F + far * 1.0E-6F + 1.0E-9F;
    const float room_x = slanting.width * 1.0001F + (x1 - x0) * IN_TRIANGLE + more;
    const float room_y = slanting.height * 1.0001F + (y1 - y0) * IN_TRIANGLE + more;
    return {x0 - room_x, y0 - room_y, x1 + room_x, y1 + room_y};
}

}  // namespace brelan
