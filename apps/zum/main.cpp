// The program `zum`.
#include "apps/zum/command_line.hpp"
#include "apps/zum/commands.hpp"

int main(int argc, char** argv) {
  CLI::App app("ZUM, a stereo filter effect for music", "zum");
  app.set_version_flag("--version", "zum " ZUM_VERSION);
  zum::addRenderCommand(app);
  zum::addPlotCommand(app);
  zum::addParametersCommand(app);
  zum::addPresetsCommand(app);
  zum::addCcMapCommand(app);
  zum::addSettingsCommand(app);
  zum::addInstallContentCommand(app);
  zum::addEditCommand(app);
  return zum::runCommandLine(app, argc, argv);
}
