// What the cards of a deck draw.
#include <cmath>
#include <cstdlib>

#include "model/deck.h"
#include "model/group_path.h"
#include "text/file_names.h"

namespace brelan::tool {

namespace {

std::vector<DeckPoint> rectangle(double left, double bottom, double right, double top) {
    return {{left, bottom}, {right, bottom}, {right, top}, {left, top}};
}

void add_blocks(const NotedDeck& deck, std::vector<DeckShape>& shapes) {
    const DeckCard* corner = deck.card("4.2");
    if (corner == nullptr)
        return;
    double width = 0.0, height = 0.0;
    for (const DeckCard& card : deck.cards) {
        if (card.number == "4.3")
            width += static_cast<double>(card.real("W"));
        if (card.number == "4.4")
            height += static_cast<double>(card.real("H"));
    }
    const auto left = static_cast<double>(corner->real("Xo"));
    const auto bottom = static_cast<double>(corner->real("Yo"));
    double x = left, y = bottom + height;
    int column = 0, row = 0;
    for (const DeckCard& card : deck.cards) {
        if (card.number == "4.3") {
            const double end = x + static_cast<double>(card.real("W"));
            shapes.push_back({ShapeRole::block, "block column " + std::to_string(++column), 0, true,
                              rectangle(x, bottom, end, bottom + height)});
            x = end;
        } else if (card.number == "4.4") {
            const double end = y - static_cast<double>(card.real("H"));
            shapes.push_back({ShapeRole::block, "block row " + std::to_string(++row), 0, true,
                              rectangle(left, end, left + width, y)});
            y = end;
        }
    }
}

void add_windows(const NotedDeck& deck, std::vector<DeckShape>& shapes) {
    for (const DeckCard& card : deck.cards)
        if (card.type == CardType::values && card.field("XMIN") != nullptr)
            shapes.push_back(
                {ShapeRole::window, card.heading, 0, true,
                 rectangle(static_cast<double>(card.real("XMIN")), static_cast<double>(card.real("YMIN")),
                           static_cast<double>(card.real("XMAX")), static_cast<double>(card.real("YMAX")))});
}

// The left toe is the origin.
void add_dam(const NotedDeck& deck, std::vector<DeckShape>& shapes) {
    const DeckCard* profile = deck.card("5.2");
    if (profile == nullptr)
        return;
    const auto value = [&](const char* name) { return static_cast<double>(profile->real(name)); };
    const double crest = value("RUNL") + value("WCREST");
    const double toe = value("WLEFT") + value("WMID") + value("WRIGHT");
    shapes.push_back({ShapeRole::dam,
                      "profile of the dam",
                      0,
                      true,
                      {{0.0, 0.0}, {value("RUNL"), value("HDAM")}, {crest, value("HDAM")}, {toe, 0.0}}});
    if (const DeckCard* core = deck.card("5.3"))
        shapes.push_back({ShapeRole::dam, "core", 0, true, four_points(*core)});
    const DeckCard* margins = deck.card("5.4-1");
    if (margins == nullptr)
        return;
    double top = 0.0;
    int layer = 0;
    for (const DeckCard& card : deck.cards)
        if (card.number == margins->number && card.type == CardType::list)
            for (const float thickness : card.list) {
                const double bottom = top - static_cast<double>(thickness);
                shapes.push_back({ShapeRole::dam, "subsoil layer " + std::to_string(++layer), 0, true,
                                  rectangle(-static_cast<double>(margins->real("XLEFT")), bottom,
                                            toe + static_cast<double>(margins->real("XRIGHT")), top)});
                top = bottom;
            }
    if (const DeckCard* wall = deck.card("5.5"))
        shapes.push_back({ShapeRole::dam, "cut-off wall", 0, true, four_points(*wall)});
}

ShapeRole role_of(const DeckGroup& group) {
    if (group.group_type == 2)
        return group.overlay == 1 ? ShapeRole::free_line : ShapeRole::line;
    return group.group_type <= -2 && group.group_type >= -4 ? ShapeRole::joint : ShapeRole::outline;
}

}  // namespace

std::vector<DeckPoint> four_points(const DeckCard& card) {
    std::vector<DeckPoint> points;
    for (const char* i : {"1", "2", "3", "4"})
        points.push_back({static_cast<double>(card.real(std::string("X") + i)),
                          static_cast<double>(card.real(std::string("Y") + i))});
    return points;
}

std::vector<DeckShape> shapes_of(const NotedDeck& deck) {
    std::vector<DeckShape> shapes;
    add_blocks(deck, shapes);
    add_dam(deck, shapes);
    add_windows(deck, shapes);
    for (const DeckGroup& group : deck.groups) {
        if (group.path.empty())
            continue;
        const std::string title = group.title.empty() ? "group " + std::to_string(group.number) : group.title;
        shapes.push_back({role_of(group), title, group.number, group.closed, group.path});
        std::vector<DeckPoint>& points = shapes.back().points;
        if (group.closed && points.size() > 1 &&
            std::hypot(points.back().x - points.front().x, points.back().y - points.front().y) < SAME_PLACE)
            points.pop_back();
    }
    return shapes;
}

}  // namespace brelan::tool
