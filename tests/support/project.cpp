#include "support/project.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <grp.h>
#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

extern char** environ;

namespace brelan::test {

namespace fs = std::filesystem;

namespace {

constexpr uid_t NOBODY = 65534;
constexpr rlim_t LARGEST_FILE = rlim_t{1} << 30;  // a run that writes without end must not fill the disk

void write_text(const fs::path& path, std::string_view text) {
    fs::create_directories(path.parent_path());
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream.write(text.data(), static_cast<std::streamsize>(text.size()));
    stream.close();
    if (!stream)
        throw std::runtime_error("cannot write " + path.string());
}

void hand_to_nobody(const fs::path& root) {
    const auto give = [](const fs::path& path) {
        if (::lchown(path.c_str(), NOBODY, NOBODY) != 0)
            throw std::runtime_error("cannot hand over " + path.string());
    };
    give(root);
    for (const auto& entry : fs::recursive_directory_iterator(root))
        give(entry.path());
}

// Environment of the run: that of the tests with the drive and the wishes of the test.
std::vector<std::string> environment_of(const fs::path& drive, const RunOptions& options) {
    std::map<std::string, std::string> values;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string_view text = *entry;
        const std::size_t equals = text.find('=');
        if (equals != std::string_view::npos) {
            values[std::string(text.substr(0, equals))] = std::string(text.substr(equals + 1));
        }
    }
    values["BRELAN_DRIVE_C"] = drive.string();
    for (const auto& [name, value] : options.environment)
        values[name] = value;
    for (const auto& name : options.without)
        values.erase(name);
    std::vector<std::string> texts;
    for (const auto& [name, value] : values)
        texts.push_back(name + "=" + value);
    return texts;
}

struct Pipe {
    int read_end = -1;
    int write_end = -1;
    Pipe() {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) != 0)
            throw std::runtime_error("no pipe");
        read_end = ends[0];
        write_end = ends[1];
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe() {
        close_read();
        close_write();
    }
    void close_read() {
        if (read_end >= 0)
            ::close(read_end);
        read_end = -1;
    }
    void close_write() {
        if (write_end >= 0)
            ::close(write_end);
        write_end = -1;
    }
};

// A file without a name that holds the text, open for reading from its start.
int text_descriptor(std::string_view text) {
    std::FILE* file = std::tmpfile();
    if (file == nullptr)
        throw std::runtime_error("no temporary file");
    std::fwrite(text.data(), 1, text.size(), file);
    std::fflush(file);
    const int descriptor = ::fcntl(::fileno(file), F_DUPFD_CLOEXEC, 3);
    std::fclose(file);
    ::lseek(descriptor, 0, SEEK_SET);
    return descriptor;
}

// As a new program gets them, with the null pointer behind the last.
std::vector<char*> pointers_to(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

[[noreturn]] void become_program(const fs::path& directory, int program, std::vector<char*>& arguments,
                                 std::vector<char*>& environment, bool unprivileged) {
    const rlimit no_core{0, 0};
    ::setrlimit(RLIMIT_CORE, &no_core);
    const rlimit file_size{LARGEST_FILE, LARGEST_FILE};
    ::setrlimit(RLIMIT_FSIZE, &file_size);
    ::signal(SIGPIPE, SIG_DFL);
    if (::chdir(directory.c_str()) != 0)
        ::_exit(126);
    if (unprivileged && ::geteuid() == 0) {
        if (::setgroups(0, nullptr) != 0 || ::setgid(NOBODY) != 0 || ::setuid(NOBODY) != 0)
            ::_exit(126);
    }
    // By descriptor: the user without rights may not reach the directory in which the program stands.
    ::fexecve(program, arguments.data(), environment.data());
    ::_exit(127);
}

// Takes both outputs until they end or the time is over; true when they ended.
bool take_outputs(Pipe& out, Pipe& err, RunResult& result, std::chrono::steady_clock::time_point end) {
    std::array<pollfd, 2> watched{{{out.read_end, POLLIN, 0}, {err.read_end, POLLIN, 0}}};
    std::array<std::string*, 2> texts{&result.out, &result.err};
    std::array<char, 65536> buffer{};
    while (watched[0].fd >= 0 || watched[1].fd >= 0) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        if (left.count() <= 0)
            return false;
        const int ready = ::poll(watched.data(), watched.size(), static_cast<int>(left.count()));
        if (ready < 0 && errno != EINTR)
            throw std::runtime_error("poll failed");
        if (ready <= 0)
            continue;
        for (std::size_t k = 0; k < watched.size(); ++k) {
            if (watched[k].fd < 0 || watched[k].revents == 0)
                continue;
            const ssize_t count = ::read(watched[k].fd, buffer.data(), buffer.size());
            if (count > 0) {
                texts[k]->append(buffer.data(), static_cast<std::size_t>(count));
            } else {
                watched[k].fd = -1;
            }
        }
    }
    return true;
}

std::string entry_content(const fs::directory_entry& entry) {
    if (entry.is_symlink())
        return "link to " + fs::read_symlink(entry.path()).string();
    if (entry.is_directory())
        return "directory";
    if (!entry.is_regular_file())
        return "special file";
    if (::access(entry.path().c_str(), R_OK) != 0)
        return "unreadable file";
    return "file " + read_text(entry.path());
}

// Keeps what a run starts from, for scripts/everywhere, where the environment variable BRELAN_RECORD_RUNS
// names a directory: a folder for each run, with the project, the words behind the program's name and what is
// typed.
void record_run(const fs::path& root, std::string_view input, const RunOptions& options) {
    const char* const shelf = std::getenv("BRELAN_RECORD_RUNS");
    // Rights, environment and a console that stays open are not what a folder can hold.
    if (shelf == nullptr || options.unprivileged || options.keep_input_open || !options.environment.empty() ||
        !options.without.empty())
        return;
    const auto* const test = ::testing::UnitTest::GetInstance()->current_test_info();
    std::string name = std::string(test->test_suite_name()) + "." + test->name();
    std::replace(name.begin(), name.end(), '/', '_');
    fs::path folder;
    for (int number = 1; folder.empty() || fs::exists(folder); ++number)
        folder = fs::path(shelf) / (name + "-" + std::to_string(number));
    fs::create_directories(folder);
    fs::copy(root, folder / "files", fs::copy_options::recursive | fs::copy_options::copy_symlinks);
    std::string words;
    for (const std::string& word : options.arguments)
        words += word + "\n";
    write_text(folder / "arguments", words);
    write_text(folder / "typed", input);
}

std::string shown(const std::string& line) {
    std::string text = "\"";
    for (const char c : line.substr(0, 300)) {
        const auto code = static_cast<unsigned char>(c);
        if (code >= 32 && code < 127) {
            text += c;
        } else {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\x%02X", static_cast<unsigned>(code));
            text += escape;
        }
    }
    return text + (line.size() > 300 ? "\"..." : "\"");
}

void expect_lines(const fs::path& path, const std::vector<std::string>& expected, const char* source,
                  int line) {
    if (!fs::exists(path)) {
        ADD_FAILURE_AT(source, line) << path.filename().string() << " is not there";
        return;
    }
    const std::string text = read_text(path);
    const std::string difference = first_difference(expected, lines_of(text));
    if (!difference.empty())
        ADD_FAILURE_AT(source, line) << path.filename().string() << ", " << difference;
    if (!text.empty() && text.back() != '\n') {
        ADD_FAILURE_AT(source, line) << path.filename().string() << ": the last line has no end";
    }
}

}  // namespace

int edition_of(Kind kind) {
    switch (kind) {
        case Kind::coupled:
            return 2;
        case Kind::temperature:
            return 5;
        case Kind::head:
            return 9;
        case Kind::displacement:
            return 1;
    }
    return 1;
}

std::string name_of(Kind kind) {
    switch (kind) {
        case Kind::coupled:
            return "coupled";
        case Kind::temperature:
            return "temperature";
        case Kind::head:
            return "head";
        case Kind::displacement:
            return "displacement";
    }
    return "";
}

Project::Project(int edition) {
    std::string pattern = (fs::temp_directory_path() / "brelan-test-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr)
        throw std::runtime_error("no temporary directory");
    root_ = fs::canonical(pattern);
    fs::permissions(root_, fs::perms(0755));
    fs::create_directories(data_file("DEBUG"));
    fs::create_directories(work_file(""));
    write_data("PROGRAM.DAT", std::to_string(edition) + "\n");
    write_data("MANUAL.DAT", "0\n");
    write_data("HUBPLOT.DAT", "1\n");
    write_data("UNIT.DAT", "*\n*\n*\n*\nProject of a test\n*\n*\n*\n*\n*\n*\n*\n*\n*\n*\n 2 2 4 1 1\n");
}

Project::~Project() {
    if (std::getenv("BRELAN_KEEP_TESTS") != nullptr) {
        std::fprintf(stderr, "kept: %s\n", root_.c_str());
        return;
    }
    std::error_code ignored;
    // A directory that a test made read-only must be opened again before its entries can go.
    for (auto entry = fs::recursive_directory_iterator(root_, ignored);
         entry != fs::recursive_directory_iterator(); entry.increment(ignored)) {
        if (entry->is_directory(ignored) && !entry->is_symlink(ignored)) {
            fs::permissions(entry->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
        }
    }
    fs::remove_all(root_, ignored);
}

fs::path Project::file(std::string_view name) const {
    return root_ / "project" / name;
}

fs::path Project::work_file(std::string_view name) const {
    return root_ / "project" / "work" / name;
}

fs::path Project::data_file(std::string_view name) const {
    return root_ / "C" / "Vork" / "Qx" / "Qxdata" / name;
}

void Project::write(std::string_view name, std::string_view text) const {
    write_text(file(name), text);
}

void Project::write_work(std::string_view name, std::string_view text) const {
    write_text(work_file(name), text);
}

void Project::write_data(std::string_view name, std::string_view text) const {
    write_text(data_file(name), text);
}

std::string Project::read(std::string_view name) const {
    return exists(name) ? read_text(file(name)) : std::string();
}

std::string Project::read_work(std::string_view name) const {
    return exists_work(name) ? read_text(work_file(name)) : std::string();
}

std::string Project::read_data(std::string_view name) const {
    return exists_data(name) ? read_text(data_file(name)) : std::string();
}

bool Project::exists(std::string_view name) const {
    return fs::exists(file(name));
}

bool Project::exists_work(std::string_view name) const {
    return fs::exists(work_file(name));
}

bool Project::exists_data(std::string_view name) const {
    return fs::exists(data_file(name));
}

void Project::deck(std::string_view text, std::string_view name) const {
    write(name, text);
    write_work("TFNAME.TMP", "..\\" + std::string(name) + "\n");
}

RunResult Project::run(std::string_view input, const RunOptions& options) const {
    const bool drop_rights = options.unprivileged && ::geteuid() == 0;
    if (drop_rights)
        hand_to_nobody(root_);
    record_run(root_, input, options);

    const int program = ::open(BRELAN_PROGRAM, O_RDONLY | O_CLOEXEC);
    if (program < 0)
        throw std::runtime_error(std::string("cannot open ") + BRELAN_PROGRAM);
    std::vector<std::string> texts = environment_of(drive(), options);
    std::vector<char*> environment = pointers_to(texts);
    std::vector<std::string> words{"brelan2d"};
    words.insert(words.end(), options.arguments.begin(), options.arguments.end());
    std::vector<char*> arguments = pointers_to(words);

    Pipe out;
    Pipe err;
    Pipe console;
    int input_descriptor = -1;
    if (options.keep_input_open) {
        // A console's line is far shorter than what a pipe holds without a reader.
        if (::write(console.write_end, input.data(), input.size()) != static_cast<ssize_t>(input.size())) {
            throw std::runtime_error("cannot write standard input");
        }
        input_descriptor = ::fcntl(console.read_end, F_DUPFD_CLOEXEC, 3);
    } else {
        input_descriptor = text_descriptor(input);
    }

    const fs::path directory = work_file("");
    // Not fork: to copy the tables of this process, large with sanitizers, costs more than the run.
    const pid_t child = ::vfork();
    if (child < 0)
        throw std::runtime_error("cannot fork");
    if (child == 0) {
        ::dup2(input_descriptor, 0);
        ::dup2(out.write_end, 1);
        ::dup2(err.write_end, 2);
        become_program(directory, program, arguments, environment, drop_rights);
    }
    ::close(program);
    ::close(input_descriptor);
    console.close_read();
    out.close_write();
    err.close_write();

    RunResult result;
    result.timed_out = !take_outputs(out, err, result, std::chrono::steady_clock::now() + options.time_limit);
    if (result.timed_out)
        ::kill(child, SIGKILL);
    int state = 0;
    while (::waitpid(child, &state, 0) < 0 && errno == EINTR) {
    }
    if (WIFEXITED(state))
        result.status = WEXITSTATUS(state);
    if (WIFSIGNALED(state) && !result.timed_out)
        result.signal = WTERMSIG(state);
    return result;
}

Snapshot Project::snapshot() const {
    Snapshot files;
    for (const auto& entry : fs::recursive_directory_iterator(root_)) {
        files[fs::relative(entry.path().parent_path(), root_).string() + "/" +
              entry.path().filename().string()] = entry_content(entry);
    }
    return files;
}

std::vector<std::string> Project::changed_since(const Snapshot& before) const {
    const Snapshot now = snapshot();
    std::vector<std::string> changes;
    for (const auto& [path, content] : before) {
        const auto found = now.find(path);
        if (found == now.end()) {
            changes.push_back(path + " is gone");
        } else if (found->second != content) {
            changes.push_back(path + " has changed");
        }
    }
    return changes;
}

std::string read_text(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::vector<std::string> lines_of(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        lines.emplace_back(text.substr(0, end));
        if (end == std::string_view::npos)
            break;
        text.remove_prefix(end + 1);
    }
    return lines;
}

std::string text_of(const std::vector<std::string>& lines) {
    std::string text;
    for (const auto& line : lines)
        text += line + "\n";
    return text;
}

std::string with_line(std::string_view text, std::size_t number, std::string_view line) {
    std::vector<std::string> lines = lines_of(text);
    lines.at(number - 1) = line;
    return text_of(lines);
}

std::string with_inserted_line(std::string_view text, std::size_t number, std::string_view line) {
    std::vector<std::string> lines = lines_of(text);
    lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(number - 1), std::string(line));
    return text_of(lines);
}

std::string without_line(std::string_view text, std::size_t number) {
    std::vector<std::string> lines = lines_of(text);
    lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(number - 1));
    return text_of(lines);
}

std::string first_lines(std::string_view text, std::size_t count) {
    std::vector<std::string> lines = lines_of(text);
    lines.resize(std::min(count, lines.size()));
    return text_of(lines);
}

std::string commented_deck(const std::vector<std::string>& cards) {
    std::string text;
    for (const auto& card : cards)
        text += "* a comment before the card\n" + card + "\n";
    return text;
}

std::string padded(std::string_view text, std::size_t width) {
    std::string line(text);
    line.resize(std::max(width, line.size()), ' ');
    return line;
}

std::string first_difference(const std::vector<std::string>& expected,
                             const std::vector<std::string>& found) {
    std::ostringstream report;
    const std::size_t common = std::min(expected.size(), found.size());
    for (std::size_t n = 0; n < common; ++n) {
        if (expected[n] == found[n])
            continue;
        const auto [a, b] =
            std::mismatch(expected[n].begin(), expected[n].end(), found[n].begin(), found[n].end());
        report << "line " << n + 1 << ", column " << (a - expected[n].begin()) + 1 << ":\n  expected "
               << shown(expected[n]) << " (" << expected[n].size() << " columns)\n  found    "
               << shown(found[n]) << " (" << found[n].size() << " columns)";
        static_cast<void>(b);
        return report.str();
    }
    if (expected.size() > common) {
        report << "ends after line " << common << ", expected " << expected.size() << " lines, next "
               << shown(expected[common]);
    } else if (found.size() > common) {
        report << "has " << found.size() << " lines, expected " << common << "; line " << common + 1 << " is "
               << shown(found[common]);
    }
    return report.str();
}

void expect_file(const Project& project, std::string_view name, const std::vector<std::string>& expected,
                 const char* source, int line) {
    expect_lines(project.file(name), expected, source, line);
}

void expect_work_file(const Project& project, std::string_view name, const std::vector<std::string>& expected,
                      const char* source, int line) {
    expect_lines(project.work_file(name), expected, source, line);
}

void expect_data_file(const Project& project, std::string_view name, const std::vector<std::string>& expected,
                      const char* source, int line) {
    expect_lines(project.data_file(name), expected, source, line);
}

void expect_finished(const RunResult& result, const char* source, int line) {
    if (result.status != 0 || result.timed_out || !result.out.empty() || !result.err.empty()) {
        ADD_FAILURE_AT(source, line) << "expected a finished run without a word, got status " << result.status
                                     << ", signal " << result.signal
                                     << (result.timed_out ? ", time limit passed" : "")
                                     << "\nout: " << shown(result.out) << "\nerr: " << shown(result.err);
    }
}

void expect_failed(const RunResult& result, const std::vector<std::string>& fragments, const char* source,
                   int line) {
    const auto complain = [&](const std::string& text) {
        ADD_FAILURE_AT(source, line) << text << "\nstatus " << result.status << ", signal " << result.signal
                                     << (result.timed_out ? ", time limit passed" : "")
                                     << "\nout: " << shown(result.out) << "\nerr: " << shown(result.err);
    };
    if (result.timed_out || result.signal != 0 || result.status != 2) {
        complain("expected a failure with status 2");
        return;
    }
    if (!result.out.empty())
        complain("a failure prints nothing on standard output");
    if (std::count(result.err.begin(), result.err.end(), '\n') != 1 || result.err.back() != '\n') {
        complain("expected exactly one line on standard error");
    }
    if (result.err.rfind("brelan2d: ", 0) != 0)
        complain("the message must start with the program's name");
    if (result.err.size() > 1000)
        complain("nobody reads a message of more than 1000 characters");
    const auto controls_the_terminal = [](char c) { return (c >= 0 && c < 32 && c != '\n') || c == 127; };
    if (std::any_of(result.err.begin(), result.err.end(), controls_the_terminal)) {
        complain("the message holds characters that a terminal takes for commands");
    }
    for (const auto& fragment : fragments) {
        if (result.err.find(fragment) == std::string::npos)
            complain("the message does not hold " + shown(fragment));
    }
}

}  // namespace brelan::test
