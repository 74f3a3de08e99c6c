// The program `zum`: hands the command line to the subcommands and turns their failures into a line
// on stderr and an exit code (0 ok, 1 failed, 2 wrong usage).
#include <exception>
#include <iostream>
#include <string>

#include "apps/zum/commands.hpp"
#include "apps/zum/failure.hpp"
#include "apps/zum/interruption.hpp"

namespace {

int report(const std::string& text, int exitCode) {
  std::cerr << "zum: " << text << '\n';
  return exitCode;
}

int run(int argc, char** argv) {
  CLI::App app("ZUM, a stereo filter effect for music", "zum");
  app.set_version_flag("--version", "zum " ZUM_VERSION);
  app.require_subcommand(0, 1);  // none is reported below, after what else is wrong
  zum::addRenderCommand(app);
  zum::addPlotCommand(app);
  zum::addParametersCommand(app);
  zum::addPresetsCommand(app);
  zum::addCcMapCommand(app);
  zum::addSettingsCommand(app);
  zum::addInstallContentCommand(app);
  zum::addEditCommand(app);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);  // --help and --version
    const auto chosen = app.get_subcommands();
    const std::string command = chosen.empty() ? "" : " " + chosen.front()->get_name();
    return report(
        std::string(error.what()) + "; run zum" + command + " --help to see what it takes",
        zum::kExitWrongUsage);
  } catch (const zum::Failure& failure) {
    return report(failure.what(), failure.exitCode);
  }
  if (app.get_subcommands().empty()) {
    return report("no command is given; run zum --help to see them all", zum::kExitWrongUsage);
  }
  if (!std::cout.flush())
    return report("cannot write to standard output; check where it goes", zum::kExitFailed);
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
