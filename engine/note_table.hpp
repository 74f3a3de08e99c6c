// The note lengths that sequencer, LFO and follower share, in bars of four beats.
#pragma once

#include <array>

#include "engine/numbers.hpp"

namespace zum {

// clang-format off

// Plain, dotted and triplet lengths in turn. They have six digits and are not to be replaced by
// exact fractions.
inline constexpr std::array<float, 27> kNoteTable = {
    4.0F,      3.0F,      2.0F,
    1.5F,      1.0F,      0.75F,     0.666666F,
    0.5F,      0.375F,    0.333333F,
    0.25F,     0.1875F,   0.166667F,
    0.125F,    0.09375F,  0.083333F,
    0.0625F,   0.046875F, 0.041667F,
    0.03125F,  0.023438F, 0.020833F,
    0.015625F, 0.011719F, 0.010417F,
    0.007813F, 0.005208F,
};

// clang-format on

/// The entry that a position of 0 to 1 rounds to.
constexpr int noteIndexOf(float position) ZUM_REALTIME {
  constexpr int kLast = static_cast<int>(kNoteTable.size()) - 1;
  return clampIndex(truncate(position * static_cast<float>(kLast) + 0.5F), kLast);
}

constexpr float noteLength(int index) ZUM_REALTIME {
  return kNoteTable[static_cast<std::size_t>(index)];
}

}  // namespace zum
