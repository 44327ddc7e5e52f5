// BRELAN-2D, the mesh pre-processor: runs the deck that the start-up files name.

#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>

#include "channel/channels.h"
#include "channel/run_end.h"
#include "run/driver.h"

namespace {

// One line on standard error. What a file name or a deck holds cannot steer a terminal.
int failed(std::string message) {
    std::replace_if(
        message.begin(), message.end(), [](unsigned char c) { return c < ' ' || c == 127; }, '?');
    std::fprintf(stderr, "brelan2d: %s\n", message.c_str());
    return brelan::STATUS_FAILED;
}

// Runs the deck. All files are complete on disk when a run finishes or stops; one that cannot be written
// makes it a failure.
int run() {
    try {
        try {
            brelan::RUN(run);
        } catch (const brelan::RunEnd& end) {
            if (end.status == brelan::STATUS_FAILED)
                return failed(end.text);
            brelan::run.channels.flush_all();
            std::printf("%s\n", end.text.c_str());
            return end.status;
        }
        brelan::run.channels.flush_all();
        return brelan::STATUS_FINISHED;
    } catch (const brelan::RunEnd& end) {
        return failed(end.text);
    } catch (const std::exception& error) {
        return failed(std::string("the run cannot go on: ") + error.what());
    }
}

}  // namespace

int main() {
    const int status = run();
    brelan::run.channels.close_all();
    return status;
}
