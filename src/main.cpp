// BRELAN-2D, the mesh pre-processor: runs the deck that the start-up files name.

#include <cstdio>
#include <exception>
#include <string>

#include "channel/channels.h"
#include "channel/run_end.h"
#include "run/driver.h"

namespace {

int failed(const std::string& message) {
    std::fprintf(stderr, "brelan2d: %s\n", message.c_str());
    return brelan::STATUS_FAILED;
}

int run() {
    try {
        brelan::RUN();
        return brelan::STATUS_FINISHED;
    } catch (const brelan::RunEnd& end) {
        if (end.status == brelan::STATUS_FAILED)
            return failed(end.text);
        std::printf("%s\n", end.text.c_str());
        return end.status;
    } catch (const std::exception& error) {
        return failed(std::string("the run cannot go on: ") + error.what());
    }
}

}  // namespace

int main() {
    const int status = run();
    brelan::close_all_channels();
    return status;
}
