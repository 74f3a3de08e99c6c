// How what a user asked for ends early: with a text for him.
#pragma once

#include <stdexcept>
#include <string>

namespace zum {

// What a command line then ends with.
inline constexpr int kExitFailed = 1;
inline constexpr int kExitWrongUsage = 2;

/// The text says what is wrong and what to do next, without the program's name in front and without
/// a full stop.
struct Failure : std::runtime_error {
  explicit Failure(const std::string& text, int code = kExitFailed)
      : std::runtime_error(text), exitCode(code) {}
  int exitCode;
};

}  // namespace zum
