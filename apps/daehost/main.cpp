// The program `daehost`: opens a plug-in file as its host would, without the host.
#include "apps/daehost/commands.hpp"
#include "apps/zum/command_line.hpp"

int main(int argc, char** argv) {
  return zum::runCommandLine(
      argc, argv, "daehost", "A host for ZUM32.dpm",
      {zum::addListCommand, zum::addRenderCommand, zum::addSaveCommand, zum::addViewCommand});
}
