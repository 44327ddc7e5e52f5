// Looks at the index of element places, while nodes move and elements get other corners: what lies over a
// box, at a node and beside a side is what a look at all elements tells.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <span>
#include <vector>

#include "lib/group/cut_fixture.h"
#include "support/campaign.h"

namespace brelan::test {
namespace {

class GroupIndexLooks : public CutFixture {
protected:
    static constexpr std::int32_t NODES = 40, ELEMENTS = 60;

    std::mt19937 random_{5};

    float any(float low, float high) { return std::uniform_real_distribution<float>(low, high)(random_); }
    std::int32_t number(std::int32_t last) {
        return std::uniform_int_distribution<std::int32_t>(1, last)(random_);
    }

    // Three or four nodes, one of them twice at times.
    Corners any_corners() {
        Corners corners{};
        const std::size_t count = number(3) == 1 ? 3 : 4;
        for (std::size_t i = 0; i < count; ++i)
            corners.n[i] = NodeNumber(number(NODES));
        return corners;
    }

    void fill() {
        clear();
        for (std::int32_t n = 1; n <= NODES; ++n)
            node(n, any(-5.0F, 5.0F), any(-5.0F, 5.0F));
        for (std::int32_t e = 1; e <= ELEMENTS; ++e) {
            const Corners c = any_corners();
            element(e, {c.n[0].value, c.n[1].value, c.n[2].value, c.n[3].value});
        }
        build_indexes(state.mesh, state.engine);
    }

    void change() {
        if (number(2) == 1)
            move_node(state.mesh, state.engine, NodeNumber(number(NODES)),
                      {any(-6.0F, 6.0F), any(-6.0F, 6.0F)});
        else
            set_corners(state.mesh, state.engine, ElementNumber(number(ELEMENTS)), any_corners());
    }

    static bool has(ElementNumber e, NodeNumber node) {
        const Corners corners = corners_of(state.mesh, e);
        return std::find(corners.n, corners.n + 4, node) != corners.n + 4;
    }

    template <class Is>
    static std::vector<ElementNumber> all_that(const Is& is) {
        std::vector<ElementNumber> elements;
        for (ElementNumber e{1}; e <= state.engine.highest_element; ++e)
            if (is(e))
                elements.push_back(e);
        return elements;
    }

    // Nothing is left out; more may be found, each once and in order.
    template <class Found>
    static void expect_to_hold(const Found& found, const std::vector<ElementNumber>& needed) {
        EXPECT_TRUE(std::adjacent_find(found.begin(), found.end(), std::greater_equal<>()) == found.end());
        EXPECT_TRUE(std::includes(found.begin(), found.end(), needed.begin(), needed.end()));
    }
};

TEST_F(GroupIndexLooks, OverABoxAreTheElementsWhoseBoxesMeetIt) {
    std::size_t met = 0, looks = 0;
    for (int mesh = 0; mesh < rounds(10, 100); ++mesh) {
        fill();
        for (int i = 0; i < 200; ++i) {
            change();
            Box box = box_of({any(-7.0F, 7.0F), any(-7.0F, 7.0F)}, {any(-7.0F, 7.0F), any(-7.0F, 7.0F)});
            if (number(2) == 1)
                box = box_of({box.x0, box.y0}, {box.x0 + any(0.0F, 0.5F), box.y0 + any(0.0F, 0.5F)});
            const std::vector<ElementNumber> needed = all_that([&](ElementNumber e) {
                const Corners c = corners_of(state.mesh, e);
                Box of = box_of(node_point(state.mesh, c.n[0]), node_point(state.mesh, c.n[1]));
                of.include(node_point(state.mesh, c.n[2]));
                if (c.n[3].names_one())
                    of.include(node_point(state.mesh, c.n[3]));
                return of.x0 <= box.x1 && of.x1 >= box.x0 && of.y0 <= box.y1 && of.y1 >= box.y0;
            });
            const std::span<const ElementNumber> found = elements_over(state.engine, box);
            ASSERT_TRUE(std::equal(found.begin(), found.end(), needed.begin(), needed.end()));
            met += found.size();
            ++looks;
        }
    }
    EXPECT_GT(met, looks);
    EXPECT_LT(met, looks * static_cast<std::size_t>(ELEMENTS));
}

TEST_F(GroupIndexLooks, AtANodeAndBesideASideNoneIsLeftOut) {
    for (int mesh = 0; mesh < rounds(10, 100); ++mesh) {
        fill();
        for (int i = 0; i < 200; ++i) {
            change();
            const NodeNumber a(number(NODES)), b(number(NODES));
            expect_to_hold(elements_at(state.engine, a),
                           all_that([&](ElementNumber e) { return has(e, a); }));
            const std::vector<ElementNumber> sharing =
                all_that([&](ElementNumber e) { return has(e, a) && has(e, b); });
            const ElementsAt found = elements_beside(state.engine, a, b);
            expect_to_hold(found, sharing);
            EXPECT_LE(found.size(),
                      std::min(elements_at(state.engine, a).size(), elements_at(state.engine, b).size()));
        }
    }
}

// An element that takes its corners in turn, and then the first again, is in no list twice.
TEST_F(GroupIndexLooks, ElementThatComesBackToANodeIsThereOnce) {
    rectangle(4.0F, 3.0F);
    node(5, 9.0F, 9.0F);
    const Corners away{{NodeNumber(5), NodeNumber(2), NodeNumber(3), NodeNumber(4)}};
    const Corners back{{NodeNumber(1), NodeNumber(2), NodeNumber(3), NodeNumber(4)}};
    for (int i = 0; i < 5; ++i) {
        set_corners(state.mesh, state.engine, ElementNumber(1), away);
        set_corners(state.mesh, state.engine, ElementNumber(1), back);
    }
    EXPECT_EQ(elements_at(state.engine, NodeNumber(1)).size(), 1U);
    EXPECT_EQ(elements_at(state.engine, NodeNumber(3)).size(), 1U);
}

TEST_F(GroupIndexLooks, WithoutTheIndexAreAtAllElements) {
    fill();
    state.engine.uses_indexes = false;
    const auto last = static_cast<std::size_t>(ELEMENTS);
    EXPECT_EQ(elements_over(state.engine, box_of({0, 0}, {1, 1})).size(), last);
    EXPECT_EQ(elements_beside(state.engine, NodeNumber(1), NodeNumber(2)).size(), last);
    state.engine.uses_indexes = true;
}

}  // namespace
}  // namespace brelan::test
