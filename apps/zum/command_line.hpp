// How every command line of ours ends: failures as one line on standard error, and an exit code (0
// ok, 1 failed, 2 wrong usage).
#pragma once

#include <CLI/CLI.hpp>
#include <initializer_list>

namespace zum {

/// Hangs one subcommand, or an option of the whole program, into `app`.
using AddToCommandLine = void (*)(CLI::App& app);

/// Runs the subcommand that the words name; one must be named. `name` stays as long as the
/// program runs. No failure leaves this call; a signal ends the program as it would have.
int runCommandLine(int argc, char** argv, const char* name, const char* description,
                   std::initializer_list<AddToCommandLine> commands);

}  // namespace zum
