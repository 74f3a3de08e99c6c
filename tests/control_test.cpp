// Controls as a user moves them: what they tell, what they show, and who gets the mouse.
#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <limits>

#include "support/desk.hpp"
#include "support/pixel_picture.hpp"
#include "support/temporary_folder.hpp"
#include "toolkit/bound_value.hpp"
#include "toolkit/button.hpp"
#include "toolkit/display.hpp"
#include "toolkit/knob.hpp"
#include "toolkit/mouse_area.hpp"
#include "toolkit/panel.hpp"

namespace zum::test {
namespace {

constexpr CRect kPlace{10, 10, 40, 40};
constexpr int kShift = buttons::kLeft | buttons::kShift;
constexpr int kControl = buttons::kLeft | buttons::kControl;

KvKnob* addKnob(Desk& desk, int tag, const CRect& place = kPlace) {
  return desk.add<KvKnob>(place, tag, nullptr, 30, 128, 1.0F);
}

/// Four pictures one below the other, of the size of kPlace, in the colours 1 to 4.
Held<CBitmap> strip() {
  std::vector<std::uint32_t> words;
  for (std::uint32_t color = 1; color <= 4; ++color) {
    words.insert(words.end(), 900, 0xFF000000U | color);
  }
  return pixelPicture(30, 120, std::move(words));
}
/// Which of them is to be seen after a tick.
std::uint32_t shown(Desk& desk) {
  desk.ticks(1);
  return desk.window->pixel(20, 20);
}

TEST(Knob, GoesUpWithTheMouseFinerWithShiftAndBackToItsDefault) {
  Desk desk;
  KvKnob* const knob = addKnob(desk, 3);
  addKnob(desk, 4, {100, 10, 130, 40});
  knob->setValue(0.5F);
  knob->setDefaultValue(0.25F);
  desk.press(20, 20);
  desk.wheel(110, 20, 1.0F);  // over the other one: that is not touched
  desk.drag(90, 10);
  desk.drag(90, 0, kShift);  // finer from here on, without a jump
  desk.drag(90, -500);
  desk.release(90, -500);
  EXPECT_EQ(desk.told(), "( 3:0.6 3:0.605 3:1 ) ");
  for (const int word : {kControl, buttons::kLeft | buttons::kDoubleClick}) {
    knob->setValue(0.5F);
    desk.press(20, 20, word);
    desk.drag(20, 0);
    desk.release(20, 0);
    EXPECT_EQ(desk.told(), "( 3:0.25 ) ") << word;
  }
  desk.wheel(20, 20, 1.0F);
  desk.wheel(20, 20, 1.0F, buttons::kShift);
  EXPECT_EQ(desk.told(), "( 3:0.2675 ) ( 3:0.273 ) ");
}

TEST(Knob, HorizontalOnesGoRightAndSpringBack) {
  Desk desk;
  KvKnob* const knob = addKnob(desk, 3);
  knob->horizontal = knob->springBack = true;
  knob->setHandleBorder(3);
  knob->setValue(0.5F);
  desk.press(8, 20);
  desk.drag(18, 100);
  knob->jumpMode = KvKnob::kJumps;
  desk.drag(25, 20);
  desk.drag(31, 20);
  desk.release(31, 20);
  desk.wheel(20, 20, 1.0F);
  EXPECT_EQ(desk.told(), "( 3:0.6 3:0.5 3:0.7 3:0.5 ) ");
}

TEST(Knob, FollowsItsVariableUnlessItIsHeldAndShowsThePictureOfItsValue) {
  Desk desk;
  const Held<CBitmap> pictures = strip();
  auto* const knob = desk.add<KvKnob>(kPlace, 3, pictures.get(), 30, 4, 1.0F);
  float variable = 0.0F;
  knob->bind(&variable, 1.0F, -1.0F);
  EXPECT_EQ(shown(desk), 2U);
  desk.press(20, 20);
  desk.drag(20, 0);
  variable = -1.0F;
  EXPECT_EQ(shown(desk), 3U);
  desk.release(20, 0);
  EXPECT_EQ(shown(desk), 1U);
  variable = 1.0F;
  EXPECT_EQ(shown(desk), 4U);
  const FilmStrip many{nullptr, 1, 128};
  for (const bool rounded : {false, true}) {
    EXPECT_EQ(many.frameAt(1.0F, rounded), 127);
    EXPECT_EQ(many.frameAt(std::numeric_limits<float>::quiet_NaN(), rounded), -1);
  }
  EXPECT_EQ(many.frameAt(1e30F, false), 128);  // not there
}

TEST(Frame, DrawsWhatIsUncoveredAndNothingWithoutItsWindow) {
  Desk desk;
  KvKnob* const knob = addKnob(desk, 3);
  desk.ticks(1);
  desk.window->expose(0, 0, 5, 5);
  EXPECT_EQ(desk.drawnPixels(), 25);
  desk.window->vanish();
  knob->setDirty(true);
  desk.ticks(1);
  EXPECT_TRUE(desk.frame->isGone());
  Damage damage;
  for (int i = 0; i < 100; ++i) damage.add({3 * i, i % 7, 3 * i + 1, i % 7 + 1});
  EXPECT_LE(damage.parts().size(), Damage::kRects);
  CRect all;
  for (const CRect& part : damage.parts()) all = all.join(part);
  EXPECT_EQ(all, (CRect{0, 0, 298, 7}));
}

TEST(Companions, ComeAfterTwoTicksAndGoAfterFive) {
  Desk desk;
  auto* const readout = desk.add<KvDisplay>(CRect{50, 10, 90, 30}, 9, nullptr, 0, 0);
  addKnob(desk, 3)->addHiddenCompanion(readout);
  const auto ticksUntil = [&](bool visible) {
    int count = 0;
    for (; count < 20 && readout->isVisible() != visible; ++count) desk.ticks(1);
    return count;
  };
  desk.window->move(20, 20);
  desk.window->move(200, 20);  // over and away
  EXPECT_EQ(ticksUntil(true), 20);
  desk.window->move(20, 20);
  EXPECT_EQ(ticksUntil(true), 2);
  desk.window->leave();
  EXPECT_EQ(ticksUntil(false), 5);
  desk.press(20, 20);
  EXPECT_EQ(ticksUntil(true), 0);
  desk.drag(200, 20);
  EXPECT_EQ(ticksUntil(false), 20);  // while it is held
  desk.release(200, 20);
  EXPECT_EQ(ticksUntil(false), 4);  // and one with the release
}

/// With a panel and in it a horizontal slider.
struct PanelDesk : Desk {
  void addSlider(int top) {
    slider = new KvKnob({0, 0, 80, 10}, this, 17, *frame, nullptr, 10, 75, 0.65F);
    slider->horizontal = true;
    panel->addView(slider, 5, top);
  }
  KvViewContainer* panel = add<KvViewContainer>(CRect{100, 0, 200, 60}, 50);
  KvKnob* slider = nullptr;
};

TEST(Panel, TakesAllInputUntilAPressOutsideAndStaysInsideTheFrame) {
  PanelDesk desk;
  KvViewContainer* const panel = desk.panel;
  desk.addSlider(20);
  addKnob(desk, 3, {280, 180, 300, 200})->setPopupPanel(panel);
  addKnob(desk, 4);
  panel->setVisible(false);
  panel->flags |= KvControl::kFillsBackground;
  panel->backgroundColor = kRedColor;
  desk.click(290, 190, buttons::kRight);
  EXPECT_EQ(panel->getViewSize(), (CRect{200, 140, 300, 200}));
  EXPECT_EQ(panel->getTag(), 3);
  EXPECT_EQ(desk.window->pixel(299, 141), 0xFF0000U);
  desk.press(210, 165);
  desk.drag(310, 165);
  desk.release(310, 165);
  auto* const second = desk.add<KvViewContainer>(CRect{0, 0, 20, 20}, 51);
  second->popup(PopupMode::closesInside, nullptr, 0);
  desk.click(250, 50);  // outside: nothing
  EXPECT_EQ(desk.frame->getModalView(), second);
  desk.click(10, 10);
  EXPECT_EQ(desk.frame->getModalView(), panel);
  desk.click(20, 20, kControl);
  EXPECT_EQ(desk.frame->getModalView(), nullptr);
  EXPECT_NE(desk.window->pixel(299, 141), 0xFF0000U);
  EXPECT_EQ(desk.told(), "( 17:0.65 ) ");
  desk.click(20, 20, kControl);
  EXPECT_EQ(desk.told(), "( 4:0.5 ) ");
}

TEST(Panel, GivesTheInputBackInWhateverOrderPanelsClose) {
  std::vector<std::size_t> order{0, 1, 2};
  do {
    Desk desk;
    std::vector<KvViewContainer*> open(3);
    for (KvViewContainer*& panel : open) panel = desk.add<KvViewContainer>(kPlace, 0);
    const std::vector<KvViewContainer*> panels = open;
    // The last one comes up twice, and lies on top then.
    for (const std::size_t i : {2U, 0U, 1U, 2U}) panels[i]->popup(PopupMode::none, nullptr, 0);
    for (const std::size_t i : order) {
      std::erase(open, panels[i]);
      if (i == 1) panels[i]->closePopup();
      if (i != 1) desk.frame->removeView(panels[i]);
      EXPECT_EQ(desk.frame->getModalView(), open.empty() ? nullptr : open.back());
    }
  } while (std::ranges::next_permutation(order).found);
}

TEST(Gesture, IsOneEditWhateverComesBetween) {
  enum Between { wheel, wheelElsewhere, escape, lostRelease };
  for (const Between between : {wheel, wheelElsewhere, escape, lostRelease}) {
    PanelDesk desk;
    float variable = 0.25F;
    for (const int top : {30, 10}) {
      desk.addSlider(top);
      desk.slider->bind(&variable, 1.0F, 0.0F);
    }
    if (between != lostRelease) desk.panel->popup(PopupMode::closesOutside, nullptr, 3);
    desk.press(120, 15);
    desk.drag(130, 15);
    if (between <= wheelElsewhere) desk.wheel(130, between == wheel ? 15 : 35, 1.0F);
    if (between == escape) desk.key(keys::kEscape);
    if (between == lostRelease) desk.drag(140, 15, 0);  // as by a host that hides the window
    desk.drag(150, 15);
    EXPECT_EQ(desk.panel->isVisible(), between != escape);
    desk.release(150, 15);
    EXPECT_EQ(desk.told(), between <= wheelElsewhere ? "( 17:0.315 17:0.445 ) " : "( 17:0.315 ) ")
        << between;
    desk.panel->popup(PopupMode::closesOutside, nullptr, 3);
    desk.ticks(1);
    EXPECT_EQ(desk.slider->getValue(), variable);  // which it follows again
  }
}

TEST(Button, TellsByItsModeWhatAPressAndAReleaseMean) {
  using enum ButtonMode;
  constexpr int kLeft = buttons::kLeft;
  constexpr int kRight = buttons::kRight;
  for (const auto& [mode, states, start, word, pressed, released] :
       {std::tuple(momentary, 2, 0.0F, kLeft, "( 5:1 ) ", "( 5:0 ) "),
        {cycle, 2, 0.0F, kRight, "( 5:1 ) ", ""},
        {cycle, 3, 2.0F, kLeft, "( 5:0 ) ", ""},
        {cycle, 3, 1.0F, kRight, "( 5:0 ) ", ""},
        {press, 2, 1.0F, kLeft, "( 5:1 ) ", ""},
        {untilFree, 2, 0.0F, kLeft, "( 5:1 ) ", "( 5:0 ) "},
        {pulse, 2, 0.0F, kLeft, "( 5:1 ) ", "( 5:0 ) "},
        {toggle, 3, 0.0F, kRight, "( 5:2 ) ", ""},
        {toggle, 3, 2.0F, kLeft, "( 5:0 ) ", ""},
        {click, 2, 0.0F, kLeft, "", "( 5:1 ) "}}) {
    Desk desk;
    auto* const button = desk.add<KvButton>(kPlace, 5, nullptr, 0.0F, mode);
    button->setStateCount(states);
    button->setValue(start);
    desk.press(20, 20, word);
    EXPECT_EQ(desk.told(), pressed) << static_cast<int>(mode);
    // Outside: a click alone needs the pointer inside.
    desk.release(mode == click ? 20 : 100, 20);
    EXPECT_EQ(desk.told(), released) << static_cast<int>(mode);
  }
}

TEST(Button, ShowsVariableAndConditionAndThePressedPicture) {
  Desk desk;
  const Held<CBitmap> pictures = strip();
  auto* const button = desk.add<KvButton>(kPlace, 5, nullptr, 0.0F, ButtonMode::momentary);
  button->setBackground(pictures);
  button->drawFlags = KvButton::kPressedPicture;
  std::atomic<std::int32_t> learning{-1};
  button->setCondition(std::make_unique<KvIntEqualCondition>(learning, 4));
  button->setDirty(true);
  EXPECT_EQ(shown(desk), 1U);
  learning = 4;
  EXPECT_EQ(shown(desk), 3U);
  desk.press(20, 20);
  EXPECT_EQ(shown(desk), 4U);
  learning = -1;
  desk.release(20, 20);
  EXPECT_EQ(shown(desk), 1U);
}

// As a host may have set it for its process.
TEST(NumberText, IsBehindAPointWhereTheLocaleWantsAComma) {
  const TemporaryFolder folder;
  const std::string command = "localedef -i de_DE -f ISO-8859-1 " + folder.string() + "/de_DE";
  ASSERT_EQ(std::system(command.c_str()), 0) << "is the package locales installed?";
  setenv("LOCPATH", folder.string().c_str(), 1);
  ASSERT_NE(std::setlocale(LC_NUMERIC, "de_DE"), nullptr);
  EXPECT_EQ(numberText(3.14159F, 5, 1), "  3.1");
  (void)std::setlocale(LC_NUMERIC, "C");
  unsetenv("LOCPATH");
}

TEST(Display, WritesNumbersWithUnitsMayBeDraggedAndShowsPictures) {
  Desk desk;
  auto* const display = desk.add<KvDisplay>(kPlace, 9, nullptr, 0, 0);
  float level = 3.14159F;
  display->bind(&level, 100.0F, 0.0F, false);
  display->decimalsWidth = 3;
  display->decimals = 1;
  display->setUnit("db");
  EXPECT_EQ(display->text(), "3.1db");
  display->prefix = "Out";
  display->intFormat = true;
  EXPECT_EQ(display->text(), "Out   3db");
  display->setOffBelow(45.0F, "OFF");
  EXPECT_EQ(display->text(), "OFF");
  level = std::numeric_limits<float>::infinity();
  display->decimals = display->decimalsWidth = 1000;
  EXPECT_FALSE(display->text().empty());
  display->showNumber = true;
  level = 0.5F;
  for (const bool takesMouse : {false, true}) {
    display->setMouseEnabled(takesMouse);
    desk.press(20, 20);
    desk.drag(20, 10);
    desk.release(20, 10);
    EXPECT_EQ(desk.told(), takesMouse ? "( 9:0.6 ) " : "");
  }

  const Held<CBitmap> pictures = strip();
  auto* const picture = desk.add<KvDisplay>(kPlace, 10, pictures.get(), 30, 4);
  float index = 2.7F;
  picture->bind(&index, 1.0F, 0.0F, true);
  EXPECT_EQ(shown(desk), 3U);
  index = 2.0F;  // the same picture
  EXPECT_EQ(desk.drawnPixels(), 0);
  picture->roundFrame = true;
  index = 2.5F;
  EXPECT_EQ(shown(desk), 4U);
}

TEST(MouseArea, PublishesWhereItIsPressed) {
  Desk desk;
  auto* const area = desk.add<KvMouseArea>(CRect{100, 100, 200, 120}, 163);
  using Fields = std::array<float, KvMouseArea::kFields>;
  desk.press(150, 105, kShift);
  EXPECT_EQ(area->published(), (Fields{1, 0, 0.5F, 0.25F, 1, 0}));
  desk.drag(500, 0);
  desk.release(500, 0);
  EXPECT_EQ(area->published(), (Fields{0, 0, 1, 0, 0, 0}));
  EXPECT_EQ(desk.told(), "( 163:0.5 163:1 163:1 ) ");
}

}  // namespace
}  // namespace zum::test
