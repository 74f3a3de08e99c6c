// A view that holds others: draws them in the order in which they came and asks for the mouse the
// last one first.
#pragma once

#include "toolkit/view/view_list.hpp"

namespace zum {

/// [main]
class CViewContainer : public CView {
 public:
  using CView::CView;

  /// Takes over the holder that the view was made with.
  void addView(CView* fresh) { views.add(fresh); }
  /// The view goes, unless others hold it. False when it is not one of these.
  virtual bool removeView(CView* view) { return views.remove(view); }
  bool isChild(const CView* view) const { return views.has(view); }
  const std::vector<Held<CView>>& children() const { return views.all(); }

  void draw(CDrawContext& context) override { drawRect(context, getViewSize()); }
  void drawRect(CDrawContext& context, const CRect& area) override;
  bool isDirty() const override { return CView::isDirty() || views.isDirty(); }
  void gatherDamage(Damage& damage) override;

  /// A child that takes the press gets what follows, the wheel too.
  MouseResult onMouseDown(CPoint& where, int buttons) override;
  MouseResult onMouseUp(CPoint& where, int buttons) override {
    return views.release(where, buttons);
  }
  MouseResult onMouseMoved(CPoint& where, int buttons) override {
    return views.move(where, buttons);
  }
  bool onWheel(CPoint& where, float distance, int buttons) override;
  bool onKeyDown(const WindowKey& key) override { return views.pressKey(key); }
  bool onKeyUp(const WindowKey& key) override { return views.releaseKey(key); }
  /// The child that the pointer is on; null for none.
  virtual CView* getViewAt(CPoint where, int buttons) const { return views.at(where, buttons); }

 protected:
  ~CViewContainer() override = default;
  CView* captured() const { return views.captured().get(); }

 private:
  ViewList<CView> views;
};

}  // namespace zum
