#include "channel/run_end.h"

namespace brelan {

void STOPRUN(std::string_view text) {
    throw RunEnd{STATUS_STOPPED, std::string(text)};
}

void FAIL(std::string_view message) {
    throw RunEnd{STATUS_FAILED, std::string(message)};
}

}  // namespace brelan
