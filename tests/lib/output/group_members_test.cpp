// The members of groups as ranges, held against a plain reading of the same records.
#include "output/group_members.h"

#include <random>
#include <set>

#include "mesh/group_tables.h"
#include "support/state.h"

namespace brelan::test {
namespace {

// A MemberRecord in plain numbers.
struct Record {
    std::int32_t group, material, element, type, sub_kind;
};

class GroupMemberRecords : public ChannelTest {
protected:
    void SetUp() override {
        state.deck.groups.count = 0;
        for (std::int32_t g = 1; g <= MOST_GROUPS; ++g)
            state.deck.groups.outputs[g] = {};
    }
    void groups(std::initializer_list<std::int32_t> wants_outputs) const {
        for (const std::int32_t value : wants_outputs)
            state.deck.groups.outputs[++state.deck.groups.count].wants_outputs = value;
    }
    std::vector<GroupMembers> read(const std::vector<Record>& records) const {
        MemberCollector collector(state.deck.groups);
        for (const Record& r : records)
            collector.add(
                {r.group, MaterialNumber(r.material), ElementNumber(r.element), r.type, r.sub_kind});
        return collector.found().groups;
    }
    static std::string text(const ElementRanges& ranges) {
        std::string all;
        for (const ElementRange& range : ranges)
            all += to_string(range.first) + "-" + to_string(range.last) + " ";
        return all;
    }
};

TEST_F(GroupMemberRecords, ConsecutiveElementsAreARange) {
    groups({1});
    const auto members = read({{1, 3, 5, 1, 0}, {1, 3, 6, 1, 0}, {1, 3, 8, 1, 0}});
    ASSERT_EQ(members.size(), 2U);
    EXPECT_EQ(text(members[1].at({ELEMENT_CONTINUUM, MaterialNumber(3)}).all), "5-6 8-8 ");
    EXPECT_EQ(members[1].at({ELEMENT_CONTINUUM, MaterialNumber(3)}).all[0].length(), 2);
}

TEST_F(GroupMemberRecords, ElementOfTwoRowsCountsOnce) {
    groups({1});
    const auto members = read({{1, 3, 5, 2, 0}, {1, 3, 5, 2, 1}, {1, 3, 6, 2, 1}, {1, 3, 7, 2, 0}});
    EXPECT_EQ(text(members[1].at({ELEMENT_BEAM, MaterialNumber(3)}).all), "5-7 ");
    EXPECT_EQ(text(members[1].at({ELEMENT_BEAM, MaterialNumber(3)}).inside), "5-5 7-7 ");
}

TEST_F(GroupMemberRecords, LineAndStripElementsAreNotInside) {
    groups({1});
    const auto members = read({{1, 3, 5, 2, 1}, {1, 4, 6, 1, 2}, {1, 4, 7, 1, 0}, {1, 4, 8, 1, 3}});
    EXPECT_EQ(text(members[1].at({ELEMENT_BEAM, MaterialNumber(3)}).inside), "");
    EXPECT_EQ(text(members[1].at({ELEMENT_CONTINUUM, MaterialNumber(4)}).all), "6-8 ");
    EXPECT_EQ(text(members[1].at({ELEMENT_CONTINUUM, MaterialNumber(4)}).inside), "7-8 ");
}

TEST_F(GroupMemberRecords, RecordsThatNameNothingAreLeftOut) {
    groups({1, 0, 2});
    const auto members = read({{1, 0, 5, 1, 0},    // no material
                               {1, 3, 0, 1, 0},    // no element
                               {1, 3, -4, 1, 0},   //
                               {1, 3, 5, 0, 0},    // no class
                               {1, 3, 5, 4, 0},    //
                               {0, 3, 5, 1, 0},    // no group
                               {4, 3, 5, 1, 0},    //
                               {2, 3, 5, 1, 0},    // a group without outputs
                               {3, 3, 5, 1, 0}});  // IGPOST 2 takes part
    ASSERT_EQ(members.size(), 4U);
    EXPECT_TRUE(members[0].empty());
    EXPECT_TRUE(members[1].empty());
    EXPECT_TRUE(members[2].empty());
    EXPECT_EQ(members[3].size(), 1U);
}

TEST_F(GroupMemberRecords, NoRecordAndNoGroup) {
    EXPECT_EQ(read({}).size(), 1U);
    EXPECT_EQ(read({{1, 3, 5, 1, 0}}).size(), 1U);
    groups({1});
    EXPECT_TRUE(read({})[1].empty());
}

// Records as a run writes them: class by class, elements ascending, the rows of an element in any order.
TEST_F(GroupMemberRecords, AreWhatAPlainReadingGives) {
    std::mt19937 random(5);
    const auto upto = [&random](int n) {
        return static_cast<std::int32_t>(random() % static_cast<unsigned>(n));
    };
    for (int round = 0; round < 300; ++round) {
        SetUp();
        for (int g = upto(8); g > 0; --g)
            groups({upto(3)});
        std::vector<Record> records;
        std::int32_t element = 0;
        const int per_class = 1 + upto(60);
        for (std::int32_t type = 1; type <= 3; ++type)
            for (int i = 0; i < per_class; ++i) {
                element += upto(5) == 0 ? 1 + upto(4) : 1;
                const std::int32_t of_material = upto(6);
                for (int rows = upto(6); rows > 0; --rows)
                    records.push_back({upto(9), of_material, element, type, upto(4)});
            }
        // By group, class and material, the elements in all and those that lie inside.
        struct Sets {
            std::set<std::int32_t> all, inside;
        };
        std::map<std::array<std::int32_t, 3>, Sets> plain;
        for (const Record& r : records) {
            if (r.group < 1 || r.group > state.deck.groups.count ||
                state.deck.groups.outputs[r.group].wants_outputs == 0 || r.material == 0)
                continue;
            Sets& sets = plain[{r.group, r.type, r.material}];
            sets.all.insert(r.element);
            if (r.sub_kind != 1 && r.sub_kind != 2)
                sets.inside.insert(r.element);
        }
        const auto ranges_of = [](const std::set<std::int32_t>& elements) {
            std::string all;
            for (auto n = elements.begin(); n != elements.end();) {
                std::int32_t last = *n;
                const std::int32_t first = last;
                for (++n; n != elements.end() && *n == last + 1; ++n)
                    ++last;
                all += std::to_string(first) + "-" + std::to_string(last) + " ";
            }
            return all;
        };
        std::string expected, found;
        for (const auto& [key, sets] : plain)
            expected += std::to_string(key[0]) + "/" + std::to_string(key[1]) + "/" + std::to_string(key[2]) +
                        ": " + ranges_of(sets.all) + "inside " + ranges_of(sets.inside) + "\n";
        const auto members = read(records);
        for (std::size_t g = 0; g < members.size(); ++g)
            for (const auto& [key, ranges] : members[g])
                found += std::to_string(g) + "/" + std::to_string(key.first) + "/" + to_string(key.second) +
                         ": " + text(ranges.all) + "inside " + text(ranges.inside) + "\n";
        ASSERT_EQ(found, expected) << "round " << round;
    }
}

}  // namespace
}  // namespace brelan::test
