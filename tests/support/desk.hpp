// A frame without a screen, and whoever listens to its controls, for tests of controls.
#pragma once

#include <sstream>
#include <string>
#include <utility>

#include "platform/offscreen_window.hpp"
#include "toolkit/control_frame.hpp"

namespace zum::test {

class Desk : public CControlListener {
 public:
  Desk() {
    frame->open(0, "", [this](const WindowRequest& request, WindowEvents& events) {
      auto opened = std::make_unique<OffscreenWindow>(request, events);
      window = opened.get();
      return opened;
    });
    frame->idle();
  }
  ~Desk() override { frame->forget(); }

  template <class Control, class... More>
  Control* add(const CRect& rect, int tag, const More&... more) {
    auto* const control = new Control(rect, this, tag, *frame, more...);
    frame->addView(control);
    return control;
  }
  void ticks(int count) {
    for (int i = 0; i < count; ++i) frame->idle();
  }
  long drawnPixels(int count = 1) {
    window->forgetShows();
    ticks(count);
    return window->shownPixels();
  }
  void press(int x, int y, int buttonWord = buttons::kLeft) {
    window->press(x, y, buttonWord);
    frame->idle();
  }
  void drag(int x, int y, int buttonWord = buttons::kLeft) {
    window->move(x, y, buttonWord);
    frame->idle();
  }
  void release(int x, int y) {
    window->release(x, y);
    frame->idle();
  }
  void click(int x, int y, int buttonWord = buttons::kLeft) {
    press(x, y, buttonWord);
    release(x, y);
  }
  void wheel(int x, int y, float notches, int buttonWord = 0) {
    window->wheel(x, y, notches, buttonWord);
    frame->idle();
  }
  void key(std::uint8_t virt) {
    window->keyDown({0, virt, 0});
    frame->idle();
  }

  void valueChanged(CControl& control) override {
    log << control.getTag() << ':' << control.getValue() << ' ';
  }
  void controlBeginEdit(CControl& /*control*/) override { log << "( "; }
  void controlEndEdit(CControl& /*control*/) override { log << ") "; }
  /// What was told since the last call: each `tag:value`, and edits as brackets.
  std::string told() { return std::exchange(log, std::ostringstream()).str(); }

  KvFrame* frame = new KvFrame({0, 0, 300, 200}, nullptr);
  OffscreenWindow* window = nullptr;
  std::ostringstream log;
};

}  // namespace zum::test
