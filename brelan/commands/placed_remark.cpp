#include "commands/placed_remark.h"

#include <algorithm>

namespace brelan::tool {

PlacedRemark taken_apart(const std::string& message, const std::string& file) {
    const std::string mark = ", line ", behind = ": ";
    if (const std::size_t at = message.find(mark); at != std::string::npos) {
        const std::size_t digits = at + mark.size();
        const std::size_t end = std::min(message.find_first_not_of("0123456789", digits), message.size());
        if (end > digits && end - digits < 9 && message.compare(end, behind.size(), behind) == 0)
            return {message.substr(end + behind.size()), message.substr(0, at),
                    std::stoi(message.substr(digits, end - digits))};
    }
    if (!file.empty() && message.starts_with(file + behind))
        return {message.substr(file.size() + behind.size()), file, 0};
    return {message, "", 0};
}

}  // namespace brelan::tool
