// What can be dragged of a base mesh, of an edit and of an earth dam.
#include <fmt/core.h>

#include <array>
#include <numeric>
#include <utility>

#include "model/handle_reading.h"

namespace brelan::tool {

namespace {

// Adds handles of one deck.
class Plan {
public:
    Plan(const NotedDeck& deck, std::vector<DeckHandle>& handles) : deck_(deck), handles_(handles) {}

    void add_blocks() const {
        const DeckCard* corner = deck_.card("4.2");
        if (corner == nullptr || deck_.card("4.5") == nullptr)
            return;
        const auto columns = cards_of("4.3"), rows = cards_of("4.4");
        const double left = number_on(*corner, "Xo"), bottom = number_on(*corner, "Yo");
        const double width = sum_of(columns, "W"), height = sum_of(rows, "H");

        // Rows come from the top: their lines are counted as those of columns are, against the axis.
        const DeckPoint middle{left + width / 2.0, bottom + height / 2.0};
        double x = left;
        for (std::size_t line = 0; line <= columns.size(); ++line) {
            DeckHandle handle = block_line("column", line, columns.size());
            handle.place = {x, middle.y};
            if (line == 0)
                handle.x.push_back(lever(*corner, "Xo", 0.0, 1.0));
            if (line > 0) {
                const double before = x - number_on(*columns[line - 1], "W");
                handle.x.push_back(length(*columns[line - 1], "W", before, 1.0));
            }
            if (line < columns.size()) {
                x += number_on(*columns[line], "W");
                handle.x.push_back(length(*columns[line], "W", x, -1.0));
            }
            handles_.push_back(std::move(handle));
        }
        double y = bottom + height;
        for (std::size_t line = 0; line <= rows.size(); ++line) {
            DeckHandle handle = block_line("row", line, rows.size());
            handle.place = {middle.x, y};
            if (line == rows.size())
                handle.y.push_back(lever(*corner, "Yo", 0.0, 1.0));
            if (line > 0) {
                const double before = y + number_on(*rows[line - 1], "H");
                handle.y.push_back(length(*rows[line - 1], "H", before, -1.0));
            }
            if (line < rows.size()) {
                y -= number_on(*rows[line], "H");
                handle.y.push_back(length(*rows[line], "H", y, 1.0));
            }
            handles_.push_back(std::move(handle));
        }
    }

    void add_windows() const {
        int number = 0;
        for (const DeckCard& card : deck_.cards) {
            if (!is_read(card) || card.field("XMIN") == nullptr)
                continue;
            ++number;
            for (const auto& [corner, x, y] :
                 {std::array{"lower-left", "XMIN", "YMIN"}, std::array{"lower-right", "XMAX", "YMIN"},
                  std::array{"upper-right", "XMAX", "YMAX"}, std::array{"upper-left", "XMIN", "YMAX"}})
                handles_.push_back(free_point(card, HandleKind::window, fmt::format("w{}.{}", number, corner),
                                              fmt::format("corner of the {}", card.heading), x, y));
        }
    }

    // The points that an edit names.
    void add_edit_points() const {
        if (const DeckCard* move = read_card("3.3.1.1")) {
            add_point(*move, "move.from", "point that is moved", "XO", "YO");
            add_point(*move, "move.to", "its new place", "XN", "YN");
        }
        if (const DeckCard* slope = read_card("3.3.6.3")) {
            add_point(*slope, "slope.crest", "end of the crest", "X1", "Y1");
            add_point(*slope, "slope.toe", "toe of the slope", "X2", "Y2");
            add_point(*slope, "slope.foot", "foot below the crest", "X3", "Y3");
        }
    }

    void add_dam() const {
        const DeckCard* profile = read_card("5.2");
        if (profile == nullptr)
            return;
        add_profile(*profile);
        if (const DeckCard* core = read_card("5.3"))
            add_four_points(*core, "core", "core");
        const DeckCard* margins = read_card("5.4-1");
        const std::size_t layers = margins == nullptr ? deck_.cards.size() : list_behind(*margins);
        if (layers < deck_.cards.size())
            add_ground(*profile, *margins, layers);
        if (const DeckCard* wall = read_card("5.5"))
            add_four_points(*wall, "wall", "cut-off wall");
    }

private:
    static bool is_read(const DeckCard& card) {
        return card.type == CardType::values && !card.fields.empty() && card.fields.front().known;
    }

    const DeckCard* read_card(std::string_view number) const {
        const DeckCard* card = deck_.card(number);
        return card != nullptr && is_read(*card) ? card : nullptr;
    }

    std::vector<const DeckCard*> cards_of(std::string_view number) const {
        std::vector<const DeckCard*> cards;
        for (const DeckCard& card : deck_.cards)
            if (card.number == number)
                cards.push_back(&card);
        return cards;
    }

    static double sum_of(const std::vector<const DeckCard*>& cards, std::string_view field) {
        return std::accumulate(cards.begin(), cards.end(), 0.0, [&](double sum, const DeckCard* card) {
            return sum + number_on(*card, field);
        });
    }

    Lever lever(const DeckCard& card, std::string_view field, double origin, double factor) const {
        return {static_cast<std::size_t>(&card - deck_.cards.data()), place_of_field(card, field), origin,
                factor, false};
    }

    Lever length(const DeckCard& card, std::string_view field, double origin, double factor) const {
        Lever lever = this->lever(card, field, origin, factor);
        lever.is_length = true;
        return lever;
    }

    static DeckHandle block_line(const char* what, std::size_t line, std::size_t count) {
        DeckHandle handle;
        handle.id = fmt::format("{}{}", what, line);
        handle.kind = HandleKind::block;
        handle.title = line == 0       ? fmt::format("begin of block {} 1", what)
                       : line == count ? fmt::format("end of block {} {}", what, line)
                                       : fmt::format("between block {}s {} and {}", what, line, line + 1);
        return handle;
    }

    DeckHandle free_point(const DeckCard& card, HandleKind kind, std::string id, std::string title,
                          std::string_view x, std::string_view y) const {
        DeckHandle handle;
        handle.id = std::move(id);
        handle.kind = kind;
        handle.title = std::move(title);
        handle.place = {number_on(card, x), number_on(card, y)};
        handle.x.push_back(lever(card, x, 0.0, 1.0));
        handle.y.push_back(lever(card, y, 0.0, 1.0));
        return handle;
    }

    void add_point(const DeckCard& card, std::string id, std::string title, std::string_view x,
                   std::string_view y) const {
        handles_.push_back(free_point(card, HandleKind::point, std::move(id), std::move(title), x, y));
    }

    // --- earth dam -------------------------------------------------------------------------------

    DeckHandle dam_handle(std::string id, std::string title, DeckPoint place) const {
        DeckHandle handle;
        handle.id = "dam." + std::move(id);
        handle.kind = HandleKind::dam;
        handle.title = std::move(title);
        handle.place = place;
        return handle;
    }

    void add_four_points(const DeckCard& card, const char* id, const char* name) const {
        for (int i = 1; i <= 4; ++i)
            handles_.push_back(free_point(card, HandleKind::dam, fmt::format("dam.{}.p{}", id, i),
                                          fmt::format("point {} of the {}", i, name), fmt::format("X{}", i),
                                          fmt::format("Y{}", i)));
    }

    // The left toe is the origin. The block columns of the mesh go with the profile where they are alike.
    void add_profile(const DeckCard& profile) const {
        const auto value = [&](const char* name) { return number_on(profile, name); };
        const double left = value("RUNL"), right = left + value("WCREST"), top = value("HDAM");
        const double first = value("WLEFT"), second = first + value("WMID"), toe = second + value("WRIGHT");
        const double end = right + value("RUNR");

        DeckHandle crest = dam_handle("crest-left", "left end of the crest", {left, top});
        crest.x = {length(profile, "RUNL", 0.0, 1.0), length(profile, "WCREST", right, -1.0)};
        if (first == left) {
            crest.x.push_back(length(profile, "WLEFT", 0.0, 1.0));
            crest.x.push_back(length(profile, "WMID", second, -1.0));
        }
        crest.y = {length(profile, "HDAM", 0.0, 1.0)};
        handles_.push_back(crest);

        crest = dam_handle("crest-right", "right end of the crest", {right, top});
        crest.x = {length(profile, "WCREST", left, 1.0), length(profile, "RUNR", end, -1.0)};
        if (second == right) {
            crest.x.push_back(length(profile, "WMID", first, 1.0));
            crest.x.push_back(length(profile, "WRIGHT", toe, -1.0));
        }
        crest.y = {length(profile, "HDAM", 0.0, 1.0)};
        handles_.push_back(crest);

        DeckHandle right_toe = dam_handle("toe", "right toe", {toe, 0.0});
        right_toe.x = {length(profile, "WRIGHT", second, 1.0),
                       length(profile, "RUNR", toe - value("RUNR"), 1.0)};
        handles_.push_back(right_toe);

        if (top != 0.0) {
            const double water = value("HWATER");
            DeckHandle level = dam_handle("water", "level of the water", {left * water / top, water});
            level.y = {lever(profile, "HWATER", 0.0, 1.0)};
            handles_.push_back(level);
        }

        DeckHandle column =
            dam_handle("column1", "between the left and the middle block column", {first, 0.0});
        column.x = {length(profile, "WLEFT", 0.0, 1.0), length(profile, "WMID", second, -1.0)};
        handles_.push_back(column);
        column = dam_handle("column2", "between the middle and the right block column", {second, 0.0});
        column.x = {length(profile, "WMID", first, 1.0), length(profile, "WRIGHT", toe, -1.0)};
        handles_.push_back(column);
    }

    // The list of the thicknesses stands behind the margins; the number of cards where it does not.
    std::size_t list_behind(const DeckCard& margins) const {
        for (std::size_t i = 0; i < deck_.cards.size(); ++i)
            if (deck_.cards[i].number == margins.number && deck_.cards[i].type == CardType::list &&
                !deck_.cards[i].list.empty())
                return i;
        return deck_.cards.size();
    }

    void add_ground(const DeckCard& profile, const DeckCard& margins, std::size_t layers) const {
        const double toe =
            number_on(profile, "WLEFT") + number_on(profile, "WMID") + number_on(profile, "WRIGHT");
        const std::vector<float>& thicknesses = deck_.cards[layers].list;
        double top = 0.0;
        for (std::size_t i = 0; i < thicknesses.size(); ++i) {
            const double bottom = top - arriving(thicknesses[i]);
            DeckHandle handle =
                dam_handle(fmt::format("layer{}", i + 1), fmt::format("bottom of subsoil layer {}", i + 1),
                           {toe / 2.0, bottom});
            handle.y.push_back({layers, i, top, -1.0, true});
            if (i + 1 < thicknesses.size())
                handle.y.push_back({layers, i + 1, bottom - arriving(thicknesses[i + 1]), 1.0, true});
            handles_.push_back(handle);
            top = bottom;
        }
        const double left = number_on(margins, "XLEFT"), right = number_on(margins, "XRIGHT");
        DeckHandle side = dam_handle("ground-left", "left end of the ground", {-left, top / 2.0});
        side.x = {length(margins, "XLEFT", 0.0, -1.0)};
        handles_.push_back(side);
        side = dam_handle("ground-right", "right end of the ground", {toe + right, top / 2.0});
        side.x = {length(margins, "XRIGHT", toe, 1.0)};
        handles_.push_back(side);
    }

    const NotedDeck& deck_;
    std::vector<DeckHandle>& handles_;
};

}  // namespace

void add_plan_handles(const NotedDeck& deck, std::vector<DeckHandle>& handles) {
    const Plan plan(deck, handles);
    plan.add_blocks();
    plan.add_dam();
    plan.add_edit_points();
    plan.add_windows();
}

}  // namespace brelan::tool
