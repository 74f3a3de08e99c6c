// [main] What hosts may ask of a parameter without its value: rows of the table as this interface
// describes them, and the program and MIDI behind them.
#pragma once

#include <travesty/edit_controller.h>

#include <optional>
#include <string>
#include <string_view>

#include "adaptor/vst3/programs.hpp"
#include "core/parameter_table.hpp"

namespace zum::vst3 {

/// False for a position that there is not.
bool describeParameter(int position, v3_param_info& info);

/// Of the parameter at a position that there is; `value` is 0 to 1.
std::string textOfValue(int position, const ProgramList& programs, double value);
/// Nothing for a text that is no value.
std::optional<double> valueOfText(int position, const ProgramList& programs, std::string_view text);

/// [any] The row at a position; null for the program, MIDI, and what there is not.
const ParameterRow* rowAt(int position) ZUM_REALTIME;

// [any] Hosts see values of 0 to 1, the effect's plain ones in parts of their end.
double valueOfRaw(const ParameterRow& row, float raw) ZUM_REALTIME;
/// The largest plain value; the smallest is 0. 0 where there is no such parameter.
double plainEndOf(int position) ZUM_REALTIME;

}  // namespace zum::vst3
