#pragma once
// pwext is a set of commands; each lives in its own file under commands/ and
// registers itself with PWEXT_COMMAND. main() finds the command by its first
// word and hands it the remaining arguments.
#include <string>
#include <vector>

namespace pwext {

using Args = std::vector<std::string>;
// Returns the process exit code. Throws UsageError or Failure for errors.
using CommandFn = int (*)(Args args);

struct Command {
    const char* name;     // first word on the command line, e.g. "xml"
    const char* summary;  // one line for the help text
    CommandFn run;
};

// Registration (see PWEXT_COMMAND) and lookup.
bool RegisterCommand(const Command& command);
const std::vector<Command>& Commands();

// A bad command line: printed as "pwext: <message>" with exit code 2.
struct UsageError {
    std::string message;
};
// Anything else that went wrong: "pwext: <message>", exit code 1.
struct Failure {
    std::string message;
};

}  // namespace pwext

#define PWEXT_COMMAND(id, name, summary, fn) \
    static const bool pwext_registered_##id = ::pwext::RegisterCommand({name, summary, fn})
