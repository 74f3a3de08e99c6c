#include "apps/zum/command_line.hpp"

#include <exception>
#include <iostream>
#include <string>

#include "apps/zum/failure.hpp"
#include "apps/zum/interruption.hpp"

namespace zum {
namespace {

int report(const std::string& text, int exitCode) {
  std::cerr << programName << ": " << text << '\n';
  return exitCode;
}

std::string usageMessage(const CLI::App& app, const CLI::ParseError& error) {
  const auto chosen = app.get_subcommands();
  const std::string command = chosen.empty() ? "" : " " + chosen.front()->get_name();
  return std::string(error.what()) + "; run " + programName + command +
         " --help to see what it takes";
}

int parse(CLI::App& app, int argc, char** argv) {
  bool isAnswered = false;
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    isAnswered = error.get_exit_code() == 0 && app.exit(error) == 0;  // --help and --version
    if (!isAnswered) return report(usageMessage(app, error), kExitWrongUsage);
  } catch (const Failure& failure) {
    return report(failure.what(), failure.exitCode);
  }
  if (!isAnswered && app.get_subcommands().empty()) {
    return report(
        "no command is given; run " + std::string(programName) + " --help to see them all",
        kExitWrongUsage);
  }
  if (!std::cout.flush()) {
    return report("cannot write to standard output; check where it goes", kExitFailed);
  }
  return 0;
}

}  // namespace

int runCommandLine(int argc, char** argv, const char* name, const char* description,
                   std::initializer_list<AddToCommandLine> commands) {
  programName = name;
  try {
    CLI::App app(description, name);
    for (const AddToCommandLine add : commands) add(app);
    app.require_subcommand(0, 1);  // none is reported behind what else is wrong
    return parse(app, argc, argv);
  } catch (const Interruption& interruption) {
    endBy(interruption);
  } catch (const std::exception& error) {
    return report(std::string(error.what()) + "; this should not happen, please report it",
                  kExitFailed);
  }
}

}  // namespace zum
