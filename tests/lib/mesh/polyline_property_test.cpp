// The nodes on a polyline against a plain scan that goes segment by segment over all nodes.
#include <cmath>
#include <random>
#include <set>

#include "mesh/polyline_selection.h"
#include "mesh/tables.h"
#include "plane/point.h"
#include "support/campaign.h"
#include "support/state.h"

namespace brelan::test {
namespace {

using Numbers = std::vector<std::int32_t>;

struct Point {
    float x, y;
};
struct Place {
    bool on_segment;
    float position;
};

Place place_of(Point node, Point start, Point end) {
    const float dx = end.x - start.x;
    const float dy = end.y - start.y;
    const float length = std::sqrt(dx * dx + dy * dy);
    const float vx = node.x - start.x;
    const float vy = node.y - start.y;
    const float distance_squared = vx * vx + vy * vy;
    if (distance_squared < 1.0E-6F)
        return {true, distance_squared};
    const float along = dx / length * vx + dy / length * vy;
    const float aside = std::abs(dx / length * vy - dy / length * vx);
    return {aside <= 0.001F && along >= -0.001F && along <= length + 0.001F, along};
}

Numbers plain_scan(const NodePlaces& places, const Numbers& points) {
    Numbers result;
    std::set<std::int32_t> claimed;
    for (std::size_t i = 1; i < points.size(); ++i) {
        const Point start{places.x[NodeNumber(points[i - 1])], places.y[NodeNumber(points[i - 1])]};
        const Point end{places.x[NodeNumber(points[i])], places.y[NodeNumber(points[i])]};
        const float dx = end.x - start.x;
        const float dy = end.y - start.y;
        if (dx * dx + dy * dy < 1.0E-6F)
            continue;
        std::vector<std::pair<float, std::int32_t>> found;
        for (std::int32_t n = 1; n <= HIGHEST_NODE_NUMBER; ++n) {
            if (places.given[NodeNumber(n)] == 0 || claimed.contains(n))
                continue;
            const Place place = place_of({places.x[NodeNumber(n)], places.y[NodeNumber(n)]}, start, end);
            if (!place.on_segment)
                continue;
            found.emplace_back(place.position, n);
            claimed.insert(n);
        }
        // The smallest place first; of two at the same place the first found.
        while (!found.empty()) {
            std::size_t smallest = 0;
            for (std::size_t k = 1; k < found.size(); ++k)
                if (found[k].first < found[smallest].first)
                    smallest = k;
            result.push_back(found[smallest].second);
            found.erase(found.begin() + static_cast<std::ptrdiff_t>(smallest));
        }
    }
    return result;
}

class PolylineProperty : public ::testing::Test {
protected:
    NodePlaces places;

    void clear() { places = {}; }

    std::mt19937 random{987654321};

    int below(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }

    // Nodes on the points of a small grid, some a little beside, at numbers all over the table. Many share a
    // point and many points lie on one line.
    Numbers scattered_nodes(int count, int grid) {
        constexpr float beside[] = {0.0F, 0.0F, 0.0F, 0.0005F, -0.0005F, 0.001F, -0.001F, 0.0015F, 0.01F};
        Numbers numbers;
        while (static_cast<int>(numbers.size()) < count) {
            const std::int32_t n = 1 + below(HIGHEST_NODE_NUMBER);
            if (places.given[NodeNumber(n)] == 1)
                continue;
            places.given[NodeNumber(n)] = 1;
            places.x[NodeNumber(n)] = static_cast<float>(below(grid)) + beside[below(9)];
            places.y[NodeNumber(n)] = static_cast<float>(below(grid)) + beside[below(9)];
            numbers.push_back(n);
        }
        return numbers;
    }
};

TEST_F(PolylineProperty, SelectionIsThatOfThePlainScan) {
    for (int round = 0; round < rounds(60); ++round) {
        clear();
        const Numbers nodes = scattered_nodes(200, 4 + below(6));
        Numbers points;
        for (int k = 1 + below(6); k > 0; --k)
            points.push_back(nodes[static_cast<std::size_t>(below(static_cast<int>(nodes.size())))]);
        const Numbers expected = plain_scan(places, points);
        ASSERT_EQ(values_of(select_polyline(places, node_numbers(points))), expected) << "round " << round;
    }
}

TEST_F(PolylineProperty, NoNodeIsSelectedTwice) {
    for (int round = 0; round < rounds(20); ++round) {
        clear();
        const Numbers nodes = scattered_nodes(100, 3);
        const Numbers points(nodes.begin(), nodes.begin() + 10);
        const Numbers selected = values_of(select_polyline(places, node_numbers(points)));
        EXPECT_EQ(std::set<std::int32_t>(selected.begin(), selected.end()).size(), selected.size());
    }
}

TEST_F(PolylineProperty, PointsOfLongSegmentsAreOnTheirLine) {
    for (int round = 0; round < rounds(20); ++round) {
        clear();
        const Numbers nodes = scattered_nodes(50, 30);
        const Numbers points(nodes.begin(), nodes.begin() + 5);
        const Numbers nodes_found = values_of(select_polyline(places, node_numbers(points)));
        const std::set<std::int32_t> selected(nodes_found.begin(), nodes_found.end());
        for (std::size_t i = 0; i + 1 < points.size(); ++i) {
            if (distance_between(places.x[NodeNumber(points[i])], places.y[NodeNumber(points[i])],
                                 places.x[NodeNumber(points[i + 1])],
                                 places.y[NodeNumber(points[i + 1])]) < 0.5F)
                continue;
            EXPECT_TRUE(selected.contains(points[i]));
            EXPECT_TRUE(selected.contains(points[i + 1]));
        }
    }
}

}  // namespace
}  // namespace brelan::test
