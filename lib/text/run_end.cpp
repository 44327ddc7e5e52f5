#include "text/run_end.h"

namespace brelan {

void stop_run(std::string_view text) {
    throw RunEnd{STATUS_STOPPED, std::string(text)};
}

void fail(std::string_view message) {
    throw RunEnd{STATUS_FAILED, std::string(message)};
}

void fail_at(const FilePlace& place, std::string_view message, std::optional<std::size_t> field) {
    throw RunEnd{STATUS_FAILED, place.text() + ": " + std::string(message), place, field};
}

}  // namespace brelan
