#include "adaptor/hostlib/plugin_control.hpp"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace zum {

void copyToRoom(std::string_view from, char* text, std::int32_t room) {
  if (text == nullptr || room < 1) return;
  const std::size_t length = std::min(from.size(), static_cast<std::size_t>(room) - 1);
  std::memcpy(text, from.data(), length);
  text[length] = '\0';
}

std::int32_t CPluginControl_OnOff::textToValue(const char* text) const {
  const std::string_view word = text != nullptr ? text : "";
  return word == "On" || word == "on" || word == "1" ? INT32_MAX : INT32_MIN;
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
