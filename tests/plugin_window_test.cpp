// The shipped file on a screen: a host that knows nothing of it but its binary face gives it a
// window, a user works it with mouse and keys, and the host sees what it makes of that.
#include <gtest/gtest.h>
#include <malloc.h>
#include <unistd.h>

#include <bit>
#include <functional>
#include <memory>
#include <set>

#include "core/tags.hpp"
#include "support/own_display.hpp"
#include "support/process_use.hpp"
#include "support/test_host.hpp"
#include "toolkit/view/geometry.hpp"
// X's macros after that
#include <X11/Xlib.h>
#include <X11/keysym.h>

namespace zum::test {
namespace {

/// One instance, its audio, its window, and the user in front of that.
class Instance : public TestHost {
 public:
  Instance(const PluginFile& file, Robot& user) : TestHost(file), robot(user) {}

  bool open(std::uintptr_t parent) {
    place = parent;
    return dispatch(effEditOpen, 0, 0, std::bit_cast<void*>(parent)) == 1;
  }
  /// What the user did has come to the window, and is heard, seen and done.
  void settle() {
    for (int i = 0; i < 3; ++i) {
      usleep(2000);
      render(Stereo(128, 0.25F));
      dispatch(effEditIdle);
    }
  }
  // In pixels of the window.
  void moveTo(int x, int y) { robot.moveTo(place, x, y), settle(); }
  void click(int x, int y, unsigned button = 1) { moveTo(x, y), robot.click(button), settle(); }
  void drag(int x, int y, int dx, int dy) {
    moveTo(x, y), robot.press(), settle();
    moveTo(x + dx / 2, y + dy / 2), moveTo(x + dx, y + dy);
    robot.release(), settle();
  }
  /// What the host hears of a hand, however late the server tells of it: an edit to its end.
  const auto& heardOf(const std::function<void()>& hand) {
    host.calls.clear();
    hand();
    for (int i = 0; i < 1000 && (host.calls.empty() || host.calls.back()[0] != audioMasterEndEdit);
         ++i) {
      settle();
    }
    return host.calls;
  }

 private:
  Robot& robot;
  std::uintptr_t place = 0;
};

struct PluginWindow : testing::Test {
  OwnDisplay server;
  Robot robot;
  HostWindow place{0};
  PluginFile file{ZUM_PLUGIN};  // unloaded each time, as hosts do: nothing of it may run on
};

TEST_F(PluginWindow, AHandReachesItsControlsAndTheHostHearsOfIt) {
  const HostWindow other(512);
  robot.giveFocus(other.window);
  Instance effect(file, robot);
  effect.set(tag::cutoff, 0.5F), effect.set(tag::resonance, 0.0F);
  ASSERT_TRUE(effect.open(place.window));
  effect.settle();
  const struct {
    int tag;
    float value;
    std::function<void()> hand;
  } moves[] = {
      {tag::cutoff, 0.58F, [&] { effect.drag(252, 180, 0, -20); }},
      {tag::cutoff, 0.584F,
       [&] { robot.keyDown(XK_Shift_L), effect.drag(258, 186, 0, -20), robot.keyUp(XK_Shift_L); }},
      {tag::resonance, 0.0175F, [&] { effect.click(422, 182, Button4); }},
      {tag::cutoffEf, 0.63F,
       [&] { effect.click(252, 180, 3), effect.drag(252 + 85, 180 + 42, 20, 0); }},
      {tag::seqMode, 0.6F,
       [&] {
         for (const CPoint at : {CPoint{5, 5}, {434, 273}, {112, 335}, {112, 403}})
           effect.click(at.x, at.y);
       }},
  };
  for (const auto& [tag, value, hand] : moves) {
    std::set<std::intptr_t> tags;
    for (const auto& call : effect.heardOf(hand)) tags.insert(call[1]);
    EXPECT_EQ(tags, std::set<std::intptr_t>{tag});
    EXPECT_NEAR(effect.get(tag), value, 1e-4F) << tag;
  }
  place.keys();
  robot.type(XK_x), robot.type(XK_F2), effect.settle();
  EXPECT_EQ(place.keys(), (std::vector<KeySym>{XK_x, XK_x}));  // the other one is used here
  effect.dispatch(effEditClose);
  EXPECT_EQ(robot.focus(), other.window);
}

TEST_F(PluginWindow, OutlivesItsPlaceAndLeavesNothingBehind) {
  const HostWindow beside(512);
  auto one = std::make_unique<Instance>(file, robot);
  Instance two(file, robot);
  ASSERT_TRUE(one->open(place.window) && two.open(beside.window));
  one->moveTo(258, 186), robot.press(), one->settle();  // held while all goes
  XDestroyWindow(place.display, place.window), XSync(place.display, False);
  one->settle(), robot.release(), one->settle();
  one->dispatch(effEditClose);
  const HostWindow next(0);
  const auto files = openFiles();
  std::size_t bytes = 0;  // none where a checker has replaced the allocator; it finds leaks itself
  for (int i = 0; i < 40; ++i) {
    ASSERT_TRUE(one->open(next.window)) << i;
    if (i % 2 == 0) one->click(252, 180, 3);  // with a panel open
    one->dispatch(effEditClose);
    if (i == 10) bytes = mallinfo2().uordblks;
  }
  EXPECT_LT(mallinfo2().uordblks, bytes + 30 * 500);
  EXPECT_EQ(openFiles(), files);
  ASSERT_TRUE(one->open(next.window));
  one->settle(), two.settle();
  const std::uint32_t shown = robot.screenshot(next.window).at(252, 120);
  EXPECT_EQ(robot.screenshot(beside.window).at(252, 120), shown);
  EXPECT_NE(shown, 0U);
  one.reset();  // by a host that never closes windows
  EXPECT_FALSE(two.heardOf([&] { two.drag(252, 180, 0, -20); }).empty());
  two.dispatch(effEditClose);
}

}  // namespace
}  // namespace zum::test
