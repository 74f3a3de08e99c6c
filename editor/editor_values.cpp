// What the controls are called and how they stand, for the strip, for typing, and for whoever reads
// the window to a user.

#include <algorithm>
#include <cmath>

#include "core/parameter_text.hpp"
#include "editor/making.hpp"
#include "editor/modulators.hpp"
#include "editor/palette_color.hpp"
#include "editor/value_field.hpp"
#include "editor/value_strip.hpp"
#include "state/library_record.hpp"
#include "toolkit/button.hpp"
#include "toolkit/knob.hpp"
#include "toolkit/mouse_area.hpp"
#include "toolkit/option_menu.hpp"
#include "toolkit/panel.hpp"
#include "toolkit/table_view.hpp"

namespace zum {
namespace {

/// Null for a tag that is no amount.
const KnobPanel* panelOfAmount(int tag) {
  for (const layout::Panel& panel : layout::kPanels) {
    const KnobPanel* const knob = findRow(panel.knob)->panel;
    if (std::ranges::find(knob->amounts, tag) != knob->amounts.end()) return knob;
  }
  return nullptr;
}

std::string nameOf(int tag, const ParameterRow* row) {
  switch (tag) {
    case tag::presetMenu: return "Preset";
    case tag::manual: return "Manual";
    case tag::mouseArea: return "Page";
    default: return row != nullptr ? row->title.data() : "";
  }
}

}  // namespace

std::string KvUniClientEditor::valueText(const KvControl& control) const {
  if (const auto* const menu = dynamic_cast<const KvOptionMenu*>(&control);
      menu != nullptr && control.getTag() == tag::presetMenu) {
    return menu->currentText();
  }
  if (const auto* const steps = dynamic_cast<const KvTableView*>(&control)) {
    return steps->stepText();
  }
  const int shown = control.getTag() == tag::mouseArea ? tag::modChoice : control.getTag();
  const ParameterRow* const row = findRow(shown);
  if (row != nullptr && (row->id >= 0 || row->unit == Unit::steps)) {
    return parameterText(*row, loadShared(effect.value(shown).raw));
  }
  return control.getValue() != 0.0F ? "On" : "Off";
}

std::optional<ControlInfo> KvUniClientEditor::describe(const KvControl& control) const {
  ControlInfo info;
  info.tag = control.getTag();
  info.rect = control.getViewSize();
  info.isFocused = control.hasFocus();
  info.isShown = control.isShown();
  if (control.isContainer()) {
    const auto panel = std::ranges::find(panels, &control);
    const auto place = static_cast<std::size_t>(panel - panels.begin());
    info.role = ControlRole::panel;
    info.name =
        panel != panels.end() ? findRow(layout::kPanels[place].knob)->title.data() : "About";
    info.name += " panel";
    return info;
  }
  const bool isUsed = control.getMouseEnabled() && control.isVisible();
  if (!isUsed || getControl(info.tag) != &control) return {};
  const auto* const button = dynamic_cast<const KvButton*>(&control);
  const auto* const knob = dynamic_cast<const KvKnob*>(&control);
  if (knob != nullptr) {
    info.role = knob->horizontal ? ControlRole::slider : ControlRole::knob;
  } else if (button != nullptr) {
    info.role = button->mode == ButtonMode::momentary ? ControlRole::button : ControlRole::toggle;
  } else if (dynamic_cast<const KvOptionMenu*>(&control) != nullptr) {
    info.role = ControlRole::menu;
  } else if (dynamic_cast<const KvMouseArea*>(&control) != nullptr) {
    info.role = ControlRole::tabs;
  } else if (dynamic_cast<const KvTableView*>(&control) != nullptr) {
    info.role = ControlRole::steps;
  } else {
    return {};
  }
  info.name = nameOf(info.tag, findRow(info.tag));
  info.value = valueText(control);
  return info;
}

std::string KvUniClientEditor::infoOf(const KvControl& control) {
  const std::optional<ControlInfo> info = describe(control);
  if (!info) return AEffGUIEditor::infoOf(control);
  return info->value.empty() ? info->name : info->name + ' ' + info->value;
}

std::vector<ControlInfo> KvUniClientEditor::controlTree() const {
  const std::lock_guard turn(windowTurn());
  std::vector<ControlInfo> tree;
  if (getFrame() == nullptr) return tree;
  ControlInfo window;
  window.name = libraryRecord().product;
  window.rect = windowRect();
  window.isShown = true;
  tree.push_back(window);
  for (const Held<CView>& view : getFrame()->children()) {
    const auto* const control = dynamic_cast<const KvControl*>(view.get());
    std::optional<ControlInfo> info = control != nullptr ? describe(*control) : std::nullopt;
    if (!info) continue;
    info->parent = 0;
    tree.push_back(*std::move(info));
    if (!control->isContainer()) continue;
    const auto parent = static_cast<int>(tree.size()) - 1;
    for (const auto& child : static_cast<const KvViewContainer*>(control)->children()) {
      std::optional<ControlInfo> inside = describe(*child.get());
      if (!inside) continue;
      inside->parent = parent;
      inside->isShown = inside->isShown && control->isShown();
      tree.push_back(*std::move(inside));
    }
  }
  return tree;
}

// A modulator that is brought in shows also while it rests, so that nothing comes and goes.
std::string KvUniClientEditor::movedText(const ParameterRow& row) const {
  constexpr float kNothing = 1e-4F;  // a reset leaves a little less
  const auto ring = std::ranges::find(layout::kRings, row.tag, &layout::Ring::knob);
  if (ring == layout::kRings.end()) return "";
  const bool isMoved = std::ranges::any_of(row.panel->amounts, [this](int tag) {
    return std::fabs(loadShared(effect.value(tag).bipolar)) > kNothing;
  });
  return isMoved ? parameterText(row, loadShared(effect.signal().display().*ring->shown)) : "";
}

// Of what the pointer uses, knobs and sliders are read; of what keys use, everything. A strip that
// asks for a controller goes on asking.
Reading KvUniClientEditor::reading() const {
  const KvFrame& shown = *getFrame();
  const KvControl* control = shown.controlInUse();
  if (dynamic_cast<const KvKnob*>(control) == nullptr) control = shown.keyFocus().get();
  if (KvControl* const typed = valueField->getTarget(); typed != nullptr) control = typed;
  const bool speaksItself = effect.learning().load(std::memory_order_relaxed) >= 0 ||
                            effect.muteRequest.load(std::memory_order_relaxed);
  const std::optional<ControlInfo> info =
      control != nullptr && !speaksItself ? describe(*control) : std::nullopt;
  if (!info) return {};
  Reading read;
  read.name = upperCase(info->name);
  if (info->role != ControlRole::button) read.value = info->value;
  const ParameterRow* const row = findRow(info->tag);
  const bool isNamed = info->role != ControlRole::menu && row != nullptr && namedValues(*row) > 0;
  if (isNamed || info->role == ControlRole::tabs) read.value = upperCase(read.value);
  if (const KnobPanel* const panel = panelOfAmount(info->tag)) {
    read.name = upperCase(findRow(panel->knob)->title.data());
    for (const auto& [tag, by] : amountsOf(*panel)) {
      if (tag != info->tag) continue;
      read.by = by.brief;
      read.byColor = colorOf(by.tint);
    }
  } else if (row != nullptr && info->role == ControlRole::knob) {
    read.moved = movedText(*row);
  }
  return read;
}

void KvUniClientEditor::addValueViews() {
  add(make<ValueStrip>(getControl(tag::statusStrip)->getViewSize(), -1,
                       [this] { return reading(); }),
      layout::always);
  valueField = make<ValueField>({}, -1);
  getFrame()->addView(valueField);
}

bool KvUniClientEditor::typeValue(KvControl& control) {
  const ParameterRow* const row = findRow(control.getTag());
  if (row == nullptr || valueField == nullptr) return false;
  valueField->ask(control, valueText(control),
                  [row](const std::string& text) { return parameterValue(*row, text); });
  return true;
}

}  // namespace zum
