// The dots beside the knobs' names: which modulators move a knob, and whether a controller does.

#include "editor/making.hpp"
#include "editor/modulators.hpp"
#include "editor/palette_color.hpp"
#include "toolkit/marks_view.hpp"

namespace zum {
void KvUniClientEditor::addMarks() {
  for (const layout::Panel& row : layout::kPanels) {
    std::vector<KvMarksView::Mark> marks;
    for (const auto& [tag, by] : amountsOf(*findRow(row.knob)->panel)) {
      marks.push_back({&effect.value(tag).bipolar, colorOf(by.tint)});
    }
    marks.push_back(
        {&isLearned[static_cast<std::size_t>(row.knob)], colorOf(pictures::kControllerTint)});
    const int right = row.marks.x + static_cast<int>(marks.size()) * KvMarksView::kPitch;
    add(make<KvMarksView>({row.marks.x, row.marks.y, right, row.marks.y + KvMarksView::kDot}, -1,
                          marks),
        groupOfKnob(row.knob));
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
