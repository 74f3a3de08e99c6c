#include "toolkit/option_menu.hpp"

#include <algorithm>
#include <iostream>
#include <utility>
#include <vector>

#include "toolkit/control_frame.hpp"
#include "toolkit/menu_style.hpp"

namespace zum {
namespace {

constexpr float kLargestValue = 20000.0F;  // rows, and the tags of the buttons

int rowOf(float value) {
  return value >= 0.0F && value < kLargestValue ? static_cast<int>(value) : -1;
}

/// For folders: files go by the name that is shown, as arrows and hosts load them, too. It also
/// marks the way to one in a sub-menu.
bool leadsTo(const MenuRows& rows, int row, int fixedCount, const std::string& name) {
  const MenuRows* const inner = rows[row].subMenu.get();
  if (inner == nullptr) return row >= fixedCount && rows[row].text == name;
  for (int i = 0; i < inner->size(); ++i) {
    if (leadsTo(*inner, i, 0, name)) return true;
  }
  return false;
}

}  // namespace

KvOptionMenu::KvOptionMenu(const CRect& rect, CControlListener* controlListener, int controlTag,
                           KvFrame& owner, std::string menuName, std::uint32_t menuStyle)
    : KvControl(rect, controlListener, controlTag, owner),
      name(std::move(menuName)),
      style(menuStyle),
      folder(menuStyle),
      userTag(controlTag) {
  setMin(-1.0F);
  setMax(kLargestValue);
}

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

void KvOptionMenu::setCurrent(int index) {
  rows.select(index);
  chosenPath.clear();
  shownText.clear();
  showSelected();
}

void KvOptionMenu::setValue(float newValue) { setCurrent(rowOf(newValue)); }

void KvOptionMenu::setShownText(std::string text) {
  if (text == shownText) return;
  shownText = std::move(text);
  setDirty(true);
}

std::string KvOptionMenu::currentText() const {
  if (!shownText.empty()) return shownText;
  return rows.has(rows.selected()) ? rows[rows.selected()].text : "MENU";
}

void KvOptionMenu::setFolder(const std::string& path, std::string extension) {
  folder.setExtension(std::move(extension));
  rescan(path.c_str());
}

void KvOptionMenu::rescan(const char* path) {
  if (!hasStyle(menu_style::kFolder)) return;
  if (path != nullptr && folder.setFolder(path)) chosenPath.clear();
  removeAllEntries();
  fixedCount = folder.read(rows);
}

bool KvOptionMenu::getFileName(std::string& path, const std::string& extension) const {
  if (!chosenPath.empty()) {
    path = chosenPath;
    return true;
  }
  const int row = rows.selected();
  if (!rows.has(row) || row < fixedCount || rows[row].subMenu != nullptr) return false;
  path = FolderRows::path(rows, row, extension);
  return true;
}

void KvOptionMenu::choose(const MenuChoice& choice) {
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

void KvOptionMenu::draw(CDrawContext& context) {
  const CRect& size = getViewSize();
  const bool isPicture = closedBitmap != nullptr && hasStyle(menu_style::kPictures);
  if (closedBitmap != nullptr && !size.isEmpty()) {
    const int row = isPicture ? std::max(rows.selected(), 0) : 0;
    closedBitmap->draw(context, size, {0, row * look.itemHeight});
  }
  if (!isPicture && !size.isEmpty()) {
    context.setFont(font, look.fontSize);
    context.setFontColor(textColor);
    context.drawString(
        currentText(),
        {size.left + kMenuTextInset, size.top, size.right - kMenuTextInset, size.bottom}, false,
        TextAlign::left);
  }
  KvControl::draw(context);
  if (list == nullptr) return;
  // over everything, the caption too
  list->draw(context, [this](const MenuRows& shown, int row) { return isInUse(shown, row); });
}

bool KvOptionMenu::isInUse(const MenuRows& shown, int row) const {
  if (!hasStyle(menu_style::kFolder)) return row == shown.selected() && shown[row].isChoice();
  return leadsTo(shown, row, &shown == &rows ? fixedCount : 0, currentText());
}

CRect KvOptionMenu::drawnArea() const {
  const CRect closed = KvControl::drawnArea();
  return list != nullptr ? closed.join(list->drawnArea()) : closed;
}

// What lies between the menu and its lists need not be drawn again.
void KvOptionMenu::gatherDamage(Damage& damage) {
  if (isDirty()) {
    damage.add(KvControl::drawnArea());
    if (list != nullptr) damage.add(list->drawnArea());
    setDirty(false);
  }
  if (list != nullptr) list->gatherDamage(damage);
}

void KvOptionMenu::popup(PopupMode mode, const CPoint* where, int popupTag) {
  if (list != nullptr || rows.size() == 0) return;
  userTag = popupTag;
  const CRect& size = getViewSize();
  const CPoint corner =
      where != nullptr ? *where : CPoint{size.left + listOffsetX, size.top + listOffsetY};
  list = std::make_unique<MenuList>(
      rows, MenuList::Style{look, font, textColor, backgroundColor, openBitmap, getFrame().scale()},
      getFrame().getViewSize(), corner, size.width());
  ignoreNextUp = true;
  KvControl::popup(mode, where, popupTag);
}

void KvOptionMenu::closePopup() {
  if (list == nullptr) return;
  Damage drawn;
  list->gatherDamage(drawn);  // also of sub-lists that closed just now
  drawn.add(drawnArea());
  for (const CRect& part : drawn.parts()) getFrame().invalidRect(part);
  KvControl::closePopup();
  list.reset();
  ignoreNextUp = openingClick = false;
  setDirty(true);
}

MouseResult KvOptionMenu::onMouseDown(CPoint& where, int buttons) {
  if (list != nullptr) {
    ignoreNextUp = openingClick = false;
    list->press(where);
    return MouseResult::handled;
  }
  if (!isShown() || !getViewSize().contains(where)) return MouseResult::notHandled;
  if (opensPanel(popupPanel, where, buttons)) return MouseResult::done;
  showCompanions();
  popup(PopupMode::none, nullptr, userTag);
  if (list == nullptr) return MouseResult::done;
  // Where the list was moved under the pointer, this click chooses nothing.
  ignoreNextUp = list->getRect().contains(where);
  openingClick = true;
  return MouseResult::handled;
}

MouseResult KvOptionMenu::onMouseMoved(CPoint& where, int /*buttons*/) {
  if (list == nullptr) return MouseResult::notHandled;
  list->move(where);
  return MouseResult::handled;
}

MouseResult KvOptionMenu::onMouseUp(CPoint& where, int /*buttons*/) {
  if (list == nullptr) return MouseResult::notHandled;
  if (ignoreNextUp) {
    ignoreNextUp = openingClick = false;
    return MouseResult::handled;
  }
  if (list->release()) return MouseResult::handled;
  const bool opening = std::exchange(openingClick, false);
  if (!list->isOnRow(where)) {
    if (!opening) closePopup();
  } else if (const auto choice = list->pick(where)) {
    choose(*choice);
  }
  return MouseResult::handled;
}

bool KvOptionMenu::onWheel(CPoint& where, float distance, int /*buttons*/) {
  return list != nullptr && list->wheel(where, distance);
}

bool KvOptionMenu::onKeyDown(const WindowKey& key) {
  if (list == nullptr) return false;
  if (key.virt == keys::kEscape && list->getChild() == nullptr) {
    closePopup();
  } else if (const auto choice = list->pressKey(key)) {
    choose(*choice);
  }
  return true;
}

bool KvOptionMenu::onFocusKey(const WindowKey& key, bool /*repeats*/) {
  const auto step = [this](int direction) {
    if (hasStyle(menu_style::kSteps)) {
      stepPreset(direction);
    } else if (rows.has(rows.selected() + direction)) {
      stepInRing(direction);
    }
    return true;
  };
  switch (key.virt) {
    case keys::kUp: return step(-1);
    case keys::kDown: return step(1);
    case keys::kSpace:
    case keys::kReturn:
    case keys::kEnter:
      popup(PopupMode::none, nullptr, userTag);
      ignoreNextUp = false;
      return true;
    default: return false;
  }
}

void KvOptionMenu::idleStep(int /*flag*/) {
  if (list != nullptr && !isShown()) closePopup();  // its page went away
  if (list != nullptr) return list->tick(getFrame().pointerPosition());
  companionTick();
  if (!boundIndex) return;
  const int row = rowOf(boundIndex.raw());
  if (row != rows.selected()) setCurrent(row);
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
