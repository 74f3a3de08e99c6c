// Scopes and the step pattern: what is read when, what is seen, and what the
// mouse draws.
#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "support/desk.hpp"
#include "toolkit/panel.hpp"
#include "toolkit/scope_view.hpp"
#include "toolkit/table_view.hpp"

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
  desk.ticks(1);
  EXPECT_EQ(desk.drawnPixels(3), 0);
  mask.set(3, true);
  desk.ticks(1);
  EXPECT_EQ(desk.window->pixel(50, 40), 0xFF0000U);  // at once, and up to date
  ring.fill(0.0F);
  desk.ticks(2);
  EXPECT_EQ(desk.window->pixel(50, 40), 0x0000FFU);
  scope->setBounds(10, 10, 50, 30);
  desk.ticks(2);
  desk.click(20, 20);
  EXPECT_EQ(desk.told(), "");
}

constexpr int kLine = buttons::kLeft | buttons::kShift;
constexpr int kSlide = buttons::kLeft | buttons::kAlt;

struct Pattern : testing::Test, Desk {
  Pattern() {
    for (int i = 0; i < KvTableXY::kSteps; ++i) table.setValue(i, 0.5F);
    view->setTable(&table);
  }
  /// Pixels of the middle of a step and of a value.
  static int x(int step) { return 16 + 10 * step; }
  static int y(float value) { return 59 - static_cast<int>(value * 48.0F); }
  std::vector<float> values() const {
    std::vector<float> list(static_cast<std::size_t>(table.size()));
    for (int i = 0; float& value : list) value = table.cell(i++, 0);
    return list;
  }

  KvTableXY table;
  KvTableView* view = add<KvTableView>(kPlace, 68);
};

TEST_F(Pattern, IsDrawnByOneStrokeThatLeavesNoStepOutAndStaysInside) {
  press(x(1), y(0.25F));
  drag(x(3), y(0.75F));
  drag(500, -500);
  release(500, -500);
  drag(x(0), y(0.0F), 0);
  EXPECT_EQ(values(), (std::vector{0.5F, 0.25F, 0.5F, 0.75F, 0.8125F, 0.875F, 0.9375F, 1.0F}));
}

// On either side of its start.
TEST_F(Pattern, ALineThatWentTooFarGivesBackWhatItCovered) {
  for (int i = 0; i < 8; ++i) table.setValue(i, 0.125F * static_cast<float>(i));
  press(x(4), y(1.0F), kLine);
  drag(x(4), y(0.25F), kLine);
  for (const int to : {7, 1, 5}) {
    drag(x(to), y(0.5F), kLine);
    wheel(x(6), 30, 1.0F);  // means nothing meanwhile
  }
  EXPECT_EQ(values(), (std::vector{0.0F, 0.125F, 0.25F, 0.375F, 1.0F, 0.5F, 0.75F, 0.875F}));
  drag(x(0), y(0.0F), kLine);
  EXPECT_EQ(values(), (std::vector{0.0F, 0.25F, 0.5F, 0.75F, 1.0F, 0.625F, 0.75F, 0.875F}));
}

TEST_F(Pattern, SlidesAsAWholeWithAlt) {
  table.setValue(2, 0.9F);
  const std::vector<float> before = values();
  press(x(4), 40, kSlide);
  EXPECT_EQ(values(), before);
  drag(x(4), 40 - 100, kSlide);
  EXPECT_FLOAT_EQ(values()[4], 0.7F);
  EXPECT_EQ(values()[2], 1.0F);
  drag(x(0), 40, kSlide);
  EXPECT_EQ(values(), before);  // what met the end, too
}

TEST_F(Pattern, ListensToItsTablesFlagsAndShowsThePlayingStep) {
  wheel(x(3), 30, 1.0F);
  EXPECT_FLOAT_EQ(values()[3], 0.45F);
  ticks(1);
  EXPECT_EQ(drawnPixels(3), 0);
  (void)table.getValue(5, 0);  // the sequencer plays it
  EXPECT_EQ(drawnPixels(), kPlace.width() * kPlace.height());
  table.flags |= 1U << 11U;  // steps are on or off
  click(x(3), 30);
  table.flags = 1U << 20U;  // tells, but is not to be edited
  click(x(3), y(0.9F));
  EXPECT_EQ(values()[3], 0.0F);
  table.flags |= 1U << 17U;
  told();
  click(x(3), y(0.75F));
  EXPECT_EQ(values()[3], 0.75F);
  EXPECT_EQ(told(), "( 68:0 ) ");
  auto* const panel = add<KvViewContainer>(CRect{0, 0, 20, 20}, 1);
  panel->setVisible(false);
  view->setPopupPanel(panel);
  click(x(3), 30, buttons::kRight);
  EXPECT_EQ(std::pair(panel->getTag(), panel->getPopupTag()), std::pair(68, 3));
  click(200, 150);
  view->setTable(nullptr);
  click(x(3), 30);
}

}  // namespace
}  // namespace zum::test
