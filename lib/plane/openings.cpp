#include "plane/openings.h"

#include <algorithm>
#include <cmath>

namespace brelan {

namespace {

struct Vector {
    double x, y;
};

Vector between(const Point& from, const Point& to) {
    return {static_cast<double>(to.x) - static_cast<double>(from.x),
            static_cast<double>(to.y) - static_cast<double>(from.y)};
}

template <std::size_t N>
Openings openings_of_polygon(const Point* corners) {
    Vector in = between(corners[N - 1], corners[0]);
    double square_in = in.x * in.x + in.y * in.y;
    Openings found{4.0, 0.0, square_in};
    for (std::size_t i = 0; i < N; ++i) {
        const Vector out = between(corners[i], corners[(i + 1) % N]);
        const double square_out = out.x * out.x + out.y * out.y;
        const double lengths = std::sqrt(square_out * square_in);
        const double cosine = lengths > 0.0 ? -(out.x * in.x + out.y * in.y) / lengths : 1.0;
        const double opening = in.x * out.y - in.y * out.x >= 0.0 ? 1.0 - cosine : 3.0 + cosine;
        found.smallest = std::min(found.smallest, opening);
        found.largest = std::max(found.largest, opening);
        found.shortest_square = std::min(found.shortest_square, square_out);
        in = out;
        square_in = square_out;
    }
    return found;
}

}  // namespace

Openings openings_of(std::span<const Point> corners) {
    return corners.size() == 3 ? openings_of_polygon<3>(corners.data())
                               : openings_of_polygon<4>(corners.data());
}

// The square of the cosine is that of the product of two sides by those of their lengths.
bool opens_at_most(std::span<const Point> corners, double limit) {
    constexpr double LEAST_COSINE = 0.01;  // below, its square is too near to the rounding of products
    constexpr double ROUNDING = 1.0 + 1.0E-9;
    const double cosine = 1.0 - limit;
    if (cosine < LEAST_COSINE)
        return false;
    const double square = cosine * cosine * ROUNDING;
    Vector in = between(corners.back(), corners.front());
    double square_in = in.x * in.x + in.y * in.y;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const Vector out = between(corners[i], corners[i + 1 < corners.size() ? i + 1 : 0]);
        const double square_out = out.x * out.x + out.y * out.y;
        const double product = in.x * out.x + in.y * out.y;
        if (product * product > square * square_in * square_out)
            return true;
        in = out;
        square_in = square_out;
    }
    return false;
}

}  // namespace brelan
