// The subcommands of the program, one source file each; main adds them all.
#pragma once

#include <CLI/CLI.hpp>

namespace zum {

// Each adds its subcommand to `app`, with a callback that does the work and throws Failure.
void addRenderCommand(CLI::App& app);
void addPlotCommand(CLI::App& app);
void addParametersCommand(CLI::App& app);
void addPresetsCommand(CLI::App& app);
void addCcMapCommand(CLI::App& app);
void addSettingsCommand(CLI::App& app);
void addInstallContentCommand(CLI::App& app);
void addPlayCommand(CLI::App& app);

}  // namespace zum
