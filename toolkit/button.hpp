// A button drawn from a strip of pictures: momentary, cycling through its states, or a switch.
#pragma once

#include <memory>
#include <string>

#include "toolkit/base_control.hpp"
#include "toolkit/bound_value.hpp"
#include "toolkit/condition.hpp"
#include "toolkit/menu_user_entry.hpp"

namespace zum {

enum class ButtonMode : std::uint8_t {
  momentary = 0,   // 1 while held
  cycle = 1,       // the next state with each press; with the right button the first of many
  press = 2,       // 1 with each press
  pressAgain = 3,  // the same
  untilFree = 4,   // 1 until no button is held
  pulse = 5,       // 1, and 0 with the release
  toggle = 6,      // 0 and 1 by turns, or 0 and 2 with the right button
  click = 7,       // the next state with a release inside
  opensMenu = 8,
};

/// [main] The value is the number of the state.
class KvButton : public KvControl, public KvOptionMenuExtraCallBack {
 public:
  // bits of `drawFlags`
  static constexpr std::uint32_t kPressedPicture = 1U << 0U;
  static constexpr std::uint32_t kHoverPicture = 1U << 1U;

  /// A null caption is none. `buttonMode` may be changed later.
  KvButton(const CRect& rect, CControlListener* controlListener, int controlTag, KvFrame& owner,
           const char* buttonCaption, float initialValue, ButtonMode buttonMode);

  void setStateCount(int count);
  /// Shows a variable that holds the number of the state.
  void bind(const float* variable) { boundValue = {variable}; }
  void setCondition(std::unique_ptr<KvCondition> shown) { condition = std::move(shown); }

  void draw(CDrawContext& context) override;
  MouseResult onMouseDown(CPoint& where, int buttons) override;
  MouseResult onMouseMoved(CPoint& where, int buttons) override;
  MouseResult onMouseUp(CPoint& where, int buttons) override;
  void onMouseEntered(CPoint& where, int buttons) override;
  void onMouseExited(CPoint& where, int buttons) override;
  void idleStep(int flag) override;
  /// Nothing is told: a release may mean something.
  void letGo() override;
  void setPopupPanel(KvViewContainer* panel) override { popupPanel = panel; }
  bool takesFocus() const override { return getMouseEnabled(); }
  /// Space and Return press it.
  bool onFocusKey(const WindowKey& key, bool repeats) override;
  /// A choice in its menu becomes the value.
  void menuChose(int entry) override;

  std::uint32_t drawFlags = 0;
  ButtonMode mode;
  KvControl* menu = nullptr;        // of opensMenu
  bool takesHiddenPresses = false;  // while it is held, also in a group that is hidden

 protected:
  ~KvButton() override = default;
  /// Held by the user, who is still on it.
  bool isPressed() const { return pressed; }

 private:
  float shownState() const;
  void refresh();
  void send(float state);
  void nextState(int buttons);

  KvViewContainer* popupPanel = nullptr;
  std::string caption;
  int stateCount = 2;
  BoundValue boundValue;
  std::unique_ptr<KvCondition> condition;
  float drawnState = 0.0F;  // as of the last tick; it may lie outside of the states
  bool wasDrawn = false;
  bool pressed = false;
  bool held = false;  // pressed, but perhaps left by the pointer
  bool hovering = false;
};

}  // namespace zum
