// What a control's report does.

#include <chrono>
#include <cmath>

#include "editor/layout.hpp"
#include "editor/uni_client_editor.hpp"
#include "editor/window_menu.hpp"
#include "platform/message_box.hpp"
#include "platform/random_source.hpp"
#include "preset_text/sound_text.hpp"
#include "state/library_record.hpp"
#include "toolkit/dialogs/window_services.hpp"
#include "toolkit/mouse_area.hpp"
#include "toolkit/option_menu.hpp"
#include "toolkit/panel.hpp"

namespace zum {
namespace {

enum class Act : std::uint8_t {
  none,
  setsParameter,
  closesPanel,
  learns,
  clears,
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
  windowMenu,
};

Act actOf(int tag, const ParameterRow* row) {
  switch (tag) {
    case tag::presetMenu: return Act::choosesPreset;
    case tag::mouseArea: return Act::pressesTabs;
    case tag::choosePresetFolder: return Act::choosesFolder;
    case tag::resetPresetFolder: return Act::resetsFolder;
    case tag::nextProgram: return Act::nextProgram;
    case tag::previousProgram: return Act::previousProgram;
    case tag::about: return Act::opensAbout;
    case tag::manual: return Act::opensManual;
    case tag::learnMenu: return Act::learnMenu;
    case tag::windowMenu: return Act::windowMenu;
    default: break;
  }
  if (row == nullptr) return Act::none;
  if (row->panel != nullptr) {
    if (tag == row->panel->buttons.close) return Act::closesPanel;
    if (tag == row->panel->buttons.learn) return Act::learns;
    if (tag == row->panel->buttons.clear) return Act::clears;
  }
  return row->resets.empty() ? Act::setsParameter : Act::resetsAmounts;
}

/// -1 to undo, 1 to redo, 0 for any other key.
int wayThroughHistory(const WindowKey& key) {
  const bool shift = (key.modifier & keys::kShiftBit) != 0;
  if ((key.modifier & ~keys::kShiftBit) != keys::kControlBit) return 0;
  if (key.character == 'z' || key.character == 'Z') return shift ? 1 : -1;
  return key.character == 'y' && !shift ? 1 : 0;
}

}  // namespace

void KvUniClientEditor::controlBeginEdit(CControl& control) {
  restTicks = 0;
  effect.beginEdit(control.getTag());
  if (isOpen() && getFrame()->isRepeating()) effect.mergeStep();
}

void KvUniClientEditor::controlEndEdit(CControl& control) {
  constexpr int kRest = 15;  // ticks: half a second
  restTicks = kRest;
  effect.endEdit(control.getTag());
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
  const ParameterRow* const row = findRow(tag);
  control.setDirty(true);
  switch (actOf(tag, row)) {
    case Act::none: return;
    case Act::setsParameter: return effect.setByUser(tag, value * row->perCount);
    case Act::closesPanel: return closePanel(row->panel->knob);
    case Act::learns:
      if (value == 1.0F) {
        effect.beginLearn(row->panel->learns);
      } else {
        effect.endLearn();
      }
      return;
    case Act::clears:
      if (value == 0.0F) effect.clearBindings(row->panel->learns);
      return;
    case Act::choosesPreset: return choosePreset(static_cast<KvOptionMenu&>(control));
    case Act::choosesFolder:
      if (value == 0.0F) choosePresetFolder();
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
      if (value != 0.0F) effect.mergeStep();  // with the release
      tellOfReset(*row);
      // A host that closed the window meanwhile has let go of the button.
      return effect.setByUser(tag, isOpen() ? value * row->perCount : 0.0F);
    case Act::learnMenu: return chooseFromLearnMenu(control);
    case Act::windowMenu:
      return WindowMenu{effect, *this}.act(static_cast<KvOptionMenu&>(control).getChosenValue());
  }
}

// The control pass follows the strip while it is held. A click may be shorter than a block, and no
// block may be running: so the page is sent from here, too.
void KvUniClientEditor::pressTabs(const KvMouseArea& area) {
  effect.setMouseArea(area.published());
  effect.setParameter(area.getTag(), area.getValue());
  if (area.published()[KvMouseArea::left] > 0.0F)
    effect.setParameter(tag::modChoice, area.getValue());
}

void KvUniClientEditor::closePanel(int knob) {
  for (std::size_t i = 0; i < panels.size(); ++i) {
    if (layout::kPanels[i].knob == knob) panels[i]->closePopup();
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

void KvUniClientEditor::choosePresetFolder() {
  effect.choosePresetRoot([this] { refreshPresetMenus(preset::kExtension); });
}

void KvUniClientEditor::playAnyPreset() {
  effect.randomPreset();
  effect.updateDisplay();
}

void KvUniClientEditor::revert() {
  effect.revertToStored();
  effect.updateDisplay();
}

void KvUniClientEditor::copySoundText() {
  std::string text = soundText(effect);
  if (text.empty() || !WindowServices::get().clipboard().give(std::move(text))) {
    showMessage(libraryRecord().product, "The sound cannot be copied.");
  }
}

// A question that is open is taken back by close().
void KvUniClientEditor::pasteSoundText() {
  asksClipboard = true;
  const auto answer = [this, alive = std::weak_ptr(life)](const std::optional<std::string>& text) {
    const std::lock_guard turn(windowTurn());
    if (alive.expired()) return;  // windows share the clipboard, and one that asks may go
    const std::string trouble = text ? pasteSound(effect, *text) : "There is no text to paste.";
    if (!trouble.empty()) showMessage(libraryRecord().product, trouble.c_str());
  };
  WindowServices::get().clipboard().ask(this, answer);
}

void KvUniClientEditor::rollDice() {
  if (isOpen() && getFrame()->isHolding()) return;  // one edit of a knob at a time
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  SystemRandom random(static_cast<std::uint32_t>(now / std::chrono::microseconds(1)));
  effect.randomise(random);
}

bool KvUniClientEditor::openWindowMenu(CPoint where, bool byPress) {
  if (windowMenu == nullptr) return false;
  windowMenu->setRows(WindowMenu{effect, *this}.rows());
  windowMenu->openAt(where, byPress);
  return true;
}

// At the end of the history the keys are no host's either: it would go on in the project. The menu
// comes up under the pointer, or, while that is elsewhere, in the middle.
bool KvUniClientEditor::keyPressed(const WindowKey& key) {
  if (const int way = wayThroughHistory(key); way != 0) {
    (void)(way < 0 ? effect.undo() : effect.redo());
    return true;
  }
  constexpr std::uint8_t kDice = keys::kF1 + 1;
  constexpr std::uint8_t kMenu = keys::kF1 + 9;  // with Shift
  if (key.virt == kDice) {
    rollDice();
    return true;
  }
  if (key.virt != kMenu || key.modifier != keys::kShiftBit || !isOpen()) return false;
  if (getFrame()->isHolding()) return true;
  const CRect& size = windowRect();
  const CPoint middle{size.width() / 2, size.height() / 2};
  return openWindowMenu(getFrame()->pointerPosition().value_or(middle), false);
}

}  // namespace zum
