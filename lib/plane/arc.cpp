#include "plane/arc.h"

#include <cmath>
#include <cstdlib>

namespace brelan {

Point ellipse_point(float angle, const Point& centre, float half_axis_x, float half_axis_y) {
    const float sine = static_cast<float>(std::sin(static_cast<double>(angle)));
    const float cosine = static_cast<float>(std::cos(static_cast<double>(angle)));
    const float denominator =
        half_axis_x * half_axis_x * (sine * sine) + half_axis_y * half_axis_y * (cosine * cosine);
    const float dx =
        std::sqrt(cosine * cosine * (half_axis_x * half_axis_x) * (half_axis_y * half_axis_y) / denominator);
    const float dy =
        std::sqrt(sine * sine * (half_axis_x * half_axis_x) * (half_axis_y * half_axis_y) / denominator);
    return {cosine < 0.0F ? centre.x - dx : centre.x + dx, sine < 0.0F ? centre.y - dy : centre.y + dy};
}

ArcTable::ArcTable(float begin_angle, float end_angle, float half_axis_x, float half_axis_y,
                   std::int32_t divisions)
    : divisions_(std::abs(divisions)),
      end_angle_(end_angle),
      half_axis_x_(half_axis_x),
      half_axis_y_(half_axis_y) {
    const float step = (end_angle - begin_angle) / static_cast<float>(STEPS);
    angle_[0] = begin_angle;
    Point last = ellipse_point(begin_angle, {}, half_axis_x, half_axis_y);
    for (std::size_t i = 1; i <= STEPS; ++i) {
        angle_[i] = angle_[i - 1] + step;
        const Point next = ellipse_point(angle_[i], {}, half_axis_x, half_axis_y);
        length_[i] = length_[i - 1] + distance_between(last.x, last.y, next.x, next.y);
        last = next;
    }
    step_ = divisions_ > 0 ? length_[STEPS] / static_cast<float>(divisions_) : length_[STEPS];
}

Point ArcTable::point(std::int32_t number, const Point& centre) const {
    if (number == divisions_)
        return ellipse_point(end_angle_, centre, half_axis_x_, half_axis_y_);
    const float length = static_cast<float>(number) * step_;
    float angle = 0.0F;
    for (std::size_t i = 1; i <= STEPS; ++i) {
        if (length_[i - 1] <= length && length <= length_[i]) {
            angle = angle_[i - 1] +
                    (length - length_[i - 1]) * (angle_[i] - angle_[i - 1]) / (length_[i] - length_[i - 1]);
            break;
        }
    }
    return ellipse_point(angle, centre, half_axis_x_, half_axis_y_);
}

}  // namespace brelan
