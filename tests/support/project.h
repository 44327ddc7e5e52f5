// A project directory with its own data directory, in which the real program is started.
//
// Every whole-run test owns one `Project`. Nothing is shared between two of them, so tests may run side by
// side.
//
//   <root>/C/Vork/Qx/Qxdata/        data directory: PROGRAM.DAT, MANUAL.DAT, HUBPLOT.DAT, DEBUG/
//   <root>/project/                 meshes and decks of the user
//   <root>/project/work/            working directory of the run: TFNAME.TMP, work files, trace

#pragma once

#include <array>
#include <chrono>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace brelan::test {

// The four kinds of edition, in the order in which the program tells them apart.
enum class Kind { coupled, temperature, head, displacement };

inline constexpr std::array<Kind, 4> ALL_KINDS = {Kind::coupled, Kind::temperature, Kind::head,
                                                  Kind::displacement};

// An edition number of the kind: 2, 5, 9 and 1.
int edition_of(Kind kind);

// Word for test names and messages.
std::string name_of(Kind kind);

struct RunOptions {
    // Run as a user without rights of its own when the tests run as root; the whole project is handed to that
    // user. The super-user may write into a read-only directory, so a test of refused access needs this.
    bool unprivileged = false;
    // Leave standard input open after the given text, as a console does where nobody types.
    bool keep_input_open = false;
    std::vector<std::string> arguments;
    // Names and values to set, and names to take out of the environment.
    std::vector<std::pair<std::string, std::string>> environment;
    std::vector<std::string> without;
    std::chrono::milliseconds time_limit{60000};
};

struct RunResult {
    int status = -1;         // exit status, -1 when the run did not exit by itself
    int signal = 0;          // signal that ended the run, 0 when none did
    bool timed_out = false;  // the run was ended because its time limit passed
    std::string out;         // all of standard output
    std::string err;         // all of standard error
};

// Content of every file below a project's root, links and directories included, by its path.
using Snapshot = std::map<std::string, std::string>;

class Project {
public:
    explicit Project(int edition = 1);
    explicit Project(Kind kind) : Project(edition_of(kind)) {}
    ~Project();
    Project(const Project&) = delete;
    Project& operator=(const Project&) = delete;

    // Paths of a file of the project, of the working and of the data directory.
    std::filesystem::path file(std::string_view name) const;
    std::filesystem::path work_file(std::string_view name) const;
    std::filesystem::path data_file(std::string_view name) const;
    std::filesystem::path drive() const { return root_ / "C"; }

    void write(std::string_view name, std::string_view text) const;
    void write_work(std::string_view name, std::string_view text) const;
    void write_data(std::string_view name, std::string_view text) const;

    // Text of a file, empty when it is not there; `exists` tells the two apart.
    std::string read(std::string_view name) const;
    std::string read_work(std::string_view name) const;
    std::string read_data(std::string_view name) const;
    bool exists(std::string_view name) const;
    bool exists_work(std::string_view name) const;
    bool exists_data(std::string_view name) const;

    // Writes a deck into the project directory and its name into TFNAME.TMP.
    void deck(std::string_view text, std::string_view name = "deck.dat") const;

    // Starts the program in the working directory and waits for it.
    RunResult run(std::string_view input = "", const RunOptions& options = {}) const;

    // What stands on disk now, and what of it a later state has lost or changed: one line for each such file.
    Snapshot snapshot() const;
    std::vector<std::string> changed_since(const Snapshot& before) const;

private:
    std::filesystem::path root_;
};

// Text of a file as it stands on disk.
std::string read_text(const std::filesystem::path& path);

// Lines of a text without their ends.
std::vector<std::string> lines_of(std::string_view text);

// The text with one line, counted from 1, replaced, put in before it, taken out; the first n lines of the
// text.
std::string with_line(std::string_view text, std::size_t number, std::string_view line);
std::string with_inserted_line(std::string_view text, std::size_t number, std::string_view line);
std::string without_line(std::string_view text, std::size_t number);
std::string first_lines(std::string_view text, std::size_t count);

// Lines joined to a text, each with its end.
std::string text_of(const std::vector<std::string>& lines);

// A deck in which a comment line stands before each card, so that card k is line 2k of the file.
std::string commented_deck(const std::vector<std::string>& cards);

// The text filled up with blanks to a width, as a name or a card stands in the program's own files.
std::string padded(std::string_view text, std::size_t width = 126);

// Compares a file with the lines it should hold, each to the last blank, and reports the first difference.
// The name is relative to the project, the working or the data directory.
void expect_file(const Project& project, std::string_view name, const std::vector<std::string>& expected,
                 const char* source = __builtin_FILE(), int line = __builtin_LINE());
void expect_work_file(const Project& project, std::string_view name, const std::vector<std::string>& expected,
                      const char* source = __builtin_FILE(), int line = __builtin_LINE());
void expect_data_file(const Project& project, std::string_view name, const std::vector<std::string>& expected,
                      const char* source = __builtin_FILE(), int line = __builtin_LINE());

// First difference of two lists of lines in words; empty when they are equal.
std::string first_difference(const std::vector<std::string>& expected, const std::vector<std::string>& found);

// A run that finished: status 0, nothing printed.
void expect_finished(const RunResult& result, const char* source = __builtin_FILE(),
                     int line = __builtin_LINE());

// A run that failed: status 2, nothing on standard output, one readable line on standard error that starts
// with the program's name and holds every fragment.
void expect_failed(const RunResult& result, const std::vector<std::string>& fragments,
                   const char* source = __builtin_FILE(), int line = __builtin_LINE());

}  // namespace brelan::test
