// The program `zum`.
#include "apps/zum/command_line.hpp"
#include "apps/zum/commands.hpp"

namespace {

void addVersionFlag(CLI::App& app) { app.set_version_flag("--version", "zum " ZUM_VERSION); }

}  // namespace

int main(int argc, char** argv) {
  return zum::runCommandLine(
      argc, argv, "zum", "ZUM, a stereo filter effect for music",
      {addVersionFlag, zum::addRenderCommand, zum::addPlotCommand, zum::addParametersCommand,
       zum::addPresetsCommand, zum::addCcMapCommand, zum::addSettingsCommand,
       zum::addInstallContentCommand, zum::addPlayCommand});
}
