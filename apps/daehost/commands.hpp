// The subcommands of daehost. Each adds itself; they throw Failure.
#pragma once

#include <CLI/CLI.hpp>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "apps/daehost/plug_in_file.hpp"

namespace zum {

/// What all of them take.
struct HostOptions {
  std::filesystem::path plugIn = plugInBesideProgram();
  bool mono = false;
  std::filesystem::path session;
  std::vector<std::string> settings;
  double tempo = 120.0;  // beats per minute

  HostedProcess::Type type() const {
    return mono ? HostedProcess::Type::mono : HostedProcess::Type::stereo;
  }
  /// State first, then single controls.
  void apply(HostedProcess& process) const;
};

void addHostOptions(CLI::App& command, HostOptions& options);

void addListCommand(CLI::App& app);
void addRenderCommand(CLI::App& app);
void addSaveCommand(CLI::App& app);
void addViewCommand(CLI::App& app);

}  // namespace zum
