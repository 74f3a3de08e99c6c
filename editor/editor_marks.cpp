// The dots beside the knobs' names: which modulators move a knob, and whether a controller does.

#include <cmath>

#include "editor/making.hpp"
#include "resources/palette.hpp"
#include "toolkit/marks_view.hpp"

namespace zum {
namespace {

constexpr layout::Modulator kModulators[] = {layout::follower, layout::lfo, layout::sequencer};

CColor colorOf(const pictures::Color& color) {
  const auto byte = [](double channel) {
    return static_cast<std::uint8_t>(std::lround(255.0 * channel));
  };
  return {byte(color.r), byte(color.g), byte(color.b), 255};
}

CColor tintOf(layout::Modulator modulator) {
  switch (modulator) {
    case layout::follower: return colorOf(pictures::kFollowerTint);
    case layout::lfo: return colorOf(pictures::kLfoTint);
    case layout::sequencer: return colorOf(pictures::kSequencerTint);
  }
  return kWhiteColor;
}

layout::Group groupOf(int knobTag) {
  for (const auto& table : {layout::kUpperKnobs, layout::kLowerKnobs}) {
    for (const layout::Knob& knob : table) {
      if (knob.tag == knobTag) return knob.group;
    }
  }
  return layout::always;
}

}  // namespace

void KvUniClientEditor::addMarks() {
  for (const layout::Panel& row : layout::kPanels) {
    const layout::Group group = groupOf(row.knob);
    std::vector<KvMarksView::Mark> marks;
    const int* slider = row.sliders;
    for (const layout::Modulator modulator : kModulators) {
      if (layout::isOwnOf(modulator, group)) continue;
      marks.push_back({&effect.value(*slider++).bipolar, tintOf(modulator)});
    }
    marks.push_back(
        {&isLearned[static_cast<std::size_t>(row.knob)], colorOf(pictures::kControllerTint)});
    const int right = row.marks.x + static_cast<int>(marks.size()) * KvMarksView::kPitch;
    add(make<KvMarksView>({row.marks.x, row.marks.y, right, row.marks.y + KvMarksView::kDot}, -1,
                          marks),
        group);
  }
}

// Learning, presets and maps all end in the lists, on any thread: so these are read at each tick.
void KvUniClientEditor::noteControllers() {
  isLearned.fill(0.0F);
  const auto note = [this](const BindingList& list) {
    for (std::size_t i = 0, end = list.size(); i < end; ++i) {
      const int tag = list.at(i).tag;
      if (tag >= 0 && tag <= kLastTag) isLearned[static_cast<std::size_t>(tag)] = 1.0F;
    }
  };
  for (const BindingList& list : effect.controllers().controllers) note(list);
  note(effect.controllers().aftertouch);
}

}  // namespace zum
