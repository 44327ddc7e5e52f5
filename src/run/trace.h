// The pass trace: one line for each pass, for a person who looks for the place where a run fails.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "channel/free_field.h"
#include "run/settings.h"

namespace brelan {

// Opens the trace file of the edition anew.
void open_trace(std::string_view file_name);

// Writes a free-field line on the trace channel, whatever pass is to be the last. A line that comes when the
// trace file is closed goes to "fort.888" in the working directory.
void trace_line(std::string_view text, std::optional<std::int32_t> value = std::nullopt);

// The channel that the lines of the trace go to.
Channel& trace_channel();

// Writes a free-field line of texts and values from a level of IDEBUG on, whatever pass is to be the last.
template <class... Items>
void trace_values(std::int32_t level, const Items&... items) {
    if (IDEBUG >= level)
        write_free(run.trace.file(), items...);
}

// Fires a trace point: when the trace is on and DBGPASS is not below the number, writes the text as a line,
// with the value that the point carries behind it. At the number that DBGPASS names the trace channel is
// closed: the trace is complete on disk up to there, and the run goes on.
void TRACE(std::string_view text, float number, std::optional<std::int32_t> value = std::nullopt);

}  // namespace brelan
