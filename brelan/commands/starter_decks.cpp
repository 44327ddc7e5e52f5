#include "commands/starter_decks.h"

#include <array>
#include <cmath>

#include "cli/exit_status.h"
#include "deck/card_table.h"
#include "mesh/kinds.h"

namespace brelan::tool {

namespace {

// Words that differ by kind: coupled, temperature, head, displacement.
struct KindWord {
    std::string_view key;
    ByKind<std::string_view> text;
};
constexpr std::array KIND_WORDS{
    KindWord{"third_text",
             {"; level of the water", "; temperature of all nodes", "; total head of all nodes", ""}},
    KindWord{"corner_names", {"Xo     Yo     Ywater", "Xo     Yo     T", "Xo     Yo     H", "Xo     Yo"}},
    KindWord{"corner", {"0.0    0.0    10.0", "0.0    0.0    10.0", "0.0    0.0    10.0", "0.0    0.0"}},
    KindWord{"code_names", {"ISX   ISY   IFX   IFY   IRZ", "ID    IDF", "ID    IDF", "IDX   IDY   IDT"}},
    KindWord{"codes", {"1     1     1     1     1", "-100  -100", "1     1", "1     1     1"}},
    KindWord{"line_names", {"LTP   LMAT", "LTP   LFUN", "LTP   LFUN", "LTP   LMAT"}},
    KindWord{"region_names",
             {"MAT   KF    LTP   LMAT", "MAT   IH    LTP   LFUN", "MAT   IH    LTP   LFUN",
              "MAT   DEN   LTP   LMAT"}},
    KindWord{"stage_names",
             {"MAT   KF    LTP   LMAT  MATold", "MAT   IH    LTP   LFUN  MATold",
              "MAT   IH    LTP   LFUN  MATold", "MAT   DEN   LTP   LMAT  MATold"}},
    KindWord{"region", {"1  ", "0  ", "0  ", "1.9"}},
    KindWord{"joint_names",
             {"MATj  KFj   THICj  LTi  LMi  LTo  LMo", "MATj  IHj   THICj  LTi  LFi  LTo  LFo",
              "MATj  IHj   THICj  LTi  LFi  LTo  LFo", "MATj  DENj  THICj  LTi  LMi  LTo  LMo"}},
    KindWord{"joint", {"1  ", "5  ", "5  ", "0.0"}},
    KindWord{"rebuild_names",
             {"MATold  NS1  NS2  NS3  NS4  MATNEW  KS   KF", "MATold  NS1  NS2  NS3  NS4  MATNEW  IDH",
              "MATold  NS1  NS2  NS3  NS4  MATNEW  IDH", "MATold  NS1  NS2  NS3  NS4  MATNEW  THIC   DEN"}},
    KindWord{"rebuild",
             {"2       2    3    4    1    4       -10  2", "2       2    3    4    1    4       3",
              "2       2    3    4    1    4       3", "2       2    3    4    1    4       -10.0  1.9"}},
};

std::string word_of(std::string_view key, LayoutKind kind, std::string_view file) {
    if (key == "kind")
        return std::string(name_of(kind));
    if (key == "deck")
        return std::string(file);
    for (const KindWord& word : KIND_WORDS)
        if (word.key == key)
            return std::string(word.text[static_cast<std::size_t>(kind)]);
    throw Failure("starter decks: no word \"" + std::string(key) + "\"");
}

// --- meshes --------------------------------------------------------------------------------------

// A mesh of unit squares from (left, 0) to (left + columns, rows), numbered as a base mesh is: down each
// column, columns from the left. Fixed on its sides and at the bottom.
MeshLists squares(LayoutKind kind, int left, int columns, int rows, Number first_element) {
    MeshLists mesh;
    mesh.kind = kind;
    for (int c = 0; c <= columns; ++c)
        for (int r = 0; r <= rows; ++r) {
            const bool side = c == 0 || c == columns;
            const bool bottom = r == rows;
            Node node;
            node.number = NodeNumber(static_cast<Number>(mesh.nodes.size()) + 1);
            node.x = static_cast<float>(left + c);
            node.y = static_cast<float>(rows - r);
            const std::int32_t x = side ? 1 : 0, y = bottom ? 1 : 0;
            if (has_node_values(kind)) {
                const bool temperature = kind == LayoutKind::temperature;
                const std::int32_t fixed = temperature ? -100 : 1;
                node.codes = {fixed * x, fixed * y};
                node.head = temperature ? 10.0F : 5.0F;
                node.coefficient = 1.0F;
            } else if (kind == LayoutKind::coupled) {
                node.codes = {x, y, x, y, 1};
            } else {
                node.codes = {x, y, 1};
            }
            mesh.nodes.push_back(node);
        }
    const auto node_at = [&](int c, int r) { return NodeNumber(c * (rows + 1) + r + 1); };
    for (int c = 0; c < columns; ++c)
        for (int r = 0; r < rows; ++r) {
            Element e;
            e.number = ElementNumber(first_element + static_cast<Number>(mesh.elements.size()));
            e.words = {
                node_at(c + 1, r), node_at(c, r), node_at(c, r + 1), node_at(c + 1, r + 1), {}, {}, {}, {},
                MaterialNumber(1)};
            e.fluid = 1;
            e.integration_r = e.integration_s = 2;
            e.thickness = 1.0F;
            e.density = 2.3F;
            mesh.elements.push_back(e);
        }
    return mesh;
}

void add_line(MeshLists& mesh, ElementClass of, Number i, Number j) {
    Element e;
    e.of = of;
    e.number = mesh.elements.back().number + 1;
    e.words.corner_1 = e.words.corner_4 = NodeNumber(i);
    e.words.corner_2 = e.words.corner_3 = NodeNumber(j);
    e.words.material = MaterialNumber(1);
    mesh.elements.push_back(e);
}

// Six squares by three, the upper row of material 2; a wall of two beams in the middle, a truss at the top.
MeshLists start_mesh(LayoutKind kind) {
    MeshLists mesh = squares(kind, 0, 6, 3, 1);
    for (std::size_t e = 0; e < mesh.elements.size(); e += 3)
        mesh.elements[e].words.material = MaterialNumber(2);
    add_line(mesh, ElementClass::beam, 13, 14);
    add_line(mesh, ElementClass::beam, 14, 15);
    add_line(mesh, ElementClass::truss, 21, 25);
    return mesh;
}

}  // namespace

const std::vector<StarterDeck>& starter_decks() {
    static const std::vector<StarterDeck> decks{
        {"base-mesh", "a graded rectangle of blocks", STARTER_BASE_MESH, "Bmesh.dat", {}},
        {"edit-0", "moves, scales or mirrors a mesh", STARTER_EDIT_0, "Mirror.Mes", {"Start.Mes"}},
        {"edit-1", "gives nodes new codes", STARTER_EDIT_1, "Held.Mes", {"Start.Mes"}},
        {"edit-2", "deletes elements", STARTER_EDIT_2, "Trench.Mes", {"Start.Mes"}},
        {"edit-3", "changes materials", STARTER_EDIT_3, "Layers.Mes", {"Start.Mes"}},
        {"edit-4", "draws a wall and a cut over a mesh", STARTER_EDIT_4, "Cut.Mes", {"Start.Mes"}},
        {"edit-5", "maps a ready-made slope", STARTER_EDIT_5, "Slope.Mes", {}},
        {"edit-6", "rebuilds elements by material", STARTER_EDIT_6, "Rebuilt.Mes", {"Start.Mes"}},
        {"groups", "an excavation with wall, joint, strut and stages", STARTER_GROUPS, "Pit.Mes", {}},
        {"combination", "joins two meshes", STARTER_COMBINATION, "Both.Mes", {"Left.Mes", "Right.Mes"}},
        {"dam", "an earth dam with core, wall and subsoil", STARTER_DAM, "EarthDam.Mes", {}},
    };
    return decks;
}

std::string starter_names() {
    std::string names;
    for (const StarterDeck& deck : starter_decks())
        names += (names.empty() ? "" : ", ") + std::string(deck.name);
    return names;
}

const StarterDeck* starter_deck(std::string_view name) {
    if (name == "base")
        name = "base-mesh";
    const std::string number = name.starts_with("edit") ? std::string(name.substr(4)) : std::string(name);
    for (const StarterDeck& deck : starter_decks())
        if (deck.name == name || (number.size() == 1 && deck.name == "edit-" + number))
            return &deck;
    return nullptr;
}

std::string starter_text(const StarterDeck& deck, LayoutKind kind, std::string_view file) {
    std::string text;
    std::string_view rest = deck.text;
    for (;;) {
        const std::size_t open = rest.find('@');
        if (open == std::string_view::npos)
            return text + std::string(rest);
        const std::size_t close = rest.find('@', open + 1);
        text += rest.substr(0, open);
        text += word_of(rest.substr(open + 1, close - open - 1), kind, file);
        rest.remove_prefix(close + 1);
    }
}

MeshLists starter_mesh(std::string_view name, LayoutKind kind) {
    MeshLists mesh = name == "Left.Mes"    ? squares(kind, 0, 3, 3, 1)
                     : name == "Right.Mes" ? squares(kind, 3, 4, 3, 10)
                                           : start_mesh(kind);
    mesh.name = name;
    mesh.finish();
    return mesh;
}

}  // namespace brelan::tool
