#include "plane/orientation.h"

#include <array>

namespace brelan {

namespace {

int sign_of(double value) {
    return value > 0.0 ? 1 : value < 0.0 ? -1 : 0;
}

// The sign of a sum of six terms. The partial sums do not overlap and grow, so that the last one that is not
// 0 has the sign of all.
int sign_of_sum(const std::array<double, 6>& terms) {
    std::array<double, 6> partial{};
    std::size_t count = 0;
    for (double carry : terms) {
        for (std::size_t i = 0; i < count; ++i) {
            const double sum = carry + partial[i];
            const double of_second = sum - carry;
            const double rest = (carry - (sum - of_second)) + (partial[i] - of_second);
            partial[i] = rest;
            carry = sum;
        }
        partial[count++] = carry;
    }
    for (std::size_t i = count; i-- > 0;)
        if (partial[i] != 0.0)
            return sign_of(partial[i]);
    return 0;
}

}  // namespace

int orientation_by_products(const Point& a, const Point& b, const Point& c) {
    const double ax = static_cast<double>(a.x), ay = static_cast<double>(a.y);
    const double bx = static_cast<double>(b.x), by = static_cast<double>(b.y);
    const double cx = static_cast<double>(c.x), cy = static_cast<double>(c.y);
    // Products of 32-bit numbers have no rounding in 64 bits.
    return sign_of_sum({ax * by, -(ax * cy), bx * cy, -(bx * ay), cx * ay, -(cx * by)});
}

bool holds(std::span<const Point> ring, const Point& p) {
    bool inside = false;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const Point &a = ring[i], &b = ring[(i + 1) % ring.size()];
        if (a.y <= p.y && b.y > p.y && orientation(a, b, p) > 0)
            inside = !inside;
        if (b.y <= p.y && a.y > p.y && orientation(b, a, p) > 0)
            inside = !inside;
    }
    return inside;
}

}  // namespace brelan
