#include "cli/drive_c.h"

#include <cstdlib>

namespace brelan::tool {

namespace {

std::filesystem::path variable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

}  // namespace

// As the batch program finds it.
std::filesystem::path drive_c() {
    if (std::filesystem::path drive = variable("BRELAN_DRIVE_C"); !drive.empty())
        return drive;
    if (const std::filesystem::path data = variable("XDG_DATA_HOME"); !data.empty())
        return data / "brelan2d" / "C";
    if (const std::filesystem::path home = variable("HOME"); !home.empty())
        return home / ".local" / "share" / "brelan2d" / "C";
    return {};
}

}  // namespace brelan::tool
