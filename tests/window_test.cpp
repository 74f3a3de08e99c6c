// Controls in a real window, moved by a real mouse: what the off-screen tests cannot see.
#include <gtest/gtest.h>

#include "support/own_display.hpp"
#include "toolkit/control_frame.hpp"
#include "toolkit/knob.hpp"
#include "toolkit/option_menu.hpp"
#include "toolkit/panel.hpp"

namespace zum::test {
namespace {

class WindowTest : public testing::Test, protected CControlListener {
 protected:
  WindowTest() {
    knob->setDefaultValue(0.25F);
    knob->setValue(0.5F);
    panel->addView(slider, 10, 10);
    panel->setVisible(false);
    panel->flags |= KvControl::kFillsBackground;
    panel->backgroundColor = kRedColor;
    knob->setPopupPanel(panel);
    for (const char* row : {"one", "two", "three"}) menu->addEntry(row, -1, false);
    menu->backgroundColor = kGreenColor;
    opened = frame->open(0);
    tick();
  }
  ~WindowTest() override { frame->forget(); }
  template <class View>
  View* put(View* view) {
    frame->addView(view);
    return view;
  }
  void valueChanged(CControl& control) override { last = control.getTag(); }
  // Each is followed by what a host does thirty times a second.
  void at(int x, int y) { robot.moveTo(frame->nativeHandle(), x, y), tick(); }
  void press(unsigned button = 1) { robot.press(button), tick(); }
  void release(unsigned button = 1) { robot.release(button), tick(); }
  void tick() {
    (void)frame->getCurrentMouseButtons();  // all that came before is here now
    frame->idle();
  }
  std::uint32_t pixel(int x, int y) { return robot.pixel(frame->nativeHandle(), x, y); }

  OwnDisplay server;
  Robot robot;
  KvFrame* frame = new KvFrame({0, 0, 300, 200}, nullptr);
  KvKnob* knob = put(new KvKnob({10, 10, 50, 50}, this, 1, *frame, nullptr, 40, 1, 1.0F));
  KvOptionMenu* menu = put(new KvOptionMenu({100, 10, 200, 27}, this, 2, *frame, "", 1));
  KvViewContainer* panel = put(new KvViewContainer({0, 0, 100, 60}, nullptr, 0, *frame));
  KvKnob* slider = new KvKnob({0, 0, 80, 10}, this, 3, *frame, nullptr, 10, 1, 0.65F);
  bool opened = false;
  int last = 0;
};

TEST_F(WindowTest, KnobPanelAndMenuDoWhatTheMouseDoes) {
  ASSERT_TRUE(opened);
  at(30, 30);
  press();
  at(30, 10);
  EXPECT_FLOAT_EQ(knob->getValue(), 0.7F);
  robot.keyDown(0xFFE1);  // Shift
  at(330, 0);             // outside of the window
  robot.keyUp(0xFFE1);
  EXPECT_FLOAT_EQ(knob->getValue(), 0.705F);
  at(30, 30);
  release();
  EXPECT_EQ(last, 1);
  robot.wheel(1);
  tick();
  EXPECT_FLOAT_EQ(knob->getValue(), 0.405F + 0.0175F);
  robot.keyDown(0xFFE3);  // Control
  press();
  release();
  robot.keyUp(0xFFE3);
  EXPECT_EQ(knob->getValue(), 0.25F);

  press(3);
  release(3);
  EXPECT_EQ(pixel(125, 85), 0xFF0000U);  // at the pointer
  const CRect place = slider->getViewSize();
  slider->horizontal = true;
  at(place.left + 5, place.top + 5);
  press();
  at(place.left + 25, place.top + 5);
  release();
  EXPECT_FLOAT_EQ(slider->getValue(), 0.13F);
  at(280, 190);
  press();
  release();
  EXPECT_EQ(pixel(125, 85), 0U);

  at(110, 15);
  press();
  EXPECT_TRUE(menu->isListOpen());
  const CRect list = menu->getListRect();
  EXPECT_EQ(pixel(list.right - 3, list.bottom - 3), 0x00FF00U);
  at(list.left + 5, list.top + 1 + 17 + 5);
  release();
  EXPECT_EQ(menu->getSelectedEntry(), 1);
  EXPECT_EQ(last, 2);
  EXPECT_EQ(pixel(list.right - 3, list.bottom - 3), 0U);
}

}  // namespace
}  // namespace zum::test
