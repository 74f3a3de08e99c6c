// Names and values of files and users as a terminal may have them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zum {

struct Utf8Character {
  char32_t code;
  std::size_t bytes;  // 0: the text begins with none
};
/// `text` is not empty.
Utf8Character firstCharacter(std::string_view text);

/// False for line ends, escape sequences and whatever else acts instead of being seen.
bool isPrintable(char32_t code);

/// `code` in hexadecimal as \u has it, or \U where four digits do not suffice.
std::string unicodeEscape(char32_t code);

/// True for a text of blanks and line ends, also for none.
constexpr bool isBlank(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

/// The same text with an escape, such as \n, \x1b or \u202e, for every character that is not
/// printable and every byte that is no UTF-8.
std::string printable(std::string_view text);

}  // namespace zum
