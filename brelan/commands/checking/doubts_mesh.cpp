// What the deck asks of its meshes, and what they have.
#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <set>

#include "cli/words.h"
#include "commands/checking/doubts.h"
#include "mesh/combine.h"
#include "mesh/tables.h"

namespace brelan::tool {

namespace {

enum class Section { continuum, beam, truss, any };

Section section_of(const Element& e) {
    return e.of == ElementClass::beam    ? Section::beam
           : e.of == ElementClass::truss ? Section::truss
                                         : Section::continuum;
}

std::set<std::int32_t> materials_of(const MeshLists& mesh, Section section) {
    std::set<std::int32_t> materials;
    for (const Element& e : mesh.elements)
        if (section == Section::any || section_of(e) == section)
            materials.insert(e.words.material.value);
    return materials;
}

// Lowest and highest number of the elements of a section; 0 where there is none.
std::pair<Number, Number> span_of(const MeshLists& mesh, Section section) {
    std::pair<Number, Number> span{0, 0};
    for (const Element& e : mesh.elements) {
        if (section_of(e) != section)
            continue;
        span.first = span.first == 0 ? e.number.value : std::min(span.first, e.number.value);
        span.second = std::max(span.second, e.number.value);
    }
    return span;
}

// --- materials -----------------------------------------------------------------------------------

struct MaterialField {
    std::string_view card, field;
    Section section;
    std::string_view elements;
};
constexpr std::array MATERIAL_FIELDS{
    MaterialField{"3.3", "MATX1", Section::continuum, "continuum element"},
    MaterialField{"3.3", "MATX2", Section::continuum, "continuum element"},
    MaterialField{"3.3", "MATX3", Section::continuum, "continuum element"},
    MaterialField{"3.3", "MATXB", Section::beam, "beam"},
    MaterialField{"3.3", "MATXT", Section::truss, "truss"},
    MaterialField{"3.6.1-1", "MATold", Section::continuum, "continuum element"},
    MaterialField{"3.6.2-1", "MATold", Section::beam, "beam"},
    MaterialField{"3.6.3-1", "MATold", Section::truss, "truss"},
};

void doubt_materials(Doubts& doubts, const MeshLists& mesh) {
    const NotedDeck& deck = doubts.deck();
    const DeckCard* location = deck.card("3.3.2.1");
    for (const DeckCard& card : deck.cards) {
        for (const MaterialField& row : MATERIAL_FIELDS) {
            const DeckField* field = card.number == row.card ? card.field(row.field) : nullptr;
            const bool zero_is_none = row.card == "3.3";
            if (field == nullptr || !field->given || (zero_is_none && field->integer() == 0))
                continue;
            if (!materials_of(mesh, row.section).contains(field->integer()))
                doubts.doubt("no-material", &card,
                             fmt::format("{} {}: no {} of the mesh has this material", row.field,
                                         field->integer(), row.elements));
        }
        constexpr std::int32_t by_material = 3;
        if (card.type == CardType::list && card.number == "3.3.2.2.2" && location != nullptr &&
            location->integer("ILOC") == by_material) {
            const std::set<std::int32_t> materials = materials_of(mesh, Section::any);
            for (const float value : card.list)
                if (!materials.contains(static_cast<std::int32_t>(value)))
                    doubts.doubt("no-material", &card,
                                 fmt::format("{:g}: no element of the mesh has this material", value));
        }
    }
}

// --- selections ----------------------------------------------------------------------------------

// The numbers of a list with its ranges.
std::set<std::int32_t> numbers_of(const DeckCard& card) {
    std::set<std::int32_t> numbers;
    std::int32_t last = 0;
    for (const float value : card.list) {
        const auto number = static_cast<std::int32_t>(std::clamp(value, -99990.0F, 99990.0F));
        for (std::int32_t n = number < 0 ? last + 1 : number; n <= std::abs(number); ++n)
            if (n != 0)
                numbers.insert(n);
        last = std::abs(number);
    }
    return numbers;
}

void doubt_numbers_on(Doubts& doubts, const DeckCard& card, const MeshLists& mesh, bool nodes) {
    std::vector<std::string> missing;
    for (const std::int32_t number : numbers_of(card))
        if ((nodes ? mesh.node_place(number) : mesh.element_place(number)) == MeshLists::NONE)
            missing.push_back(std::to_string(number));
    if (missing.empty())
        return;
    const std::size_t count = missing.size();
    missing.resize(std::min<std::size_t>(count, 5));
    doubts.doubt(
        "no-such-number", &card,
        fmt::format("the mesh has no {} {}{}", nodes ? "node" : "element", joined(missing, ", "),
                    count > missing.size() ? fmt::format(" and {} more", count - missing.size()) : ""));
}

void doubt_window(Doubts& doubts, const DeckCard& card, const MeshLists& mesh, bool nodes) {
    const auto in = [&](double x, double y) {
        return static_cast<double>(card.real("XMIN")) < x && x < static_cast<double>(card.real("XMAX")) &&
               static_cast<double>(card.real("YMIN")) < y && y < static_cast<double>(card.real("YMAX"));
    };
    bool found = false;
    if (nodes) {
        for (std::size_t n = 0; n < mesh.nodes.size() && !found; ++n) {
            const Position p = mesh.point(static_cast<std::int32_t>(n));
            found = in(p.x, p.y);
        }
    } else {
        const std::vector<CornerPlaces> corners = corners_of(mesh);
        for (std::size_t e = 0; e < corners.size() && !found; ++e) {
            const Position p = middle(mesh, corners[e]);
            found = corners[e].complete() && in(p.x, p.y);
        }
    }
    if (!found)
        doubts.doubt("empty-window", &card,
                     fmt::format("no {} of the mesh lies in the window", nodes ? "node" : "element"));
}

void doubt_selections(Doubts& doubts, const MeshLists& mesh) {
    constexpr std::int32_t by_material = 3;
    const DeckCard* location = doubts.deck().card("3.3.2.1");
    for (const DeckCard& card : doubts.deck().cards) {
        const bool window = card.type == CardType::values;
        if (card.number == "3.3.2.2.1")
            doubt_window(doubts, card, mesh, true);
        else if (card.number == "3.3.3.2.1" || card.number == "3.3.4.2.1")
            doubt_window(doubts, card, mesh, false);
        else if (window)
            continue;
        else if (card.number == "3.3.5.1" || (card.number == "3.3.2.2.2" && location != nullptr &&
                                              location->integer("ILOC") != by_material))
            doubt_numbers_on(doubts, card, mesh, true);
        else if (card.number == "3.3.5.2" || card.number == "3.3.3.2.2" || card.number == "3.3.4.2.2")
            doubt_numbers_on(doubts, card, mesh, false);
    }
}

// --- numbers of the result -----------------------------------------------------------------------

// Edits that keep the gaps between numbers shift them; the others count anew.
void doubt_room(Doubts& doubts, const MeshLists& mesh) {
    const DeckCard* start = doubts.deck().card("3.2");
    const DeckCard* edit = doubts.deck().card("3.3");
    if (start == nullptr || edit == nullptr || mesh.nodes.empty())
        return;
    const std::int32_t operation = edit->integer("IEDIT");
    constexpr std::int32_t deletes = 2;  // how much is left the mesh does not tell
    if (operation == deletes)
        return;
    const bool shifts = operation == 0 || operation == 1 || operation == 6;
    const auto look = [&](const char* field, std::int64_t needed, const char* what) {
        const std::int64_t first = start->integer(field), last = first + needed - 1;
        if (first >= 1 && first <= HIGHEST_NODE_NUMBER && last > HIGHEST_NODE_NUMBER)
            doubts.end_of_run(
                "bad-number", start,
                fmt::format("{} {}: the last {} would get the number {}, and numbers go up to {}", field,
                            first, what, last, HIGHEST_NODE_NUMBER));
    };
    const auto nodes = static_cast<std::int64_t>(mesh.nodes.size());
    look("NSNODE", shifts ? mesh.nodes.back().number - mesh.nodes.front().number + 1 : nodes, "node");
    const auto [low, high] = span_of(mesh, Section::continuum);
    if (low > 0)
        look("NSNEL", shifts ? high - low + 1 : static_cast<std::int64_t>(mesh.elements.size()), "element");
}

// --- combination ---------------------------------------------------------------------------------

void take_numbers(const MeshLists& mesh, Region& region) {
    region.old_elements[0] = region.old_elements[1] = region.old_elements[2] = {};
    for (const Element& e : mesh.elements)
        if (e.section() != ELEMENT_TRUSS || !mesh.flow_lines)  // those are not seen
            region.old_elements[e.section() - ELEMENT_CONTINUUM].include(e.number);
}

// The new number of a region's lowest element; 0 where a number is out of range.
Number lowest_new_number(const Region& region) {
    Number lowest = HIGHEST_ELEMENT_NUMBER;
    for (std::size_t type = 0; type < 3; ++type) {
        const NumberRange<ElementNumber>& old = region.old_elements[type];
        if (old.highest < old.lowest)
            continue;
        const Number first = region.start[type].value;
        if (first < 1 || first + (old.highest - old.lowest) > HIGHEST_ELEMENT_NUMBER)
            return 0;
        lowest = std::min(lowest, first);
    }
    return lowest;
}

// The numbers that the batch program gives the elements of both meshes.
void doubt_element_numbers(Doubts& doubts, const MeshLists& a, const MeshLists& b, const DeckCard* card) {
    Combination numbers;
    take_numbers(b, numbers.first);  // the names cross
    take_numbers(a, numbers.second);
    fix_region_numbers(numbers);
    const Number first = lowest_new_number(numbers.first), second = lowest_new_number(numbers.second);
    if (first == 0 || second == 0)
        doubts.end_of_run(
            "element-numbers", card,
            "elements have to be numbered anew, and one of the meshes has no beams or trusses where the "
            "other has: numbers will be out of range (manual, chapter 5)");
    else if (first == second && !a.elements.empty() && !b.elements.empty())
        doubts.end_of_run(
            "element-numbers", card,
            fmt::format("the lowest element of both meshes gets the number {}: give one of them other "
                        "numbers (manual, chapter 5)",
                        first));
}

// A number that FILEA lacks ends the run; a pair that FILEB lacks is passed over.
void doubt_pairs_on(Doubts& doubts, const DeckCard& card, const MeshLists& mesh, bool first) {
    for (const float value : card.list) {
        const std::int32_t number = whole_number(value);
        if (number < 1 || number > HIGHEST_NODE_NUMBER || mesh.node_place(number) != MeshLists::NONE)
            continue;
        if (first)
            doubts.end_of_run("no-such-number", &card,
                              fmt::format("the mesh of FILEA has no node {}", number));
        else
            doubts.doubt("no-such-number", &card,
                         fmt::format("the mesh of FILEB has no node {}: its pair is passed over", number));
    }
}

void doubt_combination(Doubts& doubts, const MeshLists& a, const MeshLists& b) {
    const NotedDeck& deck = doubts.deck();
    const DeckCard* interface = deck.card("2.2");
    doubt_element_numbers(doubts, a, b, deck.card("2.1-1"));
    if (interface == nullptr)
        return;
    if (interface->integer("INTERFACE") == 0) {
        const MeshPlaces places(a);
        bool common = false;
        for (std::size_t n = 0; n < b.nodes.size() && !common; ++n) {
            const Position p = b.point(static_cast<std::int32_t>(n));
            common = places.at_node({p.x, p.y}, places.nothing());
        }
        if (!common)
            doubts.doubt("no-common-node", interface, "no node of FILEB lies at a node of FILEA");
        return;
    }
    bool first = true;
    for (const DeckCard& card : deck.cards) {
        if (card.type != CardType::list || card.number != "2.3")
            continue;
        doubt_pairs_on(doubts, card, first ? a : b, first);
        first = false;
    }
}

}  // namespace

void doubt_mesh(Doubts& doubts, const DeckMeshes& meshes) {
    if (meshes.a == nullptr)
        return;
    if (doubts.deck().mode <= 0) {
        if (meshes.b != nullptr)
            doubt_combination(doubts, *meshes.a, *meshes.b);
        return;
    }
    doubt_materials(doubts, *meshes.a);
    doubt_selections(doubts, *meshes.a);
    doubt_room(doubts, *meshes.a);
}

}  // namespace brelan::tool
