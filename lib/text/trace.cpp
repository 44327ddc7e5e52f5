#include "text/trace.h"

#include "text/channel_numbers.h"

namespace brelan {

namespace {

constexpr std::string_view DEFAULT_FILE = "fort.888";

}  // namespace

// Opened on its default file when the trace file is closed: anew at the first time in a run.
Channel& Trace::file() {
    if (channels_.is_open(CHANNEL_TRACE))
        return channels_.at(CHANNEL_TRACE);
    Channel& opened = default_file_begun_ ? channels_.continue_file(CHANNEL_TRACE, DEFAULT_FILE)
                                          : channels_.open(CHANNEL_TRACE, DEFAULT_FILE, OpenStatus::work);
    default_file_begun_ = true;
    opened.set_write_through(true);
    return opened;
}

void Trace::open(std::string_view file_name) {
    channels_.open(CHANNEL_TRACE, file_name, OpenStatus::work).set_write_through(true);
}

void Trace::line(std::string_view text, std::optional<std::int32_t> value) {
    if (value)
        write_free(file(), text, *value);
    else
        write_free(file(), text);
}

void Trace::pass(std::string_view text, float number, std::optional<std::int32_t> value) {
    if (level_ > 0 && last_pass_ >= number) {
        line(text, value);
        if (last_pass_ == number)
            channels_.close(CHANNEL_TRACE);
    }
    if (watch_ != nullptr)
        watch_->at_pass(text);
}

}  // namespace brelan
