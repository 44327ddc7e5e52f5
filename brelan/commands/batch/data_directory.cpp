#include "commands/batch/data_directory.h"

#include <fmt/core.h>

#include <array>
#include <fstream>

#include "cli/drive_c.h"
#include "cli/exit_status.h"
#include "cli/output_file.h"
#include "cli/words.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, 3> FILES_BELOW_DRIVE{"Vork", "Qx", "Qxdata"};
constexpr int LAST_PASS = 43;

// The entry of a directory of this name, in whatever case; empty where there is none.
fs::path entry(const fs::path& directory, std::string_view name) {
    std::error_code error;
    if (fs::exists(directory / name, error))
        return directory / name;
    for (const fs::directory_entry& there : fs::directory_iterator(directory, error))
        if (lower(there.path().filename().string()) == lower(name))
            return there.path();
    return {};
}

// Where the data files of a drive lie; empty where it has none.
fs::path files_of_drive(const fs::path& drive) {
    fs::path at = drive;
    for (const std::string_view name : FILES_BELOW_DRIVE) {
        at = entry(at, name);
        if (at.empty())
            return {};
    }
    return entry(at, "PROGRAM.DAT").empty() ? fs::path{} : at;
}

// The masters as installed, beside the program, or in the source tree that it is built from.
fs::path masters(const fs::path& brelan) {
    const fs::path there = brelan.parent_path();
    std::vector<fs::path> drives{there.parent_path() / "share" / "brelan2d" / "C"};
    fs::path above = there;
    for (int level = 0; level < 5 && above.has_relative_path(); ++level, above = above.parent_path())
        drives.push_back(above / "data");
    for (const fs::path& drive : drives)
        if (fs::path files = files_of_drive(drive); !files.empty())
            return files;
    throw Failure(fmt::format("{}: the package's data files are not there; expected them in {}, or --data",
                              brelan.string(), drives.front().string()));
}

// The directory of the slope templates, which have records by kind: there are two sets of them.
std::string_view slopes_of(LayoutKind kind) {
    return kind == LayoutKind::temperature || kind == LayoutKind::head ? "slope_th" : "slope";
}

// The directory of the user's drive C:; empty where there is none.
fs::path drive_of_user() {
    const fs::path drive = drive_c();
    std::error_code error;
    return fs::is_directory(drive, error) ? fs::absolute(drive, error) : fs::path{};
}

// What the user's drive holds besides the data files is seen in the private one too.
void show_rest_of_drive(fs::path theirs, fs::path own) {
    for (const std::string_view level : FILES_BELOW_DRIVE) {
        if (theirs.empty())
            return;
        std::error_code error;
        for (const fs::directory_entry& there : fs::directory_iterator(theirs, error)) {
            const std::string name = there.path().filename().string();
            if (lower(name) != lower(level))
                fs::create_symlink(there.path(), own / name, error);
        }
        theirs = entry(theirs, level);
        own /= level;
    }
}

void write_number(const fs::path& file, std::int32_t number) {
    write_file(file, fmt::format("{}\n", number));
}

void place_copy(const fs::path& from, const fs::path& to) {
    std::error_code error;
    fs::copy_file(from, to, fs::copy_options::overwrite_existing, error);
    if (error)
        throw Failure(fmt::format("{}: cannot be copied: {}", from.string(), error.message()));
    fs::permissions(to, fs::perms::owner_write, fs::perm_options::add, error);
}

}  // namespace

DataDirectory::DataDirectory(const fs::path& brelan, const Edition& edition, const fs::path& project)
    : own_(std::in_place, "brelan-data-"), drive_(own_->path()) {
    const fs::path from = masters(brelan);
    files_ = drive_;
    for (const std::string_view name : FILES_BELOW_DRIVE)
        files_ /= name;
    std::error_code error;
    fs::create_directories(files_ / "DEBUG", error);
    show_rest_of_drive(drive_of_user(), drive_);

    for (const fs::directory_entry& master : fs::directory_iterator(from)) {
        const std::string name = master.path().filename().string();
        if (master.is_regular_file())
            place_copy(master.path(), files_ / name);
        else if (lower(name) == slopes_of(edition.kind))
            fs::create_directory_symlink(fs::absolute(master.path()), files_ / "Slope", error);
    }
    if (const fs::path unit = entry(project.empty() ? "." : project, "UNIT.DAT"); !unit.empty())
        place_copy(unit, files_ / "UNIT.DAT");
    write_number(files_ / "PROGRAM.DAT", edition.number);
    write_number(files_ / "MANUAL.DAT", 0);
    write_number(files_ / "HUBPLOT.DAT", 1);
    for (int suffix = 0; suffix <= 9; ++suffix)
        write_file(files_ / "DEBUG" / fmt::format("Brelan_P{}.dat", suffix),
                   fmt::format("1 {}\n", LAST_PASS));
}

DataDirectory::DataDirectory(const fs::path& place) {
    std::error_code error;
    const fs::path given = fs::canonical(place, error);
    if (error)
        throw Failure(
            fmt::format("{}: expected a data directory, but there is none of this name", place.string()));
    drive_ = given;
    files_ = files_of_drive(given);
    if (!files_.empty())
        return;
    // The data files themselves: drive C: is three levels up.
    drive_ = given.parent_path().parent_path().parent_path();
    files_ = files_of_drive(drive_);
    if (files_.empty() || !fs::equivalent(files_, given, error))
        throw Failure(fmt::format("{}: expected a data directory, with Vork/Qx/Qxdata/PROGRAM.DAT in it",
                                  place.string()));
}

std::vector<std::pair<fs::path, fs::path>> master_files(const fs::path& brelan, LayoutKind kind) {
    std::vector<std::pair<fs::path, fs::path>> files;
    for (const fs::directory_entry& master : fs::directory_iterator(masters(brelan))) {
        const std::string name = lower(master.path().filename().string());
        if (master.is_regular_file() && name != "program.dat" && name != "manual.dat" &&
            name != "hubplot.dat")
            files.emplace_back(master.path().filename(), master.path());
        else if (name == slopes_of(kind))
            for (const fs::directory_entry& slope : fs::directory_iterator(master.path()))
                files.emplace_back("Slope" / slope.path().filename(), slope.path());
    }
    return files;
}

std::int32_t edition_in(const DataDirectory& data) {
    const fs::path file = entry(data.files(), "PROGRAM.DAT");
    std::ifstream stream(file);
    std::int32_t edition = 0;
    if (!(stream >> edition))
        throw Failure(fmt::format("{}, line 1: expected the edition number", file.string()));
    return edition;
}

}  // namespace brelan::tool
