// The pass trace: one line for each pass, for a person who looks for the place where a run fails.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "text/channels.h"
#include "text/free_field.h"
#include "text/watch.h"

namespace brelan {

class Trace {
public:
    explicit Trace(Channels& channels) : channels_(channels) {}
    Trace(Channels& channels, Watch& watch) : channels_(channels), watch_(&watch) {}

    // Sets the level of detail, 0 for no trace, and the last pass to be traced.
    void set(std::int32_t level, float last_pass) {
        level_ = level;
        last_pass_ = last_pass;
    }

    // Opens the trace file of the edition anew.
    void open(std::string_view file_name);

    // Fires a trace point: when the trace is on and the last pass is not below the number, writes the text as
    // a line, with the value that the point carries behind it. At the last pass itself the trace file is
    // closed: the trace is complete on disk up to there, and the run goes on. The run's watcher is told of
    // the pass whatever is traced.
    void pass(std::string_view text, float number, std::optional<std::int32_t> value = std::nullopt);

    // Writes a free-field line, whatever pass is to be the last. A line that comes when the trace file is
    // closed goes to "fort.888" in the working directory.
    void line(std::string_view text, std::optional<std::int32_t> value = std::nullopt);

    // The file that the lines of the trace go to.
    Channel& file();

    // Writes a free-field line of texts and values from a level of detail on, whatever pass is to be the
    // last.
    template <class... Items>
    void values(std::int32_t level, const Items&... items) {
        if (level_ >= level)
            write_free(file(), items...);
    }

private:
    Channels& channels_;
    Watch* watch_ = nullptr;
    std::int32_t level_ = 0;
    float last_pass_ = 0.0F;
    bool default_file_begun_ = false;
};

}  // namespace brelan
