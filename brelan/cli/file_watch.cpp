#include "cli/file_watch.h"

namespace brelan::tool {

std::optional<FileWatch::Sight> FileWatch::now() const {
    struct stat found {};
    if (stat(file_.c_str(), &found) != 0)
        return std::nullopt;
    return Sight{found.st_ino, found.st_size, found.st_mtim};
}

bool FileWatch::changed() {
    const std::optional<Sight> sight = now();
    const bool stands = sight == seen_;
    seen_ = sight;
    if (!stands || sight == told_)
        return false;
    told_ = sight;
    return true;
}

}  // namespace brelan::tool
