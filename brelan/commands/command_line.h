// The command line as a person writes it, and its help.
#pragma once

namespace brelan::tool {

// Reads the command line and runs the command that it names. Returns the exit status; throws what the command
// throws, and Failure for a command that is not known.
int run_command_line(int argc, char** argv);

}  // namespace brelan::tool
