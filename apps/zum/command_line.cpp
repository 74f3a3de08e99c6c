#include "apps/zum/command_line.hpp"

#include <exception>
#include <iostream>
#include <string>

#include "apps/zum/failure.hpp"
#include "apps/zum/interruption.hpp"
#include "platform/printable_text.hpp"
#include "platform/standard_streams.hpp"

namespace zum {
namespace {

int report(const std::string& text, int exitCode) {
  complain(text);
  return exitCode;
}

std::string usageMessage(const CLI::App& app, const CLI::ParseError& error) {
  const auto chosen = app.get_subcommands();
  const std::string command = chosen.empty() ? "" : " " + chosen.front()->get_name();
  std::string why = error.what();
  if (why.ends_with(": ")) why += "\"\"";  // it was about an empty word
  return why + "; run " + programName + command + " --help to see what it takes";
}

int runCommand(CLI::App& app, int argc, char** argv) {
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
  return 0;
}

// Standard output is the one stream that throws: a command does not go on for nobody. A reader that
// went away, as head does, is no fault to tell.
int runToTheEnd(CLI::App& app, int argc, char** argv) {
  try {
    const int exitCode = runCommand(app, argc, argv);
    if (exitCode == 0) std::cout.flush();
    throwIfInterrupted();
    return exitCode;
  } catch (const std::ios_base::failure&) {
    std::cout.exceptions(std::ios_base::goodbit);  // standard error would flush it, and throw again
    throwIfInterrupted();
    return report("cannot write to standard output; check where it goes", kExitFailed);
  }
}

}  // namespace

void complain(const std::string& text) {
  std::cerr << programName << ": " << printable(text) << '\n';
}

void warn(const std::string& text) { complain("warning: " + text); }

int runCommandLine(int argc, char** argv, const char* name, const char* description,
                   std::initializer_list<AddToCommandLine> commands) {
  openStandardStreams();
  prepareSignals();
  programName = name;
  std::cout.exceptions(std::ios_base::badbit);
  try {
    CLI::App app(description, name);
    for (const AddToCommandLine add : commands) add(app);
    app.require_subcommand(0, 1);  // runToTheEnd() refuses 0, behind all other faults
    return runToTheEnd(app, argc, argv);
  } catch (const Interruption& interruption) {
    endBy(interruption);
  } catch (const std::exception& error) {
    std::cout.exceptions(std::ios_base::goodbit);
    return report(std::string(error.what()) + "; this should not happen, please report it",
                  kExitFailed);
  }
}

}  // namespace zum
