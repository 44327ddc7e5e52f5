#include "commands/batch/user_copies.h"

#include <fmt/core.h>

#include <array>
#include <system_error>

#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "cli/output_file.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;
using Remark = std::function<void(const std::string&)>;

// The places of the files from the project, or whole ones outside of it, each ended by a zero byte, which no
// name has: a project that was moved or copied has its own.
constexpr std::string_view PLACES = "places";

struct KindName {
    CopyKind kind;
    std::string_view prefix;
};
constexpr std::array KINDS{
    KindName{CopyKind::to_be_replaced, ".brelan-kept-"},
    KindName{CopyKind::not_to_be_seen, ".brelan-aside-"},
    KindName{CopyKind::of_run, ".brelan-made-"},
};

std::string_view prefix_of(CopyKind kind) {
    for (const KindName& known : KINDS)
        if (known.kind == kind)
            return known.prefix;
    return {};
}

std::string name_of_copy(std::size_t number, const fs::path& place) {
    return fmt::format("{}-{}", number, place.filename().string());
}

std::string listed(const fs::path& place, const fs::path& project) {
    const fs::path whole = fs::absolute(place).lexically_normal();
    const fs::path within = whole.lexically_relative(fs::absolute(project).lexically_normal());
    return within.empty() || *within.begin() == ".." ? whole.string() : within.string();
}

std::vector<fs::path> places_in(const fs::path& directory) {
    const std::string text = read_file(directory / PLACES);
    std::vector<fs::path> places;
    for (std::size_t begin = 0, end = 0; (end = text.find('\0', begin)) != std::string::npos; begin = end + 1)
        places.push_back(directory.parent_path() / text.substr(begin, end - begin));
    return places;
}

// Links followed. A list that came with somebody else's project must not reach beyond it.
bool is_within(const fs::path& project, const fs::path& place) {
    std::error_code error;
    const fs::path within =
        fs::canonical(place.parent_path(), error).lexically_relative(fs::canonical(project, error));
    return !error && !within.empty() && *within.begin() != "..";
}

enum class Settled { yes, no };

Settled settle_copy(const fs::path& copy, const fs::path& place, CopyKind kind, const Remark& remark) {
    std::error_code error;
    if (!fs::is_regular_file(copy, error) || kind == CopyKind::of_run)
        return Settled::yes;
    const bool is_empty = fs::symlink_status(place, error).type() == fs::file_type::not_found;
    if (is_empty && is_within(copy.parent_path().parent_path(), place)) {
        copy_with_time(copy, place);
        remark(fmt::format("{}: put back; a run that was killed had not done so", place.string()));
        return Settled::yes;
    }
    if (!is_empty && (kind == CopyKind::to_be_replaced || read_file(copy) == read_file(place)))
        return Settled::yes;
    remark(fmt::format("{}: what stood there before a run that was killed is kept as {}", place.string(),
                       copy.string()));
    return Settled::no;
}

// Without a list the run had come no further, or the user has been told what is there.
void settle_without_list(const fs::path& directory) {
    std::error_code error;
    for (const fs::directory_entry& there : fs::directory_iterator(directory, error))
        if (there.path().filename().string().starts_with(PLACES))  // half of a list
            fs::remove(there.path(), error);
    fs::remove(directory, error);
}

void settle_directory(const fs::path& directory, CopyKind kind, const Remark& remark) {
    std::error_code error;
    if (!fs::exists(directory / PLACES, error)) {
        settle_without_list(directory);
        return;
    }
    bool all = true;
    std::size_t number = 0;
    for (const fs::path& place : places_in(directory)) {
        const fs::path copy = directory / name_of_copy(number, place);
        if (settle_copy(copy, place, kind, remark) == Settled::yes)
            fs::remove(copy, error);
        else
            all = false;
        ++number;
    }
    if (all)
        fs::remove_all(directory, error);
}

}  // namespace

void copy_with_time(const fs::path& from, const fs::path& to) {
    write_file(to, read_file(from));
    std::error_code without;
    if (const fs::file_time_type time = fs::last_write_time(from, without); !without)
        fs::last_write_time(to, time, without);
}

UserCopies::UserCopies(const fs::path& project, CopyKind kind, const std::vector<fs::path>& places)
    : directory_(project, prefix_of(kind), LeftDirectories::stay) {
    std::string list;
    for (const fs::path& place : places) {
        list += listed(place, project) + '\0';
        names_.push_back(name_of_copy(names_.size(), place));
    }
    write_file(directory_.path() / PLACES, list);
}

fs::path UserCopies::copy(std::size_t number) const {
    return directory_.path() / names_.at(number);
}

void UserCopies::keep() {
    std::error_code error;
    fs::remove(directory_.path() / PLACES, error);
    directory_.keep();
}

void settle_left_copies(const fs::path& project, const Remark& remark) {
    for (const KindName& known : KINDS)
        for (const fs::path& directory : left_directories(project, known.prefix)) {
            try {
                settle_directory(directory, known.kind, remark);
            } catch (const Failure& failure) {
                remark(
                    fmt::format("{}: left by a run that was killed; {}", directory.string(), failure.what()));
            }
        }
}

}  // namespace brelan::tool
