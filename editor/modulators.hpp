// What moves the knobs, and which amount of a knob is whose.
#pragma once

#include <vector>

#include "core/parameter_table.hpp"
#include "editor/layout.hpp"
#include "resources/palette.hpp"

namespace zum {

struct Modulator {
  const char* brief;  // where there is little room
  pictures::Color tint;
  layout::Group page;  // no modulator moves a knob of its own page
  layout::Group part = page;
};

/// In the order in which a panel shows them.
inline constexpr Modulator kModulators[] = {
    {"ENV", pictures::kFollowerTint, layout::followerPage},
    {"LFO", pictures::kLfoTint, layout::lfoPage, layout::freeLfo},
    {"SEQ", pictures::kSequencerTint, layout::sequencerPage}};

inline layout::Group groupOfKnob(int knobTag) {
  for (const auto& table : {layout::kUpperKnobs, layout::kLowerKnobs}) {
    for (const layout::Knob& knob : table) {
      if (knob.tag == knobTag) return knob.group;
    }
  }
  return layout::always;
}

struct Amount {
  int tag;
  const Modulator& by;
};

/// Of a knob that has a panel.
inline std::vector<Amount> amountsOf(const KnobPanel& panel) {
  const layout::Group group = groupOfKnob(panel.knob);
  std::vector<Amount> amounts;
  auto next = panel.amounts.begin();
  for (const Modulator& modulator : kModulators) {
    if (group == modulator.page || group == modulator.part) continue;
    amounts.push_back({*next++, modulator});
  }
  return amounts;
}

}  // namespace zum
