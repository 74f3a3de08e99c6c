#include "toolkit/option_menu.hpp"

#include <cmath>
#include <iostream>
#include <utility>

#include "toolkit/control_frame.hpp"

namespace zum {
namespace {

constexpr float kLargestValue = 20000.0F;  // rows, and the tags of the buttons

}  // namespace

KvOptionMenu::KvOptionMenu(const CRect& rect, CControlListener* controlListener, int controlTag,
                           KvFrame& owner, std::string menuName, std::uint32_t menuStyle)
    : KvControl(rect, controlListener, controlTag, owner),
      name(std::move(menuName)),
      style(menuStyle),
      userTag(controlTag) {
  setMin(-1.0F);
  setMax(kLargestValue);
}

KvOptionMenu::~KvOptionMenu() { removeRows(); }

// A list whose rows go may live on for a while, held by what it is just telling.
void KvOptionMenu::removeRows() {
  for (const KvOptionMenuEntryInfo& info : entries) orphan(info);
  entries.clear();
}

void KvOptionMenu::orphan(const KvOptionMenuEntryInfo& info) {
  if (!info.subMenu) return;
  info.subMenu->parentMenu = nullptr;
  info.subMenu->setListener(nullptr);
}

bool KvOptionMenu::insert(KvOptionMenuEntryInfo info, int index) {
  if (entries.size() >= kMostRows || index < -1 || index > getNbEntries()) return false;
  if (index < 0) index = getNbEntries();
  entries.insert(entries.begin() + index, std::move(info));
  if (selectedEntry >= index) {
    ++selectedEntry;
    CControl::setValue(static_cast<float>(selectedEntry));
  }
  setDirty(true);
  return true;
}

bool KvOptionMenu::addEntry(const std::string& text, int index, bool isHeader) {
  KvOptionMenuEntryInfo info;
  info.text = text;
  info.isHeader = isHeader;
  return insert(std::move(info), index);
}

bool KvOptionMenu::addEntry(KvOptionMenu* subMenu, const std::string& text) {
  KvOptionMenuEntryInfo info;
  info.subMenu = Held<KvOptionMenu>(subMenu);
  info.text = text;
  subMenu->parentMenu = this;
  subMenu->setListener(this);
  return insert(std::move(info), -1);
}

bool KvOptionMenu::addEntry(const std::string& text, int index, long userValue) {
  KvOptionMenuEntryInfo info;
  info.text = text;
  info.userEntry = std::make_unique<KvOptionMenuUserEntryLong>(userValue);
  return insert(std::move(info), index);
}

int KvOptionMenu::getCurrent(std::string& text) const {
  if (entries.empty()) {
    text = "Empty";
    return -1;
  }
  text = has(selectedEntry) ? entry(selectedEntry).text : "";
  return selectedEntry;
}

int KvOptionMenu::getEntryIndex(std::string_view text) const {
  for (int i = 0; i < getNbEntries(); ++i) {
    if (entry(i).text == text) return i;
  }
  return -1;
}

bool KvOptionMenu::getEntry(int index, std::string& text) const {
  if (has(index)) text = entry(index).text;
  return has(index);
}

bool KvOptionMenu::setEntry(int index, const std::string& text) {
  if (!has(index)) return false;
  entry(index).text = text;
  setDirty(true);
  return true;
}

bool KvOptionMenu::removeEntry(int index) {
  if (!has(index)) return false;
  closePopup();  // what is open may go with the row
  orphan(entry(index));
  entries.erase(entries.begin() + index);
  if (selectedEntry > index) --selectedEntry;
  if (selectedEntry >= getNbEntries()) selectedEntry = getNbEntries() - 1;
  CControl::setValue(static_cast<float>(selectedEntry));
  setDirty(true);
  return true;
}

void KvOptionMenu::removeAllEntries() {
  closePopup();
  removeRows();
  selectedEntry = -1;
  fixedCount = 0;
  setDirty(true);
}

void KvOptionMenu::setEntryEnabled(int index, bool enabled) {
  if (has(index)) entry(index).enabled = enabled;
}

void KvOptionMenu::setEntryMarked(int index, bool marked) {
  if (has(index)) entry(index).marked = marked;
}

const KvOptionMenuUserEntry* KvOptionMenu::getUserEntry(int index) const {
  return has(index) ? entry(index).userEntry.get() : nullptr;
}

void KvOptionMenu::setCurrent(int index) {
  selectedEntry = has(index) ? index : -1;
  chosenPath.clear();
  shownText.clear();
  CControl::setValue(static_cast<float>(selectedEntry));
  setDirty(true);
}

void KvOptionMenu::setValue(float newValue) {
  setCurrent(newValue >= 0.0F && newValue < kLargestValue ? static_cast<int>(newValue) : -1);
}

void KvOptionMenu::setShownText(std::string text) {
  if (text == shownText) return;
  shownText = std::move(text);
  setDirty(true);
}

std::string KvOptionMenu::currentText() const {
  if (!shownText.empty()) return shownText;
  return has(selectedEntry) ? entry(selectedEntry).text : "MENU";
}

void KvOptionMenu::idleStep(int /*flag*/) {
  if (isOpen && !isShown()) closePopup();  // its page went away
  if (isOpen) endDetours();
  if (isOpen || closing) return;
  companionTick();
  if (!boundIndex) return;
  const float index = boundIndex.raw();
  const int row = index >= 0.0F && index < kLargestValue ? static_cast<int>(index) : -1;
  if (row != selectedEntry) setCurrent(row);
}

// Buttons beside the menu speak with their release, Load and Save with their press.
void KvOptionMenu::valueChanged(CControl& control) {
  if (const auto* const sub = dynamic_cast<KvOptionMenu*>(&control)) {
    std::string path;
    if (sub->getFileName(path, sub->fileExtension)) choosePath(path, sub->currentText());
    return;
  }
  const bool pressed = control.getValue() != 0.0F;
  switch (control.getTag()) {
    case kNextTag:
    case kPreviousTag: {
      const int direction = control.getTag() == kNextTag ? 1 : -1;
      if (pressed) return;
      if ((style & kSteps) != 0) return stepPreset(direction);
      return stepInRing(direction);
    }
    case kLoadTag:
    case kSaveTag:
      if (!pressed) return;
      CControl::setValue(static_cast<float>(control.getTag()));
      report();
      if (control.getTag() == kSaveTag) rescan(nullptr);
      return;
    default:
      std::cerr << "unknown value in KvOptionMenu::valueChanged : val:" << control.getTag() << '\n';
  }
}

}  // namespace zum
