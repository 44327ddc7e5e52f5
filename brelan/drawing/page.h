// Where things of the mesh stand on the page.
#pragma once

#include <cmath>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/geometry.h"
#include "drawing/mesh_lines.h"

namespace brelan::tool {

// The drawing area with the part of the mesh that it shows.
class Page {
public:
    // The area is as high as the window asks for, within reason. A window without width or height is widened.
    Page(Bounds window, double left, double top, double width);

    // What lies beyond all that can be drawn is moved to where it can be counted.
    Position on_page(const Position& p) const {
        constexpr double FARTHEST = 1e12;
        return {std::fmax(-FARTHEST, std::fmin(FARTHEST, area_.low.x + (p.x - window_.low.x) * scale_)),
                std::fmax(-FARTHEST, std::fmin(FARTHEST, area_.high.y - (p.y - window_.low.y) * scale_))};
    }
    Polylines on_page(Polylines lines) const;

    double scale() const { return scale_; }           // page units for a unit of length
    const Bounds& area() const { return area_; }      // on the page
    const Bounds& window() const { return window_; }  // of the mesh, as it shows
    bool shows(const Position& p) const;              // p on the page

private:
    Bounds window_, area_;
    double scale_ = 1.0;
};

// Round numbers from low to high, about `count` of them.
std::vector<double> round_steps(double low, double high, int count);

// Text without invalid UTF-8 and without control characters.
std::string picture_text(std::string_view text);

}  // namespace brelan::tool
