#include "toolkit/option_menu.hpp"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "toolkit/control_frame.hpp"
#include "toolkit/menu_style.hpp"

namespace zum {
namespace {

constexpr float kLargestValue = 20000.0F;  // rows, and the tags of the buttons

int rowOf(float value) {
  return value >= 0.0F && value < kLargestValue ? static_cast<int>(value) : -1;
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

void KvOptionMenu::setValue(float newValue) { setCurrent(rowOf(newValue)); }

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

void KvOptionMenu::showList(MenuRows& shown, int leastWidth) {
  list = std::make_unique<MenuList>(
      shown,
      MenuList::Style{look, font, textColor, backgroundColor, openBitmap, getFrame().scale()},
      getFrame().getViewSize(), listCorner, leastWidth);
}

void KvOptionMenu::takeListAway() {
  Damage drawn;
  list->gatherDamage(drawn);  // also of sub-lists that closed just now
  drawn.add(drawnArea());
  for (const CRect& part : drawn.parts()) getFrame().invalidRect(part);
  list.reset();
}

void KvOptionMenu::popup(PopupMode mode, const CPoint* where, int popupTag) {
  if (list != nullptr || rows.size() == 0) return;
  userTag = popupTag;
  const CRect& size = getViewSize();
  listCorner = where != nullptr ? *where : CPoint{size.left + listOffsetX, size.top + listOffsetY};
  showFavourites();
  showList(rows, size.width());
  list->reveal(wayToCurrent());
  ignoreNextUp = true;
  KvControl::popup(mode, where, popupTag);
}

void KvOptionMenu::openAt(CPoint where, bool byPress) {
  popup(PopupMode::none, &where, userTag);
  ignoreNextUp = openingClick = mayGoOn = byPress;
  pressedAt = where;
}

void KvOptionMenu::closePopup() {
  if (list == nullptr) return;
  takeListAway();
  KvControl::closePopup();
  finder.clear();
  ignoreNextUp = openingClick = mayGoOn = false;
  setDirty(true);
}

MouseResult KvOptionMenu::onMouseDown(CPoint& where, int buttons) {
  if (list != nullptr) {
    ignoreNextUp = openingClick = mayGoOn = false;
    const auto at = (buttons & buttons::kRight) != 0 ? list->choiceAt(where) : std::nullopt;
    if (at && isFile(at->rows->meant(at->row))) {
      toggleFavourite(*at);
      ignoreNextUp = true;
    } else {
      list->press(where);
    }
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
  constexpr int kStill = 4;  // pixels that a hand moves in a click
  const CPoint way{where.x - pressedAt.x, where.y - pressedAt.y};
  if (mayGoOn && std::max(std::abs(way.x), std::abs(way.y)) > kStill)
    ignoreNextUp = mayGoOn = false;
  list->move(where);
  return MouseResult::handled;
}

MouseResult KvOptionMenu::onMouseUp(CPoint& where, int /*buttons*/) {
  if (list == nullptr) return MouseResult::notHandled;
  if (ignoreNextUp) {
    ignoreNextUp = openingClick = mayGoOn = false;
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
  if (pressFileKey(key)) return true;
  if (key.virt == keys::kEscape && (list->getChild() == nullptr || list->isAsRevealed())) {
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
  // Its page went away, or the window has another size.
  if (list != nullptr && (!isShown() || !(list->scale() == getFrame().scale()))) closePopup();
  if (list != nullptr) return list->tick(getFrame().pointerPosition());
  companionTick();
  if (!boundIndex) return;
  const int row = rowOf(boundIndex.raw());
  if (row != rows.selected()) setCurrent(row);
}

}  // namespace zum
