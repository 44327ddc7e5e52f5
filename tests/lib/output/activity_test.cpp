// Which of a group's six pairs an element takes, by MTYPE, class and material, and what comes of it.
#include "output/activity.h"

#include "group/membership.h"
#include "mesh/group_tables.h"
#include "support/state.h"

namespace brelan::test {
namespace {

// Materials in the order of the columns of a row below.
constexpr std::int32_t material = 5, joint_material = 9, inner_line_material = 6, outer_line_material = 7,
                       OTHER = 1;
constexpr std::int32_t inner_line_type = 2, outer_line_type = 3;

class ActivityPairs : public ::testing::Test {
protected:
    static constexpr std::int32_t G = 4;  // the group

    void SetUp() override {
        state.deck.groups.rows[G] = {};
        state.deck.groups.materials[G] = {};
        state.deck.groups.outputs[G] = {};
        words(material, joint_material, inner_line_type, inner_line_material, outer_line_type,
              outer_line_material);
        for (std::size_t role = 0; role < 6; ++role)
            state.deck.groups.outputs[G].pair[role] = {static_cast<std::int32_t>(role) + 1,
                                                       static_cast<std::int32_t>(role) + 101};
    }
    static void words(float mat, float matj, float lti, float lmi, float lto, float lmo) {
        state.deck.groups.materials[G].material = mat;
        state.deck.groups.materials[G].joint_material = matj;
        state.deck.groups.materials[G].inner_line_type = lti;
        state.deck.groups.materials[G].inner_line_material = lmi;
        state.deck.groups.materials[G].outer_line_type = lto;
        state.deck.groups.materials[G].outer_line_material = lmo;
    }
    static void clear_pairs(std::initializer_list<std::size_t> numbers) {
        for (const std::size_t number : numbers)
            state.deck.groups.outputs[G].pair[number - 1] = {0, 0};
    }
    // The numbers of the pairs that the five materials take, "-" for none: as in "21--1".
    static std::string taken(std::int32_t group_type, std::int8_t type) {
        state.deck.groups.rows[G].group_type = group_type;
        std::string text;
        for (const std::int32_t number :
             {material, joint_material, inner_line_material, outer_line_material, OTHER}) {
            const ActivityPair pair = activity_of(state.deck.groups, G, type, MaterialNumber(number));
            if (pair == ActivityPair{}) {
                text += '-';
                continue;
            }
            text += static_cast<char>('0' + pair.activated);
            EXPECT_EQ(pair.deactivated, pair.activated + 100);
        }
        return text;
    }
    static void expect_taken(std::int32_t group_type, const char* continuum, const char* beams,
                             const char* trusses) {
        EXPECT_EQ(taken(group_type, ELEMENT_CONTINUUM), continuum) << "continuum, type " << group_type;
        EXPECT_EQ(taken(group_type, ELEMENT_BEAM), beams) << "beams, type " << group_type;
        EXPECT_EQ(taken(group_type, ELEMENT_TRUSS), trusses) << "trusses, type " << group_type;
    }
};

//                     materials: MAT MATj LMi LMo other
TEST_F(ActivityPairs, ByTypeClassAndMaterial) {
    expect_taken(1, "-----", "--4--", "-----");
    expect_taken(2, "11111", "55555", "66666");
    expect_taken(3, "2----", "--4--", "-----");
    expect_taken(4, "21111", "--4--", "-----");
    expect_taken(-2, "13111", "--5--", "---6-");
    expect_taken(-3, "23---", "--5--", "---6-");
    expect_taken(-4, "23111", "--5--", "---6-");
    for (const std::int32_t group_type : {-1, 0, 5, 6, -5, 99})
        expect_taken(group_type, "-----", "-----", "-----");
}

TEST_F(ActivityPairs, WithoutAMaterial) {
    words(0, joint_material, inner_line_type, inner_line_material, outer_line_type, outer_line_material);
    expect_taken(3, "22222", "--4--", "-----");
    expect_taken(4, "11111", "--4--", "-----");
    expect_taken(-3, "23222", "--5--", "---6-");
    expect_taken(-4, "13111", "--5--", "---6-");
}

TEST_F(ActivityPairs, OfAMaterialBelow0) {
    words(-material, joint_material, inner_line_type, inner_line_material, outer_line_type,
          outer_line_material);
    expect_taken(3, "22222", "--4--", "-----");
    expect_taken(4, "11111", "--4--", "-----");
    expect_taken(-3, "-3---", "--5--", "---6-");
    expect_taken(-4, "13111", "--5--", "---6-");
}

TEST_F(ActivityPairs, MaterialOfTheRegionComesBeforeThatOfTheJoint) {
    words(joint_material, joint_material, inner_line_type, inner_line_material, outer_line_type,
          outer_line_material);
    expect_taken(-2, "13111", "--5--", "---6-");
    expect_taken(-3, "-2---", "--5--", "---6-");
    expect_taken(-4, "12111", "--5--", "---6-");
    words(0, 0, inner_line_type, inner_line_material, outer_line_type, outer_line_material);
    expect_taken(-3, "22222", "--5--", "---6-");
}

// Type 2: the line's own pair counts when the pairs by class are all zero.
TEST_F(ActivityPairs, OfALineWithoutPairsByClass) {
    clear_pairs({1, 5, 6});
    expect_taken(2, "-----", "--4--", "-----");
    words(material, joint_material, outer_line_type, inner_line_material, 0, 0);
    expect_taken(2, "-----", "-----", "--4--");
    // Tested as it stands: the code 1 is that of the continuum, 4 and 5 are no class.
    words(material, joint_material, 1, inner_line_material, 0, 0);
    expect_taken(2, "--4--", "-----", "-----");
    expect_taken(1, "-----", "-----", "-----");
    for (const float line_type : {-3.0F, 4.0F, 5.0F, 0.0F}) {
        words(material, joint_material, line_type, inner_line_material, 0, 0);
        expect_taken(2, "-----", "-----", "-----");
    }
}

TEST_F(ActivityPairs, OfALineWithOnePairByClass) {
    clear_pairs({5, 6});
    expect_taken(2, "11111", "-----", "-----");
    state.deck.groups.outputs[G].pair[0] = {0, 0};
    state.deck.groups.outputs[G].pair[4] = {5, 105};
    expect_taken(2, "-----", "55555", "-----");
    state.deck.groups.outputs[G].pair[4] = {0, 0};
    state.deck.groups.outputs[G].pair[5] = {6, 106};
    expect_taken(2, "-----", "-----", "66666");
}

TEST_F(ActivityPairs, PairOfTwoZerosIsNone) {
    clear_pairs({1, 2, 3, 4, 5, 6});
    for (std::int32_t group_type = -4; group_type <= 4; ++group_type)
        expect_taken(group_type, "-----", "-----", "-----");
}

TEST_F(ActivityPairs, OneZeroOfTwoIsAPair) {
    state.deck.groups.rows[G].group_type = 4;
    state.deck.groups.outputs[G].pair[0] = {0, 7};
    state.deck.groups.outputs[G].pair[1] = {7, 0};
    EXPECT_EQ(activity_of(state.deck.groups, G, ELEMENT_CONTINUUM, MaterialNumber(OTHER)),
              (ActivityPair{0, 7}));
    EXPECT_EQ(activity_of(state.deck.groups, G, ELEMENT_CONTINUUM, MaterialNumber(material)),
              (ActivityPair{7, 0}));
}

TEST_F(ActivityPairs, FirstLineOfAJointComesBeforeItsTwin) {
    words(material, joint_material, inner_line_type, inner_line_material, inner_line_type,
          inner_line_material);
    expect_taken(-2, "13111", "--5--", "-----");
    words(material, joint_material, inner_line_type, inner_line_material, inner_line_type,
          outer_line_material);
    expect_taken(-3, "23---", "--56-", "-----");
}

TEST_F(ActivityPairs, WordsAreCutToIntegers) {
    words(5.9F, 9.5F, 2.9F, 6.999F, 3.1F, 7.5F);
    expect_taken(-4, "23111", "--5--", "---6-");
    words(0.9F, 9.0F, 2.0F, 6.0F, 3.0F, 7.0F);
    expect_taken(3, "22222", "--4--", "-----");
}

// --- new materials -------------------------------------------------------------------------------

TEST_F(ActivityPairs, NewMaterialsFollowTheHighestOfTheMesh) {
    state.deck.groups.count = G;
    for (std::int32_t g = 1; g < G; ++g)
        state.deck.groups.rows[g] = {};
    state.deck.groups.rows[G].group_type = 4;
    FinishedMembers members;
    members.highest_material = MaterialNumber(20);
    members.groups.resize(G + 1);
    members.groups[G][{ELEMENT_CONTINUUM, MaterialNumber(material)}].all = {
        {ElementNumber(3), ElementNumber(4)}, {ElementNumber(9), ElementNumber(9)}};
    members.groups[G][{ELEMENT_CONTINUUM, MaterialNumber(OTHER)}].all = {
        {ElementNumber(4), ElementNumber(5)}};
    members.groups[G][{ELEMENT_BEAM, MaterialNumber(inner_line_material)}].all = {
        {ElementNumber(11), ElementNumber(11)}};
    members.groups[G][{ELEMENT_TRUSS, MaterialNumber(outer_line_material)}].all = {
        {ElementNumber(12), ElementNumber(12)}};
    const Activity activity = make_activity(state.trace, state.deck.groups, members);
    EXPECT_EQ(activity.line_count, 2 + 2 + 1 + 1);
    EXPECT_EQ(activity.first_new.value, 21);
    ASSERT_EQ(activity.materials.size(), 2U);
    EXPECT_EQ(activity.materials[0].old.value, OTHER);
    EXPECT_EQ(activity.materials[0].activity, (ActivityPair{1, 101}));
    EXPECT_EQ(activity.materials[1].old.value, material);
    EXPECT_EQ(activity.new_material[3].value, 22);
    EXPECT_EQ(activity.new_material[4].value, 22);  // the later of its two
    EXPECT_EQ(activity.new_material[5].value, 21);
    EXPECT_EQ(activity.new_material[9].value, 22);
    std::string elements;
    for (const ElementActivity& e : activity.elements)
        elements += to_string(e.element) + ":" + std::to_string(e.pair.activated) + "/" +
                    to_string(e.old_material) + " ";
    EXPECT_EQ(elements, "3:2/5 4:2/5 5:1/1 9:2/5 11:4/0 ");
    for (const std::size_t none : {1U, 6U, 10U, 11U, 12U})
        EXPECT_EQ(activity.new_material[none].value, 0) << none;
}

}  // namespace
}  // namespace brelan::test
