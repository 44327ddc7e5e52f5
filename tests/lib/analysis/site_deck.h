// Decks as an engineer writes them, run in memory: ground of square elements, and what is drawn over it.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "analysis/mesh_file.h"
#include "run/run_deck.h"
#include "support/project.h"

namespace brelan::test {

inline std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.5f", value);
    return text;
}

// A rectangle of ground, its lower left corner and the size of its elements.
struct Ground {
    double left = 0.0, bottom = 0.0, width = 40.0, height = 20.0, step = 1.0;
};

// A group drawn with straight segments, or with those given.
struct SiteGroup {
    int type = 3;          // MTYPE
    std::string material;  // the material line
    std::vector<std::pair<double, double>> points;
    int overlay = 0, moves = 1;
    std::vector<std::string> segments = {};  // "1 0 2", arcs with their second line
};

inline std::string cards_of(const std::vector<SiteGroup>& groups, const Ground& g) {
    std::string text = "4\n0\n0\n1\n" + number(g.left) + " " + number(g.bottom) + " " +
                       number(g.left + g.width) + " " + number(g.bottom + g.height) + "\n" +
                       std::to_string(groups.size()) + " 0\n0 0\n";
    for (const SiteGroup& group : groups) {
        text += std::to_string(group.type) + " 0 " + std::to_string(group.overlay) + "\n";
        text += group.material + "\n";
        text += std::to_string(group.points.size()) + " " + std::to_string(group.moves) + " 0 0 0\n";
        for (std::size_t k = 0; k < group.points.size(); ++k)
            text += std::to_string(k + 1) + " " + number(group.points[k].first) + " " +
                    number(group.points[k].second) + "\n";
        std::vector<std::string> segments = group.segments;
        if (segments.empty())
            segments.assign(group.points.size() - (group.type == 2 || group.type == -2 ? 1 : 0), "1 0 2");
        text += std::to_string(segments.size()) + "\n";
        for (std::size_t k = 0; k < segments.size(); ++k)
            text += std::to_string(k + 1) + " " + segments[k] + "\n";
    }
    return text;
}

// A deck that makes the ground and draws the groups over it; none leaves the base mesh as "Bmesh.dat".
inline std::string base_deck(const Ground& g, const std::vector<SiteGroup>& groups) {
    const std::string step = " " + number(g.step) + " 0.5\n";
    return "2 0\n1 1 1 1 0 1\n" + number(g.left) + " " + number(g.bottom) + "\n" + number(g.width) + step +
           number(g.height) + step + "1\nBmesh.dat\nOut.Mes\n1 1\n" + cards_of(groups, g);
}

// A deck that draws groups over a mesh.
inline std::string edit_deck(const std::string& mesh, const Ground& g, const std::vector<SiteGroup>& groups) {
    return "1 0\n" + mesh + "\nOut.Mes\n1 1\n" + cards_of(groups, g);
}

// Runs a deck with meshes by their names, and returns the text of the one it makes.
inline std::string mesh_text_of(const std::string& deck, std::map<std::string, std::string> meshes = {},
                                int edition = 1) {
    RunInput input;
    input.edition = edition;
    input.files["..\\deck.dat"] = deck;
    for (const std::string file : {"DV-BRELAN.dat", "UNIT.DAT"})
        input.files["C:\\Vork\\Qx\\Qxdata\\" + file] =
            read_text(std::filesystem::path(BRELAN_SOURCE_DIR) / "data" / "Vork" / "Qx" / "Qxdata" / file);
    for (const auto& [name, text] : meshes)
        input.files["..\\" + name] = text;
    const brelan::RunResult result = run_deck(input);
    EXPECT_EQ(result.end.status, STATUS_FINISHED) << result.end.text << "\n" << deck;
    return result.end.status == STATUS_FINISHED ? std::string(result.files->text(result.mesh)) : "";
}

inline MeshLists mesh_of(const std::string& text, LayoutKind kind = LayoutKind::displacement) {
    const auto mesh = mesh_of_text(text, "Out.Mes", kind);
    EXPECT_TRUE(mesh.has_value());
    return mesh.value_or(MeshLists{});
}

}  // namespace brelan::test
