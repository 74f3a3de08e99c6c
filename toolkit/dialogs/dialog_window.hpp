// A window of our own beside the one that asks: a message, the choice of a file. Nobody waits for
// it; whoever opened it polls.
#pragma once

#include <string>

#include "toolkit/button.hpp"
#include "toolkit/control_frame.hpp"

namespace zum {

/// Where a dialog comes up.
struct DialogPlace {
  std::uintptr_t inFrontOf = 0;  // the window that it belongs to, as the system names it
  CFrame::WindowOpener opener = openNativeWindow;
  double factor = 1.0;  // pixels of the screen for a logical one
};

/// [main]
class DialogWindow : protected CControlListener, protected CEditorInterface {
 public:
  ~DialogWindow() override;

  /// False where the system has no window to give.
  bool isOpen() const { return frame->nativeHandle() != 0 && !frame->isGone(); }
  /// Answered, or closed by the user.
  bool isDone() const { return answered || frame->isGone(); }
  void idle() { frame->idle(); }
  KvFrame& getFrame() const { return *frame.get(); }

  static constexpr int kOkTag = 1;
  static constexpr int kCancelTag = 2;

 protected:
  static constexpr int kMargin = 12;  // logical pixels, as all below
  static constexpr int kButtonWidth = 90;
  static constexpr int kButtonHeight = 24;

  DialogWindow(CPoint size, const DialogPlace& shownAt);
  void open(const std::string& title);

  template <class View>
  View* put(View* view) {
    frame->addView(view);
    return view;
  }
  /// The `fromRight`th button in the bottom row, counted from 0.
  KvButton* addButton(const char* caption, int tag, int fromRight);
  const CFontDesc* getFont() const { return font.get(); }

  virtual void accept() = 0;
  void finish() { answered = true; }

  void valueChanged(CControl& control) override;
  /// Return and Escape.
  bool keyPressed(const WindowKey& key) override;
  bool keyReleased(const WindowKey& /*key*/) override { return true; }

 private:
  const DialogPlace shownPlace;
  Held<CFontDesc> font;
  Held<KvFrame> frame;
  bool answered = false;
};

}  // namespace zum
