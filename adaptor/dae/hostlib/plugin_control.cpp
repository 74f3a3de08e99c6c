#include "adaptor/dae/hostlib/plugin_control.hpp"

#include <strings.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <string_view>
#include <system_error>

namespace zum {

void copyToRoom(std::string_view from, char* text, std::int32_t room) {
  if (text == nullptr || room < 1) return;
  const std::size_t length = std::min(from.size(), static_cast<std::size_t>(room) - 1);
  std::copy_n(from.begin(), length, text);  // also of no text at all
  text[length] = '\0';
}

// The number is held inside what a float can hold. What does not even fit a double is too large or
// too small by its exponent or, where it has none, by its first digit.
float decimalNumber(const char* text) {
  if (text == nullptr) return 0.0F;
  while (*text == ' ' || *text == '+') ++text;
  constexpr double kMost = 1e30;
  double number = 0.0;
  const auto end = std::from_chars(text, text + std::strlen(text), number);
  if (end.ec == std::errc::result_out_of_range) {
    const std::string_view read(text, static_cast<std::size_t>(end.ptr - text));
    const bool isNegative = read.front() == '-';
    const std::size_t exponent = read.find_first_of("eE");
    const bool isTiny = exponent == std::string_view::npos ? read[isNegative ? 1 : 0] == '0'
                                                           : read[exponent + 1] == '-';
    number = isTiny ? 0.0 : (isNegative ? -kMost : kMost);
  }
  return static_cast<float>(std::clamp(number, -kMost, kMost));
}

std::int32_t CPluginControl_OnOff::textToValue(const char* text) const {
  const bool isOn = text != nullptr && (strcasecmp(text, "on") == 0 || decimalNumber(text) > 0.5F);
  return isOn ? INT32_MAX : INT32_MIN;
}

void CPluginControl_OnOff::getName(char* text, std::int32_t room) const {
  std::string_view rest = names;
  std::string_view form = rest;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    form = rest.substr(0, end);
    if (static_cast<std::int32_t>(form.size()) < room) break;
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  copyToRoom(form, text, room);
}

void CPluginControl_OnOff::valueToText(std::int32_t controlValue, char* text,
                                       std::int32_t room) const {
  copyToRoom(controlValue > 0 ? "On" : "Off", text, room);
}

}  // namespace zum
