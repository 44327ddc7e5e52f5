#include "batch/group_deck.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace brelan::test {

Mesh grid_mesh(Kind kind, int columns, int rows) {
    const bool mechanical = kind == Kind::coupled || kind == Kind::displacement;
    const std::size_t codes = kind == Kind::coupled ? 5 : mechanical ? 3 : 2;
    Mesh mesh;
    mesh.kind = kind;
    for (int row = 0; row <= rows; ++row)
        for (int column = 0; column <= columns; ++column) {
            MeshNode node;
            node.number = (columns + 1) * row + column + 1;
            node.codes.assign(codes, 0);
            node.codes.back() = mechanical ? 1 : 0;
            node.x = column;
            node.y = row;
            if (!mechanical) {
                node.value = 10.0 * node.number;
                node.factor = 0.5;
            }
            mesh.nodes.push_back(node);
        }
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < columns; ++column) {
            const int a = (columns + 1) * row + column + 1;
            const int above = a + columns + 1;
            MeshElement element;
            element.number = columns * row + column + 1;
            element.corners = {a, a + 1, above + 1, above};
            element.codes.assign(kind == Kind::coupled ? 4 : mechanical ? 0 : 1, 0);
            element.reals.assign(kind == Kind::coupled ? 1 : mechanical ? 2 : 0, 1.0);
            mesh.continuum.push_back(element);
        }
    return mesh;
}

namespace {

Lines drawn(const Points& points, std::size_t segments, int IEND) {
    std::ostringstream text;
    text << points.size() << " 0 0 0 0\n";
    for (std::size_t i = 0; i < points.size(); ++i)
        text << i + 1 << ' ' << points[i].first << ' ' << points[i].second << '\n';
    text << segments << '\n';
    for (std::size_t i = 0; i < segments; ++i)
        text << i + 1 << " 1 0 " << IEND << '\n';
    return lines_of(text.str());
}

}  // namespace

Lines outline(const Points& points, int IEND) {
    return drawn(points, points.size(), IEND);
}

Lines open_line(const Points& points, int IEND) {
    return drawn(points, points.size() - 1, IEND);
}

std::string group_deck(const std::vector<GroupCards>& groups, const std::string& Hi,
                       const std::string& card_3_2) {
    Lines cards{
        "1 0",      "mesh.Mes", "out.Mes", card_3_2, "4", "0", "0", "0", std::to_string(groups.size()) + " 1",
        "0 0 " + Hi};
    for (const GroupCards& group : groups) {
        cards.push_back(group.title);
        cards.push_back(std::to_string(group.MTYPE) + " " + std::to_string(group.IGPOST) + " " +
                        std::to_string(group.OVERLAY));
        if (!group.material.empty())
            cards.push_back(group.material);
        if (group.IGPOST == 1) {
            cards.insert(cards.end(), group.pairs.begin(), group.pairs.end());
            for (const int wanted : group.switches)
                cards.push_back(std::to_string(wanted));
        }
        cards.insert(cards.end(), group.line.begin(), group.line.end());
    }
    return text_of(cards);
}

GroupProject::GroupProject(int edition, const Mesh& mesh, const std::vector<GroupCards>& groups,
                           const std::string& Hi)
    : project(edition) {
    project.write("mesh.Mes", mesh.text());
    project.write_data("DV-BRELAN.dat", "0 0.01 0.01 0.001\n0 0.01 0 0 0 0 0 0\n0\n");
    project.deck(group_deck(groups, Hi));
}

void GroupProject::run(const char* source, int line) const {
    expect_finished(project.run(), source, line);
}

Lines section(const Lines& lines, std::string_view first, std::string_view last, const char* source,
              int line) {
    const auto begin = std::find(lines.begin(), lines.end(), first);
    if (begin == lines.end()) {
        ADD_FAILURE_AT(source, line) << "no line \"" << first << "\"";
        return {};
    }
    return {begin, std::find(begin + 1, lines.end(), last)};
}

std::string section_banner(int NPTYPE) {
    return "*         NPTYPE = " + std::to_string(NPTYPE) + " (CARD 11." + std::to_string(NPTYPE + 1) +
           ")                 *";
}

Lines section_of(const Lines& post, int NPTYPE) {
    return section(post, section_banner(NPTYPE),
                   NPTYPE == 6 ? "* For End of GRAF-2D   " : section_banner(NPTYPE + 1));
}

int count_of(const Lines& lines, std::string_view line) {
    return static_cast<int>(std::count(lines.begin(), lines.end(), line));
}

}  // namespace brelan::test
