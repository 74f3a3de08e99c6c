// Numbers as users write them, in options and files.
#pragma once

#include <charconv>
#include <string_view>
#include <system_error>

namespace zum {

/// False for a text that is anything but one number.
template <typename Number, typename... Base>
bool parseWhole(std::string_view text, Number& number, Base... base) {
  const auto [end, error] =
      std::from_chars(text.data(), text.data() + text.size(), number, base...);
  return error == std::errc() && end == text.data() + text.size();
}

/// False also for a number outside of 0..1, and for "nan".
template <typename Number>
bool parseUnit(std::string_view text, Number& number) {
  return parseWhole(text, number) && number >= 0 && number <= 1;
}

}  // namespace zum
