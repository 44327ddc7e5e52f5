#include "drawing/frame.h"

#include <fmt/core.h>

#include <algorithm>
#include <utility>

namespace brelan::tool {

namespace {

std::string number_text(double v) {
    return fmt::format("{:.6g}", v == 0.0 ? 0.0 : v);
}

void add_tick(Path& ticks, const Position& from, const Position& to) {
    ticks.lines.points.push_back(from);
    ticks.lines.points.push_back(to);
    ticks.lines.end_line();
}

}  // namespace

void add_frame(Scene& scene, const Page& page, bool axes) {
    const Bounds& a = page.area();
    Labels title{"title", {{{a.low.x, a.low.y - 16.0}, scene.title}}, 15.0, Anchor::start, INK, true};
    title.clipped = false;
    scene.items.emplace_back(std::move(title));
    if (!axes)
        return;
    Path frame{"frame", {}, true, std::nullopt, Stroke{INK, 0.8}, false};
    frame.lines.points = {a.low, {a.high.x, a.low.y}, a.high, {a.low.x, a.high.y}};
    frame.lines.end_line();
    scene.items.emplace_back(std::move(frame));
    Path ticks{"ticks", {}, false, std::nullopt, Stroke{INK, 0.8}, false};
    Labels x{"x-axis", {}, 11.0, Anchor::middle}, y{"y-axis", {}, 11.0, Anchor::end};
    x.clipped = y.clipped = false;
    const Bounds& w = page.window();
    for (const double v : round_steps(w.low.x, w.high.x, 10)) {
        const Position p = page.on_page(Position{v, w.low.y});
        add_tick(ticks, p, {p.x, p.y + 5.0});
        x.labels.push_back({{p.x, p.y + 18.0}, number_text(v)});
    }
    for (const double v :
         round_steps(w.low.y, w.high.y, std::clamp(static_cast<int>(a.height() / 35.0), 3, 10))) {
        const Position p = page.on_page(Position{w.low.x, v});
        add_tick(ticks, p, {p.x - 5.0, p.y});
        y.labels.push_back({{p.x - 8.0, p.y + 4.0}, number_text(v)});
    }
    scene.items.emplace_back(std::move(ticks));
    scene.items.emplace_back(std::move(x));
    scene.items.emplace_back(std::move(y));
}

}  // namespace brelan::tool
