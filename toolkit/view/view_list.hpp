// Views that belong to one, in the order in which they came, and the one of them that holds the
// mouse.
#pragma once

#include <algorithm>
#include <utility>
#include <vector>

#include "toolkit/view/view.hpp"

namespace zum {

/// [main] What is told something may add and remove views.
template <class View>
class ViewList {
 public:
  /// Takes over the holder that the view was made with.
  void add(View* fresh) { views.emplace_back(fresh); }
  /// The view goes, unless others hold it. False when it is not one of these.
  bool remove(const CView* view) {
    if (capture.get() == view) capture = {};
    return std::erase_if(views, [view](const auto& held) { return held.get() == view; }) != 0;
  }
  void clear() { views.clear(); }
  bool has(const CView* view) const {
    return std::ranges::any_of(views, [view](const auto& held) { return held.get() == view; });
  }
  const std::vector<Held<View>>& all() const { return views; }
  /// The last one at a place; null for none.
  View* at(CPoint where, int buttons) const {
    const auto view = std::find_if(views.rbegin(), views.rend(),
                                   [&](const auto& held) { return held->hitTest(where, buttons); });
    return view != views.rend() ? view->get() : nullptr;
  }

  void draw(CDrawContext& context, const CRect& area) const {
    for (const Held<View>& view : views) {
      if (view->isVisible() && view->drawnArea().intersects(area)) view->drawRect(context, area);
    }
  }
  bool isDirty() const {
    return std::ranges::any_of(views, [](const auto& view) { return view->isDirty(); });
  }
  void gatherDamage(Damage& damage) const {
    for (const Held<View>& view : views) view->gatherDamage(damage);
  }

  /// Took a press, and gets what follows of the gesture.
  const Held<View>& captured() const { return capture; }
  Held<View> takeCaptured() { return std::exchange(capture, {}); }
  MouseResult press(const Held<View>& asked, CPoint& where, int buttons) {
    capture = asked;  // ahead of the press, which may let go of all
    const Held<View> view = capture;
    const MouseResult result = view->onMouseDown(where, buttons);
    if (result != MouseResult::handled) capture = {};
    return result;
  }
  MouseResult release(CPoint& where, int buttons) {
    const Held<View> view = takeCaptured();
    return view ? view->onMouseUp(where, buttons) : MouseResult::notHandled;
  }
  MouseResult move(CPoint& where, int buttons) const {
    const Held<View> view = capture;
    return view ? view->onMouseMoved(where, buttons) : MouseResult::notHandled;
  }
  // The last one that wants the key.
  bool pressKey(const WindowKey& key) const {
    return anyFromLast([&key](CView& view) { return view.onKeyDown(key); });
  }
  bool releaseKey(const WindowKey& key) const {
    return anyFromLast([&key](CView& view) { return view.onKeyUp(key); });
  }

 private:
  template <class Tell>
  bool anyFromLast(const Tell& tell) const {
    for (std::size_t i = views.size(); i-- > 0;) {
      if (i < views.size() && tell(*Held<View>(views[i]).get())) return true;
    }
    return false;
  }

  std::vector<Held<View>> views;
  Held<View> capture;
};

}  // namespace zum
