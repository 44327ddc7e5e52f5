#include "commands/batch/side_files.h"

#include <fmt/core.h>
#include <sys/stat.h>

#include <algorithm>
#include <initializer_list>
#include <string_view>
#include <system_error>
#include <utility>

#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "cli/output_file.h"
#include "cli/words.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

// The project's own settings: a run makes the file where there is none, and it stays there.
constexpr std::string_view DEFAULTS = "DV-BRELAN.dat";

std::string state_of(const fs::path& file) {
    struct stat about {};
    if (stat(file.c_str(), &about) != 0 || !S_ISREG(about.st_mode))
        return "";
    return fmt::format("{} {} {}.{}", about.st_ino, about.st_size, about.st_mtim.tv_sec,
                       about.st_mtim.tv_nsec);
}

// Moves a file and leaves a copy in its place, which is never empty. Where a disk knows no second names of a
// file the copy is what is moved.
void move_but_for_a_copy(const fs::path& from, const fs::path& to) {
    std::error_code error;
    fs::create_hard_link(from, to, error);
    if (error) {
        copy_with_time(from, to);
        return;
    }
    copy_with_time(to, from);
}

bool same_name(const fs::path& a, const fs::path& b) {
    return lower(a.lexically_normal().string()) == lower(b.lexically_normal().string());
}

}  // namespace

std::vector<std::string> side_file_names(const NotedDeck& deck, const fs::path& project) {
    constexpr std::int32_t edit = 1, base_mesh = 2, dam = 3;
    const fs::path result = file_of_card(project, deck.result);
    std::vector<std::string> names;
    const auto add = [&](std::initializer_list<std::string_view> more) {
        for (const std::string_view name : more)
            if (!same_name(file_of_card(project, name), result))
                names.emplace_back(name);
    };
    if (deck.mode >= base_mesh)
        add({BASE_MESH});
    if (deck.mode == dam)
        add({"EarthDam.Meg", "EarthDam.Mes", "Earth_Dam.Mes", "Shell_Left.Mes", "Shell_Right.Mes",
             "Dam_Shell.Mes", "Dam_Joined.Mes"});
    if (deck.mode >= edit)
        add({"Boundary.Man", "Group.Man", "Group.Pos", "MatAD.Man", DEFAULTS});
    return names;
}

SideFiles::SideFiles(fs::path project, const NotedDeck& deck, fs::path apart)
    : project_(std::move(project)), apart_(std::move(apart)) {
    for (const std::string& name : side_file_names(deck, project_))
        entries_.push_back({name, file_of_card(project_, name), "", ""});
    if (!apart_.empty()) {
        std::error_code error;
        fs::create_directories(apart_, error);
        if (!fs::is_directory(apart_, error))
            throw Failure(fmt::format("{}: expected a directory, or a name for a new one", apart_.string()));
        if (fs::equivalent(apart_, project_, error))
            throw Failure(fmt::format("{}: expected another directory than the project's", apart_.string()));
        std::vector<fs::path> places;
        for (const Entry& entry : entries_)
            places.push_back(entry.there);
        aside_.emplace(project_, CopyKind::not_to_be_seen, places);
    }
    for (std::size_t number = 0; number < entries_.size(); ++number) {
        Entry& entry = entries_[number];
        if (aside_ && entry.name != DEFAULTS)
            set_aside(entry, number);
        entry.state = state_of(entry.there);
    }
}

// It stays in its place as well: whatever ends the run, one of the two names has it.
void SideFiles::set_aside(Entry& entry, std::size_t number) {
    std::error_code error;
    if (!fs::is_regular_file(entry.there, error))
        return;
    const fs::path aside = aside_->copy(number);
    move_but_for_a_copy(entry.there, aside);
    entry.aside = aside;
}

SideFiles::~SideFiles() {
    try {
        collect();
    } catch (...) {
        // The failure that ends the run is told already, a want of memory too.
    }
}

// The project has its own file again before the new one leaves its place.
std::string SideFiles::move_apart(const Entry& entry, const fs::path& file) {
    try {
        write_file(apart_ / entry.name, read_file(file));
    } catch (const Failure&) {
        return fmt::format("{}: cannot be written", (apart_ / entry.name).string());
    }
    std::error_code error;
    if (entry.aside.empty())
        fs::remove(file, error);
    return error ? fmt::format("{}: cannot be removed: {}", file.string(), error.message()) : "";
}

void SideFiles::collect() {
    if (collected_)
        return;
    collected_ = true;
    std::string failure;
    for (const Entry& entry : entries_) {
        const fs::path now = file_of_card(project_, entry.name);
        const std::string state = state_of(now);
        if (state.empty() && !entry.state.empty() && entry.aside.empty())
            deleted_.push_back(entry.there);
        if (state.empty() || state == entry.state)
            continue;
        if (!aside_ || entry.name == DEFAULTS)
            written_.push_back(now);
        else if (std::string reason = move_apart(entry, now); reason.empty())
            written_.push_back(apart_ / entry.name);
        else
            failure = std::move(reason);
    }
    for (const Entry& entry : entries_) {
        std::error_code error;
        if (!entry.aside.empty())
            fs::rename(entry.aside, entry.there, error);
        if (error) {
            aside_->keep();
            failure = fmt::format("{}: cannot be put back from {}: {}", entry.there.string(),
                                  entry.aside.string(), error.message());
        }
    }
    const auto by_name = [](const fs::path& a, const fs::path& b) { return a.filename() < b.filename(); };
    std::sort(written_.begin(), written_.end(), by_name);
    std::sort(deleted_.begin(), deleted_.end(), by_name);
    if (!failure.empty())
        throw Failure(failure);
}

fs::path SideFiles::place_of(const fs::path& file) const {
    for (const fs::path& written : written_)
        if (aside_ && same_name(file, project_ / written.filename()))
            return written;
    return file;
}

}  // namespace brelan::tool
