// The program `daehost`: opens a plug-in file as its host would, without the host. Exit codes: 0
// ok, 1 failed, 2 wrong usage.
#include <exception>
#include <iostream>
#include <string>

#include "apps/daehost/commands.hpp"
#include "apps/zum/failure.hpp"
#include "apps/zum/interruption.hpp"

namespace {

int report(const std::string& text, int exitCode) {
  std::cerr << "daehost: " << text << '\n';
  return exitCode;
}

int run(int argc, char** argv) {
  CLI::App app("A host for ZUM32.dpm", "daehost");
  app.require_subcommand(0, 1);
  zum::addListCommand(app);
  zum::addRenderCommand(app);
  zum::addSaveCommand(app);
  zum::addViewCommand(app);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);  // --help
    return report(std::string(error.what()) + "; run daehost --help to see what it takes",
                  zum::kExitWrongUsage);
  } catch (const zum::Failure& failure) {
    return report(failure.what(), failure.exitCode);
  }
  if (app.get_subcommands().empty()) {
    return report("no command is given; run daehost --help to see them all", zum::kExitWrongUsage);
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const zum::Interruption& interruption) {
    zum::endBy(interruption);
  } catch (const std::exception& error) {
    return report(std::string(error.what()) + "; this should not happen, please report it",
                  zum::kExitFailed);
  }
}
