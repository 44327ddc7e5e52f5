// What whole runs cost: base meshes and combinations of growing size, as time for each node, the largest mesh
// moved from file to file, and the copy of a run's files as a measure of what the disk takes.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "bench_project.h"
#include "blocks/base_file.h"
#include "blocks/base_mesh.h"
#include "blocks/block_file.h"
#include "blocks/block_grid.h"
#include "blocks/block_plan.h"
#include "blocks/raw_mesh.h"
#include "run/run_deck.h"

using namespace brelan;

namespace {

void per_node(benchmark::State& state, std::int64_t nodes) {
    state.counters["per node"] =
        benchmark::Counter(static_cast<double>(nodes),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void base_mesh(benchmark::State& state) {
    const std::int64_t side = state.range(0);
    const BenchProject project("base");
    project.run(BenchProject::base_deck(side));
    for (auto _ : state)
        project.run_again();
    per_node(state, side * side);
}

// The same seven files copied.
void copy_of_base_mesh_files(benchmark::State& state) {
    const std::int64_t side = state.range(0);
    const BenchProject project("copy");
    project.run(BenchProject::base_deck(side));
    const fs::path target = project.project() / "copies";
    fs::create_directories(target);
    const std::string command =
        "cd '" + project.work().string() +
        "' && cp Bmesh.Tmp Coord.dat Index.dat FILEA.TMP Basic.Tmp MeshFile.Mes ../Bmesh.dat '" +
        target.string() + "'";
    for (auto _ : state)
        if (std::system(command.c_str()) != 0)
            state.SkipWithError("cp failed");
    per_node(state, side * side);
}

// The base mesh in the process: the stages alone, and with the text of the files that they leave.
void base_mesh_stages(benchmark::State& state, bool writes) {
    const auto side = static_cast<std::int32_t>(state.range(0));
    const BenchProject project("stages");
    BlockCards cards;
    cards.block_columns = cards.block_rows = 1;
    cards.columns[1] = cards.rows[1] = {static_cast<float>(side - 1), 1.0F, 0.5F};
    constexpr LayoutKind kind = LayoutKind::displacement;
    Channels channels;
    const auto file = [&](int number, const char* name) -> Channel& {
        return channels.open(number, (project.work() / name).string(), OpenStatus::work);
    };
    for (auto _ : state) {
        const BlockPlan plan = plan_blocks(cards);
        RawMesh raw = make_raw_mesh(lay_out_blocks(plan));
        if (writes) {
            write_block_file(kind, plan, 0.0F, file(1, "Bmesh.Tmp"));
            write_raw_nodes(kind, raw, file(2, "Coord.dat"));
            write_raw_elements(kind, raw, file(3, "Index.dat"));
        }
        const BaseMesh mesh = make_base_mesh(kind, cards, std::move(raw));
        if (writes)
            write_base_file(kind, mesh, file(4, "Bmesh.dat"));
        for (int number = 1; number <= 4; ++number)
            channels.close(number);
        benchmark::DoNotOptimize(mesh.nodes.data());
    }
    per_node(state, std::int64_t{side} * side);
}
void base_mesh_generation(benchmark::State& state) {
    base_mesh_stages(state, false);
}
void base_mesh_generation_with_files(benchmark::State& state) {
    base_mesh_stages(state, true);
}

// The same base mesh run in the process, its files in memory.
void base_mesh_of(benchmark::State& state, Listings listings) {
    const std::int64_t side = state.range(0);
    RunInput input;
    input.files[input.deck_name] = BenchProject::base_deck(side);
    input.listings = listings;
    for (auto _ : state)
        if (run_deck(input).end.status != STATUS_FINISHED)
            state.SkipWithError("the run failed");
    per_node(state, side * side);
}
void base_mesh_in_memory(benchmark::State& state) {
    base_mesh_of(state, Listings::left_out);
}
void base_mesh_in_memory_with_listings(benchmark::State& state) {
    base_mesh_of(state, Listings::kept);
}

void combination(benchmark::State& state) {
    const std::int64_t side = state.range(0);
    const BenchProject project("combination");
    project.run(BenchProject::base_deck(side));
    fs::rename(project.work() / "Basic.Tmp", project.project() / "left.Mes");
    project.run(BenchProject::base_deck(side, static_cast<double>(side - 1)));
    fs::rename(project.work() / "Basic.Tmp", project.project() / "right.Mes");
    project.run("0\nleft.Mes\nright.Mes\nboth.Mes\n0\n");
    for (auto _ : state)
        project.run_again();
    per_node(state, 2 * side * side);
}

void largest_mesh_moved(benchmark::State& state) {
    const std::int64_t side = 316;
    const BenchProject project("moved");
    project.run(BenchProject::base_deck(side));
    fs::rename(project.work() / "Basic.Tmp", project.project() / "a.Mes");
    project.run("1\na.Mes\nb.Mes\n1 1\n0\n0. 0. 10. 20.\n1. 1.\n");
    for (auto _ : state)
        project.run_again();
    per_node(state, side * side);
}

BENCHMARK(base_mesh)->Arg(32)->Arg(100)->Arg(316)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(base_mesh_in_memory)->Arg(316)->Unit(benchmark::kMillisecond);
BENCHMARK(base_mesh_in_memory_with_listings)->Arg(316)->Unit(benchmark::kMillisecond);
BENCHMARK(base_mesh_generation)->Arg(316)->Unit(benchmark::kMillisecond);
BENCHMARK(base_mesh_generation_with_files)->Arg(316)->Unit(benchmark::kMillisecond);
BENCHMARK(copy_of_base_mesh_files)->Arg(316)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(combination)->Arg(32)->Arg(100)->Arg(221)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(largest_mesh_moved)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
