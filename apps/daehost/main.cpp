// The program `daehost`: opens a plug-in file as its host would, without the host.
#include "apps/daehost/commands.hpp"
#include "apps/zum/command_line.hpp"

int main(int argc, char** argv) {
  CLI::App app("A host for ZUM32.dpm", "daehost");
  zum::addListCommand(app);
  zum::addRenderCommand(app);
  zum::addSaveCommand(app);
  zum::addViewCommand(app);
  return zum::runCommandLine(app, argc, argv);
}
