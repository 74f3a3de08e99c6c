// [main] Values as a player reads and types them: "438 Hz", "-6.0 dB", "1/8 T", "12 ms", "+40 %".
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/parameter_table.hpp"

namespace zum {

/// `raw` is 0 to 1. The host's locale changes nothing.
std::string parameterText(const ParameterRow& row, float raw);
/// Raw. With or without the unit, in any case, with a point or a comma; what lies beyond the ends
/// counts as the end. Nothing for a text that is no value of the parameter.
std::optional<float> parameterValue(const ParameterRow& row, std::string_view text);

/// How many values it has that go by names; 0 for one that counts.
int namedValues(const ParameterRow& row);

// Hosts of newer interfaces get whole numbers for steps, and raw for all others.
constexpr bool isStepped(const ParameterRow& row) { return row.unit == Unit::steps; }
/// The position of a step, or raw held in 0 to 1.
float plainOfRaw(const ParameterRow& row, float raw) ZUM_REALTIME;
float rawOfPlain(const ParameterRow& row, float plain) ZUM_REALTIME;
/// The largest plain value; the smallest is 0.
constexpr float plainEnd(const ParameterRow& row) {
  return isStepped(row) ? static_cast<float>(row.positions - 1) : 1.0F;
}

}  // namespace zum
