#include "toolkit/menu_list.hpp"

#include <algorithm>

namespace zum {
namespace {

constexpr int kMarkWidth = 12;  // of the sign of a sub-menu, pixels

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
            kMarkWidth + (scroll.isNeeded() ? MenuScroll::kWidth : 0);
    width = std::min(std::max(width, leastWidth), room.width());
    height = seen * itemHeight + 2;
  }
  const int left = std::max(std::min(corner.x, room.right - width), 0);
  const int top = std::max(std::min(corner.y, room.bottom - height), 0);
  rect = {left, top, left + width, top + height};
  placeBar();
  scroll.show(rows.selected(), rowsInside());
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

void MenuList::draw(CDrawContext& context, const InUse& inUse) const {
  if (style.picture != nullptr) {
    style.picture->draw(context, rect, {0, 0});
  } else {
    context.setFillColor(style.backgroundColor);
    context.setFrameColor(style.look.frameColor);
    context.drawRect(rect, DrawStyle::filledAndStroked);
  }
  const int last = std::min(firstVisible() + rowsInside(), rows.size());
  for (int row = firstVisible(); row < last; ++row) {
    drawRow(context, row, inUse(rows, row));
  }
  scroll.draw(context, style.backgroundColor, style.look.selectedBackColor);
  if (child != nullptr) child->draw(context, inUse);
}

void MenuList::drawRow(CDrawContext& context, int row, bool isMarked) const {
  const MenuLook& look = style.look;
  const CRect place = rowRect(row);
  const int middle = (place.top + place.bottom) / 2;
  const KvOptionMenuEntryInfo& info = rows[row];
  const bool lit = row == hoveredRow && !info.isHeader;
  if (style.picture != nullptr) {
    if (lit && look.rowBitmap != nullptr) {
      look.rowBitmap->draw(context, place, {0, row * look.rowBitmapHeight});
    } else if (lit) {
      context.setFrameColor(look.frameColor);
      context.drawRect(place, DrawStyle::stroked);
    }
    if (isMarked) {  // on the edge: a picture may begin right behind it
      context.setFillColor(look.markColor);
      context.drawRect({place.left, middle - 4, place.left + 2, middle + 3}, DrawStyle::filled);
    }
    return;
  }
  if (lit) {
    context.setFillColor(look.selectedBackColor);
    context.drawRect(place, DrawStyle::filled);
  }
  const bool off = info.isHeader || !info.enabled;
  const CColor sign = lit ? look.selectedTextColor : style.textColor;
  context.setFont(style.font, look.fontSize);
  context.setFontColor(off ? look.separatorColor : sign);
  context.drawString(
      info.text, {place.left + kMenuTextInset, place.top, place.right - kMarkWidth, place.bottom},
      false, info.isHeader ? TextAlign::centre : TextAlign::left);
  context.setFrameColor(sign);
  if (isMarked) {
    context.setFillColor(lit ? sign : look.markColor);
    context.drawRect({place.left + 1, middle - 2, place.left + 4, middle + 1}, DrawStyle::filled);
  }
  if (info.subMenu == nullptr) return;
  if (look.subMenuBitmap != nullptr) {
    const CBitmap& bitmap = *look.subMenuBitmap;
    const int height = bitmap.getHeight() / 2;
    bitmap.draw(context,
                {place.right - bitmap.getWidth(), place.top, place.right, place.top + height},
                {0, lit ? height : 0});
    return;
  }
  for (int i = 0; i < 4; ++i) {
    context.drawLine({place.right - 8 + i, middle - 3 + i}, {place.right - 8 + i, middle + 3 - i});
  }
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
  if (child != nullptr) {
    const bool leaves = key.virt == keys::kEscape || key.virt == keys::kLeft;
    if (!leaves || child->child != nullptr) return child->pressKey(key);
    closeChild();
    return {};
  }
  const int row = hoveredRow >= 0 ? hoveredRow : rows.selected();
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
