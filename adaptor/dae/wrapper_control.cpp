#include "adaptor/dae/wrapper_control.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "adaptor/dae/wrapper_process.hpp"

namespace zum {

float normalisedOf(std::int32_t controlValue) {
  return static_cast<float>((static_cast<double>(controlValue) + 2147483648.0) *
                            2.3283064370807974e-10);
}

std::int32_t controlValueOf(float normalised) {
  const double held = normalised > 0.0F ? (normalised < 1.0F ? normalised : 1.0F) : 0.0F;
  // The upper end lies between two integers, the higher of which does not fit 32 bits.
  const double scaled = std::rint(held * 4294967295.0 - 2147483647.5);
  return static_cast<std::int32_t>(std::min(scaled, 2147483647.0));
}

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
