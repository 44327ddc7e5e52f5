#include "output/graf_xy.h"

#include <string>

#include "mesh/edition.h"
#include "output/blocks.h"
#include "output/graf_xy_texts.h"
#include "output/unit_table.h"
#include "text/layout.h"

namespace brelan {

namespace {

constexpr Layout<"(A40)"> TEXT;

// The texts of one plot.
struct Plot {
    std::string title, x_label, y_label;
};

// One card set: what is plotted and how it is shown. One writer serves all templates.
struct CardSet {
    const HistoryCards& cards;
    Factors factors;
    std::span<const Plot> plots;
    PairGroups groups{};                              // a list to choose from,
    std::span<const std::string_view> fixed_pairs{};  // or pairs of two elements or nodes
    bool first_is_active = true;                      // the first pair of the list has no star
    bool factor_card = true;                          // the factors have their card's line
    std::string_view plot_switch = "    0";
};

void put(Channel& post, std::string_view text) {
    TEXT.write(post, text);
}

void put_card(Channel& post, const CardSet& set, std::string_view number) {
    put(post, std::string(set.cards.cards) + std::string(number));
}

void write_pair_list(Channel& post, const CardSet& set) {
    put(post, "*  Kx        Ky");
    put(post, "*  --        --");
    bool active = set.first_is_active;
    for (const PairGroup& group : set.groups) {
        if (!group.heading.empty()) {
            put(post, "*");
            put(post, group.heading);
            put(post, "*");
        }
        for (const PlotPair& pair : group.pairs) {
            put(post, "*  TIME      " + std::string(pair.name));
            put(post, (active ? "   1         " : "*  1         ") + std::to_string(pair.number));
            active = false;
        }
    }
}

void write_fixed_pairs(Channel& post, const CardSet& set) {
    put(post, "*  Kx   Ky");
    for (const std::string_view pair : set.fixed_pairs)
        put(post, pair);
}

void write_plot(Channel& post, const CardSet& set, const Plot& plot) {
    put_card(post, set, "7");
    post.write_line(DASHES_ROW);
    put(post, "*  TITLE");
    post.write_line(plot.title);
    put(post, "*  X - LABEL");
    post.write_line(plot.x_label);
    put(post, "*  Y - LABEL");
    post.write_line(plot.y_label);
    post.write_line(EQUALS_ROW);
}

void write_card_set(Channel& post, const CardSet& set) {
    const bool two = !set.fixed_pairs.empty();
    put(post, "*");
    put(post, "* Card 12.1");
    put(post, "*  IPTYPE");
    put(post, set.cards.history_type);
    put_card(post, set, "1");
    put(post, "*  IPLOT");
    put(post, set.plot_switch);
    put_card(post, set, "2");
    put(post, set.cards.count);
    put(post, two ? "    2" : "    1");
    put_card(post, set, "3");
    put(post, two ? set.cards.two : set.cards.one);
    put(post, two ? set.cards.two_numbers : "    1");
    put_card(post, set, "4");
    put(post, "*  NDPQ");
    put(post, set.fixed_pairs.size() == 2 ? "    2" : "    1");
    put_card(post, set, "5");
    if (two)
        write_fixed_pairs(post, set);
    else
        write_pair_list(post, set);
    if (set.factor_card)
        put_card(post, set, "6");
    put(post, set.factors.names);
    put(post, set.factors.values);
    for (const Plot& plot : set.plots)
        write_plot(post, set, plot);
}

// --- labels --------------------------------------------------------------------------------------

std::string joined(std::string_view name, std::string_view unit) {
    return std::string(name) + std::string(unit);
}

// A text of the templates in the place of a title.
std::string fixed_title(std::string_view text) {
    std::string title(text);
    title.resize(TEXT.columns(), ' ');
    return title;
}

Plot history(const UnitLabels& units, std::string_view name, std::string_view unit) {
    return {units.title, joined(" Time ", units.time), joined(name, unit)};
}

Plot titled_history(const UnitLabels& units, std::string_view title, std::string_view name,
                    std::string_view unit) {
    return {fixed_title(title), joined(" Time ", units.time), joined(name, unit)};
}

// --- templates -----------------------------------------------------------------------------------

void write_template(Channel& post, const CardSet& set, const Plot& plot) {
    CardSet with_plot = set;
    with_plot.plots = std::span(&plot, 1);
    write_card_set(post, with_plot);
}

// Pressures of two elements against time, then their stress paths in one plot.
void write_stress_paths(const UnitLabels& units, Channel& post) {
    const Plot pressures[] = {
        titled_history(units, " Mean & Pore Fluid Pressure: Element 1", " Stress ", units.stress),
        titled_history(units, " Mean & Pore Fluid Pressure: Element 2", " Stress ", units.stress)};
    const Plot path[] = {{fixed_title(" Stress Path for Elements 1 and 2"),
                          joined(" Effective Mean Pressure ", units.stress),
                          joined(" Deviatoric Stress ", units.stress)}};
    write_card_set(post, {.cards = ELEMENT_CARDS,
                          .factors = ELEMENT_FACTORS,
                          .plots = pressures,
                          .fixed_pairs = PRESSURE_PAIRS});
    write_card_set(post, {.cards = ELEMENT_CARDS,
                          .factors = ELEMENT_FACTORS,
                          .plots = path,
                          .fixed_pairs = STRESS_PATH_PAIRS,
                          .plot_switch = "    1"});
}

void write_element_templates(LayoutKind kind, const UnitLabels& units, Channel& post) {
    const auto with = [&post](PairGroups groups, const Factors& factors, const Plot& plot) {
        write_template(post, {.cards = ELEMENT_CARDS, .factors = factors, .plots = {}, .groups = groups},
                       plot);
    };
    if (kind == LayoutKind::temperature) {
        with(ELEMENT_TEMPERATURE, SCALAR_FACTORS, history(units, " Temperature", units.temperature));
        return;
    }
    with(STRESS_GROUPS, ELEMENT_FACTORS, history(units, " Stress ", units.stress));
    with(STRAIN_GROUPS, STRAIN_FACTORS, history(units, " Strain (%)", ""));
    with(FORCE_GROUPS, ELEMENT_FACTORS, history(units, " Force ", units.force));
    with(MOMENT_GROUPS, ELEMENT_FACTORS, history(units, " Moment ", units.moment));
    write_stress_paths(units, post);
}

// Displacements of two nodes against time: a plot for each node, then a plot for each direction.
void write_two_node_displacements(const UnitLabels& units, Channel& post) {
    const auto plot = [&](std::string_view title) {
        return titled_history(units, title, " Displacement ", units.length);
    };
    const Plot by_node[] = {plot(" Hor. & Ver. Displacement: Node 1"),
                            plot(" Hor. & Ver. Displacement: Node 2")};
    const Plot by_direction[] = {plot(" Horizontal Displacement: Node 1 & 2"),
                                 plot(" Vertical Displacement: Node 1 & 2")};
    CardSet set{
        .cards = NODE_CARDS, .factors = NODE_FACTORS, .plots = by_node, .fixed_pairs = TWO_DISPLACEMENTS};
    write_card_set(post, set);
    set.plots = by_direction;
    set.plot_switch = "    1";
    write_card_set(post, set);
}

void write_node_templates(LayoutKind kind, const UnitLabels& units, Channel& post) {
    CardSet set{.cards = NODE_CARDS, .factors = SCALAR_FACTORS, .plots = {}};
    set.first_is_active = false;
    if (kind == LayoutKind::temperature) {
        set.groups = NODE_TEMPERATURE;
        write_template(post, set, history(units, " Temperature  ", units.temperature));
        return;
    }
    if (kind == LayoutKind::head) {
        set.groups = NODE_HEAD;
        write_template(post, set, history(units, " Total Head   ", units.temperature));
        return;
    }
    set.first_is_active = true;
    set.factors = NODE_FACTORS;
    set.groups = DISPLACEMENT_GROUPS;
    write_template(post, set, history(units, " Displacement ", units.length));
    set.groups = VELOCITY_GROUPS;
    set.factor_card = false;  // this template has never had the line, and decks are compared with it
    write_template(post, set, history(units, " Velocity ", units.velocity));
    set.factor_card = true;
    set.groups = ACCELERATION_GROUPS;
    write_template(post, set, history(units, " Acceleration ", units.acceleration));
    write_two_node_displacements(units, post);
}

}  // namespace

void write_graf_xy(LayoutKind kind, const UnitLabels& units, Channel& post) {
    constexpr std::string_view title = "*         POST FILE: GRAF-XY PLOT                *";
    write_banner(post, title, "*         IPTYPE = 1 (CARD 12.2)                 *");
    write_element_templates(kind, units, post);
    write_banner(post, title, "*         IPTYPE = 2 (CARD 12.3)                 *");
    write_node_templates(kind, units, post);
    write_lines(post, END_OF_GRAF_XY);
}

}  // namespace brelan
