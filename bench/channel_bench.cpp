// How fast records go through the channel layer: 100,000 node records read free-field and written in their
// layout, beside a plain from_chars/to_chars loop over the same bytes and beside the standard streams.
//
// Each benchmark reports the bytes of text that it reads or writes per second.

#include <benchmark/benchmark.h>

#include <array>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "text/channels.h"
#include "text/free_field.h"
#include "text/layout.h"

namespace {

using namespace brelan;

constexpr int RECORDS = 100000;
constexpr Layout<"(1X,I6,5I5,1X,2(E13.6,1X))"> NODE_RECORD;

struct Node {
    std::int32_t number = 0;
    std::array<std::int32_t, 5> code{};
    float x = 0.0F, y = 0.0F;
};

Channels channels;

std::vector<Node> nodes() {
    std::vector<Node> all(RECORDS);
    std::uint32_t state = 12345;
    const auto next = [&] { return state = state * 1664525U + 1013904223U; };
    for (int i = 0; i < RECORDS; ++i) {
        Node& node = all[static_cast<std::size_t>(i)];
        node.number = i + 1;
        node.code = {0, 1, 1, 1, 1};
        node.x = static_cast<float>(next()) / 40000.0F - 50000.0F;
        node.y = static_cast<float>(next()) / 4.0E7F;
    }
    return all;
}

// A directory of the benchmark's own with the records in a file.
struct Files {
    std::filesystem::path directory = std::filesystem::temp_directory_path() / "brelan_channel_bench";
    std::string records = (directory / "records.txt").string();
    std::string written = (directory / "written.txt").string();
    std::vector<Node> all = nodes();

    Files() {
        std::filesystem::create_directories(directory);
        Channel& file = channels.open(10, records, OpenStatus::work);
        for (const Node& n : all)
            NODE_RECORD.write(file, n.number, n.code[0], n.code[1], n.code[2], n.code[3], n.code[4], n.x,
                              n.y);
        channels.close(10);
    }
    ~Files() { std::filesystem::remove_all(directory); }
    Files(const Files&) = delete;
    Files& operator=(const Files&) = delete;

    std::int64_t bytes() const { return static_cast<std::int64_t>(std::filesystem::file_size(records)); }
    std::string text() const {
        std::ifstream in(records, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
};

Files& files() {
    static Files the_files;
    return the_files;
}

void count_bytes(benchmark::State& state) {
    state.SetBytesProcessed(state.iterations() * files().bytes());
}

// --- reading -------------------------------------------------------------------------------------

void read_channel(benchmark::State& state) {
    for (auto _ : state) {
        Channel& file = channels.open(11, files().records, OpenStatus::old);
        Node n;
        for (int i = 0; i < RECORDS; ++i) {
            read_free(file, "a node record", n.number, n.code[0], n.code[1], n.code[2], n.code[3], n.code[4],
                      n.x, n.y);
            benchmark::DoNotOptimize(n);
        }
        channels.close(11);
    }
    count_bytes(state);
}

template <class Number>
const char* plain_number(const char* at, const char* end, Number& value) {
    while (at != end && (*at == ' ' || *at == '\n'))
        ++at;
    return std::from_chars(at, end, value).ptr;
}

void read_plain_loop(benchmark::State& state) {
    for (auto _ : state) {
        const std::string text = files().text();
        const char* at = text.data();
        const char* const end = at + text.size();
        Node n;
        for (int i = 0; i < RECORDS; ++i) {
            at = plain_number(at, end, n.number);
            for (std::int32_t& code : n.code)
                at = plain_number(at, end, code);
            at = plain_number(at, end, n.x);
            at = plain_number(at, end, n.y);
            benchmark::DoNotOptimize(n);
        }
    }
    count_bytes(state);
}

void read_ifstream(benchmark::State& state) {
    for (auto _ : state) {
        std::ifstream in(files().records);
        Node n;
        for (int i = 0; i < RECORDS; ++i) {
            in >> n.number >> n.code[0] >> n.code[1] >> n.code[2] >> n.code[3] >> n.code[4] >> n.x >> n.y;
            benchmark::DoNotOptimize(n);
        }
    }
    count_bytes(state);
}

// --- writing -------------------------------------------------------------------------------------

void write_channel(benchmark::State& state) {
    for (auto _ : state) {
        Channel& file = channels.open(12, files().written, OpenStatus::work);
        for (const Node& n : files().all)
            NODE_RECORD.write(file, n.number, n.code[0], n.code[1], n.code[2], n.code[3], n.code[4], n.x,
                              n.y);
        channels.close(12);
    }
    count_bytes(state);
}

// Numbers with the same digits, a blank behind each, padded with blanks to the length of a record.
void write_plain_loop(benchmark::State& state) {
    const std::size_t length = static_cast<std::size_t>(files().bytes() / RECORDS);
    for (auto _ : state) {
        std::string text(length * RECORDS, ' ');
        char* record = text.data();
        for (const Node& n : files().all) {
            char* const end = record + length;
            char* at = std::to_chars(record, end, n.number).ptr + 1;
            for (const std::int32_t code : n.code)
                at = std::to_chars(at, end, code).ptr + 1;
            at = std::to_chars(at, end, n.x, std::chars_format::scientific, 5).ptr + 1;
            std::to_chars(at, end, n.y, std::chars_format::scientific, 5);
            end[-1] = '\n';
            record = end;
        }
        std::FILE* file = std::fopen(files().written.c_str(), "wb");
        std::fwrite(text.data(), 1, text.size(), file);
        std::fclose(file);
    }
    count_bytes(state);
}

void write_printf(benchmark::State& state) {
    for (auto _ : state) {
        std::FILE* file = std::fopen(files().written.c_str(), "wb");
        for (const Node& n : files().all)
            std::fprintf(file, " %6d%5d%5d%5d%5d%5d %13.5e %13.5e \n", n.number, n.code[0], n.code[1],
                         n.code[2], n.code[3], n.code[4], static_cast<double>(n.x), static_cast<double>(n.y));
        std::fclose(file);
    }
    count_bytes(state);
}

BENCHMARK(read_channel)->Unit(benchmark::kMillisecond);
BENCHMARK(read_plain_loop)->Unit(benchmark::kMillisecond);
BENCHMARK(read_ifstream)->Unit(benchmark::kMillisecond);
BENCHMARK(write_channel)->Unit(benchmark::kMillisecond);
BENCHMARK(write_plain_loop)->Unit(benchmark::kMillisecond);
BENCHMARK(write_printf)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
