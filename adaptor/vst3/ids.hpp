// The numbers by which hosts and their sessions know this effect. None may ever change.
#pragma once

#include <travesty/base.h>

#include <cmath>

#include "core/parameter_table.hpp"

namespace zum::vst3 {

inline constexpr v3_tuid kClassId = V3_ID(0xB1E7513C, 0x988DD31E, 0x65C22424, 0xFEB91327);

// Parameters: by their tags, and beyond those:
inline constexpr v3_param_id kProgramId = 1000;
inline constexpr v3_param_id kMidiId = 2000;  // and the number of a controller, or one of these
inline constexpr int kPressure = 128;
inline constexpr int kPitchBend = 129;
inline constexpr int kMidiParameters = 130;

// By position: the tags in their order, the program, MIDI.
inline constexpr int kProgramPosition = kFaceParameters;
inline constexpr int kMidiPosition = kProgramPosition + 1;
inline constexpr int kParameters = kMidiPosition + kMidiParameters;

inline constexpr int kRootUnit = 0;
inline constexpr int kProgramList = 1;

/// The position of an id, -1 for one that there is not.
inline int positionOfId(v3_param_id id) ZUM_REALTIME {
  if (id == kProgramId) return kProgramPosition;
  if (id >= kMidiId && id < kMidiId + kMidiParameters) {
    return kMidiPosition + static_cast<int>(id - kMidiId);
  }
  return id <= static_cast<v3_param_id>(kLastTag) ? facePosition(static_cast<int>(id)) : -1;
}

/// The whole number that a value from 0 on stands for.
inline int nearest(double value) ZUM_REALTIME { return static_cast<int>(std::floor(value + 0.5)); }

}  // namespace zum::vst3
