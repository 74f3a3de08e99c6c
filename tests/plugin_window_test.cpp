// The shipped file on a screen: a host that knows nothing of it but its binary face gives it a
// window, a user works it with mouse and keys, and the host sees what it makes of that.
#include <gtest/gtest.h>
#include <malloc.h>

#include <bit>
#include <chrono>
#include <filesystem>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <thread>

#include "core/tags.hpp"
#include "editor/layout.hpp"
#include "support/own_display.hpp"
#include "support/temporary_folder.hpp"
#include "support/test_host.hpp"
// X's macros after that
#include <X11/Xlib.h>
#include <X11/keysym.h>

namespace zum::test {
namespace {

using Tags = std::vector<int>;
using Values = std::map<int, float>;  // by tag

constexpr CPoint kCorner{5, 5};  // of the window, where nothing is
constexpr CPoint kUpperKnob{252, 180};
constexpr CPoint kNoDoubleClick{258, 186};  // on it, but not there
constexpr CPoint kLowerKnob{65, 340};       // the first one of each page
constexpr CPoint kLfoTab{361, 273};
constexpr CPoint kSequencerTab{434, 273};

int errors = 0;  // of X: a window keeps its own to itself

/// One instance, its audio, its window, and the user in front of that.
class Instance : public HostSide, public EffectInstance {
 public:
  Instance(const PluginFile& file, Robot& user)
      : EffectInstance(file.make(answering(host))), robot(user) {
    effect->user = &host;
    dispatch(effOpen);
    resume(44100.0F, kFrames);
  }
  ~Instance() { suspend(); }

  bool open(std::uintptr_t parent) {
    place = parent;
    return dispatch(effEditOpen, 0, 0, std::bit_cast<void*>(parent)) == 1;
  }
  void tick() {
    std::vector<float> sound(kFrames, 0.25F);
    float* sides[] = {sound.data(), sound.data()};
    process(sides, sides, kFrames);
    dispatch(effEditIdle);
  }
  /// What the user did has come to the window, and is heard, seen and done.
  void settle() {
    for (int i = 0; i < 3; ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
      tick();
    }
  }
  Values values() const {
    Values all;
    for (int tag = 0; tag < effect->numParams; ++tag) all[tag] = get(tag);
    return all;
  }
  Tags changedSince(const Values& before) const {
    Tags tags;
    for (const auto& [tag, value] : values()) {
      if (value != before.at(tag)) tags.push_back(tag);
    }
    return tags;
  }

  // In pixels of the window.
  void moveTo(CPoint at) { robot.moveTo(place, at.x, at.y), settle(); }
  void press(unsigned button = 1) { robot.press(button), settle(); }
  void release(unsigned button = 1) { robot.release(button), settle(); }
  void click(CPoint at, unsigned button = 1) { moveTo(at), press(button), release(button); }
  void drag(CPoint from, int dx, int dy) {
    moveTo(from), press();
    moveTo({from.x + dx / 2, from.y + dy / 2}), moveTo({from.x + dx, from.y + dy}), release();
  }
  /// The parameters that a hand moves, however late the server tells of it.
  Tags movedBy(const std::function<void()>& hand) {
    const Values before = values();
    hand();
    for (int i = 0; i < 1000 && changedSince(before).empty(); ++i) settle();
    settle();
    return changedSince(before);
  }
  Tags turn(CPoint knob) {
    return movedBy([&] { drag(knob, 0, -20); });
  }

 private:
  static constexpr int kFrames = 128;
  Robot& robot;
  std::uintptr_t place = 0;
};

class PluginWindow : public testing::Test {
 protected:
  PluginWindow() {
    useHome(folder);
    XSetErrorHandler([](Display*, XErrorEvent*) { return ++errors; });
  }
  ~PluginWindow() override { EXPECT_EQ(std::exchange(errors, 0), 0); }

  const TemporaryFolder folder;
  OwnDisplay server;
  Robot robot;
  HostWindow place{0};
  PluginFile file{ZUM_PLUGIN};  // unloaded each time, as hosts do: nothing of it may run on
};

TEST_F(PluginWindow, EachMoveOfTheMouseReachesTheRightControlAndTheHostHearsOfIt) {
  Instance effect(file, robot);
  effect.set(tag::bank, 1.0F);
  const std::string onVowelPage = effect.state();
  effect.set(tag::bank, 0.0F);
  ASSERT_TRUE(effect.open(place.window));
  effect.settle();
  const auto expect = [&](int tag, float value, const auto& hand) {
    SCOPED_TRACE(tag);
    effect.host.calls.clear();
    EXPECT_EQ(effect.movedBy(hand), Tags{tag});
    EXPECT_NEAR(effect.get(tag), value, 1e-4F);
    const auto& heard = effect.host.calls;
    ASSERT_GE(heard.size(), 3U);
    EXPECT_EQ(heard.front()[0], audioMasterBeginEdit);
    EXPECT_EQ(heard.back()[0], audioMasterEndEdit);
    for (const auto& call : heard) EXPECT_EQ(call[1], tag);
  };
  const auto withKey = [&](KeySym key, const auto& hand) {
    robot.keyDown(key), hand(), robot.keyUp(key);
  };
  effect.set(tag::cutoff, 0.5F);
  expect(tag::cutoff, 0.58F, [&] { effect.drag(kUpperKnob, 0, -20); });
  withKey(XK_Shift_L,
          [&] { expect(tag::cutoff, 0.584F, [&] { effect.drag(kNoDoubleClick, 0, -20); }); });
  const CPoint resonance{422, 182};
  effect.set(tag::resonance, 0.0F);
  expect(tag::resonance, 0.035F, [&] {
    effect.moveTo(resonance);
    robot.wheel(2), effect.settle();
  });
  effect.set(tag::master, 0.7F);
  expect(tag::master, 0.5F, [&] {
    effect.moveTo({417, 418});
    robot.click(), robot.click(), effect.settle();
  });
  expect(tag::resonance, 0.0F, [&] { withKey(XK_Control_L, [&] { effect.click(resonance); }); });
  effect.click(kUpperKnob, 3);  // its panel, with the corner at the pointer
  expect(tag::cutoffEf, 0.63F, [&] { effect.drag({kUpperKnob.x + 85, kUpperKnob.y + 42}, 20, 0); });
  effect.click(kCorner);  // closes it
  effect.load(onVowelPage);
  effect.click(kCorner);
  EXPECT_EQ(effect.turn(kUpperKnob), Tags{tag::vowelCutoff});
  EXPECT_EQ(effect.turn(kLowerKnob), Tags{tag::efFreqRange});
  effect.click(kLfoTab);
  EXPECT_EQ(effect.turn(kLowerKnob), Tags{tag::lfoRate});
  effect.click(kSequencerTab);
  EXPECT_EQ(effect.turn(kLowerKnob), Tags{tag::seqTempo});
  effect.click({112, 335});  // the list of orders
  expect(tag::seqMode, 0.6F, [&] { effect.click({112, 335 + 17 * 4}); });
  const std::string before = effect.state();
  effect.drag({270, 300}, 150, 40);
  for (int i = 0; i < 1000 && effect.state() == before; ++i) effect.settle();
  EXPECT_NE(effect.state(), before);  // steps were drawn
  effect.dispatch(effEditClose);
}

TEST_F(PluginWindow, OutlivesItsPlaceAndItsNeighbour) {
  namespace fs = std::filesystem;
  const auto openFiles = [] {
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
  };
  const HostWindow beside(512);
  auto one = std::make_unique<Instance>(file, robot);
  Instance two(file, robot);
  ERect* size = nullptr;
  ASSERT_EQ(one->dispatch(effEditGetRect, 0, 0, &size), 1);
  EXPECT_EQ(std::pair(size->right - size->left, size->bottom - size->top), std::pair(508, 470));
  ASSERT_TRUE(one->open(place.window) && two.open(beside.window));
  const Values before = two.values();
  EXPECT_EQ(one->turn(kUpperKnob), Tags{tag::cutoff});
  EXPECT_EQ(two.changedSince(before), Tags{});
  one->moveTo(kNoDoubleClick), one->press();  // held while all goes
  place.destroy();
  one->settle();
  robot.release();
  one->settle();
  one->dispatch(effEditClose);
  EXPECT_EQ(two.turn(kUpperKnob), Tags{tag::cutoff});
  const HostWindow next(0);
  const auto files = openFiles();
  for (int i = 0; i < 20; ++i) {
    ASSERT_TRUE(one->open(next.window)) << i;
    EXPECT_EQ(next.children(), 1U);
    if (i % 2 == 0) one->settle();
    if (i % 3 == 0) one->click(kUpperKnob, 3);  // with a panel open
    one->dispatch(effEditClose);
    EXPECT_EQ(next.children(), 0U);
  }
  EXPECT_EQ(openFiles(), files);
  ASSERT_TRUE(one->open(next.window));
  one->settle();
  const std::uint32_t shown = robot.pixel(next.window, 252, 120);
  EXPECT_EQ(robot.pixel(beside.window, 252, 120), shown);
  EXPECT_NE(shown, 0U);
  one.reset();  // by a host that never closes windows
  EXPECT_EQ(next.children(), 0U);
  two.click(kCorner);
  EXPECT_EQ(two.turn(kUpperKnob), Tags{tag::cutoff});
  two.dispatch(effEditClose);
}

TEST_F(PluginWindow, KeysThatItDoesNotKnowAndTheFocusGoBackToTheHost) {
  const HostWindow other(512);
  // Hosts listen at the window that they give, or at one around it.
  const Window socket = XCreateSimpleWindow(place.display, place.window, 0, 0, 508, 470, 0, 0, 0);
  XMapWindow(place.display, socket);
  XSync(place.display, False);
  Instance effect(file, robot);
  for (const Window given : {place.window, socket}) {
    ASSERT_TRUE(effect.open(given));
    effect.settle();
    robot.giveFocus(other.window);
    effect.click(kCorner);
    EXPECT_NE(robot.focus(), other.window);
    const Values before = effect.values();
    for (const KeySym key : {KeySym{XK_x}, KeySym{XK_space}}) robot.type(key), effect.settle();
    EXPECT_EQ(place.keys(), (std::vector<KeySym>{XK_x, XK_x, XK_space, XK_space}));
    EXPECT_EQ(effect.changedSince(before), Tags{});
    EXPECT_GT(effect.movedBy([&] { robot.type(XK_F2); }).size(), 40U);  // the dice
    EXPECT_EQ(place.keys(), std::vector<KeySym>{XK_F2});                // the release alone
    effect.dispatch(effEditClose);
    EXPECT_EQ(robot.focus(), other.window);
  }
}

// Parameters move all the time, as in automation.
TEST_F(PluginWindow, KeepsNothingOfWhatItDrew) {
  Instance effect(file, robot);
  ASSERT_TRUE(effect.open(place.window));
  const auto play = [&effect](int ticks) {
    for (int i = 0; i < ticks; ++i) {
      for (int tag = 0; tag < 8; ++tag) {
        effect.set(tag, static_cast<float>((i + tag) % 128) / 128.0F);
      }
      if (i % 100 == 0) effect.set(tag::modChoice, static_cast<float>(i / 100 % 3) / 2.0F);
      effect.tick();
    }
  };
  // Nothing is counted where a checker has replaced the allocator; it finds leaks itself.
  const auto bytes = [] {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<long>(info.uordblks + info.hblkhd);
  };
  play(1200);
  const long before = bytes();
  play(6000);
  std::cout << bytes() - before << " bytes are kept\n";
  EXPECT_LT(bytes() - before, 6000 * 8);  // less than an object for each
  effect.dispatch(effEditClose);
}

}  // namespace
}  // namespace zum::test
