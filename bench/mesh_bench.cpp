// What whole runs cost: base meshes and combinations of growing size, as time for each node, the largest mesh
// moved from file to file, and the copy of a run's files as a measure of what the disk takes.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "bench_project.h"

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
BENCHMARK(copy_of_base_mesh_files)->Arg(316)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(combination)->Arg(32)->Arg(100)->Arg(221)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(largest_mesh_moved)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
