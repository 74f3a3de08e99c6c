// How a menu looks, closed and open.

#include <algorithm>

#include "toolkit/option_menu.hpp"

namespace zum {

void KvOptionMenu::draw(CDrawContext& context) {
  if (parentMenu == nullptr) drawClosed(context);
  KvControl::draw(context);
  if (isOpen) drawList(context);  // over everything, the caption too
}

void KvOptionMenu::drawClosed(CDrawContext& context) const {
  const CRect& size = getViewSize();
  if (size.isEmpty()) return;
  if (closedBitmap != nullptr) {
    const int row = (style & kPictures) != 0 ? std::max(selectedEntry, 0) : 0;
    closedBitmap->draw(context, size, {0, row * look.itemHeight});
    if ((style & kPictures) != 0) return;
  }
  context.setFont(font, look.fontSize);
  context.setFontColor(textColor);
  context.drawString(currentText(),
                     {size.left + kTextInset, size.top, size.right - kTextInset, size.bottom},
                     false, TextAlign::left);
}

void KvOptionMenu::drawList(CDrawContext& context) {
  if (openBitmap != nullptr) {
    openBitmap->draw(context, listRect, {0, 0});
  } else {
    context.setFillColor(backgroundColor);
    context.setFrameColor(look.frameColor);
    context.drawRect(listRect, DrawStyle::filledAndStroked);
  }
  const int last = std::min(firstVisible() + rowsInside(), getNbEntries());
  for (int row = firstVisible(); row < last; ++row) drawRow(context, row);
  scroll.draw(context, backgroundColor, look.selectedBackColor);
}

std::string KvOptionMenu::shownName() const {
  const KvOptionMenu* menu = this;
  while (menu->parentMenu != nullptr) menu = menu->parentMenu;
  return menu->currentText();
}

// Files go by the name that is shown: arrows and hosts load them, too. It also marks the way to one
// in a sub-menu.
bool KvOptionMenu::isInUse(int row, const std::string& shown) const {
  const KvOptionMenuEntryInfo& info = entry(row);
  if ((style & kFolder) == 0) return row == selectedEntry && info.isChoice();
  if (!info.subMenu) return row >= fixedCount && info.text == shown;
  for (int inner = 0; inner < info.subMenu->getNbEntries(); ++inner) {
    if (info.subMenu->isInUse(inner, shown)) return true;
  }
  return false;
}

void KvOptionMenu::drawRow(CDrawContext& context, int row) const {
  const CRect place = rowRect(row);
  const int middle = (place.top + place.bottom) / 2;
  const KvOptionMenuEntryInfo& info = entry(row);
  const bool lit = row == hoveredRow && !info.isHeader;
  const bool isMarked = info.marked || isInUse(row, shownName());
  if (openBitmap != nullptr) {
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
  context.setFont(font, look.fontSize);
  context.setFontColor(off ? look.separatorColor : (lit ? look.selectedTextColor : textColor));
  context.drawString(info.text,
                     {place.left + kTextInset, place.top, place.right - kMarkWidth, place.bottom},
                     false, info.isHeader ? TextAlign::centre : TextAlign::left);
  const CColor sign = lit ? look.selectedTextColor : textColor;
  context.setFrameColor(sign);
  if (isMarked) {
    context.setFillColor(lit ? sign : look.markColor);
    context.drawRect({place.left + 1, middle - 2, place.left + 4, middle + 1}, DrawStyle::filled);
  }
  if (info.subMenu && look.subMenuBitmap != nullptr) {
    const CBitmap& bitmap = *look.subMenuBitmap;
    const int height = bitmap.getHeight() / 2;
    bitmap.draw(context,
                {place.right - bitmap.getWidth(), place.top, place.right, place.top + height},
                {0, lit ? height : 0});
    return;
  }
  for (int i = 0; info.subMenu && i < 4; ++i) {
    context.drawLine({place.right - 8 + i, middle - 3 + i}, {place.right - 8 + i, middle + 3 - i});
  }
}

}  // namespace zum
