// A panel of controls that pops up over the window, such as a knob's amounts and its MIDI buttons.
#pragma once

#include "toolkit/base_control.hpp"
#include "toolkit/view/view_list.hpp"

namespace zum {

/// [main]
class KvViewContainer : public KvControl {
 public:
  using KvControl::KvControl;

  /// In place of `left`: the child stays where it is.
  static constexpr int kUnmoved = -10000;
  /// At a place from the panel's corner. Takes over the holder that the child was made with.
  void addView(KvControl* fresh, int left, int top);
  void removeAll() { views.clear(); }
  const std::vector<Held<KvControl>>& children() const { return views.all(); }
  /// The child that the pointer was on at the last tick; null for none.
  KvControl* getCurrentView() const { return lastHover.get(); }
  /// The last child at a place.
  KvControl* getViewAt(CPoint where, int buttons) const { return views.at(where, buttons); }
  /// For whom, or for which part of whom, it was opened.
  int getPopupTag() const { return openedFor; }

  void draw(CDrawContext& context) override { drawRect(context, getViewSize()); }
  void drawRect(CDrawContext& context, const CRect& area) override;
  CRect drawnArea() const override;
  bool isDirty() const override { return isShown() && (KvControl::isDirty() || views.isDirty()); }
  void gatherDamage(Damage& damage) override;
  MouseResult onMouseDown(CPoint& where, int buttons) override;
  MouseResult onMouseUp(CPoint& where, int buttons) override {
    return views.release(where, buttons);
  }
  MouseResult onMouseMoved(CPoint& where, int buttons) override {
    return views.move(where, buttons);
  }
  bool onWheel(CPoint& where, float distance, int buttons) override;
  /// Escape closes it.
  bool onKeyDown(const WindowKey& key) override;
  /// Moved in so far that it stays inside of the frame.
  void popup(PopupMode mode, const CPoint* where, int popupTag) override;
  /// Input goes back to what had it before.
  void closePopup() override;
  void letGo() override;
  bool isContainer() const override { return true; }
  void idleStep(int flag) override;
  /// With its children.
  void setBounds(int left, int top, int right, int bottom) override;

 protected:
  ~KvViewContainer() override = default;

 private:
  void drawShadow(CDrawContext& context) const;
  void hoverOver(KvControl* view, CPoint where);

  ViewList<KvControl> views;
  Held<KvControl> lastHover;
  PopupMode popupMode = PopupMode::none;
  int openedFor = 0;
};

}  // namespace zum
