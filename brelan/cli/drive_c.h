// Drive C:\ of the user, for names that begin with it.
#pragma once

#include <filesystem>

namespace brelan::tool {

// The directory that stands for it by the environment, which need not be there; empty where none is named.
std::filesystem::path drive_c();

}  // namespace brelan::tool
