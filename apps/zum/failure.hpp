// How a command ends early, and how it warns; runCommandLine prints the one and sets the exit code.
#pragma once

#include <stdexcept>
#include <string>

namespace zum {

inline constexpr int kExitFailed = 1;
inline constexpr int kExitWrongUsage = 2;

/// The text says what is wrong and what to do next, without the program's name in front and without
/// a full stop.
struct Failure : std::runtime_error {
  explicit Failure(const std::string& text, int code = kExitFailed)
      : std::runtime_error(text), exitCode(code) {}
  int exitCode;
};

/// What messages begin with; set once, at the program's start.
inline const char* programName = "zum";

// Each prints one line on standard error, whatever file names and the like are in the text.
void complain(const std::string& text);
void warn(const std::string& text);

}  // namespace zum
