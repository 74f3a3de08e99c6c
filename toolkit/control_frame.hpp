// The frame of the window: ticks its controls, and lets one of them, a popup, take all input.
#pragma once

#include <string>
#include <vector>

#include "toolkit/base_control.hpp"
#include "toolkit/held_key.hpp"
#include "toolkit/key_focus.hpp"
#include "toolkit/view/frame.hpp"

namespace zum {

/// What a frame asks of the editor that it belongs to.
class CEditorInterface {
 public:
  CEditorInterface() = default;
  CEditorInterface(const CEditorInterface&) = delete;
  CEditorInterface& operator=(const CEditorInterface&) = delete;
  virtual ~CEditorInterface() = default;

  // A key that no control wanted. False when it is of no use either: the host gets it.
  virtual bool keyPressed(const WindowKey& key) = 0;
  virtual bool keyReleased(const WindowKey& key) = 0;
  /// A press with the right button that no control wanted. False when it is of no use here.
  virtual bool groundPressed(CPoint /*where*/) { return false; }
  /// Paths of files that the user dropped onto the window.
  virtual void filesDropped(const std::vector<std::string>& /*paths*/) {}
  /// What a control is called and how it stands.
  virtual std::string infoOf(const KvControl& /*control*/) { return "no info"; }
  /// The user wants to type its value. False where there is nothing to type.
  virtual bool typeValue(KvControl& /*control*/) { return false; }
  /// The user or the system gave the window another size, in pixels of the screen.
  virtual void windowResized(int /*width*/, int /*height*/) {}
  /// A box is open that must be answered first: mouse and keys mean nothing meanwhile.
  virtual bool isBlocked() const { return false; }
};

/// [main]
class KvFrame final : public CFrame {
 public:
  /// The editor, null for none, and the font outlive the frame.
  KvFrame(const CRect& rect, CEditorInterface* hostEditor, double factor = 1.0)
      : CFrame(rect, factor), editor(hostEditor) {}

  void setDefaultFont(const CFontDesc* font) { defaultFont = font; }
  const CFontDesc* getDefaultFont() const { return defaultFont; }

  bool removeView(CView* view) override;
  /// Drawn after all others, the last one on top. The frame need not hold it.
  void addOnTop(KvControl* view);
  void removeFromTop(KvControl* view);

  /// Takes all mouse and keyboard input; null for none.
  void setModalView(KvControl* view) { modalView = view; }
  KvControl* getModalView() const { return modalView; }
  /// The input of a popup goes back to what had it before, also when another lies over it.
  void leaveModal(const CView* view);

  KeyFocus& keyFocus() { return focus; }
  const KeyFocus& keyFocus() const { return focus; }
  /// Keys walk from control to control.
  void walkByKeys() { walksByKeys = true; }
  /// That the user touches, rests the pointer on, or works by keys; the latest of them. Null for
  /// none.
  KvControl* controlInUse() const { return inUse.get(); }
  void setInUse(KvControl* view);
  std::string infoOf(const KvControl& control) const {
    return editor != nullptr ? editor->infoOf(control) : "no info";
  }
  bool typeValue(KvControl& control) { return editor != nullptr && editor->typeValue(control); }

  /// The wheel or a key moves something, which goes on in the next notch or repeat.
  bool isRepeating() const { return repeating; }
  /// A press is under way.
  bool isHolding() const { return gesture || captured() != nullptr; }
  /// Ends what the mouse holds, as a release outside does, and what a key holds.
  void letGo();

  void setDirty(bool state) override;
  /// The next idle step draws everything.
  void requestRedraw() { redrawRequested = true; }
  void idle() override;

  void drawRect(CDrawContext& context, const CRect& area) override;
  void gatherDamage(Damage& damage) override;
  MouseResult onMouseDown(CPoint& where, int buttons) override;
  MouseResult onMouseUp(CPoint& where, int buttons) override;
  MouseResult onMouseMoved(CPoint& where, int buttons) override;
  bool onWheel(CPoint& where, float distance, int buttons) override;
  bool onKeyDown(const WindowKey& key) override;
  bool onKeyUp(const WindowKey& key) override;
  CView* getViewAt(CPoint where, int buttons) const override;

  int idleDivider = 10;  // ticks
  int enterTicks = 2;    // until companions come
  int exitTicks = 5;     // until they go

 private:
  ~KvFrame() override = default;
  void tick();
  void takeFiles(CPoint where, const std::vector<std::string>& paths) override;
  bool tellKey(const WindowKey& key, bool repeats);
  MouseResult pressGround(CPoint where, int buttons);
  void takeSize(int width, int height) override {
    if (editor != nullptr) editor->windowResized(width, height);
  }
  bool isOnTop(const CView* view) const;
  bool isBlocked() const { return editor != nullptr && editor->isBlocked(); }

  CEditorInterface* editor;
  const CFontDesc* defaultFont = nullptr;
  std::vector<KvControl*> onTop;
  KvControl* modalView = nullptr;
  Held<KvControl> gesture;  // took a press while it had all input
  Held<KvControl> inUse;
  KeyFocus focus{*this};
  HeldKey heldKey;
  UsedKeys usedKeys;
  bool hadFocus = false;  // the window, at the last tick
  bool walksByKeys = false;
  bool keyUsed = false;  // the last one that was pressed
  bool repeating = false;
  bool redrawRequested = false;
  bool ticking = false;
};

}  // namespace zum
