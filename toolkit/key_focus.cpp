#include "toolkit/key_focus.hpp"

#include <algorithm>
#include <utility>

#include "toolkit/control_frame.hpp"
#include "toolkit/panel.hpp"

namespace zum {
namespace {

constexpr CColor kMarkColor{227, 108, 108, 255};
constexpr CColor kMarkGlow{227, 108, 108, 70};

Held<KvControl> holderOf(KvControl* view) {
  if (view != nullptr) view->remember();
  return Held<KvControl>(view);
}

int middleOf(const KvControl* view) {
  return (view->getViewSize().top + view->getViewSize().bottom) / 2;
}

std::pair<int, int> fromLeft(const KvControl* view) {
  return {view->getViewSize().left, view->getViewSize().top};
}

/// A row is what lies beside its highest control: their middles do.
void sortForReading(std::vector<KvControl*>& views) {
  std::ranges::sort(views, {}, middleOf);
  for (auto row = views.begin(); row != views.end();) {
    const int bottom = (*row)->getViewSize().bottom;
    const auto end =
        std::find_if(row, views.end(), [&](const auto* view) { return middleOf(view) >= bottom; });
    std::ranges::sort(row, end, {}, fromLeft);
    row = end;
  }
}

/// A frame of one line without its corners.
void strokeRound(CDrawContext& context, const CRect& rect, int corner) {
  const int right = rect.right - 1;
  const int bottom = rect.bottom - 1;
  context.drawLine({rect.left + corner, rect.top}, {right - corner, rect.top});
  context.drawLine({rect.left + corner, bottom}, {right - corner, bottom});
  context.drawLine({rect.left, rect.top + corner}, {rect.left, bottom - corner});
  context.drawLine({right, rect.top + corner}, {right, bottom - corner});
}

}  // namespace

KvControl* KeyFocus::openPanel() const {
  KvControl* view = frame.getModalView();
  while (view != nullptr && !view->isContainer()) view = view->popupOwner;
  return view;
}

std::vector<KvControl*> KeyFocus::stops() const {
  std::vector<KvControl*> found;
  const auto look = [&found](const auto& views) {
    for (const auto& held : views) {
      auto* const view = dynamic_cast<KvControl*>(held.get());
      if (view != nullptr && view->isShown() && view->takesFocus() &&
          !view->getViewSize().isEmpty()) {
        found.push_back(view);
      }
    }
  };
  if (const auto* const panel = static_cast<const KvViewContainer*>(openPanel())) {
    look(panel->children());
  } else {
    look(frame.children());
  }
  sortForReading(found);
  return found;
}

void KeyFocus::redrawMark() const {
  if (!focused) return;
  frame.invalidRect(focused->focusArea().grownBy(1));
  focused->setDirty(true);
}

void KeyFocus::set(KvControl* view) {
  if (view == focused.get()) return;
  endEdit();
  redrawMark();
  const Held<KvControl> before = std::move(focused);
  focused = holderOf(view);
  redrawMark();
  if (view != nullptr || frame.controlInUse() == before.get()) frame.setInUse(view);
}

void KeyFocus::mousePressed(CPoint where, int buttons) {
  endEdit();
  settle();
  for (KvControl* view : stops()) {
    if (view->hitTest(where, buttons)) startsAt = holderOf(view);
  }
  set(nullptr);
  behind = {};
}

// What opened a panel by a key walks on inside of it, and comes back to where it was.
void KeyFocus::settle() {
  if (KvControl* const panel = openPanel(); panel != room) {
    const bool opens = panel != nullptr && room == nullptr;
    room = panel;
    if (opens && focused) {
      behind = focused;
      const auto inside = stops();
      set(inside.empty() ? nullptr : inside.front());
    } else if (!opens) {
      set(panel == nullptr ? behind.get() : nullptr);
      behind = {};
    }
  }
  if (focused && !focused->isShown()) set(nullptr);
}

bool KeyFocus::walk(int direction) {
  const auto order = stops();
  if (order.empty()) return false;
  const auto place = [&order](const Held<KvControl>& view) {
    const auto at = std::ranges::find(order, view.get());
    return at != order.end() ? static_cast<int>(at - order.begin()) : -1;
  };
  const auto count = static_cast<int>(order.size());
  int at = place(focused);
  if (at >= 0) {
    at = (at + direction + count) % count;
  } else if (at = place(startsAt); at < 0) {
    at = direction > 0 ? 0 : count - 1;
  }
  startsAt = {};
  set(order[static_cast<std::size_t>(at)]);
  return true;
}

bool KeyFocus::pressKey(const WindowKey& key, bool repeats) {
  settle();
  const KvControl* const modal = frame.getModalView();
  if (frame.isHolding() || (modal != nullptr && !modal->isContainer())) return false;
  if ((key.modifier & ~keys::kShiftBit) != 0) return false;
  const bool back = (key.modifier & keys::kShiftBit) != 0;
  if (key.virt == keys::kTab) return walk(back ? -1 : 1);
  const Held<KvControl> view = focused;
  if (!view) return false;
  if (view->onFocusKey(key, repeats)) {
    if (focused.get() == view.get()) frame.setInUse(view.get());
    return true;
  }
  switch (key.virt) {
    case keys::kLeft: return walk(-1);
    case keys::kRight: return walk(1);
    case keys::kEscape: set(nullptr); return true;
    default: return false;
  }
}

void KeyFocus::beginEdit(KvControl& view) {
  if (edited.get() == &view) return;
  endEdit();
  edited = holderOf(&view);  // ahead of the call, from which the host may close the window
  view.beginEdit();
}

void KeyFocus::endEdit() {
  if (const Held<KvControl> view = std::move(edited); view) view->endEdit();
}

void KeyFocus::forget(const CView* view) {
  for (Held<KvControl>* held : {&focused, &behind, &startsAt, &edited}) {
    if (held->get() == view) *held = {};
  }
}

void KeyFocus::draw(CDrawContext& context, const KvControl* panel) const {
  if (!focused || panel != room || !focused->isShown()) return;
  const CRect area = focused->focusArea();
  context.setFrameColor(kMarkColor);
  strokeRound(context, area, 2);
  context.setFrameColor(kMarkGlow);
  strokeRound(context, area.grownBy(1), 2);
  strokeRound(context, area.grownBy(-1), 2);
}

}  // namespace zum
