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
    if (run.channels.is_open(CH_TRACE))
        return run.channels.at(CH_TRACE);
    static bool begun = false;
    Channel& trace = begun ? run.channels.continue_file(CH_TRACE, DEFAULT_FILE)
                           : run.channels.open(CH_TRACE, DEFAULT_FILE, OpenStatus::work);
    begun = true;
    trace.set_write_through(true);
    return trace;
}

void open_trace(std::string_view file_name) {
    run.channels.open(CH_TRACE, file_name, OpenStatus::work).set_write_through(true);
}

void trace_line(std::string_view text, std::optional<std::int32_t> value) {
    if (value)
        write_free(run.trace.file(), text, *value);
    else
        write_free(run.trace.file(), text);
}

void TRACE(std::string_view text, float number, std::optional<std::int32_t> value) {
    if (IDEBUG <= 0 || DBGPASS < number)
        return;
    run.trace.line(text, value);
    if (DBGPASS == number)
        run.channels.close(CH_TRACE);
}

}  // namespace brelan
