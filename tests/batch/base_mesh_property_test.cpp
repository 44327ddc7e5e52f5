// Base meshes of random block decks: the field is covered once, elements meet at whole sides, no node stands
// twice. Merging of raw nodes against the plain scan of all pairs.

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <random>
#include <sstream>

#include "support/campaign.h"
#include "support/mesh.h"
#include "support/project.h"

namespace brelan::test {
namespace {

using Random = std::mt19937;

double between(Random& random, double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
}

// A number as a card shows it, with four digits: what the program reads is what the test computes with.
double rounded(double value) {
    return std::stod(e_field(value, 12, 4));
}

struct BlockDeck {
    std::vector<std::string> cards;
    double width = 0.0, height = 0.0;
};

BlockDeck random_deck(Random& random, Kind kind) {
    BlockDeck deck;
    const int NBX = 1 + static_cast<int>(random() % 4), NBY = 1 + static_cast<int>(random() % 4);
    deck.cards = {"2", std::to_string(NBX) + " " + std::to_string(NBY)};
    // Away from 0, where a mid point would count as absent.
    const double Xo = rounded(between(random, 1.0, 50.0)), Yo = rounded(between(random, 1.0, 50.0));
    std::string card = e_field(Xo, 12, 4) + e_field(Yo, 12, 4);
    if (kind != Kind::displacement)
        card += e_field(between(random, -10.0, 60.0), 12, 4);
    deck.cards.push_back(card);
    for (int strip = 0; strip < NBX + NBY; ++strip) {
        const double length = rounded(between(random, 0.5, 20.0));
        const double smallest = length / between(random, 0.8, 9.0);
        const double position = between(random, 0.25, 0.55) * (random() % 2 == 0 ? 1.0 : -1.0);
        deck.cards.push_back(e_field(length, 12, 4) + e_field(smallest, 12, 4) + e_field(position, 12, 4));
        (strip < NBX ? deck.width : deck.height) += length;
    }
    deck.cards.push_back("0");
    return deck;
}

// Each side between two elements belongs to both, in opposite directions; the rest are the border. Returns
// the length of the border; -1 for a side that more than two share or that two run through alike.
double border_of(const Mesh& mesh) {
    std::map<int, std::pair<double, double>> place;
    for (const MeshNode& node : mesh.nodes)
        place[node.number] = {node.x, node.y};
    std::map<std::pair<int, int>, int> sides;
    for (const MeshElement& element : mesh.continuum) {
        const std::size_t corners = element.corners[3] == 0 ? 3 : 4;
        for (std::size_t k = 0; k < corners; ++k)
            if (++sides[{element.corners[k], element.corners[(k + 1) % corners]}] > 1)
                return -1.0;
    }
    double length = 0.0;
    for (const auto& [side, count] : sides) {
        if (sides.count({side.second, side.first}) != 0)
            continue;
        const auto [x1, y1] = place.at(side.first);
        const auto [x2, y2] = place.at(side.second);
        length += std::hypot(x2 - x1, y2 - y1);
    }
    return length;
}

TEST(BaseMeshProperty, RandomBlocksCoverTheirFieldOnceAndConform) {
    Random random(20);
    for (int round = 0; round < rounds(60); ++round) {
        const Kind kind = ALL_KINDS[static_cast<std::size_t>(round) % 4];
        const BlockDeck deck = random_deck(random, kind);
        const Project project(kind);
        project.deck(text_of(deck.cards));
        expect_finished(project.run());
        const MeshCheck check = expect_sound_mesh(project, "work/Basic.Tmp", kind);
        const double area = deck.width * deck.height;
        EXPECT_NEAR(check.area, area, 2.0E-5 * area) << text_of(deck.cards);
        EXPECT_EQ(check.clockwise, 0) << text_of(deck.cards);
        const double border = 2.0 * (deck.width + deck.height);
        EXPECT_NEAR(border_of(check.mesh), border, 1.0E-4 * border) << text_of(deck.cards);
        std::map<std::pair<double, double>, int> places;
        for (const MeshNode& node : check.mesh.nodes)
            EXPECT_EQ((places[{node.x, node.y}]++), 0) << "node " << node.number << "\n"
                                                       << text_of(deck.cards);
        // Every node is the corner of an element.
        std::map<int, int> used;
        for (const MeshElement& element : check.mesh.continuum)
            for (const int corner : element.corners)
                ++used[corner];
        EXPECT_EQ(used.size(), check.mesh.nodes.size()) << text_of(deck.cards);
    }
}

TEST(BaseMeshProperty, TheSignOfAPositionMirrorsTheMesh) {
    Random random(21);
    for (int round = 0; round < rounds(20); ++round) {
        const std::string DX = e_field(between(random, 0.5, 5.0), 12, 4),
                          AX = e_field(between(random, 0.3, 0.5), 12, 4);
        std::vector<std::vector<double>> x;
        for (const char* sign : {" ", " -"}) {
            const Project project;
            std::string card = "16 ";
            card.append(DX).append(sign).append(AX.substr(AX.find('0')));
            project.deck(text_of({"2", "1 1", "8 1", card, "4 4 0.5", "0"}));
            expect_finished(project.run());
            x.emplace_back();
            for (const MeshNode& node :
                 check_mesh(project.read_work("Basic.Tmp"), Kind::displacement).mesh.nodes)
                if (node.y == 1.0)
                    x.back().push_back(node.x);
        }
        ASSERT_EQ(x[0].size(), x[1].size()) << DX << AX;
        for (std::size_t k = 0; k < x[0].size(); ++k)
            EXPECT_NEAR(x[0][k] - 8.0, 24.0 - x[1][x[0].size() - 1 - k], 1.0E-4) << DX << AX;
    }
}

}  // namespace
}  // namespace brelan::test
