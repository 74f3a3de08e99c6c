// The open list of a menu: where it lies, and what the mouse and the keys do to it.

#include <algorithm>
#include <utility>

#include "toolkit/control_frame.hpp"
#include "toolkit/option_menu.hpp"

namespace zum {
namespace {

int textWidth(const CFontDesc* font, int size, const std::vector<KvOptionMenuEntryInfo>& rows) {
  cairo_surface_t* const surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, 1, 1);
  int widest = 0;
  {
    CDrawContext context(surface, {0, 0, 1, 1});
    context.setFont(font, size);
    for (const auto& row : rows) widest = std::max(widest, context.getStringWidth(row.text));
  }
  cairo_surface_destroy(surface);
  return widest;
}

}  // namespace

// Moved in so far that all of it is seen; what is too long is scrolled.
void KvOptionMenu::layOut(const CPoint* where) {
  const CRect& room = getFrame().getViewSize();
  const CRect& size = getViewSize();
  const CPoint corner =
      where != nullptr ? *where : CPoint{size.left + listOffsetX, size.top + listOffsetY};
  int width = 0;
  int height = 0;
  if (openBitmap != nullptr) {
    width = openBitmap->getWidth();
    height = openBitmap->getHeight();
    scroll.setRows(getNbEntries(), getNbEntries());
  } else {
    const int most = std::max((room.height() - 2) / look.itemHeight, 1);
    const int seen = std::min(getNbEntries(), most);
    scroll.setRows(getNbEntries(), seen);
    width = textWidth(font, look.fontSize, entries) + 2 * kTextInset + kMarkWidth +
            (scroll.isNeeded() ? MenuScroll::kWidth : 0);
    width = std::min(std::max(width, size.width()), room.width());
    height = seen * look.itemHeight + 2;
  }
  const int left = std::max(std::min(corner.x, room.right - width), 0);
  const int top = std::max(std::min(corner.y, room.bottom - height), 0);
  listRect = {left, top, left + width, top + height};
  scroll.setBar({listRect.right - MenuScroll::kWidth, listRect.top + 1, listRect.right - 1,
                 listRect.bottom - 1});
  scroll.show(selectedEntry, rowsInside());
}

int KvOptionMenu::rowsInside() const {
  return std::min(getNbEntries(), std::max(listRect.height() / look.itemHeight, 0));
}

int KvOptionMenu::firstVisible() const { return scroll.isNeeded() ? scroll.firstRow() : 0; }

CRect KvOptionMenu::rowRect(int row) const {
  const int inset = (listRect.height() - rowsInside() * look.itemHeight) / 2;
  const int top = listRect.top + inset + (row - firstVisible()) * look.itemHeight;
  const int side = openBitmap != nullptr ? 0 : 1;
  const int bar = scroll.isNeeded() ? MenuScroll::kWidth : 0;
  return {listRect.left + side, top, listRect.right - side - bar, top + look.itemHeight};
}

int KvOptionMenu::rowAt(CPoint where) const {
  if (!isOpen || !listRect.contains(where)) return -1;
  const int last = std::min(firstVisible() + rowsInside(), getNbEntries());
  for (int row = firstVisible(); row < last; ++row) {
    const CRect place = rowRect(row);
    if (where.y >= place.top && where.y < place.bottom) return row;
  }
  return -1;
}

KvOptionMenu& KvOptionMenu::root() {
  KvOptionMenu* menu = this;
  while (menu->parentMenu != nullptr) menu = menu->parentMenu;
  return *menu;
}

// The innermost list under the pointer.
KvOptionMenu* KvOptionMenu::menuAt(CPoint where) {
  if (childMenu != nullptr) {
    if (KvOptionMenu* const inner = childMenu->menuAt(where)) return inner;
  }
  return isOpen && listRect.contains(where) ? this : nullptr;
}

void KvOptionMenu::popup(PopupMode mode, const CPoint* where, int popupTag) {
  if (isOpen || entries.empty()) return;
  userTag = popupTag;
  layOut(where);
  isOpen = true;
  selectionMade = false;
  hoveredRow = -1;
  ignoreNextUp = true;
  KvControl::popup(mode, where, popupTag);
}

void KvOptionMenu::closePopup() {
  if (!isOpen || closing) return;
  closing = true;
  closeChild();
  getFrame().invalidRect(drawnArea());
  KvControl::closePopup();
  isOpen = ignoreNextUp = openingClick = scroll.dragged = false;
  hoveredRow = -1;
  setDirty(true);
  closing = false;
}

void KvOptionMenu::closeChild() {
  if (childMenu != nullptr) childMenu->closePopup();
  childMenu = nullptr;
  aim = {};
}

// Beside its row, on the right where there is room.
void KvOptionMenu::openChild(int row) {
  KvOptionMenu* const menu = entry(row).subMenu.get();
  const CRect place = rowRect(row);
  menu->setBounds(listRect.right, place.bottom, listRect.right, place.bottom);
  menu->popup(PopupMode::none, nullptr, getTag());
  if (!menu->isOpen) return;
  childMenu = menu;
  aim = {};
  menu->ignoreNextUp = false;
  if (menu->listRect.left < listRect.right && menu->listRect.width() <= listRect.left) {
    getFrame().invalidRect(menu->listRect);
    menu->listRect = menu->listRect.movedBy(listRect.left - menu->listRect.right, 0);
    menu->scroll.setBar({menu->listRect.right - MenuScroll::kWidth, menu->listRect.top + 1,
                         menu->listRect.right - 1, menu->listRect.bottom - 1});
  }
  getFrame().invalidRect(menu->listRect);
}

void KvOptionMenu::hover(int row) {
  if (row == hoveredRow) return;
  hoveredRow = row;
  setDirty(true);
  closeChild();
  if (has(row) && entry(row).subMenu) openChild(row);
}

// The way into a sub-menu may cross other rows.
void KvOptionMenu::follow(CPoint where) {
  const int row = rowAt(where);
  if (childMenu != nullptr && row != hoveredRow) {
    if (row < 0 || aim.isOnWay(where, childMenu->listRect)) return;
  }
  hover(row);
  aim.start(where);
}

// A pointer that rests on its way means the row under it.
void KvOptionMenu::endDetours() {
  if (parentMenu != nullptr) return;
  for (KvOptionMenu* menu = this; menu != nullptr; menu = menu->childMenu) {
    const auto pointer = getFrame().pointerPosition();
    if (menu->aim.tick() && pointer && menuAt(*pointer) == menu) menu->follow(*pointer);
  }
}

MouseResult KvOptionMenu::onMouseDown(CPoint& where, int buttons) {
  KvOptionMenu& top = root();
  if (!top.isOpen) {
    if (!isShown() || !getViewSize().contains(where)) return MouseResult::notHandled;
    if (opensPanel(popupPanel, where, buttons)) return MouseResult::done;
    showCompanions();
    popup(PopupMode::none, nullptr, userTag);
    if (!isOpen) return MouseResult::done;
    // Where the list was moved under the pointer, this click chooses nothing.
    ignoreNextUp = listRect.contains(where);
    openingClick = true;
    return MouseResult::handled;
  }
  top.ignoreNextUp = top.openingClick = false;
  if (KvOptionMenu* const menu = top.menuAt(where); menu != nullptr && menu->scroll.isOn(where)) {
    menu->scroll.dragged = true;
    menu->scroll.drag(where);
    menu->setDirty(true);
  }
  return MouseResult::handled;
}

MouseResult KvOptionMenu::onMouseMoved(CPoint& where, int /*buttons*/) {
  KvOptionMenu& top = root();
  if (!top.isOpen) return MouseResult::notHandled;
  for (KvOptionMenu* menu = &top; menu != nullptr; menu = menu->childMenu) {
    if (!menu->scroll.dragged) continue;
    menu->hover(-1);
    menu->scroll.drag(where);
    menu->setDirty(true);
    return MouseResult::handled;
  }
  if (KvOptionMenu* const menu = top.menuAt(where)) menu->follow(where);
  return MouseResult::handled;
}

MouseResult KvOptionMenu::onMouseUp(CPoint& where, int /*buttons*/) {
  KvOptionMenu& top = root();
  if (!top.isOpen) return MouseResult::notHandled;
  if (top.ignoreNextUp) {
    top.ignoreNextUp = top.openingClick = false;
    return MouseResult::handled;
  }
  for (KvOptionMenu* menu = &top; menu != nullptr; menu = menu->childMenu) {
    if (!menu->scroll.dragged) continue;
    menu->scroll.dragged = false;
    return MouseResult::handled;
  }
  KvOptionMenu* const menu = top.menuAt(where);
  const int row = menu != nullptr ? menu->rowAt(where) : -1;
  const bool opening = std::exchange(top.openingClick, false);
  if (row >= 0) {
    menu->hover(row);
    menu->choose(row);
  } else if (!opening) {
    top.closePopup();
  }
  return MouseResult::handled;
}

// A row that is no choice leaves the list as it is, but for what it opens.
void KvOptionMenu::choose(int row) {
  if (entry(row).subMenu) openChild(row);
  if (!entry(row).isChoice()) return;
  remember();
  const Held<KvOptionMenu> alive(this);  // what listens may fill the menus anew
  KvOptionMenu& top = root();
  setCurrent(row);
  selectionMade = true;
  top.closePopup();
  reportChoice();
}

bool KvOptionMenu::onWheel(CPoint& where, float distance, int /*buttons*/) {
  KvOptionMenu* const menu = root().menuAt(where);
  if (menu == nullptr) return false;
  const int before = menu->firstVisible();
  menu->scroll.moveRows(distance > 0.0F ? -3 : 3);
  if (menu->firstVisible() == before) return true;  // what is open stays beside its row
  menu->closeChild();
  menu->hoveredRow = -1;
  menu->setDirty(true);
  return true;
}

void KvOptionMenu::walk(int from, int direction) {
  int row = from;
  do row += direction;
  while (has(row) && (entry(row).isHeader || !entry(row).enabled));
  if (!has(row)) return;
  hoveredRow = row;
  scroll.show(row, rowsInside());
  setDirty(true);
}

// The innermost list gets them.
bool KvOptionMenu::onKeyDown(const WindowKey& key) {
  if (!isOpen) return false;
  const int row = hoveredRow >= 0 ? hoveredRow : selectedEntry;
  switch (key.virt) {
    case keys::kEscape:
    case keys::kLeft:
      if (parentMenu != nullptr) {
        parentMenu->closeChild();
      } else if (key.virt == keys::kEscape) {
        closePopup();
      }
      break;
    case keys::kUp: walk(row, -1); break;
    case keys::kDown: walk(row, 1); break;
    case keys::kRight:
    case keys::kReturn:
    case keys::kEnter:
      if (!has(hoveredRow)) break;
      if (entry(hoveredRow).subMenu) {
        openChild(hoveredRow);
        if (childMenu != nullptr) childMenu->walk(-1, 1);
      } else if (key.virt != keys::kRight) {
        choose(hoveredRow);
      }
      break;
    default: break;
  }
  return true;
}

}  // namespace zum
