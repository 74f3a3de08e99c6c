#include "adaptor/wrapper_control.hpp"

#include <array>
#include <charconv>
#include <cstdio>
#include <cstring>

#include "adaptor/control_value.hpp"
#include "adaptor/wrapper_process.hpp"

namespace zum {

KvRTASWrapperPluginControl::KvRTASWrapperPluginControl(KvRTASWrapperProcess& owner,
                                                       std::int32_t parameter)
    : process(owner), parameterIndex(parameter) {
  VstParameterProperties properties{};
  process.getEffect()->getParameterProperties(parameterIndex, &properties);
  isSwitch = (properties.flags & kVstParameterIsSwitch) != 0;
  value = controlValueOf(process.getEffect()->getParameter(parameterIndex));
}

std::int32_t KvRTASWrapperPluginControl::getIndex() const {
  return parameterIndex + KvRTASWrapperProcess::kFirstParameter;
}

std::int32_t KvRTASWrapperPluginControl::textToValue(const char* text) const {
  return controlValueOf(decimalNumber(text));
}

void KvRTASWrapperPluginControl::getName(char* text, std::int32_t room) const {
  std::array<char, 256> name{};
  process.getEffect()->getParameterName(parameterIndex, name.data());
  copyToRoom(name.data(), text, room);
}

void KvRTASWrapperPluginControl::valueToText(std::int32_t controlValue, char* text,
                                             std::int32_t room) const {
  constexpr std::int32_t kRoomForDigits = 8;
  const float normalised = normalisedOf(controlValue);
  if (isSwitch) return copyToRoom(normalised == 0.0F ? "Off" : "On", text, room);
  const float percent = 100.0F * normalised;
  std::array<char, 32> shown{};
  if (room < kRoomForDigits) {
    (void)std::snprintf(shown.data(), shown.size(), "%d", static_cast<int>(percent));
  } else {
    // Whatever the host's locale says, behind a point.
    const auto end = std::to_chars(shown.data(), shown.data() + shown.size() - 3,
                                   static_cast<double>(percent), std::chars_format::fixed, 2);
    std::memcpy(end.ptr, " %", 3);
  }
  copyToRoom(shown.data(), text, room);
}

}  // namespace zum
