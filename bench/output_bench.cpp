// What the outputs of groups cost: 500 groups over a mesh of 99,000 elements, with more and more records of
// elements, beside reading those records and writing those files alone; then whole runs, with the program's
// peak memory.

#include <benchmark/benchmark.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "bench_project.h"
#include "group/membership.h"
#include "mesh/group_tables.h"
#include "output/group_members.h"
#include "output/group_out.h"
#include "run/run.h"
#include "text/channel_numbers.h"
#include "text/free_field.h"

namespace {

using namespace brelan;

constexpr int COLUMNS = 330, ROWS = 300, ELEMENTS = COLUMNS * ROWS, NODES = (COLUMNS + 1) * (ROWS + 1);
constexpr int GROUPS = 500;

std::string mesh_deck() {
    return "2 0\n1 1\n0. 0.\n" + std::to_string(COLUMNS) + ". 1. 0.5\n" + std::to_string(ROWS) +
           ". 1. 0.5\n0\n";
}

// --- the output stage alone ----------------------------------------------------------------------

// Each element of so many groups next to each other; the materials change every 50 elements.
template <class Action>
void for_records(std::int64_t records, Action action) {
    const std::int64_t groups_of_each = records / ELEMENTS;
    for (std::int32_t element = 1; element <= ELEMENTS; ++element) {
        const std::int32_t first = static_cast<std::int32_t>(std::int64_t{element} * GROUPS / ELEMENTS);
        for (std::int32_t k = 0; k < groups_of_each; ++k)
            action(MemberRecord{(first + k) % GROUPS + 1, MaterialNumber(1 + element / 50 % 4),
                                ElementNumber(element), ELEMENT_CONTINUUM, ROW_OUTLINE});
    }
}

void write_records(Channels& channels, const fs::path& file, std::int64_t records) {
    Channel& channel = channels.open(CHANNEL_GROUP, file.string(), OpenStatus::work);
    channel.set_write_only(true);
    for_records(records, [&](const MemberRecord& r) { write_member(channel, r); });
    channels.close(CHANNEL_GROUP);
}

// The mesh of a run, its records and the tables of its groups, in this process.
class OutputStage {
public:
    OutputStage(const std::string& name, std::int64_t records)
        : project_(name),
          records_(records),
          before_(fs::current_path()),
          run_(std::make_unique<Run>(Directories{{}, project_.drive()}, console_)) {
        project_.run(mesh_deck());
        fs::rename(project_.work() / "Basic.Tmp", project_.project() / "out.Mes");
        fs::current_path(project_.work());
        run_->deck.groups.count = GROUPS;
        for (std::int32_t g = 1; g <= GROUPS; ++g) {
            run_->deck.groups.rows[g].group_type = 3;
            run_->deck.groups.materials[g].material = 0.0F;
            run_->deck.groups.outputs[g].wants_outputs = 1;
            run_->deck.groups.outputs[g].pair[1] = {1, 5};
            run_->deck.groups.outputs[g].toggle.fill(1);
        }
        write_records(run_->channels, "records", records);
        prepare();
        run();
        for (const char* file :
             {"..\\Group.Man", "..\\MatAD.Man", "..\\Group.Pos", "TEMPMESH.TMP", "..\\out.Mes"})
            files_.push_back({file, lines_of(file)});
    }
    ~OutputStage() {
        run_->channels.close_all();
        fs::current_path(before_);
    }
    OutputStage(const OutputStage&) = delete;
    OutputStage& operator=(const OutputStage&) = delete;

    // The stage uses its records up.
    void prepare() const {
        fs::remove("GROUP.TMP");
        fs::create_hard_link("records", "GROUP.TMP");
    }
    void run() const {
        MemberCollector members(run_->deck.groups);
        members.add_material(ELEMENT_CONTINUUM, MaterialNumber(4));
        for_records(records_, [&](const MemberRecord& r) { members.add(r); });
        write_group_outputs(run_->channels, run_->trace, run_->settings, run_->deck.groups, run_->listing,
                            members.found(), run_->units, "..\\out.Mes", {NODES, ELEMENTS, 0, 0});
        run_->channels.close_all();
    }

    // The same bytes: the records read one after the other, the mesh and its copy line by line, and every
    // file written from lines that are in memory.
    void read_and_write() const {
        std::int64_t sum = 0;
        Channel& records = run_->channels.open(CHANNEL_GROUP, "GROUP.TMP", OpenStatus::forward);
        while (records.more()) {
            std::int32_t r[5] = {};
            read_free(records, "a record", r[0], r[1], r[2], r[3], r[4]);
            sum += r[2];
        }
        run_->channels.close(CHANNEL_GROUP);
        for (const char* file : {"..\\out.Mes", "TEMPMESH.TMP"}) {
            Channel& mesh = run_->channels.open(CHANNEL_MESH_COPY, file, OpenStatus::old);
            while (!mesh.at_end())
                sum += static_cast<std::int64_t>(mesh.read_whole_line("a line").size());
            run_->channels.close(CHANNEL_MESH_COPY);
        }
        benchmark::DoNotOptimize(sum);
        for (const File& file : files_) {
            Channel& result = run_->channels.open(CHANNEL_MESH_COPY, file.name, OpenStatus::result);
            for (const std::string& line : file.lines)
                result.write_line(line);
            run_->channels.take_results();
        }
    }

    double megabytes_of_records() const { return static_cast<double>(fs::file_size("records")) / 1.0E6; }
    double megabytes_written() const {
        std::size_t bytes = 0;
        for (const File& file : files_)
            for (const std::string& line : file.lines)
                bytes += line.size() + 1;
        return static_cast<double>(bytes) / 1.0E6;
    }

private:
    struct File {
        std::string name;
        std::vector<std::string> lines;
    };
    std::vector<std::string> lines_of(const char* file) const {
        std::vector<std::string> lines;
        Channel& channel = run_->channels.open(CHANNEL_MESH_COPY, file, OpenStatus::old);
        while (!channel.at_end())
            lines.emplace_back(channel.read_whole_line("a line"));
        run_->channels.close(CHANNEL_MESH_COPY);
        return lines;
    }

    BenchProject project_;
    std::int64_t records_;
    fs::path before_;
    KeptConsole console_;
    std::unique_ptr<Run> run_;
    std::vector<File> files_;
};

void report(benchmark::State& state, const OutputStage& stage) {
    state.counters["MB read"] = stage.megabytes_of_records();
    state.counters["MB written"] = stage.megabytes_written();
}

void output_stage(benchmark::State& state) {
    const OutputStage stage("output", state.range(0) * ELEMENTS);
    for (auto _ : state) {
        state.PauseTiming();
        stage.prepare();
        state.ResumeTiming();
        stage.run();
    }
    report(state, stage);
}

void reading_and_writing_alone(benchmark::State& state) {
    const OutputStage stage("alone", state.range(0) * ELEMENTS);
    stage.prepare();
    for (auto _ : state)
        stage.read_and_write();
    report(state, stage);
}

// --- whole runs ----------------------------------------------------------------------------------

// Of one more run of the deck.
double peak_megabytes(const BenchProject& project) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::execl("/bin/sh", "sh", "-c", project.command().c_str(), nullptr);
        ::_exit(127);
    }
    int state = 0;
    rusage usage{};
    if (child < 0 || ::wait4(child, &state, 0, &usage) != child || state != 0)
        return -1.0;
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

// Gives neighbouring elements different materials: each is a range of its own.
void alternate_materials(const fs::path& file) {
    std::ifstream source(file, std::ios::binary);
    std::string text, line;
    constexpr std::size_t material = 67;
    for (int number = 1; std::getline(source, line); ++number) {
        if (number > NODES + 7 && line.size() > material)
            line[material] = number % 2 == 0 ? '1' : '2';
        text += line + "\n";
    }
    std::ofstream(file, std::ios::binary) << text;
}

void run_decks(benchmark::State& state, const std::string& name, const std::string& edit,
               bool alternating = false) {
    const BenchProject project(name);
    project.run(mesh_deck());
    fs::rename(project.work() / "Basic.Tmp", project.project() / "a.Mes");
    if (alternating)
        alternate_materials(project.project() / "a.Mes");
    project.run("1\na.Mes\nb.Mes\n1 1\n" + edit);
    for (auto _ : state)
        project.run_again();
    state.counters["peak MB"] = peak_megabytes(project);
}

void plain_edit(benchmark::State& state) {
    run_decks(state, "plain", "0\n0. 0. 10. 20.\n1. 1.\n");
}

// Groups that only list: squares of a side, spread over the mesh.
std::string listing_groups(std::int64_t side, bool outputs) {
    std::string deck = "4\n0\n0\n0\n" + std::to_string(GROUPS) + "\n0. 0.\n";
    for (int g = 0; g < GROUPS; ++g) {
        const double x = g % 25 * static_cast<double>(COLUMNS - side) / 24.0;
        const double y = g / 25 * static_cast<double>(ROWS - side) / 19.0;
        const std::string left = std::to_string(x), right = std::to_string(x + static_cast<double>(side));
        const std::string low = std::to_string(y), high = std::to_string(y + static_cast<double>(side));
        deck += outputs ? "5 1\n1 5\n0 0\n0 0\n0 0\n0 0\n0 0\n1\n1\n1\n1\n1\n1\n1\n" : "5 0\n";
        deck += "4 0 0 0. 0.\n1 " + left + " " + low + "\n2 " + right + " " + low + "\n3 " + right + " " +
                high + "\n4 " + left + " " + high + "\n4\n1 1 0 3\n2 1 0 3\n3 1 0 3\n4 1 0 3\n";
    }
    return deck;
}

void groups_without_outputs(benchmark::State& state) {
    run_decks(state, "silent", listing_groups(state.range(0), false));
}

void groups_with_outputs(benchmark::State& state) {
    run_decks(state, "listed", listing_groups(state.range(0), true));
}

void groups_with_single_elements(benchmark::State& state) {
    run_decks(state, "single", listing_groups(state.range(0), true), true);
}

// A child's peak is not below that of the process that starts it, so the runs come first, while this one is
// small.
// Sides of the groups' squares: 98,000, 968,000 and 5,000,000 records.
BENCHMARK(plain_edit)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(groups_without_outputs)->Arg(14)->Arg(44)->Arg(100)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(groups_with_outputs)->Arg(14)->Arg(44)->Arg(100)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(groups_with_single_elements)->Arg(14)->Arg(44)->Unit(benchmark::kMillisecond)->UseRealTime();
// Rows of groups for each element: 99,000, 990,000 and 4,950,000 records.
BENCHMARK(reading_and_writing_alone)->Arg(1)->Arg(10)->Arg(50)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(output_stage)->Arg(1)->Arg(10)->Arg(50)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
