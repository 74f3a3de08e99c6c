// The vowels, as the two formants that the vowel bank is tuned to. Tuned by ear.
#pragma once

#include <array>

namespace zum {

struct FormantRow {
  float oneHz;
  float twoHz;
};

// clang-format off

/// By position of a vowel selector, 8 raw. What hosts send above 1 ends at the last row, whose
/// sound is that of the one before it.
inline constexpr std::array<FormantRow, 10> kFormantTable = {{
//      one       two
  {  320.0F,   800.0F},
  {  500.0F,  1000.0F},
  {  700.0F,  1150.0F},
  { 1000.0F,  1400.0F},
  { 1500.0F,   500.0F},
  { 1650.0F,   320.0F},
  { 1800.0F,   700.0F},
  { 2300.0F,   500.0F},
  { 3200.0F,   320.0F},
  { 3200.0F,   320.0F},
}};

// clang-format on

}  // namespace zum
