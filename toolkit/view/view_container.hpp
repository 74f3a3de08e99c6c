// A view that holds others: draws them in the order in which they came and asks for the mouse the
// last one first.
#pragma once

#include <vector>

#include "toolkit/view/view.hpp"

namespace zum {

/// [main]
class CViewContainer : public CView {
 public:
  using CView::CView;

  /// Takes over the holder that the view was made with.
  void addView(CView* fresh) { views.emplace_back(fresh); }
  /// The view goes, unless others hold it. False when it is not one of these.
  virtual bool removeView(CView* view);
  bool isChild(const CView* view) const;
  const std::vector<Held<CView>>& children() const { return views; }

  void draw(CDrawContext& context) override { drawRect(context, getViewSize()); }
  void drawRect(CDrawContext& context, const CRect& area) override;
  bool isDirty() const override;
  void gatherDamage(Damage& damage) override;

  /// A child that takes the press gets what follows, the wheel too.
  MouseResult onMouseDown(CPoint& where, int buttons) override;
  MouseResult onMouseUp(CPoint& where, int buttons) override;
  MouseResult onMouseMoved(CPoint& where, int buttons) override;
  bool onWheel(CPoint& where, float distance, int buttons) override;
  // The last child that wants it.
  bool onKeyDown(const WindowKey& key) override;
  bool onKeyUp(const WindowKey& key) override;
  /// The child that the pointer is on; null for none.
  virtual CView* getViewAt(CPoint where, int buttons) const;

 protected:
  ~CViewContainer() override = default;
  CView* captured() const { return capture.get(); }

 private:
  std::vector<Held<CView>> views;
  Held<CView> capture;
};

}  // namespace zum
