// The checks that options share: a number between two bounds, a text that says something.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "platform/printable_text.hpp"

namespace zum {

// As CLI::Range, but refuses what is not a number, too, and prints bounds without decimals.
inline CLI::Validator between(int lowest, int highest) {
  const std::string bounds = std::to_string(lowest) + " to " + std::to_string(highest);
  const auto check = [lowest, highest, bounds](std::string& text) {
    double value = 0.0;
    const bool good = CLI::detail::lexical_cast(text, value) && value >= lowest && value <= highest;
    return good ? std::string() : '"' + text + "\" is not a number from " + bounds;
  };
  return {check, bounds};
}

inline CLI::Validator notEmpty() {
  return {[](std::string& text) {
            return isBlank(text) ? '"' + text + "\" says nothing" : std::string();
          },
          ""};
}

}  // namespace zum
