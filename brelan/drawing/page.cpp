#include "drawing/page.h"

#include <algorithm>
#include <cmath>

#include "text/utf_8.h"

namespace brelan::tool {

Page::Page(Bounds window, double left, double top, double width) {
    constexpr double FLATTEST = 0.12, STEEPEST = 1.4;  // height of the area over its width
    const double extent = window.extent() > 0.0 ? window.extent() : 1.0;
    const double middle_x = (window.low.x + window.high.x) / 2.0,
                 middle_y = (window.low.y + window.high.y) / 2.0;
    const double w = std::max(window.width(), extent / 1000.0),
                 h = std::max(window.height(), extent / 1000.0);
    const double ratio = std::clamp(h / w, FLATTEST, STEEPEST);
    scale_ = std::min(width / w, width * ratio / h);
    area_ = {{left, top}, {left + width, top + width * ratio}};
    window_ = {{middle_x - area_.width() / scale_ / 2.0, middle_y - area_.height() / scale_ / 2.0},
               {middle_x + area_.width() / scale_ / 2.0, middle_y + area_.height() / scale_ / 2.0}};
}

Polylines Page::on_page(Polylines lines) const {
    for (Position& p : lines.points)
        p = on_page(p);
    return lines;
}

bool Page::shows(const Position& p) const {
    return p.x >= area_.low.x && p.x <= area_.high.x && p.y >= area_.low.y && p.y <= area_.high.y;
}

std::vector<double> round_steps(double low, double high, int count) {
    const double rough = (high - low) / count;
    if (!(rough > 0.0))
        return {};
    const double power = std::pow(10.0, std::floor(std::log10(rough)));
    const double share = rough / power;
    const double step = power * (share <= 1.0 ? 1.0 : share <= 2.0 ? 2.0 : share <= 5.0 ? 5.0 : 10.0);
    const double first = std::ceil(low / step - 1e-9);
    std::vector<double> steps;
    for (int k = 0; k <= count && (first + k) * step <= high + step * 1e-9; ++k)
        steps.push_back((first + k) * step);
    return steps;
}

std::string picture_text(std::string_view text) {
    std::string out;
    while (!text.empty()) {
        const std::size_t size = size_of_character(text);
        const auto first = static_cast<unsigned char>(text.front());
        if (size > 0 && first >= ' ' && first != 127)
            out += text.substr(0, size);
        else
            out += '?';
        text.remove_prefix(std::max<std::size_t>(size, 1));
    }
    return out;
}

}  // namespace brelan::tool
