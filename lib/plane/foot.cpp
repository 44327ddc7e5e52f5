#include "plane/foot.h"

namespace brelan {

Point point_between(const Point& from, const Point& to, double share) {
    const double x = static_cast<double>(from.x), y = static_cast<double>(from.y);
    return {static_cast<float>(x + share * (static_cast<double>(to.x) - x)),
            static_cast<float>(y + share * (static_cast<double>(to.y) - y))};
}

Point meeting_of(const Point& a, const Point& b, const Point& c, const Point& d) {
    const double rx = static_cast<double>(b.x) - static_cast<double>(a.x);
    const double ry = static_cast<double>(b.y) - static_cast<double>(a.y);
    const double sx = static_cast<double>(d.x) - static_cast<double>(c.x);
    const double sy = static_cast<double>(d.y) - static_cast<double>(c.y);
    const double vx = static_cast<double>(c.x) - static_cast<double>(a.x);
    const double vy = static_cast<double>(c.y) - static_cast<double>(a.y);
    const double share = (vx * sy - vy * sx) / (rx * sy - ry * sx);
    return {static_cast<float>(static_cast<double>(a.x) + share * rx),
            static_cast<float>(static_cast<double>(a.y) + share * ry)};
}

}  // namespace brelan
