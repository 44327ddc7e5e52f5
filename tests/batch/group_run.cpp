#include "batch/group_run.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

namespace brelan::test {

Mesh squares(Kind kind) {
    Mesh mesh;
    mesh.kind = kind;
    const bool mechanical = kind == Kind::coupled || kind == Kind::displacement;
    const std::size_t words = kind == Kind::coupled ? 5 : kind == Kind::displacement ? 3 : 2;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 5; ++column) {
            MeshNode node;
            node.number = 5 * row + column + 1;
            node.codes.assign(words, 0);
            node.codes.back() = mechanical ? 1 : 0;
            node.x = column;
            node.y = row;
            mesh.nodes.push_back(node);
        }
    for (int i = 0; i < 8; ++i) {
        const int a = i / 4 * 5 + i % 4 + 1;
        MeshElement element;
        element.number = i + 1;
        element.corners = {a, a + 1, a + 6, a + 5};
        element.codes.assign(kind == Kind::coupled ? 4 : mechanical ? 0 : 1, 0);
        element.reals.assign(kind == Kind::coupled ? 1 : mechanical ? 2 : 0, 1.0);
        mesh.continuum.push_back(element);
    }
    return mesh;
}

void lay_out_groups(const Project& project, int groups, const Lines& cards, const Mesh& mesh,
                    const GroupSetting& setting) {
    project.write("mesh.Mes", mesh.text());
    project.write_data("DV-BRELAN.dat", setting.defaults);
    project.deck(text_of(Lines{"1 0", "mesh.Mes", "out.Mes", "1 1", "4"} + setting.lists +
                         Lines{std::to_string(groups), "0 0 " + setting.Hi} + cards));
}

GroupRun::GroupRun(Kind kind, int groups, const Lines& cards, const Mesh& mesh, const GroupSetting& setting)
    : kind_(kind), project_(kind) {
    lay_out_groups(project_, groups, cards, mesh, setting);
    expect_finished(project_.run());
    EXPECT_FALSE(project_.exists_work("JOINT.TMP"));
    EXPECT_FALSE(project_.exists_work("GROUP.TMP"));
    check = check_mesh(project_.read("out.Mes"), kind);
}

void GroupRun::expect_counts(std::size_t nodes, std::size_t continuum, std::size_t beams,
                             std::size_t trusses) const {
    EXPECT_EQ(check.mesh.nodes.size(), nodes) << name_of(kind_);
    EXPECT_EQ(check.mesh.continuum.size(), continuum) << name_of(kind_);
    EXPECT_EQ(check.mesh.beams.size(), beams) << name_of(kind_);
    EXPECT_EQ(check.mesh.trusses.size(), trusses) << name_of(kind_);
}

const MeshElement& GroupRun::element(int number) const {
    for (const MeshElement& e : check.mesh.continuum)
        if (e.number == number)
            return e;
    throw std::runtime_error("no element " + std::to_string(number));
}

const MeshNode& GroupRun::node(int number) const {
    return check.mesh.nodes.at(static_cast<std::size_t>(number - 1));
}

void GroupRun::expect_place(int number, double x, double y) const {
    EXPECT_NEAR(node(number).x, x, 2.0E-6) << "node " << number << ", " << name_of(kind_);
    EXPECT_NEAR(node(number).y, y, 2.0E-6) << "node " << number << ", " << name_of(kind_);
}

Lines GroupRun::members() const {
    std::filesystem::remove(project_.data_file("UNIT.DAT"));
    expect_failed(project_.run(), {"UNIT.DAT"});
    Lines records;
    for (const std::string& line : lines_of(project_.read_work("GROUP.TMP"))) {
        std::istringstream text(line);
        std::string record;
        for (std::string word; text >> word;)
            record += (record.empty() ? "" : " ") + word;
        records.push_back(record);
    }
    return records;
}

std::vector<int> GroupRun::materials() const {
    std::vector<int> all;
    for (const MeshElement& e : check.mesh.continuum)
        all.push_back(e.material);
    return all;
}

Lines outline(const std::string& IEND) {
    Lines lines{"4 0 0 0 0", "1 1 0", "2 2 0", "3 2 2", "4 1 2", "4"};
    for (int k = 1; k <= 4; ++k)
        lines.push_back(std::to_string(k) + " 1 0 " + IEND);
    return lines;
}

Lines upright(const std::string& x, const std::string& NDIV, const std::string& IEND) {
    return {"2 0 0 0 0", "1 " + x + " -1", "2 " + x + " 3", "1", "1 1 " + NDIV + " " + IEND};
}

}  // namespace brelan::test
