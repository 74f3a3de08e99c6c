// How every command line of ours ends: failures as one line on standard error, and an exit code (0
// ok, 1 failed, 2 wrong usage).
#pragma once

#include <CLI/CLI.hpp>

namespace zum {

/// Hands the words to the subcommands of `app`, one of which must be named. A signal ends the
/// program as it would have.
int runCommandLine(CLI::App& app, int argc, char** argv);

}  // namespace zum
