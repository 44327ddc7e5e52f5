// A run in memory. The mesh of the input stands under the names "a.Mes" and "b.Mes", so that a deck can
// combine it with itself.
#include <algorithm>
#include <numeric>

#include "blocks/block_plan.h"
#include "dam/dam_checks.h"
#include "input.h"
#include "run_in_memory.h"
#include "targets.h"
#include "text/run_end.h"

namespace brelan::fuzz {

namespace {

// A fuzzer looks for wrong steps, not for large meshes: a deck of a few hundred bytes may ask for 99,990
// nodes and for a line of thousands of divisions through them, which is right and takes its time. With these
// bounds a run ends in well under the five seconds of a fuzzer, also where sanitizers and other processes
// slow it down.
constexpr std::int64_t MOST_NODES = 2000, MOST_NODES_OF_DAM = 10000;  // dams of a usual size have thousands
constexpr std::int64_t MOST_DIVISIONS = 1000;

bool few_nodes(const BlockCards& cards) {
    try {
        std::int64_t nodes = 0;
        for (const PlannedBlock& block : plan_blocks(cards).blocks)
            nodes += (std::int64_t{block.column_divisions} + 1) * (std::int64_t{block.row_divisions} + 1);
        return nodes <= MOST_NODES;
    } catch (const RunEnd&) {
        return true;  // such a run ends at once
    }
}

// A dam is made over a base mesh of elements of its sizes.
bool few_nodes(DamCards dam) {
    try {
        DamSizes sizes;
        check_dam(dam, sizes);
        const auto columns =
            static_cast<double>(sizes.right - sizes.left) /
            static_cast<double>(std::min({sizes.left_size, sizes.middle_size, sizes.right_size}));
        const auto rows =
            static_cast<double>(std::accumulate(dam.layers.begin(), dam.layers.end(), dam.height)) /
            static_cast<double>(sizes.vertical_size);
        return columns * rows <= static_cast<double>(MOST_NODES_OF_DAM);
    } catch (const RunEnd&) {
        return true;
    }
}

bool few_divisions(const GroupCards& groups) {
    std::int64_t divisions = 0;
    for (std::int32_t g = 1; g <= groups.count; ++g)
        for (const SegmentRow& segment : segments_of(groups, g))
            divisions += segment.divisions;
    return divisions <= MOST_DIVISIONS;
}

}  // namespace

void whole_run(std::string_view input) {
    const Header header = take_header(input);
    const std::vector<std::string> parts = parts_of(input, 2);
    if (const auto deck = checked_deck(parts[0], header.kind))
        if ((deck->mode == 2 && !few_nodes(deck->blocks)) || (deck->mode == 3 && !few_nodes(deck->dam)) ||
            !few_divisions(deck->groups))
            return;
    RunInput run;
    run.edition = header.edition();
    run.cut = header.cut();
    run.files = {{"..\\deck.dat", parts[0]}, {"..\\a.Mes", parts[1]}, {"..\\b.Mes", parts[1]}};
    run.listings = Listings::kept;
    orderly_run(std::move(run));
}

}  // namespace brelan::fuzz
