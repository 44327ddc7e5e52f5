// Merging of the raw nodes of a base mesh against the plain scan of all pairs, chains and ties included.

#include <cstdio>
#include <cstdlib>
#include <random>

#include "blocks/base_mesh.h"
#include "lib/blocks/hand_written.h"
#include "mesh/tables.h"
#include "plane/point.h"

namespace brelan::test {
namespace {

using Random = std::mt19937;

struct Place {
    float x, y;
};

// New numbers of the raw nodes from 1: every pair is looked at, a later match overwrites an earlier one, a
// merged node still takes part, and then each takes the number of the node it was merged into.
std::vector<std::int32_t> plain_merge(const std::vector<Place>& places) {
    const std::size_t count = places.size();
    std::vector<std::int32_t> map(count + 1, 1);
    for (std::size_t a = 1; a <= count; ++a) {
        for (std::size_t b = a + 1; b <= count; ++b) {
            const Place &p = places[a - 1], &q = places[b - 1];
            if (distance_between(p.x, p.y, q.x, q.y) <= 0.0001F)
                map[b] = -static_cast<std::int32_t>(a);
        }
    }
    std::int32_t next = 0;
    for (std::size_t n = 1; n <= count; ++n)
        if (map[n] > 0)
            map[n] = ++next;
    for (std::size_t n = 1; n <= count; ++n)
        if (map[n] < 1)
            map[n] = map[static_cast<std::size_t>(-map[n])];
    return map;
}

// Where the raw list shows a coordinate: to six digits.
float shown(float value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.5E", static_cast<double>(value));
    return std::strtof(text, nullptr);
}

class BaseMeshMerge : public BlockMeshTest {
protected:
    // Merges the places, with four nodes on each raw element, and holds the numbers of its corners against
    // the plain scan.
    void expect_plain_merge(std::vector<Place> places, const std::string& what) {
        while (places.size() % 4 != 0)
            places.push_back({100.0F, static_cast<float>(places.size())});
        RawMesh raw{"merge", {-1000.0F, 1000.0F, -1000.0F, 1000.0F}, NodeNumber(1), ElementNumber(1), {}, {}};
        for (Place& place : places) {
            raw.nodes.push_back({place.x, place.y});
            place = {shown(place.x), shown(place.y)};
        }
        const auto count = static_cast<std::int32_t>(places.size());
        for (std::int32_t n = 1; n < count; n += 4) {
            ElementRecord element;
            element.words = words_of({n, n + 1, n + 2, n + 3});
            raw.elements.push_back(element);
        }
        const BaseMesh mesh = make_base_mesh(state.settings.kind(), state.deck.blocks, std::move(raw));

        const std::vector<std::int32_t> expected = plain_merge(places);
        const auto nodes = static_cast<std::size_t>(*std::max_element(expected.begin() + 1, expected.end()));
        ASSERT_EQ(mesh.nodes.size(), nodes) << what;
        std::size_t wrong = 0, raw_node = 0;
        for (const ElementRecord& element : mesh.elements) {
            const ElementWords& w = element.words;
            for (const std::int32_t number :
                 {w.corner_1.value, w.corner_2.value, w.corner_3.value, w.corner_4.value})
                wrong += number != expected[++raw_node];
        }
        EXPECT_EQ(raw_node, places.size()) << what;
        EXPECT_EQ(wrong, 0U) << what;
    }

    float between(float low, float high) { return std::uniform_real_distribution<float>(low, high)(random_); }
    std::uint64_t any() { return random_(); }

private:
    Random random_{8};
};

TEST_F(BaseMeshMerge, OfHeapsAtTheTolerance) {
    for (const float width : {5.0E-5F, 1.0E-4F, 3.0E-4F, 2.0E-3F}) {
        std::vector<Place> places;
        for (int n = 0; n < 1500; ++n)
            places.push_back({between(0, width) + 2.0F * static_cast<float>(any() % 10), between(0, width)});
        expect_plain_merge(places, "heaps of " + std::to_string(width));
    }
}

TEST_F(BaseMeshMerge, OfChains) {
    for (const float step : {0.00005F, 0.00008F, 0.0001F, 0.000101F}) {
        std::vector<Place> places;
        for (int n = 0; n < 1000; ++n)
            places.push_back({static_cast<float>(n) * step, 0.5F});
        expect_plain_merge(places, "a chain of " + std::to_string(step));
        std::shuffle(places.begin(), places.end(), Random(9));
        expect_plain_merge(places, "a shuffled chain of " + std::to_string(step));
    }
}

TEST_F(BaseMeshMerge, OfMeshesAtTheTolerance) {
    for (const float spacing : {0.0001F, 0.00007F, 0.00005F, 0.25F}) {
        std::vector<Place> places;
        for (int n = 0; n < 1600; ++n)
            places.push_back({static_cast<float>(n % 40) * spacing, static_cast<float>(n / 40) * spacing});
        std::shuffle(places.begin(), places.end(), Random(10));
        expect_plain_merge(places, "a mesh of " + std::to_string(spacing));
    }
}

TEST_F(BaseMeshMerge, OfCoincidentAndScatteredPlaces) {
    std::vector<Place> places;
    for (int n = 0; n < 1000; ++n)
        places.push_back({between(0, 30), between(0, 30)});
    for (int n = 0; n < 1000; ++n)
        places.push_back(places[any() % 700]);
    std::shuffle(places.begin(), places.end(), Random(11));
    expect_plain_merge(places, "coincident places");
    expect_plain_merge(std::vector<Place>(1200, Place{3.5F, 4.5F}), "one place");
}

}  // namespace
}  // namespace brelan::test
