// What every control of the window shares: a group that may be hidden, companions that come up when
// the pointer rests on it, the popup protocol, the focus of the keyboard, and the poll by which the
// screen follows the engine.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "state/group_mask.hpp"
#include "toolkit/view/control.hpp"
#include "toolkit/view/font.hpp"

namespace zum {

class KvFrame;
class KvViewContainer;

/// How a popup closes.
enum class PopupMode : std::uint8_t { none = 0, closesOutside = 2, closesInside = 3 };

/// [main] Listener, frame, mask and bitmaps outlive it.
class KvControl : public CControl {
 public:
  // values of `kind`
  static constexpr int kKnob = 2;
  static constexpr int kButton = 7;
  static constexpr int kImage = 8;

  // bits of `flags`
  static constexpr std::uint32_t kFillsBackground = 1U << 1U;
  static constexpr std::uint32_t kDrawsBitmap = 1U << 2U;
  static constexpr std::uint32_t kHasShadow = 1U << 3U;

  KvControl(const CRect& rect, CControlListener* controlListener, int controlTag, KvFrame& owner);

  /// Visible, and its group is shown. Nobody tells a control that its group changed: it asks.
  bool isShown() const { return isVisible() && (groupMask == nullptr || groupMask->test(group)); }

  /// The caption alone. Subclasses draw themselves, then this.
  void draw(CDrawContext& context) override;
  /// Draws itself if it is shown; the context keeps it inside of the area.
  void drawRect(CDrawContext& context, const CRect& area) override;
  CRect drawnArea() const override;
  bool isDirty() const override { return isShown() && CControl::isDirty(); }
  void setVisible(bool state) override {
    CControl::setVisible(state);
    setDirty(true);
  }
  MouseResult onMouseDown(CPoint& where, int buttons) override;
  void onMouseEntered(CPoint& where, int buttons) override;
  void onMouseExited(CPoint& where, int buttons) override;
  bool hitTest(CPoint where, int buttons) const override;

  // Files that are dragged onto the window.
  virtual bool acceptsDrop(int /*x*/, int /*y*/, int /*count*/, int /*kind*/) { return false; }
  virtual void notifyDropped(int /*count*/) {}
  /// Becomes the view that takes all input and lies on top, until closePopup(). At `where`, or, for
  /// null, where it is. `popupTag` tells it for whom, or for which part.
  virtual void popup(PopupMode mode, const CPoint* where, int popupTag);
  /// Gives the input back to what had it before. Children of a panel hear that it closes.
  virtual void closePopup();
  /// Its panel closes under a press: the release does not come here any more.
  virtual void letGo();
  virtual const CRect& getViewBounds() const { return getViewSize(); }
  /// What it is called and how it stands, as whoever made the window tells it.
  virtual std::string getInfoString() const;
  virtual bool isContainer() const { return false; }
  void idleStep(int flag) override;
  virtual void setBounds(int left, int top, int right, int bottom);
  virtual void setBoundsAndArea(int left, int top, int right, int bottom);
  /// What a press with the right button opens.
  virtual void setPopupPanel(KvViewContainer* /*panel*/) {}
  /// The view hides until the pointer rests on this one.
  virtual void addShownCompanion(CView* view);
  virtual void addHiddenCompanion(CView* view);

  /// Tab comes by, while it is shown.
  virtual bool takesFocus() const { return false; }
  /// A key while it has the focus. False for one that it has no use for.
  virtual bool onFocusKey(const WindowKey& /*key*/, bool /*repeats*/) { return false; }
  /// Where the mark of the focus goes round it.
  virtual CRect focusArea() const { return getViewSize().grownBy(2); }
  bool hasFocus() const;
  /// A value that the user gave otherwise than by hand, as one edit.
  void enter(float newValue) {
    take(newValue);
    reportEdit();
  }

  KvFrame& getFrame() const { return ownerFrame; }
  /// Where a caption would stand, above the rectangle.
  static constexpr int kCaptionHeight = 12;

  CColor backgroundColor = kBlueColor;
  CColor textColor = kWhiteColor;
  KvControl* popupOwner = nullptr;  // had the input when this one took it
  std::vector<CView*> shownCompanions;
  std::vector<CView*> hiddenCompanions;
  const char* labelText = nullptr;  // caption, null for none
  const CFontDesc* font;            // null when the frame has none
  bool needsValueDraw = true;       // never drawn yet
  std::uint32_t flags = 1;
  int group = 0;  // 0 to 127; 0 is always shown
  const GroupMask* groupMask = nullptr;
  int kind = 0;
  int idleDivider;                   // the frame's, ticks
  int exitCountdown = kNotRunning;   // ticks
  int enterCountdown = kNotRunning;  // ticks
  int shadowAlpha = 128;             // 0 to 255
  int shadowOffset = -20;            // pixels; the shadow starts that far behind the corner
  int shadowSize = 5;                // pixels
  bool editBracket = true;           // tells the listener where an edit begins and ends

 protected:
  ~KvControl() override = default;

  static constexpr int kNotRunning = -1;

  void companionTick();
  void showCompanions();
  void hideCompanions();
  /// After a drag that ended outside.
  void startExit();
  /// The panel at the pointer if the press asks for it, by the right button or by Command. It gets
  /// the control's tag, and `popupTag`.
  bool opensPanel(KvViewContainer* panel, CPoint where, int buttons, int popupTag);
  bool opensPanel(KvViewContainer* panel, CPoint where, int buttons) {
    return opensPanel(panel, where, buttons, getTag());
  }
  /// Within the edit that lasts as long as a key is held.
  void moveByKey(float newValue);
  /// A press of the mouse in the middle, and its release.
  bool click(bool repeats);
  /// The value as it stands, to the listener, as one edit.
  void reportEdit();
  void take(float newValue) {
    setValue(newValue);
    setDirty(true);
  }
  /// Within an edit that goes on.
  void moveTo(float newValue) {
    take(newValue);
    report();
  }

 private:
  KvFrame& ownerFrame;
  bool companionsOut = false;
};

}  // namespace zum
