// Scopes, the wave picture and the step pattern: what is read when, what is seen, and what the
// mouse draws.
#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <vector>

#include "support/desk.hpp"
#include "toolkit/panel.hpp"
#include "toolkit/scope_view.hpp"
#include "toolkit/table_view.hpp"
#include "toolkit/wave_form_view.hpp"

namespace zum::test {
namespace {

constexpr CRect kPlace{10, 10, 92, 60};  // bars of 80 by 48 pixels inside of a border

TEST(ScopeView, ShowsTheRingOnceATickAndReadsNothingWhileItIsHidden) {
  Desk desk;
  GroupMask mask;
  auto* const scope = desk.add<KvScopeView>(kPlace, 200, KvBufferDraw::Style::filled);
  std::array<float, 139> ring{};
  std::int32_t newest = 0;
  scope->setRing(ring.data(), &newest, 139);
  scope->setColors(kRedColor, kGreenColor, kBlueColor);
  scope->groupMask = &mask;
  scope->group = 3;
  ring.fill(1.0F);
  desk.ticks(3);
  EXPECT_EQ(desk.window->shows(), 0);
  mask.set(3, true);
  desk.ticks(1);
  EXPECT_EQ(desk.window->pixel(50, 40), 0xFF0000U);  // at once, and up to date
  ring.fill(0.0F);
  desk.ticks(2);
  EXPECT_EQ(desk.window->pixel(50, 40), 0x0000FFU);
  scope->setBounds(10, 10, 50, 30);
  desk.ticks(2);
  desk.click(20, 20);
  EXPECT_TRUE(desk.taken().empty());
}

TEST(WaveFormView, IsDrawnWhenTheChoiceChanges) {
  Desk desk;
  std::vector<float> low(KvWaveFormView::kPoints, -1.0F);
  std::vector<float> high(KvWaveFormView::kPoints, 1.0F);
  float style = 0.0F;
  float wave = 0.0F;
  const KvWaveFormView::Waves waves{low.data(), high.data(), low.data(), low.data(), low.data()};
  auto* const view = desk.add<KvWaveFormView>(kPlace, 64, waves, &style, &wave);
  view->setColors(kRedColor, kRedColor, kRedColor);
  const auto seenHigh = [&desk] { return desk.window->pixel(50, 12) == 0xFF0000U; };
  desk.ticks(1);
  EXPECT_FALSE(seenHigh());
  wave = 1.7F;
  desk.ticks(1);
  EXPECT_TRUE(seenHigh());
  for (const float none : {5.0F, -1.0F, std::numeric_limits<float>::quiet_NaN()}) {
    wave = none;
    desk.ticks(1);
    EXPECT_TRUE(seenHigh()) << none;
  }
  wave = 2.0F;
  desk.ticks(1);
  EXPECT_EQ(desk.drawnPixels(5), 0);
}

class Pattern : public testing::Test {
 protected:
  Pattern() {
    for (int i = 0; i < KvTableXY::kSteps; ++i) table.setValue(i, 0.5F);
    view->setTable(&table);
  }
  /// Pixels of the middle of a step and of a value.
  static int x(int step) { return 16 + 10 * step; }
  static int y(float value) { return 59 - static_cast<int>(value * 48.0F); }
  std::vector<float> values() const {
    std::vector<float> list;
    for (int i = 0; i < table.size(); ++i) list.push_back(table.cell(i, 0));
    return list;
  }

  Desk desk;
  KvTableXY table;
  KvTableView* view = desk.add<KvTableView>(kPlace, 68);
};

TEST_F(Pattern, IsDrawnByOneStrokeThatLeavesNoStepOutAndStaysInside) {
  desk.press(x(1), y(0.25F));
  desk.drag(x(3), y(0.75F));
  desk.drag(500, -500);
  desk.release(500, -500);
  desk.drag(x(0), y(0.0F), 0);
  EXPECT_EQ(values(), (std::vector{0.5F, 0.25F, 0.5F, 0.75F, 0.8125F, 0.875F, 0.9375F, 1.0F}));
  constexpr int kLine = buttons::kLeft | buttons::kShift;
  desk.press(x(7), y(1.0F), kLine);
  desk.drag(-100, 500, kLine);
  for (int i = 0; i < 8; ++i) EXPECT_NEAR(table.cell(i, 0), static_cast<float>(i) / 7.0F, 1e-6F);
  desk.release(-100, 500);
  // A line that went too far gives back what it covered, on either side of its start.
  for (int i = 0; i < 8; ++i) table.setValue(i, 0.125F * static_cast<float>(i));
  desk.press(x(4), y(1.0F), kLine);
  desk.drag(x(4), y(0.25F), kLine);
  for (const int to : {7, 1, 5}) {
    desk.drag(x(to), y(0.5F), kLine);
    desk.window->wheel(x(6), 30, 1.0F);  // means nothing meanwhile
  }
  EXPECT_EQ(values(), (std::vector{0.0F, 0.125F, 0.25F, 0.375F, 1.0F, 0.5F, 0.75F, 0.875F}));
}

TEST_F(Pattern, SlidesAsAWholeWithAlt) {
  table.setValue(2, 0.9F);
  const int word = buttons::kLeft | buttons::kAlt;
  desk.press(x(4), 40, word);
  desk.release(x(4), 40);
  EXPECT_EQ(values()[4], 0.5F);
  desk.press(x(4), 40, word);
  desk.drag(x(4), 40 - 100, word);
  EXPECT_FLOAT_EQ(values()[4], 0.7F);
  EXPECT_EQ(values()[2], 1.0F);
  desk.drag(x(0), 40 - 50, word);
  EXPECT_FLOAT_EQ(values()[2], 1.0F);
  desk.drag(x(0), 40, word);
  EXPECT_FLOAT_EQ(values()[2], 0.9F);  // what met the end came back
  EXPECT_FLOAT_EQ(values()[0], 0.5F);
}

TEST_F(Pattern, ListensToItsTablesFlagsAndShowsThePlayingStep) {
  desk.window->wheel(x(3), 30, 1.0F);
  desk.ticks(1);
  EXPECT_FLOAT_EQ(values()[3], 0.45F);
  desk.ticks(1);
  EXPECT_EQ(desk.drawnPixels(3), 0);
  (void)table.getValue(5, 0);  // the sequencer plays it
  EXPECT_EQ(desk.drawnPixels(), kPlace.width() * kPlace.height());
  table.flags |= 1U << 11U;  // steps are on or off
  desk.click(x(3), 30);
  EXPECT_EQ(values()[3], 0.0F);
  table.flags = 1U << 20U;  // tells, but is not to be edited
  desk.click(x(3), y(0.9F));
  EXPECT_EQ(values()[3], 0.0F);
  table.flags |= 1U << 17U;
  desk.taken();
  desk.click(x(3), y(0.75F));
  EXPECT_EQ(values()[3], 0.75F);
  EXPECT_EQ(desk.taken().size(), 1U);
  auto* const panel = desk.add<KvViewContainer>(CRect{0, 0, 20, 20}, 1);
  panel->setVisible(false);
  view->setPopupPanel(panel);
  desk.click(x(3), 30, buttons::kRight);
  EXPECT_EQ(std::pair(panel->getTag(), panel->getPopupTag()), std::pair(68, 3));
  desk.click(200, 150);
  view->setTable(nullptr);
  desk.click(x(3), 30);
  desk.ticks(2);
}

}  // namespace
}  // namespace zum::test
