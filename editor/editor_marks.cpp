// The dots beside the knobs' names: which modulators move a knob, and whether a controller does.

#include "editor/making.hpp"
#include "editor/palette_color.hpp"
#include "toolkit/marks_view.hpp"

namespace zum {
namespace {

/// In the order in which a panel shows them.
struct Modulator {
  pictures::Color tint;
  layout::Group page;  // no modulator moves a knob of its own page
  layout::Group part = page;
};
constexpr Modulator kModulators[] = {{pictures::kFollowerTint, layout::followerPage},
                                     {pictures::kLfoTint, layout::lfoPage, layout::freeLfo},
                                     {pictures::kSequencerTint, layout::sequencerPage}};

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
    auto amount = findRow(row.knob)->panel->amounts.begin();
    for (const Modulator& modulator : kModulators) {
      if (group == modulator.page || group == modulator.part) continue;
      marks.push_back({&effect.value(*amount++).bipolar, colorOf(modulator.tint)});
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
