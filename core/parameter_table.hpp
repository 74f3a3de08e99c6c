// The one table of everything a player can set. Parameter calls, host names, presets, menus, tests
// and the command line read its rows; nothing is listed twice.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "core/tags.hpp"
#include "engine/controls.hpp"
#include "engine/realtime.hpp"

namespace zum {

/// What a value becomes when it is set.
enum class Rule : std::uint8_t {
  plain,        // raw as it is
  gain,         // plain, with a level of 2 raw in dB beside it
  threshold,    // plain, with raw squared and its dB beside it
  percent,      // plain, with 100 raw beside it
  amount,       // bipolar: 2 raw - 1
  step,         // position = trunc(min(positions - 1, positions * raw + 0.001))
  stepExact,    // the same without the 0.001
  selector,     // step that shows and hides groups of the window
  vowel,        // picks two formants
  button,       // on from 0.5 up
  resetButton,  // button that centres a list of amounts when it moves
  area,         // plain, carried by an object of its own
  table,        // an object alone, nothing to set
};

/// How a player reads a value: core/parameter_text.hpp.
enum class Unit : std::uint8_t {
  percent,
  amount,     // -100 % to +100 %
  cutoff,     // Hz
  range,      // Hz, or off
  attack,     // ms
  note,       // note lengths, longest first
  release,    // note lengths, shortest first
  gain,       // dB of 2 raw
  threshold,  // dB of raw squared
  names,      // of the row's `names`, evenly spread
  steps,      // whole numbers, with names
};

/// Bits of a row's `flags`.
inline constexpr std::uint8_t kRedraw = 1;  // the window shows more of it than its control

/// What stands in the panel behind a main knob.
struct KnobPanel {
  int knob;
  tag::PanelButtons buttons;
  int learns;                             // tag that its learn and clear speak of
  std::span<const std::int16_t> amounts;  // tags; by follower, LFO, sequencer, whichever move it
};

struct ParameterRow {
  int tag;                     // control tag, and host index below 60
  int id;                      // identifier in a preset, -1 for what a preset does not hold
  const char* name;            // towards the host, of version 2
  const char* path;            // module in which a host that has modules shows it...
  std::array<char, 28> title;  // ...and as what: once in a path, ends with a zero
  float initial;               // raw, of an effect that has loaded nothing
  float home;                  // raw, where a double click takes it
  Rule rule;
  std::uint8_t positions = 0;  // of a step value
  std::uint8_t flags = 0;
  float perCount = 1.0F;  // raw for each 1 that its control in the window counts
  Unit unit = Unit::percent;
  std::span<const char* const> names = {};        // of single values
  ControlValue EngineControls::*value = nullptr;  // null: kept by the effect object
  std::span<const std::int16_t> resets = {};      // tags that a reset button centres, in order
  const KnobPanel* panel = nullptr;               // behind this main knob, or around this button
};

inline constexpr int kLastTag = tag::bypass;
inline constexpr int kLastId = 69;
inline constexpr int kHostParameters = 60;
inline constexpr int kPresetRows = 62;  // the first rows, in the order of a preset
inline constexpr int kParameterRows = 129;

/// All rows, in the order of construction.
std::span<const ParameterRow> parameterRows() ZUM_REALTIME;
/// Position of a tag's row, -1 for a tag without one.
int rowOfTag(int tag) ZUM_REALTIME;
/// The same for a preset's identifier.
int rowOfId(int id) ZUM_REALTIME;
/// The row of a tag itself, null for a tag without one.
const ParameterRow* findRow(int tag) ZUM_REALTIME;

inline constexpr int kFaceParameters = 60;
/// The tags of what hosts of newer interfaces know: all that have a host index, then bank, types,
/// mode and bypass. The order is for ever: some hosts keep the position, and not the tag.
std::span<const std::int16_t, kFaceParameters> faceTags() ZUM_REALTIME;
/// Position of a tag in that list, -1 for one that is not in it.
int facePosition(int tag) ZUM_REALTIME;

constexpr bool isAmount(Rule rule) { return rule == Rule::amount; }

/// A step, selector or button: what a host shows as a switch.
constexpr bool isSwitch(Rule rule) {
  return rule == Rule::step || rule == Rule::stepExact || rule == Rule::selector ||
         rule == Rule::button || rule == Rule::resetButton;
}

}  // namespace zum
