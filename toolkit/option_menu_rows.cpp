// The rows of a menu, and what becomes of a choice.

#include <algorithm>
#include <iostream>
#include <utility>
#include <vector>

#include "toolkit/control_frame.hpp"
#include "toolkit/menu_style.hpp"
#include "toolkit/option_menu.hpp"

namespace zum {

void KvOptionMenu::showSelected() {
  CControl::setValue(static_cast<float>(rows.selected()));
  setDirty(true);
}

bool KvOptionMenu::insert(KvOptionMenuEntryInfo row, int index) {
  const int before = rows.selected();
  if (!rows.tryInsert(std::move(row), index)) return false;
  if (rows.selected() != before) showSelected();
  setDirty(true);
  return true;
}

bool KvOptionMenu::addEntry(const std::string& text, int index, bool isHeader) {
  KvOptionMenuEntryInfo row;
  row.text = text;
  row.isHeader = isHeader;
  return insert(std::move(row), index);
}

bool KvOptionMenu::addEntry(std::unique_ptr<MenuRows> subMenu, const std::string& text) {
  KvOptionMenuEntryInfo row;
  row.text = text;
  row.subMenu = std::move(subMenu);
  return insert(std::move(row), -1);
}

bool KvOptionMenu::addEntry(const std::string& text, int index, long userValue) {
  KvOptionMenuEntryInfo row;
  row.text = text;
  row.userEntry = std::make_unique<KvOptionMenuUserEntryLong>(userValue);
  return insert(std::move(row), index);
}

int KvOptionMenu::getCurrent(std::string& text) const {
  if (rows.size() == 0) {
    text = "Empty";
    return -1;
  }
  text = rows.has(rows.selected()) ? rows[rows.selected()].text : "";
  return rows.selected();
}

bool KvOptionMenu::getEntry(int index, std::string& text) const {
  if (rows.has(index)) text = rows[index].text;
  return rows.has(index);
}

bool KvOptionMenu::setEntry(int index, const std::string& text) {
  if (!rows.has(index)) return false;
  rows[index].text = text;
  setDirty(true);
  return true;
}

bool KvOptionMenu::removeEntry(int index) {
  if (!rows.has(index)) return false;
  closePopup();  // what is open may go with the row
  rows.remove(index);
  showSelected();
  return true;
}

void KvOptionMenu::removeAllEntries() {
  closePopup();
  rows.clear();
  fixedCount = 0;
  setDirty(true);
}

void KvOptionMenu::setEntryEnabled(int index, bool enabled) {
  if (rows.has(index)) rows[index].enabled = enabled;
}

const KvOptionMenuUserEntry* KvOptionMenu::getUserEntry(int index) const {
  return rows.has(index) ? rows[index].userEntry.get() : nullptr;
}

void KvOptionMenu::setRows(MenuRows fresh) {
  removeAllEntries();
  rows = std::move(fresh);
}

void KvOptionMenu::setCurrent(int index) {
  rows.select(index);
  chosenPath.clear();
  shownText.clear();
  showSelected();
}

void KvOptionMenu::setShownText(std::string text, std::string path) {
  shownPath = std::move(path);
  if (text == shownText) return;
  shownText = std::move(text);
  setDirty(true);
}

std::string KvOptionMenu::currentText() const {
  if (!shownText.empty()) return shownText;
  return rows.has(rows.selected()) ? rows[rows.selected()].text : "MENU";
}

void KvOptionMenu::choose(const MenuChoice& shown) {
  const MenuChoice choice = shown.rows->meant(shown.row);
  const auto* const carried =
      dynamic_cast<const KvOptionMenuUserEntryLong*>((*choice.rows)[choice.row].userEntry.get());
  chosenValue = carried != nullptr ? carried->value : -1;
  if (choice.rows != &rows) return chooseInSubMenu(choice);
  setCurrent(choice.row);
  closePopup();
  reportChoice();
}

void KvOptionMenu::chooseInSubMenu(const MenuChoice& choice) {
  choice.rows->select(choice.row);
  chosenPath = FolderRows::path(*choice.rows, choice.row, folder.getExtension());
  shownText = (*choice.rows)[choice.row].text;
  rows.select(fixedCount);
  CControl::setValue(static_cast<float>(fixedCount));
  setDirty(true);
  closePopup();
  reportChoice();
}

// Who listens may fill the menu anew, or close the window.
void KvOptionMenu::reportChoice() {
  remember();
  const Held<KvOptionMenu> alive(this);
  const bool isFile = hasStyle(menu_style::kFolder) && getValue() >= static_cast<float>(fixedCount);
  if (editBracket) beginEdit();
  if (isFile) getFrame().setCursor(WindowCursor::hourglass);
  const auto end = [&] {
    if (isFile) getFrame().setCursor(WindowCursor::arrow);
    if (editBracket) endEdit();
  };
  try {
    report();
    if (onSelect != nullptr) onSelect->menuChose(static_cast<int>(getValue()));
  } catch (...) {
    end();
    throw;
  }
  end();
}

void KvOptionMenu::stepInRing(int direction) {
  const int count = rows.size() - fixedCount;
  if (count < 1) return;
  const int from = std::max(rows.selected() - fixedCount, direction > 0 ? -1 : 0);
  for (int i = 1; i <= count; ++i) {
    const int row = fixedCount + (((from + direction * i) % count) + count) % count;
    if (!rows[row].isChoice()) continue;
    setCurrent(row);
    return reportChoice();
  }
}

void KvOptionMenu::stepPreset(int direction) {
  std::vector<MenuChoice> places;
  rows.addChoices(places, fixedCount, hasStyle(menu_style::kStepsThroughSubMenus));
  if (places.empty()) return;
  std::string now;
  const bool byPath = hasStyle(menu_style::kFolder) && getFileName(now, folder.getExtension());
  const auto at = std::ranges::find_if(places, [&](const MenuChoice& place) {
    return byPath ? FolderRows::path(*place.rows, place.row, folder.getExtension()) == now
                  : place.rows == &rows && place.row == rows.selected();
  });
  const auto last = static_cast<int>(places.size()) - 1;
  const int from =
      at != places.end() ? static_cast<int>(at - places.begin()) : (direction > 0 ? -1 : last + 1);
  const MenuChoice& to = places[static_cast<std::size_t>(std::clamp(from + direction, 0, last))];
  if (at != places.end() && &to == &*at) return;
  choose(to);
}

// They speak with their release, Load and Save with their press.
void KvOptionMenu::valueChanged(CControl& control) {
  const bool pressed = control.getValue() != 0.0F;
  switch (control.getTag()) {
    case kNextTag:
    case kPreviousTag: {
      const int direction = control.getTag() == kNextTag ? 1 : -1;
      if (pressed) return;
      return hasStyle(menu_style::kSteps) ? stepPreset(direction) : stepInRing(direction);
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
