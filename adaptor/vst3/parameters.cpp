#include "adaptor/vst3/parameters.hpp"

#include <algorithm>
#include <charconv>

#include "adaptor/vst3/ids.hpp"
#include "adaptor/vst3/text16.hpp"
#include "adaptor/vst3/units.hpp"
#include "core/parameter_text.hpp"
#include "core/tags.hpp"

namespace zum::vst3 {
namespace {

constexpr double kMidiEnd = 127.0;

bool isPlace(int position) ZUM_REALTIME { return position >= 0 && position < kParameters; }

void describeRow(const ParameterRow& row, v3_param_info& info) {
  info.param_id = static_cast<v3_param_id>(row.tag);
  putText(row.title.data(), info.title);
  putText(row.title.data(), info.short_title);
  info.step_count = isStepped(row) ? row.positions - 1 : 0;
  info.default_normalised_value = valueOfRaw(row, row.home);
  info.unit_id = unitOfPath(row.path);
  info.flags = V3_PARAM_CAN_AUTOMATE;
  if (row.tag == tag::bypass) {
    info.flags |= V3_PARAM_IS_BYPASS;
  } else if (isStepped(row)) {
    info.flags |= V3_PARAM_IS_LIST;
  }
}

void describeProgram(v3_param_info& info) {
  info.param_id = kProgramId;
  putText("Program", info.title);
  putText("Program", info.short_title);
  info.step_count = ProgramList::kSteps;
  info.unit_id = kRootUnit;
  info.flags = V3_PARAM_PROGRAM_CHANGE | V3_PARAM_IS_LIST | V3_PARAM_CAN_AUTOMATE;
}

std::string midiTitle(int number) {
  if (number == kPressure) return "MIDI pressure";
  if (number == kPitchBend) return "MIDI pitch bend";
  return "MIDI CC " + std::to_string(number);
}

void describeMidi(int number, v3_param_info& info) {
  info.param_id = kMidiId + static_cast<v3_param_id>(number);
  putText(midiTitle(number), info.title);
  putText(midiTitle(number), info.short_title);
  info.default_normalised_value = number == kPitchBend ? 0.5 : 0.0;
  info.unit_id = kRootUnit;
  info.flags = V3_PARAM_IS_HIDDEN;
}

std::optional<double> midiValue(std::string_view text) {
  int number = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
  if (read.ec != std::errc() || read.ptr != text.data() + text.size()) return std::nullopt;
  return std::clamp(number / kMidiEnd, 0.0, 1.0);
}

}  // namespace

const ParameterRow* rowAt(int position) ZUM_REALTIME {
  if (position < 0 || position >= kFaceParameters) return nullptr;
  return findRow(faceTags()[static_cast<std::size_t>(position)]);
}

double valueOfRaw(const ParameterRow& row, float raw) ZUM_REALTIME {
  return static_cast<double>(plainOfRaw(row, raw)) / static_cast<double>(plainEnd(row));
}

double plainEndOf(int position) ZUM_REALTIME {
  if (!isPlace(position)) return 0.0;
  if (const ParameterRow* const row = rowAt(position)) return static_cast<double>(plainEnd(*row));
  return position == kProgramPosition ? ProgramList::kSteps : kMidiEnd;
}

// Texts hold their unit, as it is not the same for all values: "Off", "-6.0 dB". A host that puts
// the unit of the description behind them would show it twice, so that one stays empty.
bool describeParameter(int position, v3_param_info& info) {
  if (!isPlace(position)) return false;
  info = {};
  if (const ParameterRow* const row = rowAt(position)) {
    describeRow(*row, info);
  } else if (position == kProgramPosition) {
    describeProgram(info);
  } else {
    describeMidi(position - kMidiPosition, info);
  }
  return true;
}

std::string textOfValue(int position, const ProgramList& programs, double value) {
  if (const ParameterRow* const row = rowAt(position)) {
    return parameterText(*row, rawOfPlain(*row, static_cast<float>(value) * plainEnd(*row)));
  }
  if (position == kProgramPosition) {
    return std::string(programs.nameOf(ProgramList::placeOf(value)));
  }
  return std::to_string(nearest(value * kMidiEnd));
}

std::optional<double> valueOfText(int position, const ProgramList& programs,
                                  std::string_view text) {
  if (const ParameterRow* const row = rowAt(position)) {
    const std::optional<float> raw = parameterValue(*row, text);
    return raw ? std::optional(valueOfRaw(*row, *raw)) : std::nullopt;
  }
  if (position != kProgramPosition) return midiValue(text);
  const int place = programs.find(text);
  return place >= 0 ? std::optional(ProgramList::valueOf(place)) : std::nullopt;
}

}  // namespace zum::vst3
