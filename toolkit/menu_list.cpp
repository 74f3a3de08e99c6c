#include "toolkit/menu_list.hpp"

#include <algorithm>

namespace zum {
namespace {

int widestText(const CFontDesc* font, int size, const MenuRows& rows, const Scale& scale) {
  cairo_surface_t* const surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, 1, 1);
  int widest = 0;
  {
    CDrawContext context(surface, {0, 0, 1, 1}, scale);
    context.setFont(font, size);
    for (int row = 0; row < rows.size(); ++row) {
      widest = std::max(widest, context.getStringWidth(rows[row].text));
    }
  }
  cairo_surface_destroy(surface);
  return widest;
}

}  // namespace

MenuList::MenuList(MenuRows& shown, const Style& listStyle, const CRect& space, CPoint corner,
                   int leastWidth)
    : rows(shown), style(listStyle), room(space), scroll(shown.scrollPosition) {
  int width = 0;
  int height = 0;
  if (style.picture != nullptr) {
    width = style.picture->getWidth();
    height = style.picture->getHeight();
    scroll.setRows(rows.size(), rows.size());
  } else {
    const int itemHeight = style.look.itemHeight;
    const int seen = std::min(rows.size(), std::max((room.height() - 2) / itemHeight, 1));
    scroll.setRows(rows.size(), seen);
    width = widestText(style.font, style.look.fontSize, rows, style.scale) + 2 * kMenuTextInset +
            kMenuSignWidth + (scroll.isNeeded() ? MenuScroll::kWidth : 0);
    width = std::min(std::max(width, leastWidth), room.width());
    height = seen * itemHeight + 2;
  }
  const int left = std::max(std::min(corner.x, room.right - width), 0);
  const int top = std::max(std::min(corner.y, room.bottom - height), 0);
  rect = {left, top, left + width, top + height};
  placeBar();
  startRow = rows.selected();
  scroll.show(startRow, rowsInside());
  changed();
}

void MenuList::placeBar() {
  scroll.setBar({rect.right - MenuScroll::kWidth, rect.top + 1, rect.right - 1, rect.bottom - 1});
}

int MenuList::rowsInside() const {
  return std::min(rows.size(), std::max(rect.height() / style.look.itemHeight, 0));
}

CRect MenuList::rowRect(int row) const {
  const int itemHeight = style.look.itemHeight;
  const int inset = (rect.height() - rowsInside() * itemHeight) / 2;
  const int top = rect.top + inset + (row - firstVisible()) * itemHeight;
  const int side = style.picture != nullptr ? 0 : 1;
  const int bar = scroll.isNeeded() ? MenuScroll::kWidth : 0;
  return {rect.left + side, top, rect.right - side - bar, top + itemHeight};
}

int MenuList::rowAt(CPoint where) const {
  if (!rect.contains(where)) return -1;
  const int last = std::min(firstVisible() + rowsInside(), rows.size());
  for (int row = firstVisible(); row < last; ++row) {
    const CRect place = rowRect(row);
    if (where.y >= place.top && where.y < place.bottom) return row;
  }
  return -1;
}

CRect MenuList::drawnArea() const {
  return child != nullptr ? rect.join(child->drawnArea()) : rect;
}

void MenuList::gatherDamage(Damage& damage) {
  for (const CRect& part : damaged.parts()) damage.add(part);
  damaged.clear();
  if (child != nullptr) child->gatherDamage(damage);
}

// The innermost list under the pointer.
MenuList* MenuList::listAt(CPoint where) {
  MenuList* const inner = child != nullptr ? child->listAt(where) : nullptr;
  if (inner != nullptr) return inner;
  return rect.contains(where) ? this : nullptr;
}

/// Whose scroll bar is held.
MenuList* MenuList::dragged() {
  MenuList* list = this;
  while (list != nullptr && !list->scroll.dragged) list = list->child.get();
  return list;
}

void MenuList::press(CPoint where) {
  MenuList* const list = listAt(where);
  if (list == nullptr || !list->scroll.isOn(where)) return;
  list->scroll.dragged = true;
  list->scroll.drag(where);
  list->changed();
}

void MenuList::move(CPoint where) {
  if (MenuList* const list = dragged(); list != nullptr) {
    list->hover(-1);
    list->scroll.drag(where);
    list->changed();
  } else if (MenuList* const under = listAt(where); under != nullptr) {
    under->follow(where);
  }
}

bool MenuList::release() {
  MenuList* const list = dragged();
  if (list != nullptr) list->scroll.dragged = false;
  return list != nullptr;
}

bool MenuList::isOnRow(CPoint where) {
  const MenuList* const list = listAt(where);
  return list != nullptr && list->rowAt(where) >= 0;
}

std::optional<MenuChoice> MenuList::pick(CPoint where) {
  if (!isOnRow(where)) return {};
  MenuList* const list = listAt(where);
  const int row = list->rowAt(where);
  list->hover(row);
  return list->choose(row);
}

void MenuList::reveal(std::span<const int> way) {
  if (way.empty() || !rows.has(way.front())) return;
  startRow = way.front();
  scroll.show(startRow, rowsInside());
  changed();
  if (way.size() == 1) return;
  hover(startRow);
  if (child != nullptr) child->reveal(way.subspan(1));
  asRevealed = true;
}

std::optional<MenuChoice> MenuList::choiceAt(CPoint where) {
  if (!isOnRow(where)) return {};
  MenuList* const list = listAt(where);
  const int row = list->rowAt(where);
  return list->rows[row].isChoice() ? std::optional(MenuChoice{&list->rows, row}) : std::nullopt;
}

std::optional<MenuChoice> MenuList::litChoice() {
  if (child != nullptr) return child->litChoice();
  const bool isLit = rows.has(hoveredRow) && rows[hoveredRow].isChoice();
  return isLit ? std::optional(MenuChoice{&rows, hoveredRow}) : std::nullopt;
}

// A row that is no choice leaves the list as it is, but for what it opens.
std::optional<MenuChoice> MenuList::choose(int row) {
  if (rows[row].subMenu != nullptr) openChild(row);
  if (!rows[row].isChoice()) return {};
  return MenuChoice{&rows, row};
}

bool MenuList::wheel(CPoint where, float distance) {
  MenuList* const list = listAt(where);
  if (list == nullptr) return false;
  const int before = list->firstVisible();
  list->scroll.moveRows(distance > 0.0F ? -3 : 3);
  if (list->firstVisible() == before) return true;  // what is open stays beside its row
  list->closeChild();
  list->hoveredRow = -1;
  list->changed();
  return true;
}

void MenuList::hover(int row) {
  if (row == hoveredRow) return;
  hoveredRow = row;
  changed();
  closeChild();
  if (rows.has(row) && rows[row].subMenu != nullptr) openChild(row);
}

// The way into a sub-menu may cross other rows.
void MenuList::follow(CPoint where) {
  asRevealed = false;
  const int row = rowAt(where);
  if (child != nullptr && row != hoveredRow) {
    if (row < 0 || aim.isOnWay(where, child->rect)) return;
  }
  hover(row);
  aim.start(where);
}

void MenuList::tick(std::optional<CPoint> pointer) {
  for (MenuList* list = this; list != nullptr; list = list->child.get()) {
    if (list->aim.tick() && pointer && listAt(*pointer) == list) list->follow(*pointer);
  }
}

// Beside its row, on the right where there is room.
void MenuList::openChild(int row) {
  aim = {};
  MenuRows& inner = *rows[row].subMenu;
  if (child != nullptr || inner.size() == 0) return;
  const CRect place = rowRect(row);
  Style plain = style;
  plain.picture = nullptr;
  child = std::make_unique<MenuList>(inner, plain, room,
                                     CPoint{rect.right, place.bottom - style.look.itemHeight}, 0);
  if (child->rect.left < rect.right && child->rect.width() <= rect.left) {
    child->rect = child->rect.movedBy(rect.left - child->rect.right, 0);
    child->placeBar();
    child->damaged.clear();
    child->changed();
  }
}

void MenuList::closeChild() {
  aim = {};
  if (child == nullptr) return;
  child->gatherDamage(damaged);  // of lists that it closed itself
  damaged.add(child->drawnArea());
  child.reset();
}

void MenuList::walk(int from, int direction) {
  int row = from;
  do row += direction;
  while (rows.has(row) && (rows[row].isHeader || !rows[row].enabled));
  if (!rows.has(row)) return;
  hoveredRow = row;
  scroll.show(row, rowsInside());
  changed();
}

// The innermost list gets them.
std::optional<MenuChoice> MenuList::pressKey(const WindowKey& key) {
  asRevealed = false;
  if (child != nullptr) {
    const bool leaves = key.virt == keys::kEscape || key.virt == keys::kLeft;
    if (!leaves || child->child != nullptr) return child->pressKey(key);
    closeChild();
    return {};
  }
  const int row = hoveredRow >= 0 ? hoveredRow : startRow;
  switch (key.virt) {
    case keys::kUp: walk(row, -1); break;
    case keys::kDown: walk(row, 1); break;
    case keys::kRight:
    case keys::kReturn:
    case keys::kEnter:
      if (!rows.has(hoveredRow)) break;
      if (rows[hoveredRow].subMenu != nullptr) {
        openChild(hoveredRow);
        if (child != nullptr) child->walk(-1, 1);
      } else if (key.virt != keys::kRight) {
        return choose(hoveredRow);
      }
      break;
    default: break;
  }
  return {};
}

}  // namespace zum
