// The window at any size: what is drawn in parts is what is drawn whole, whatever a user does, and
// the places of the mouse stay those of factor 1.
#include <gtest/gtest.h>

#include <random>

#include "support/chooser.hpp"
#include "support/editor_desk.hpp"
#include "support/settings_user.hpp"

namespace zum::test {
namespace {

class SizedWindow : public SettingsTest {
 protected:
  KvFrame& frame() { return *desk.editor().shownFrame(); }
  int below(int end) { return std::uniform_int_distribution<int>(0, end - 1)(random); }
  CPoint point() { return {below(layout::kWindow.right), below(layout::kWindow.bottom)}; }
  /// What a user does next, seldom the same.
  void gesture() {
    const CPoint at = point();
    const int word = below(4) == 0 ? buttons::kRight : buttons::kLeft;
    switch (below(6)) {
      case 0: desk.click(at, word); break;
      case 1:
        desk.press(at, word);
        for (int i = below(4); i >= 0; --i) desk.move(point(), word);
        desk.release(point());
        break;
      case 2:
        desk.window->wheel(desk.onScreen(at).x, desk.onScreen(at).y,
                           static_cast<float>(below(7) - 3));
        break;
      case 3: desk.move(at, 0); break;
      case 4: {
        constexpr std::uint8_t kKeys[] = {keys::kEscape, keys::kUp, keys::kDown, keys::kReturn};
        desk.tap(kKeys[below(4)]);
        break;
      }
      default: desk.host.set(below(60), static_cast<float>(below(101)) / 100.0F);
    }
    desk.tick(1 + below(3));
    if (WindowServices::get().isMessageOpen()) {
      WindowServices::get().getMessageWindow()->getFrame().onKeyDown({0, keys::kEscape, 0});
      desk.tick();
    }
  }

  SizedWindow() { setenv("PATH", "/none", 1); }  // there is nothing that a press could start

  Chooser cancels;
  EditorDesk desk;
  std::mt19937 random{19};  // NOLINT(bugprone-random-generator-seed): the same each time
};

TEST_F(SizedWindow, DrawsInPartsWhatItDrawsWhole) {
  desk.input = Stereo(64);
  for (const auto& [factor, gestures] :
       {std::pair(1.0, 500), {1.25, 600}, {1.5, 500}, {2.0, 280}, {3.0, 120}}) {
    desk.editor().setFactor(factor);
    for (int i = 0; i < gestures; ++i) {
      gesture();
      const std::vector<std::uint32_t> parts = desk.pixels();
      frame().invalidate();
      frame().paint();
      ASSERT_EQ(desk.differsFrom(parts), "") << factor << ' ' << i;
    }
  }
}

// What was measured in pixels of the old size ends with it: a drag, with its gesture, and a list.
TEST_F(SizedWindow, AnotherSizeEndsADragAndClosesLists) {
  int begun = 0;
  desk.host.host.sizesWindow = true;
  desk.host.host.onCall = [&](std::int32_t opcode) {
    begun += (opcode == audioMasterBeginEdit ? 1 : 0) - (opcode == audioMasterEndEdit ? 1 : 0);
  };
  desk.press(desk.middleOf(tag::cutoff));
  desk.move({desk.middleOf(tag::cutoff).x, desk.middleOf(tag::cutoff).y - 9});
  const float before = desk.value(tag::cutoff);
  ASSERT_EQ(begun, 1);
  EXPECT_TRUE(desk.editor().setHostScale(2.0));
  EXPECT_EQ(desk.editor().factor(), 2.0);
  EXPECT_EQ(begun, 0);
  desk.move({200, 400});
  EXPECT_EQ(desk.value(tag::cutoff), before);
  desk.release({200, 400});
  desk.click(tag::multiType);
  ASSERT_NE(desk.openPopup(), nullptr);
  EXPECT_TRUE(desk.editor().setHostScale(1.5));
  desk.tick();
  EXPECT_EQ(desk.openPopup(), nullptr);
}

}  // namespace
}  // namespace zum::test
