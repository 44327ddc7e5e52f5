#include "run/trace.h"

#include "channel/channels.h"
#include "channel/free_field.h"
#include "run/channel_numbers.h"
#include "run/settings.h"

namespace brelan {

namespace {

constexpr std::string_view DEFAULT_FILE = "fort.888";

}  // namespace

// Opened on its default file when the trace file is closed: anew at the first time in a run.
Channel& trace_channel() {
    if (channel_is_open(CH_TRACE))
        return channel(CH_TRACE);
    static bool begun = false;
    Channel& trace = begun ? continue_channel(CH_TRACE, DEFAULT_FILE)
                           : open_channel(CH_TRACE, DEFAULT_FILE, OpenStatus::work);
    begun = true;
    trace.set_write_through(true);
    return trace;
}

void open_trace(std::string_view file_name) {
    open_channel(CH_TRACE, file_name, OpenStatus::work).set_write_through(true);
}

void trace_line(std::string_view text, std::optional<std::int32_t> value) {
    if (value)
        write_free(trace_channel(), text, *value);
    else
        write_free(trace_channel(), text);
}

void TRACE(std::string_view text, float number, std::optional<std::int32_t> value) {
    if (IDEBUG <= 0 || DBGPASS < number)
        return;
    trace_line(text, value);
    if (DBGPASS == number)
        close_channel(CH_TRACE);
}

}  // namespace brelan
