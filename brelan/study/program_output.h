// Another program, started with arguments as they are.
#pragma once

#include <string>
#include <vector>

namespace brelan::tool {

struct ProgramOutput {
    int status = 127;  // 127 too where the program is not there
    std::string out, err;
};

// Waits for its end. Throws Failure where no process can be started.
ProgramOutput output_of_program(const std::vector<std::string>& arguments);

}  // namespace brelan::tool
