// Small letters for comparisons, whatever the locale says: names of parameters, units and files.
#pragma once

#include <string>
#include <string_view>

namespace zum {

inline char lowerCase(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

inline std::string lowerCase(std::string_view text) {
  std::string lower(text);
  for (char& letter : lower) letter = lowerCase(letter);
  return lower;
}

}  // namespace zum
