// What an open list looks like.

#include <algorithm>

#include "toolkit/menu_list.hpp"

namespace zum {

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

void MenuList::drawPictureRow(CDrawContext& context, int row, bool isMarked) const {
  const MenuLook& look = style.look;
  const CRect place = rowRect(row);
  const int middle = (place.top + place.bottom) / 2;
  const bool lit = row == hoveredRow && !rows[row].isHeader;
  if (lit && look.rowBitmap != nullptr) {
    look.rowBitmap->draw(context, place, {0, row * look.rowBitmapHeight});
  } else if (lit) {
    context.setFrameColor(look.frameColor);
    context.drawRect(place, DrawStyle::stroked);
  }
  if (!isMarked) return;
  context.setFillColor(look.markColor);  // on the edge: a picture may begin right behind it
  context.drawRect({place.left, middle - 4, place.left + 2, middle + 3}, DrawStyle::filled);
}

void MenuList::drawHeader(CDrawContext& context, int row) const {
  const MenuLook& look = style.look;
  const KvOptionMenuEntryInfo& info = rows[row];
  const CRect place = rowRect(row);
  const int middle = (place.top + place.bottom) / 2;
  const CRect inside{place.left + kMenuTextInset, place.top, place.right - kMenuSignWidth,
                     place.bottom};
  context.setFont(style.font, look.fontSize);
  if (info.isTyped) {
    context.setFillColor(look.fieldColor);
    context.setFrameColor(look.frameColor);
    context.drawRect(place, DrawStyle::filledAndStroked);
    context.setFontColor(style.textColor);
    context.drawString(info.text, inside, false, TextAlign::left);
    const int cursor = std::min(inside.left + context.getStringWidth(info.text) + 1, inside.right);
    context.setFrameColor(style.textColor);
    context.drawLine({cursor, place.top + 3}, {cursor, place.bottom - 4});
  } else if (info.text.empty()) {
    context.setFrameColor(look.separatorColor);
    context.drawLine({inside.left, middle}, {place.right - kMenuTextInset, middle});
  } else {
    context.setFontColor(look.separatorColor);
    context.drawString(info.text, inside, false, TextAlign::centre);
  }
}

void MenuList::drawRow(CDrawContext& context, int row, bool isMarked) const {
  const MenuLook& look = style.look;
  const CRect place = rowRect(row);
  const int middle = (place.top + place.bottom) / 2;
  const KvOptionMenuEntryInfo& info = rows[row];
  if (style.picture != nullptr) return drawPictureRow(context, row, isMarked);
  if (info.isHeader) return drawHeader(context, row);
  const bool lit = row == hoveredRow && info.enabled;
  if (lit) {
    context.setFillColor(look.selectedBackColor);
    context.drawRect(place, DrawStyle::filled);
  }
  const CColor sign = lit ? look.selectedTextColor : style.textColor;
  context.setFont(style.font, look.fontSize);
  context.setFontColor(info.enabled ? sign : look.separatorColor);
  context.drawString(
      info.text,
      {place.left + kMenuTextInset, place.top, place.right - kMenuSignWidth, place.bottom}, false,
      TextAlign::left);
  if (isMarked) {
    context.setFillColor(lit ? sign : look.markColor);
    context.drawRect({place.left + 1, middle - 2, place.left + 4, middle + 1}, DrawStyle::filled);
  }
  drawSigns(context, row, sign);
}

// Of a sub-menu an arrow, of a favourite a diamond.
void MenuList::drawSigns(CDrawContext& context, int row, CColor color) const {
  const MenuLook& look = style.look;
  const CRect place = rowRect(row);
  const int middle = (place.top + place.bottom) / 2;
  const bool lit = row == hoveredRow;
  if (rows.meantInfo(row).isFavourite) {
    constexpr int kReach = 3;  // pixels
    context.setFillColor(lit ? color : look.markColor);
    context.drawDiamond({place.right - kMenuSignWidth / 2, middle}, kReach);
  }
  if (rows[row].subMenu == nullptr) return;
  if (look.subMenuBitmap != nullptr) {
    const CBitmap& bitmap = *look.subMenuBitmap;
    const int height = bitmap.getHeight() / 2;
    bitmap.draw(context,
                {place.right - bitmap.getWidth(), place.top, place.right, place.top + height},
                {0, lit ? height : 0});
    return;
  }
  context.setFrameColor(color);
  for (int i = 0; i < 4; ++i) {
    context.drawLine({place.right - 8 + i, middle - 3 + i}, {place.right - 8 + i, middle + 3 - i});
  }
}

}  // namespace zum
