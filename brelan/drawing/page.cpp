#include "drawing/page.h"

#include <algorithm>
#include <cmath>

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
    for (std::size_t i = 0; i < text.size();) {
        const auto c = static_cast<unsigned char>(text[i]);
        const std::size_t length = c < 0x80U                 ? 1
                                   : c >= 0xC2U && c < 0xE0U ? 2
                                   : c >= 0xE0U && c < 0xF0U ? 3
                                   : c >= 0xF0U && c < 0xF5U ? 4
                                                             : 0;
        bool valid = length > 0 && i + length <= text.size() && c >= ' ' && c != 127;
        for (std::size_t k = 1; valid && k < length; ++k)
            valid = (static_cast<unsigned char>(text[i + k]) & 0xC0U) == 0x80U;
        // Overlong forms, surrogates and what lies beyond the last code point.
        const unsigned char second = valid && length > 1 ? static_cast<unsigned char>(text[i + 1]) : 0x90;
        valid = valid && !(c == 0xE0U && second < 0xA0U) && !(c == 0xEDU && second > 0x9FU) &&
                !(c == 0xF0U && second < 0x90U) && !(c == 0xF4U && second > 0x8FU);
        if (valid)
            out += text.substr(i, length);
        else
            out += '?';
        i += valid ? length : 1;
    }
    return out;
}

}  // namespace brelan::tool
