// What a control's report does.

#include <algorithm>
#include <chrono>
#include <cmath>

#include "editor/layout.hpp"
#include "editor/uni_client_editor.hpp"
#include "platform/random_source.hpp"
#include "toolkit/mouse_area.hpp"
#include "toolkit/option_menu.hpp"
#include "toolkit/panel.hpp"

namespace zum {
namespace {

/// What turns a control's count into a parameter's 0 to 1.
float factorOf(int tag) {
  const int row = rowOfTag(tag);
  if (row < 0) return 1.0F;
  switch (tag) {
    case 60:
    case 61: return 0.1F;
    case 15: return 0.2000100016593933F;  // a hair above a fifth: the step is cut, not rounded
    case 165: return 0.33333334F;
    case 12:
    case 62:
    case 65:
    case 222: return 0.5F;
    default: break;
  }
  const Rule rule = parameterRows()[static_cast<std::size_t>(row)].rule;
  return rule == Rule::resetButton ? 0.5F : 1.0F;
}

/// The host hears of these, and records them.
bool isAutomated(int tag) { return tag <= 52 || tag == 58 || tag == 59; }

enum class Act : std::uint8_t {
  setsParameter,
  closesPanel,
  learnsOrClears,
  choosesPreset,
  choosesFolder,
  resetsFolder,
  nextProgram,
  previousProgram,
  pressesTabs,
  opensAbout,
  opensManual,
  resetsAmounts,
  learnMenu,
};

Act actOf(int tag) {
  switch (tag) {
    case 162: return Act::choosesPreset;
    case 163: return Act::pressesTabs;
    case 203: return Act::choosesFolder;
    case 205: return Act::resetsFolder;
    case 209: return Act::nextProgram;
    case 210: return Act::previousProgram;
    case 221: return Act::opensAbout;
    case KvUniClientEditor::kManualTag: return Act::opensManual;
    case KvUniClientEditor::kLearnMenuTag: return Act::learnMenu;
    default: break;
  }
  for (const layout::Panel& panel : layout::kPanels) {
    if (tag == panel.close) return Act::closesPanel;
    if (tag == panel.learn || tag == panel.clear) return Act::learnsOrClears;
  }
  const int row = rowOfTag(tag);
  return row >= 0 && !parameterRows()[static_cast<std::size_t>(row)].resets.empty()
             ? Act::resetsAmounts
             : Act::setsParameter;
}

}  // namespace

void KvUniClientEditor::send(int tag, float value) {
  if (isAutomated(tag)) {
    effect.setParameterAutomated(tag, value);
  } else {
    effect.setParameter(tag, value);
  }
}

// A reset is the effect's own affair; the host hears of each amount that it moves, as of one that a
// hand moves.
void KvUniClientEditor::tellOfReset(const ParameterRow& row) {
  constexpr float kMiddle = 0.5F;
  constexpr float kMark = 2e-5F;  // a reset leaves less than this behind
  for (const std::int16_t tag : row.resets) {
    if (std::fabs(loadShared(effect.value(tag).raw) - kMiddle) < kMark) continue;
    effect.beginEdit(tag);
    effect.setParameterAutomated(tag, kMiddle);
    effect.endEdit(tag);
  }
}

// A host that hears of a value may close the window from inside of its call.
void KvUniClientEditor::valueChanged(CControl& control) {
  const int tag = control.getTag();
  const float value = control.getValue();
  control.setDirty(true);
  switch (actOf(tag)) {
    case Act::setsParameter: return send(tag, value * factorOf(tag));
    case Act::closesPanel: return closePanel(tag);
    case Act::learnsOrClears:
      return learnOrClear(parameterRows()[static_cast<std::size_t>(rowOfTag(tag))], value);
    case Act::choosesPreset: return choosePreset(static_cast<KvOptionMenu&>(control));
    case Act::choosesFolder:
      if (value == 0.0F)
        effect.choosePresetRoot([this] { refreshPresetMenus(preset::kExtension); });
      return;
    case Act::resetsFolder:
      if (value != 0.0F) return;
      effect.resetPresetRoot();
      return refreshPresetMenus(preset::kExtension);
    case Act::nextProgram:
      if (value == 1.0F) stepProgram(1);
      return;
    case Act::previousProgram:
      if (value == 1.0F) stepProgram(-1);
      return;
    case Act::pressesTabs: return pressTabs(static_cast<KvMouseArea&>(control));
    case Act::opensAbout:
      if (value == 0.0F) raiseAbout();
      return;
    case Act::opensManual:
      if (value == 0.0F) openManual();
      return;
    case Act::resetsAmounts:
      tellOfReset(parameterRows()[static_cast<std::size_t>(rowOfTag(tag))]);
      // A host that closed the window meanwhile has let go of the button.
      return send(tag, isOpen() ? value * factorOf(tag) : 0.0F);
    case Act::learnMenu: return chooseFromLearnMenu(control);
  }
}

// The control pass follows the strip while it is held. A click may be shorter than a block, and no
// block may be running: so the page is sent from here, too.
void KvUniClientEditor::pressTabs(const KvMouseArea& area) {
  effect.setMouseArea(area.published());
  effect.setParameter(area.getTag(), area.getValue());
  if (area.published()[KvMouseArea::left] > 0.0F) effect.setParameter(165, area.getValue());
}

void KvUniClientEditor::closePanel(int closeTag) {
  for (std::size_t i = 0; i < panels.size(); ++i) {
    if (layout::kPanels[i].close == closeTag) panels[i]->closePopup();
  }
}

void KvUniClientEditor::learnOrClear(const ParameterRow& row, float value) {
  const bool isLearn = std::any_of(layout::kPanels.begin(), layout::kPanels.end(),
                                   [&](const auto& panel) { return panel.learn == row.tag; });
  if (!isLearn) {
    if (value == 0.0F) effect.clearBindings(row.learnTarget);
  } else if (value == 1.0F) {
    effect.beginLearn(row.learnTarget);
  } else {
    effect.endLearn();
  }
}

void KvUniClientEditor::chooseFromLearnMenu(CControl& menu) {
  const int target = static_cast<KvOptionMenu&>(menu).getUserTag();
  if (menu.getValue() == 0.0F) {
    effect.beginLearn(target);
  } else if (menu.getValue() == 1.0F) {
    effect.clearBindings(target);
  }
}

void KvUniClientEditor::choosePreset(KvOptionMenu& menu) {
  showPresetNameAnew();  // the menu shows what was chosen, which may be refused or cancelled
  if (menu.getValue() == 0.0F) {
    return effect.savePreset(nullptr, 0, preset::kExtension, true, [this] {
      refreshPresetMenus(preset::kExtension);
      if (isOpen()) getFrame()->setDirty(true);
    });
  }
  std::string file;
  if (!menu.getFileName(file, preset::kExtension)) return;
  effect.loadPresetFile(file.c_str(), 0, preset::kExtension, true);
  showPresetNameAnew();
  if (isOpen()) getFrame()->setDirty(true);
}

void KvUniClientEditor::stepProgram(int direction) {
  effect.setProgram(effect.getProgram() + direction);
  effect.updateDisplay();
}

bool KvUniClientEditor::keyPressed(const WindowKey& key) {
  constexpr std::uint8_t kDice = keys::kF1 + 1;
  if (key.virt != kDice) return false;
  if (isOpen() && getFrame()->isHolding()) return true;  // one edit of a knob at a time
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  SystemRandom random(static_cast<std::uint32_t>(now / std::chrono::microseconds(1)));
  effect.randomise(random);
  return true;
}

}  // namespace zum
