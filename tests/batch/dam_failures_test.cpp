// Dams that cannot be: the run ends with a message that names the card and the line of the user's deck.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/dam.h"

namespace brelan::test {
namespace {

using Fragments = std::vector<std::string>;

// All cards: 1.1 on line 2, 5.1 on 4, 5.2 on 6, 5.3 on 8, 5.4-1 on 10, the layers on 12, 5.5 on 14.
DamInput dam_of_all_parts() {
    DamInput dam;
    dam.crest = dam.WMID = 8.0;
    dam.layers = {6.0, 8.0};
    dam.core = {{42.0, 0.0}, {46.0, 0.0}, {45.0, 18.0}, {43.0, 18.0}};
    dam.wall = {{43.0, 0.0}, {43.0, -11.0}, {45.0, -11.0}, {45.0, 0.0}};
    return dam;
}

void expect_refused(const DamInput& dam, const Fragments& fragments, const char* source = __builtin_FILE(),
                    int line = __builtin_LINE()) {
    const DamRun run(dam, Kind::displacement);
    expect_failed(run.result(), fragments, source, line);
    EXPECT_FALSE(run.project().exists("EarthDam.Meg"));
}

TEST(DamRefusal, NamesTheFieldOfCard5_2) {
    struct Row {
        double DamInput::*field;
        const char* name;
    };
    const Row rows[] = {{&DamInput::HDAM, "HDAM"},    {&DamInput::RUNL, "RUNL"},
                        {&DamInput::WLEFT, "WLEFT"},  {&DamInput::crest, "crest width"},
                        {&DamInput::WMID, "WMID"},    {&DamInput::RUNR, "RUNR"},
                        {&DamInput::WRIGHT, "WRIGHT"}};
    for (const Row& row : rows)
        for (const double value : {0.0, -2.5})
            for (const int ISHELL : {0, 1}) {
                DamInput dam = dam_of_all_parts();
                dam.ISHELL = ISHELL;
                dam.*row.field = value;
                expect_refused(dam, {"..\\deck.dat, line 6: Card 5.2", row.name,
                                     value == 0.0 ? "found 0" : "found -2.5"});
            }
}

TEST(DamRefusal, OfACrestThatEndsBeyondTheBlockColumns) {
    DamInput dam = dam_of_all_parts();
    dam.RUNL = 81.0;  // and a crest of 8, while the columns end at 88
    expect_refused(dam, {"line 6: Card 5.2", "89", "88"});
    dam.ISHELL = 1;  // the runs only pick the templates
    expect_finished(DamRun(dam, Kind::displacement).result());
}

TEST(DamRefusal, OfACoreOutsideTheProfile) {
    const std::vector<DamPlace> outside[] = {
        {{42.0, -1.0}, {46.0, -1.0}, {45.0, 18.0}, {43.0, 18.0}},  // below the base
        {{42.0, 0.0}, {46.0, 0.0}, {45.0, 21.0}, {43.0, 21.0}},    // above the crest
        {{42.0, 0.0}, {46.0, 0.0}, {45.0, 18.0}, {30.0, 18.0}},    // above the left slope
        {{42.0, 0.0}, {46.0, 0.0}, {60.0, 18.0}, {43.0, 18.0}},    // above the right slope
    };
    for (const auto& core : outside) {
        DamInput dam = dam_of_all_parts();
        dam.core = core;
        expect_refused(dam, {"line 8: Card 5.3", "profile"});
    }
}

TEST(DamRefusal, OfPointsThatMakeNoArea) {
    DamInput dam = dam_of_all_parts();
    dam.core = {{42.0, 0.0}, {45.0, 18.0}, {46.0, 0.0}, {43.0, 18.0}};  // crossed
    expect_refused(dam, {"line 8: Card 5.3", "order"});
    dam.core = {{42.0, 0.0}, {44.0, 9.0}, {46.0, 18.0}, {44.0, 9.0}};  // one line
    expect_refused(dam, {"line 8: Card 5.3", "area of 0"});
    dam = dam_of_all_parts();
    dam.wall = {{43.0, 0.0}, {45.0, -11.0}, {43.0, -11.0}, {45.0, 0.0}};
    expect_refused(dam, {"line 14: Card 5.5", "order"});
}

// 40 and 56 are the whole width of the block columns.
TEST(DamRefusal, OfACrestThatEndsAtTheRightToe) {
    DamInput dam;
    dam.crest = 56.0;
    expect_refused(dam, {"Card 5.2", "reach beyond the crest"});
}

TEST(DamRefusal, OfAWallOutsideTheGround) {
    const std::vector<DamPlace> outside[] = {
        {{43.0, 0.0}, {43.0, -14.5}, {45.0, -14.5}, {45.0, 0.0}},    // below the last layer
        {{-24.0, 0.0}, {-26.0, -5.0}, {-22.0, -5.0}, {-22.0, 0.0}},  // beyond the left margin
        {{111.0, 0.0}, {111.0, -5.0}, {114.0, -5.0}, {112.0, 0.0}},  // beyond the right margin
        {{20.0, 15.0}, {20.0, -5.0}, {22.0, -5.0}, {22.0, 15.0}},    // above the left slope
    };
    for (const auto& wall : outside) {
        DamInput dam = dam_of_all_parts();
        dam.wall = wall;
        expect_refused(dam, {"line 14: Card 5.5", "ground"});
    }
}

TEST(DamRefusal, OfMarginsAndLayersWithoutExtent) {
    DamInput dam = dam_of_all_parts();
    dam.XLEFT = 0.0;
    expect_refused(dam, {"line 10: Card 5.4-1", "XLEFT"});
    dam = dam_of_all_parts();
    dam.XRIGHT = -1.0;
    expect_refused(dam, {"line 10: Card 5.4-1", "XRIGHT"});
    dam = dam_of_all_parts();
    dam.layers[1] = 0.0;
    expect_refused(dam, {"line 12: Card 5.4", "thickness"});
}

TEST(DamRefusal, OfMoreLayersThanBlockRows) {
    DamInput dam = dam_of_all_parts();
    dam.wall.clear();
    dam.layers.assign(99, 1.0);
    expect_refused(dam, {"line 4: Card 5.1", "98", "99"});
}

TEST(DamOf98Layers, IsDividedIntoAsManyRows) {
    DamInput dam = dam_of_all_parts();
    dam.wall.clear();
    dam.core.clear();
    dam.layers.assign(98, 1.0);
    const DamRun run(dam, Kind::head);
    expect_finished(run.result());
    EXPECT_EQ(dam_problems(dam, run.mesh()), std::vector<std::string>{});
    EXPECT_TRUE(run.mesh().zone_areas().contains(103));  // the lowest layer
    EXPECT_FALSE(run.mesh().zone_areas().contains(104));
}

TEST(DamRefusal, OfANumberOfLayersBelow0IsNone) {
    const Project project(Kind::displacement);
    install_dam_files(project, Kind::displacement);
    project.deck("3\n-2 0 1 0\n20 15 40 40 8 8 40 40\n");
    expect_finished(project.run());
    EXPECT_EQ(project.read("EarthDam.Meg").find("Subsoil"), std::string::npos);
}

// --- templates -----------------------------------------------------------------------------------

TEST(DamTemplates, MissingAreNamed) {
    DamInput dam = dam_of_all_parts();
    dam.ISHELL = 1;
    const Project project(Kind::displacement);
    install_dam_files(project, Kind::displacement);
    std::filesystem::remove(project.data_file("Slope/L_2.0.Mes"));
    project.deck(dam.deck());
    expect_failed(project.run(), {"Slope\\L_2.0.Mes"});
    // What the decks before it made stays for a person to look at.
    EXPECT_TRUE(project.exists("EarthDam.Mes"));
    EXPECT_TRUE(project.exists("EarthDam.Meg"));
}

TEST(DamTemplates, OfTheOtherKindsAreRefused) {
    DamInput dam = dam_of_all_parts();
    dam.ISHELL = 1;
    for (const Kind kind : ALL_KINDS) {
        const Project project(kind);
        const bool scalar = kind == Kind::temperature || kind == Kind::head;
        install_dam_files(project, scalar ? Kind::coupled : Kind::head);
        project.deck(dam.deck());
        expect_failed(project.run(), {"L_2.0.Mes"});
    }
}

}  // namespace
}  // namespace brelan::test
