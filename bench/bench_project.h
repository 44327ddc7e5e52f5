// A project for the benchmarks that start the program.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "mesh/cut_method.h"

namespace fs = std::filesystem;

// A project in a directory of its own, with the data directory that a run needs.
class BenchProject {
public:
    explicit BenchProject(const std::string& name, brelan::CutMethod cut = brelan::CutMethod::by_rules)
        : root_(fs::temp_directory_path() / ("brelan_mesh_bench_" + name)), cut_(cut) {
        fs::remove_all(root_);
        const fs::path data = root_ / "C" / "Vork" / "Qx" / "Qxdata";
        fs::create_directories(data);
        fs::create_directories(work());
        write(data / "PROGRAM.DAT", "1\n");
        write(data / "MANUAL.DAT", "0\n");
        write(data / "HUBPLOT.DAT", "1\n");
        write(data / "DV-BRELAN.dat", "1 0.001 0.01 0.001\n0 0.01 0 0 0 0 0 0\n0\n");
        write(data / "UNIT.DAT", "\n\n\n\nBenchmark\n\n\n\n\n\n\n\n\n\n\n2 2 4 1 1\n");
        write(work() / "TFNAME.TMP", "..\\deck.dat\n");
    }
    ~BenchProject() { fs::remove_all(root_); }
    BenchProject(const BenchProject&) = delete;
    BenchProject& operator=(const BenchProject&) = delete;

    fs::path project() const { return root_ / "project"; }
    fs::path drive() const { return root_ / "C"; }
    fs::path work() const { return project() / "work"; }

    // Runs a deck; a run that does not finish ends the benchmark.
    void run(const std::string& deck) const {
        write(project() / "deck.dat", deck);
        run_again();
    }
    void run_again() const {
        if (std::system(command().c_str()) != 0) {
            std::fprintf(stderr, "the run failed: %s\n", command().c_str());
            std::exit(1);
        }
    }
    // The shell command that starts the program on the deck.
    std::string command() const {
        return "cd '" + work().string() + "' && BRELAN_DRIVE_C='" + drive().string() + "' '" +
               BRELAN_PROGRAM + "'" + (cut_ == brelan::CutMethod::sound ? " --sound" : "");
    }

    // A square base mesh of side nodes by side nodes, with its left end at x.
    static std::string base_deck(std::int64_t side, double x = 0.0) {
        const std::string length = std::to_string(side - 1) + ". 1. 0.5\n";
        return "2 0\n1 1\n" + std::to_string(x) + " 0.\n" + length + length + "0\n";
    }

private:
    static void write(const fs::path& file, const std::string& text) {
        std::ofstream(file, std::ios::binary) << text;
    }

    fs::path root_;
    brelan::CutMethod cut_;
};
