// What groups cost: 100 of them over meshes of growing size, beside a plain edit of the same mesh; by the
// rules and by the sound cut.

#include <benchmark/benchmark.h>

#include <cmath>
#include <filesystem>
#include <string>

#include "bench_project.h"

namespace {

using brelan::CutMethod;

constexpr int GROUPS = 100;

std::string head_of_deck(const std::string& edit) {
    return "1\na.Mes\nb.Mes\n1 1\n" + edit;
}

std::string number(double value) {
    return std::to_string(value) + " ";
}

// Circles of so many parts, spread over the mesh, each with a material inside.
std::string circles(double size, int parts) {
    std::string deck;
    for (int g = 0; g < GROUPS; ++g) {
        const double x = size * (0.05 + 0.1 * (g % 10));
        const double y = size * (0.05 + 0.1 * (g / 10 % 10));
        const double r = size * 0.031;
        deck += "3\n" + std::to_string(g + 2) + " 2.0 0 0\n0 0 0 0. 0.\n1\n1 2 -" + std::to_string(parts) +
                " 2\n" + number(x) + number(y) + number(r) + number(r) + "0. 360.\n";
    }
    return deck;
}

// Lines with beams, each across a tenth of the mesh.
std::string lines(double size) {
    std::string deck;
    for (int g = 0; g < GROUPS; ++g) {
        const double x = size * (0.012 + 0.1 * (g % 10));
        const double y = size * (0.0137 + 0.1 * (g / 10 % 10));
        deck += "2\n2 1\n2 0 0 0. 0.\n1 " + number(x) + number(y) + "\n2 " + number(x + 0.07 * size) +
                number(y + 0.041 * size) + "\n1\n1 1 0 2\n";
    }
    return deck;
}

// Six-sided outlines with a material inside.
std::string polygons(double size) {
    std::string deck;
    for (int g = 0; g < GROUPS; ++g) {
        const double x = size * (0.0513 + 0.1 * (g % 10));
        const double y = size * (0.0487 + 0.1 * (g / 10 % 10));
        deck += "3\n" + std::to_string(g + 2) + " 2.0 0 0\n6 0 0 0. 0.\n";
        for (int k = 0; k < 6; ++k)
            deck += std::to_string(k + 1) + " " + number(x + 0.033 * size * std::cos(1.0471976 * k)) +
                    number(y + 0.029 * size * std::sin(1.0471976 * k)) + "\n";
        deck += "6\n";
        for (int k = 0; k < 6; ++k)
            deck += std::to_string(k + 1) + " 1 0 2\n";
    }
    return deck;
}

// Lines of 50 beams that leave the mesh as it is.
std::string free_lines(double size) {
    std::string deck;
    for (int g = 0; g < GROUPS; ++g) {
        const double x = size * (0.012 + 0.1 * (g % 10));
        const double y = size * (0.0137 + 0.1 * (g / 10 % 10));
        deck += "2 0 1\n2 1\n2 0 0 0. 0.\n1 " + number(x) + number(y) + "\n2 " + number(x + 0.07 * size) +
                number(y + 0.041 * size) + "\n1\n1 1 50 2\n";
    }
    return deck;
}

// Joints along short lines.
std::string joints(double size) {
    std::string deck;
    for (int g = 0; g < GROUPS; ++g) {
        const double x = size * (0.021 + 0.1 * (g % 10));
        const double y = size * (0.0173 + 0.1 * (g / 10 % 10));
        deck += "-2\n9 0. 0. 0 0 0 0\n2 0 0 0. 0.\n1 " + number(x) + number(y) + "\n2 " +
                number(x + 0.05 * size) + number(y + 0.032 * size) + "\n1\n1 1 0 2\n";
    }
    return deck;
}

void run_decks(benchmark::State& state, CutMethod cut, const std::string& name, const std::string& edit) {
    const std::int64_t side = state.range(0);
    const BenchProject project(name, cut);
    project.run(BenchProject::base_deck(side));
    fs::rename(project.work() / "Basic.Tmp", project.project() / "a.Mes");
    project.run(head_of_deck(edit));
    for (auto _ : state)
        project.run_again();
    state.counters["elements"] = static_cast<double>((side - 1) * (side - 1));
}

std::string groups(const std::string& cards) {
    return "4\n0\n0\n0\n" + std::to_string(GROUPS) + "\n0. 0.\n" + cards;
}

double size_of(const benchmark::State& state) {
    return static_cast<double>(state.range(0) - 1);
}

void plain_edit(benchmark::State& state) {
    run_decks(state, CutMethod::by_rules, "plain", "0\n0. 0. 10. 20.\n1. 1.\n");
}
void hundred_circles(benchmark::State& state, CutMethod cut) {
    run_decks(state, cut, "circles", groups(circles(size_of(state), 360)));
}
// Their parts are as long as the sides of the elements.
void hundred_coarse_circles(benchmark::State& state, CutMethod cut) {
    const double size = size_of(state);
    run_decks(state, cut, "coarse_circles",
              groups(circles(size, static_cast<int>(6.2831853 * 0.031 * size))));
}
void hundred_lines(benchmark::State& state, CutMethod cut) {
    run_decks(state, cut, "lines", groups(lines(size_of(state))));
}
void hundred_polygons(benchmark::State& state, CutMethod cut) {
    run_decks(state, cut, "polygons", groups(polygons(size_of(state))));
}
void hundred_free_lines(benchmark::State& state, CutMethod cut) {
    run_decks(state, cut, "free_lines", groups(free_lines(size_of(state))));
}
void hundred_joints(benchmark::State& state, CutMethod cut) {
    run_decks(state, cut, "joints", groups(joints(size_of(state))));
}

#define BRELAN_SIZES Arg(32)->Arg(101)->Arg(301)->Unit(benchmark::kMillisecond)->UseRealTime()
#define BRELAN_BY_BOTH_CUTS(groups)                                      \
    BENCHMARK_CAPTURE(groups, rules, CutMethod::by_rules)->BRELAN_SIZES; \
    BENCHMARK_CAPTURE(groups, sound, CutMethod::sound)->BRELAN_SIZES
BENCHMARK(plain_edit)->BRELAN_SIZES;
// The sound cut has a node at each point of a circle, more than there is room for beside a large mesh.
BENCHMARK_CAPTURE(hundred_circles, rules, CutMethod::by_rules)->BRELAN_SIZES;
BENCHMARK_CAPTURE(hundred_circles, sound, CutMethod::sound)
    ->Arg(32)
    ->Arg(101)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BRELAN_BY_BOTH_CUTS(hundred_coarse_circles);
BRELAN_BY_BOTH_CUTS(hundred_lines);
BRELAN_BY_BOTH_CUTS(hundred_polygons);
BRELAN_BY_BOTH_CUTS(hundred_free_lines);
BRELAN_BY_BOTH_CUTS(hundred_joints);

}  // namespace

BENCHMARK_MAIN();
