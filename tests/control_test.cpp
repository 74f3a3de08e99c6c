// Controls as a user moves them: what they tell, what they show, and who gets the mouse.
#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <limits>

#include "support/desk.hpp"
#include "support/temporary_folder.hpp"
#include "toolkit/bound_value.hpp"
#include "toolkit/button.hpp"
#include "toolkit/display.hpp"
#include "toolkit/image.hpp"
#include "toolkit/knob.hpp"
#include "toolkit/mouse_area.hpp"
#include "toolkit/panel.hpp"

namespace zum::test {
namespace {

constexpr CRect kPlace{10, 10, 40, 40};
constexpr int kShift = buttons::kLeft | buttons::kShift;
constexpr int kControl = buttons::kLeft | buttons::kControl;
constexpr int kTwice = buttons::kLeft | buttons::kDoubleClick;
CBitmap* const kNoPicture = nullptr;

KvKnob* addKnob(Desk& desk, int tag, float sensitivity = 1.0F) {
  return desk.add<KvKnob>(kPlace, tag, kNoPicture, 30, 128, sensitivity);
}

/// Four pictures of one colour each, one below the other, of the size of kPlace.
Held<CBitmap> strip() {
  Pixels pixels{30, 120, {}};
  for (const std::uint32_t color : {0xFF0000U, 0x00FF00U, 0x0000FFU, 0xFFFFFFU}) {
    pixels.words.insert(pixels.words.end(), 900, 0xFF000000U | color);
  }
  return Held<CBitmap>(new CBitmap(pixels));
}

TEST(Knob, GoesUpWithTheMouseFinerWithShiftAndBackToItsDefault) {
  Desk desk;
  KvKnob* const knob = addKnob(desk, 3);
  desk.add<KvKnob>(CRect{100, 10, 130, 40}, 4, kNoPicture, 30, 128, 1.0F);
  knob->setValue(0.5F);
  knob->setDefaultValue(0.25F);
  desk.press(20, 20);
  desk.window->wheel(110, 20, 1.0F);  // over the other one: that is not touched
  desk.drag(90, 10);
  EXPECT_FLOAT_EQ(knob->getValue(), 0.6F);
  desk.drag(90, 0, kShift);  // finer from here on, without a jump
  EXPECT_FLOAT_EQ(knob->getValue(), 0.605F);
  desk.drag(90, -500);
  EXPECT_EQ(knob->getValue(), 1.0F);
  desk.release(90, -500);
  EXPECT_EQ(desk.taken().size(), 3U);
  for (const int word : {kControl, kTwice}) {
    knob->setValue(0.5F);
    desk.press(20, 20, word);
    EXPECT_EQ(desk.taken(), (std::vector{std::pair(3, 0.25F)})) << word;
    desk.drag(20, 0);
    desk.release(20, 0);
    EXPECT_EQ(knob->getValue(), 0.25F);
  }
  desk.window->wheel(20, 20, 1.0F);
  desk.window->wheel(20, 20, 1.0F, buttons::kShift);
  desk.ticks(1);
  EXPECT_FLOAT_EQ(knob->getValue(), 0.25F + 0.0175F + 0.0055F);
  EXPECT_EQ(desk.begins, 5);
  EXPECT_EQ(desk.ends, 5);
}

// As a host does that hides the window meanwhile.
TEST(Knob, IsLetGoWhenItsReleaseWasLost) {
  Desk desk;
  KvKnob* const knob = addKnob(desk, 3);
  knob->setValue(0.5F);
  desk.press(20, 20);
  desk.drag(20, 10);
  const float left = knob->getValue();
  for (int y = 0; y < 200; y += 50) desk.drag(20, y, 0);
  EXPECT_EQ(knob->getValue(), left);
  EXPECT_EQ(desk.ends, desk.begins);
  desk.press(20, 20);
  desk.drag(20, 10);
  EXPECT_GT(knob->getValue(), left);
}

TEST(Knob, HorizontalOnesGoRightAndSpringBack) {
  Desk desk;
  KvKnob* const knob = addKnob(desk, 3, 0.5F);
  knob->horizontal = knob->springBack = true;
  float held = 0.0F;
  knob->pressFlag = &held;
  knob->setValue(0.5F);
  desk.press(20, 20);
  desk.drag(40, 100);
  EXPECT_FLOAT_EQ(knob->getValue(), 0.6F);
  knob->jumpMode = KvKnob::kJumps;
  desk.drag(25, 20);
  EXPECT_FLOAT_EQ(knob->getValue(), 0.5F);
  desk.drag(31, 20);
  EXPECT_FLOAT_EQ(knob->getValue(), 0.7F);
  desk.release(31, 20);
  EXPECT_EQ(knob->getValue(), 0.5F);
  desk.window->wheel(20, 20, 1.0F);
  desk.ticks(1);
  EXPECT_EQ(knob->getValue(), 0.5F);
}

TEST(Knob, FollowsItsVariableUnlessItIsHeldAndShowsThePictureOfItsValue) {
  Desk desk;
  const Held<CBitmap> pictures = strip();
  auto* const knob = desk.add<KvKnob>(kPlace, 3, pictures.get(), 30, 4, 1.0F);
  float variable = 0.0F;
  knob->bind(&variable, 1.0F, -1.0F);
  EXPECT_EQ(knob->getValue(), 0.5F);
  desk.ticks(1);
  EXPECT_EQ(desk.window->pixel(20, 20), 0x00FF00U);
  desk.press(20, 20);
  desk.drag(20, 0);
  variable = -1.0F;
  desk.ticks(1);
  EXPECT_FLOAT_EQ(knob->getValue(), 0.7F);
  EXPECT_EQ(desk.window->pixel(20, 20), 0x0000FFU);
  desk.release(20, 0);
  EXPECT_EQ(desk.window->pixel(20, 20), 0xFF0000U);
  variable = 1.0F;
  desk.ticks(1);
  EXPECT_EQ(desk.window->pixel(20, 20), 0xFFFFFFU);
  const FilmStrip many{nullptr, 1, 128};
  for (const bool rounded : {false, true}) {
    EXPECT_EQ(many.frameAt(1.0F, rounded), 127);
    EXPECT_EQ(many.frameAt(-5.0F, rounded), -1);
    EXPECT_EQ(many.frameAt(std::numeric_limits<float>::quiet_NaN(), rounded), -1);
  }
  EXPECT_EQ(many.frameAt(1e30F, false), 128);  // not there
}

TEST(Frame, DrawsWhatChangedAndNothingElse) {
  Desk desk;
  KvKnob* const knob = addKnob(desk, 3);
  desk.add<KvKnob>(CRect{100, 100, 130, 130}, 4, kNoPicture, 30, 128, 1.0F);
  knob->setDirty(true);
  EXPECT_EQ(desk.drawnPixels(), 900);
  EXPECT_EQ(desk.drawnPixels(100), 0);
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

TEST(Groups, OfTwoPagesOnOnePlaceTheOneThatIsShownAnswers) {
  Desk desk;
  GroupMask mask;
  KvKnob* const pages[] = {addKnob(desk, 1), addKnob(desk, 2)};
  for (int i = 0; i < 2; ++i) {
    pages[i]->group = 70 + i;
    pages[i]->groupMask = &mask;
  }
  float variable = 0.5F;
  pages[0]->bind(&variable, 1.0F, 0.0F);
  for (int shown = 0; shown < 2; ++shown) {
    mask.set(70, shown == 0);
    mask.set(71, shown == 1);
    desk.click(20, 20, kControl);
    EXPECT_EQ(desk.taken().at(0).first, 1 + shown);
  }
  variable = 1.0F;
  desk.ticks(1);
  EXPECT_NE(pages[0]->getValue(), 1.0F);  // hidden: reads nothing
  mask.set(0, false);                     // always shown
  EXPECT_TRUE(mask.test(0));
}

TEST(Companions, ComeAfterTwoTicksAndGoAfterFive) {
  Desk desk;
  KvKnob* const knob = addKnob(desk, 3);
  auto* const readout = desk.add<KvDisplay>(CRect{50, 10, 90, 30}, 9, kNoPicture, 0, 0);
  knob->addHiddenCompanion(readout);
  const auto ticksUntil = [&](bool shown) {
    int count = 0;
    while (count < 20 && readout->isVisible() != shown) ++count, desk.ticks(1);
    return count;
  };
  EXPECT_FALSE(readout->isVisible());
  desk.window->move(20, 20);
  desk.window->move(200, 20);  // over and away
  EXPECT_EQ(ticksUntil(true), 20);
  desk.window->move(20, 20);
  EXPECT_EQ(ticksUntil(true), 2);
  desk.window->leave();
  EXPECT_EQ(ticksUntil(false), 5);
  desk.press(20, 20);
  EXPECT_TRUE(readout->isVisible());
  desk.drag(200, 20);
  desk.ticks(20);
  EXPECT_TRUE(readout->isVisible());  // while it is held
  desk.window->release(200, 20);
  EXPECT_LE(ticksUntil(false), 6);
}

TEST(Panel, TakesAllInputUntilAPressOutsideAndStaysInsideTheFrame) {
  Desk desk;
  KvKnob* const knob = addKnob(desk, 3);
  auto* const panel = desk.add<KvViewContainer>(CRect{0, 0, 100, 60}, 50);
  auto* const slider = new KvKnob({0, 0, 80, 10}, &desk, 17, *desk.frame, nullptr, 10, 75, 0.65F);
  slider->horizontal = true;
  panel->addView(slider, 5, 20);
  panel->setVisible(false);
  panel->flags |= KvControl::kFillsBackground;
  panel->backgroundColor = kRedColor;
  knob->setPopupPanel(panel);
  knob->setHandleBorder(3);
  knob->setBoundsAndArea(280, 180, 300, 200);
  EXPECT_EQ(knob->getMouseableArea(), (CRect{277, 177, 303, 203}));
  panel->setBoundsAndArea(50, 50, 150, 110);
  EXPECT_EQ(slider->getViewSize(), (CRect{55, 70, 135, 80}));
  desk.click(290, 190, buttons::kRight);
  EXPECT_EQ(panel->getViewSize(), (CRect{200, 140, 300, 200}));
  EXPECT_EQ(slider->getViewSize(), (CRect{205, 160, 285, 170}));
  EXPECT_EQ(panel->getTag(), 3);
  EXPECT_EQ(desk.window->pixel(299, 141), 0xFF0000U);
  desk.press(210, 165);
  desk.drag(310, 165);
  EXPECT_FLOAT_EQ(slider->getValue(), 0.65F);
  desk.release(310, 165);
  auto* const second = desk.add<KvViewContainer>(CRect{0, 0, 20, 20}, 51);
  const CPoint corner{0, 0};
  second->popup(PopupMode::closesInside, &corner, 0);
  EXPECT_EQ(desk.frame->getModalView(), second);
  desk.click(250, 50);  // outside: nothing
  EXPECT_EQ(desk.frame->getModalView(), second);
  desk.click(10, 10);
  EXPECT_EQ(desk.frame->getModalView(), panel);
  desk.taken();
  desk.click(20, 20);
  EXPECT_EQ(desk.frame->getModalView(), nullptr);
  EXPECT_FALSE(panel->isVisible());
  EXPECT_TRUE(desk.taken().empty());
  EXPECT_NE(desk.window->pixel(299, 141), 0xFF0000U);
  desk.click(290, 190, kControl);
  EXPECT_EQ(desk.taken().size(), 1U);
}

TEST(Panel, GivesTheInputBackInWhateverOrderPanelsClose) {
  std::vector<std::size_t> order{0, 1, 2};
  do {
    Desk desk;
    int tag = 0;
    std::vector<KvViewContainer*> panels(3);
    for (KvViewContainer*& panel : panels) panel = desk.add<KvViewContainer>(kPlace, tag++);
    // The last one comes up twice, and lies on top then.
    for (const std::size_t i : {2U, 0U, 1U, 2U}) panels[i]->popup(PopupMode::none, nullptr, 0);
    std::vector<KvViewContainer*> open = panels;
    for (const std::size_t i : order) {
      std::erase(open, panels[i]);
      if (i == 1) panels[i]->closePopup();
      if (i != 1) desk.frame->removeView(panels[i]);
      EXPECT_EQ(desk.frame->getModalView(), open.empty() ? nullptr : open.back());
    }
  } while (std::ranges::next_permutation(order).found);
}

TEST(Gesture, IsOneEditWhateverComesBetween) {
  enum Between { wheel, wheelElsewhere, escape };
  for (const Between between : {wheel, wheelElsewhere, escape}) {
    Desk desk;
    auto* const panel = desk.add<KvViewContainer>(CRect{100, 0, 200, 60}, 50);
    float variable = 0.25F;
    for (const int top : {10, 30}) {
      auto* const slider = new KvKnob({0, 0, 80, 10}, &desk, 17, *desk.frame, nullptr, 10, 75, 1);
      slider->horizontal = true;
      slider->bind(&variable, 1.0F, 0.0F);
      panel->addView(slider, 5, top);
    }
    KvControl& slider = *panel->children()[0].get();
    panel->popup(PopupMode::closesOutside, nullptr, 3);
    desk.press(120, 15);
    desk.drag(130, 15);
    const bool wheels = between != escape;
    if (wheels) desk.window->wheel(130, between == wheel ? 15 : 35, 1.0F);
    if (!wheels) desk.window->keyDown({0, keys::kEscape, 0});
    desk.ticks(1);
    EXPECT_EQ(std::pair(desk.begins, desk.ends), std::pair(1, wheels ? 0 : 1)) << between;
    EXPECT_EQ(panel->isVisible(), wheels);
    desk.drag(150, 15);
    EXPECT_FLOAT_EQ(slider.getValue(), wheels ? 0.55F : 0.35F) << between;
    desk.release(150, 15);
    EXPECT_EQ(std::pair(desk.begins, desk.ends), std::pair(1, 1)) << between;
    panel->popup(PopupMode::closesOutside, nullptr, 3);
    desk.ticks(1);
    EXPECT_EQ(slider.getValue(), variable);  // which it follows again
  }
}

TEST(Button, TellsByItsModeWhatAPressAndAReleaseMean) {
  using enum ButtonMode;
  const struct {
    ButtonMode mode;
    int states;
    float start;
    int word;
    std::vector<float> pressed;
    std::vector<float> released;
  } cases[] = {
      {momentary, 2, 0, buttons::kLeft, {1}, {0}}, {cycle, 2, 0, buttons::kLeft, {1}, {}},
      {cycle, 2, 1, buttons::kRight, {0}, {}},     {cycle, 3, 1, buttons::kLeft, {2}, {}},
      {cycle, 3, 1, buttons::kRight, {0}, {}},     {press, 2, 1, buttons::kLeft, {1}, {}},
      {pressAgain, 2, 0, buttons::kLeft, {1}, {}}, {untilFree, 2, 0, buttons::kLeft, {1}, {0}},
      {pulse, 2, 0, buttons::kLeft, {1}, {0}},     {toggle, 3, 0, buttons::kRight, {2}, {}},
      {toggle, 3, 2, buttons::kLeft, {0}, {}},     {click, 2, 0, buttons::kLeft, {}, {1}},
  };
  for (const auto& [mode, states, start, word, pressed, released] : cases) {
    Desk desk;
    auto* const button = desk.add<KvButton>(kPlace, 5, nullptr, 0.0F, mode);
    button->setStateCount(states);
    button->setValue(start);
    desk.press(20, 20, word);
    EXPECT_EQ(desk.takenValues(), pressed) << static_cast<int>(mode);
    // Outside: a click alone needs the pointer inside.
    desk.release(mode == click ? 20 : 100, 20);
    EXPECT_EQ(desk.takenValues(), released) << static_cast<int>(mode);
    EXPECT_EQ(desk.begins, desk.ends);
  }
}

TEST(Button, ShowsVariableAndConditionAndThePressedPicture) {
  Desk desk;
  const Held<CBitmap> pictures = strip();
  auto* const button = desk.add<KvButton>(kPlace, 5, nullptr, 0.0F, ButtonMode::momentary);
  button->setBackground(pictures);
  button->drawFlags = KvButton::kPressedPicture;
  const auto shown = [&desk] { return desk.window->pixel(20, 20); };
  std::atomic<std::int32_t> learning{-1};
  button->setCondition(std::make_unique<KvIntEqualCondition>(learning, 4));
  button->setDirty(true);
  desk.ticks(1);
  EXPECT_EQ(shown(), 0xFF0000U);
  learning = 4;
  desk.ticks(1);
  EXPECT_EQ(shown(), 0x0000FFU);
  desk.press(20, 20);
  EXPECT_EQ(shown(), 0xFFFFFFU);
  learning = -1;
  desk.ticks(1);
  desk.release(20, 20);
  EXPECT_EQ(shown(), 0xFF0000U);
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

TEST(Display, WritesNumbersWithUnitsAndShowsPictures) {
  Desk desk;
  auto* const display = desk.add<KvDisplay>(kPlace, 9, kNoPicture, 0, 0);
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
  desk.click(20, 20);
  EXPECT_TRUE(desk.taken().empty());  // the mouse is off
  display->setMouseEnabled(true);
  display->showNumber = true;
  level = 0.5F;
  desk.press(20, 20);
  desk.drag(20, 10);
  desk.release(20, 10);
  EXPECT_FLOAT_EQ(desk.taken().at(0).second, 0.6F);

  const Held<CBitmap> pictures = strip();
  auto* const picture = desk.add<KvDisplay>(kPlace, 10, pictures.get(), 30, 4);
  float index = 2.7F;
  picture->bind(&index, 1.0F, 0.0F, true);
  desk.ticks(1);
  EXPECT_EQ(desk.window->pixel(20, 20), 0x0000FFU);
  index = 2.0F;  // the same picture
  EXPECT_EQ(desk.drawnPixels(), 0);
  picture->roundFrame = true;
  index = 2.5F;
  desk.ticks(1);
  EXPECT_EQ(desk.window->pixel(20, 20), 0xFFFFFFU);
}

TEST(MouseArea, PublishesWhereItIsPressed) {
  Desk desk;
  auto* const area = desk.add<KvMouseArea>(CRect{100, 100, 200, 120}, 163);
  using Fields = std::array<float, KvMouseArea::kFields>;
  desk.press(150, 105, kShift);
  EXPECT_EQ(area->published(), (Fields{1, 0, 0.5F, 0.25F, 1, 0}));
  desk.drag(500, 0);
  EXPECT_EQ(area->published(), (Fields{1, 0, 1, 0, 0, 0}));
  desk.release(500, 0);
  EXPECT_EQ(area->published(), (Fields{0, 0, 1, 0, 0, 0}));
  EXPECT_EQ(desk.taken().size(), 3U);
  EXPECT_EQ(desk.begins + desk.ends, 2);
}

}  // namespace
}  // namespace zum::test
