// When the elements of a mesh are there, and which of them come and go together.
#include "analysis/stages.h"

#include <gtest/gtest.h>

#include <string>

namespace brelan::test {
namespace {

// Elements of the numbers 1 to 8: six solids, a beam, a truss.
MeshLists mesh_of_eight() {
    MeshLists mesh;
    for (std::int32_t n = 1; n <= 8; ++n) {
        Element element;
        element.number = ElementNumber(n);
        element.of = n <= 6 ? ElementClass::solid : n == 7 ? ElementClass::beam : ElementClass::truss;
        mesh.elements.push_back(element);
    }
    mesh.finish();
    return mesh;
}

ElementActivity activity(std::int32_t element, std::int32_t comes, std::int32_t goes) {
    return {ElementNumber(element), {comes, goes}, {}};
}

// "11100" for a pair that is there in the steps 0 to 2 of 0 to 4.
std::string steps_of(std::int32_t comes, std::int32_t goes) {
    std::string text;
    for (std::int32_t step = 0; step < 5; ++step)
        text += is_there({comes, goes}, step) ? '1' : '0';
    return text;
}

TEST(Stages, PairIsThereFromItsFirstNumberAndBeforeItsSecond) {
    EXPECT_EQ(steps_of(0, 0), "11111");
    EXPECT_EQ(steps_of(0, 3), "11100");
    EXPECT_EQ(steps_of(2, 0), "00111");
    EXPECT_EQ(steps_of(1, 3), "01100");
    EXPECT_EQ(steps_of(0, 1), "10000");
    EXPECT_EQ(steps_of(-2, -1), "11111");
}

TEST(Stages, WhatGoesBeforeItComesIsNeverThere) {
    EXPECT_EQ(steps_of(3, 3), "00000");
    EXPECT_EQ(steps_of(3, 1), "00000");
}

TEST(Stages, ElementsOfOneClassAndPairAreOneSet) {
    const std::vector<ElementActivity> elements{activity(8, 2, 0), activity(1, 0, 3), activity(5, 2, 0),
                                                activity(3, 0, 3), activity(7, 2, 0), activity(6, 9, 9),
                                                activity(11, 1, 0)};
    const Stages stages(mesh_of_eight(), elements);
    std::string sets;
    for (const StageSet& set : stages.sets()) {
        sets += std::string(name_of(set.of)) + " " + std::to_string(set.comes()) + "-" +
                std::to_string(set.goes()) + (set.never_there() ? " never:" : ":");
        for (const Number n : set.elements)
            sets += " " + std::to_string(n);
        sets += "; ";
    }
    EXPECT_EQ(sets, "solid 0-3: 1 3; solid 2-0: 5; solid 0-0 never: 6; beam 2-0: 7; truss 2-0: 8; ");
    // Element 6 never comes, 11 is not in the mesh.
    EXPECT_EQ(stages.steps(), (std::vector<std::int32_t>{2, 3}));
    EXPECT_TRUE(stages.is_there(1, 2));
    EXPECT_FALSE(stages.is_there(1, 3));
    EXPECT_TRUE(stages.is_there(2, 3));  // in no set
    EXPECT_FALSE(stages.is_there(6, 9));
}

TEST(Stages, WithoutActivityThereAreNone) {
    const Stages stages(mesh_of_eight(), {});
    EXPECT_TRUE(stages.steps().empty());
    EXPECT_TRUE(stages.sets().empty());
    EXPECT_TRUE(stages.is_there(4, 7));
}

}  // namespace
}  // namespace brelan::test
