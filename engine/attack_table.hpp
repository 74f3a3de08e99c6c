// How fast the envelope follower rises. Tuned by ear.
#pragma once

#include <algorithm>
#include <array>

#include "engine/numbers.hpp"

namespace zum {

struct AttackRow {
  float ms;        // what the window shows
  float smoothHz;  // cutoff of the smoothing filter behind it
};

// clang-format off

/// The knob reaches from the fifth row to the last.
inline constexpr std::array<AttackRow, 17> kAttackTable = {{
//      ms       Hz
  { 3600.0F,   0.2F},
  { 2400.0F,   0.3F},
  { 1800.0F,   0.4F},
  { 1400.0F,   0.5F},
  { 1150.0F,   0.6F},
  { 1000.0F,   0.7F},
  {  900.0F,   0.8F},
  {  800.0F,   0.9F},
  {  730.0F,   1.0F},
  {  360.0F,   2.0F},
  {  180.0F,   4.0F},
  {   90.0F,   8.0F},
  {   45.0F,  16.0F},
  {   22.0F,  32.0F},
  {    9.0F,  64.0F},
  {    4.5F, 128.0F},
  {    0.0F, 256.0F},
}};

// clang-format on

/// Between two rows in a straight line. `position` 0 to 16.
constexpr AttackRow attackAt(float position) ZUM_REALTIME {
  constexpr int kLast = static_cast<int>(kAttackTable.size()) - 1;
  const int i = truncate(position);
  const AttackRow& from = kAttackTable[static_cast<std::size_t>(i)];
  const AttackRow& to = kAttackTable[static_cast<std::size_t>(std::min(i + 1, kLast))];
  const float part = position - static_cast<float>(i);
  return {from.ms + part * (to.ms - from.ms), from.smoothHz + part * (to.smoothHz - from.smoothHz)};
}

/// By the knob, 0 to 1.
constexpr AttackRow attackOf(float sum) ZUM_REALTIME {
  return attackAt((1.0F - sum * sum) * 12.0F + 4.0F);
}

}  // namespace zum
