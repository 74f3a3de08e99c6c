// The window of the finished file in a CLAP host, under a user's hand.
#include <unistd.h>

#include <functional>
#include <set>
#include <vector>

#include "core/tags.hpp"
#include "tests/hosts/clap_host.hpp"
#include "tests/support/own_display.hpp"
// X's macros after that
#include <X11/Xlib.h>

namespace zum::test {
namespace {

using Types = std::vector<int>;
constexpr int kNone = -1;
constexpr int kBegin = CLAP_EVENT_PARAM_GESTURE_BEGIN;
constexpr int kMove = CLAP_EVENT_PARAM_VALUE;
constexpr int kEnd = CLAP_EVENT_PARAM_GESTURE_END;

struct ClapWindow : testing::Test {
  OwnDisplay server;
  Robot robot;
  HostWindow place{0};
  Stereo sound{64, 0.25F};
  Types heard;

  static clap_window_t windowOf(const HostWindow& of) {
    clap_window_t window{};
    window.api = CLAP_WINDOW_API_X11;
    window.x11 = of.window;
    return window;
  }
  static bool open(const ClapPlug& plug, const HostWindow& in) {
    const clap_window_t window = windowOf(in);
    const clap_plugin_gui_t& gui = plug.gui();
    return gui.create(plug.plugin, CLAP_WINDOW_API_X11, false) &&
           gui.set_parent(plug.plugin, &window) && gui.show(plug.plugin);
  }
  static void close(const ClapPlug& plug) { plug.gui().destroy(plug.plugin); }
  static void vanish(const HostWindow& of) {
    XDestroyWindow(of.display, of.window), XSync(of.display, False);
  }
  static void tick(const ClapPlug& plug) {
    const auto& timers = plug.get<clap_plugin_timer_support_t>(CLAP_EXT_TIMER_SUPPORT);
    const std::set<clap_id> due = plug.host.timers;
    for (const clap_id id : due) timers.on_timer(plug.plugin, id);
  }
  /// Time goes by until an event of type `last` comes, or for a while. `listen` fills the plug's
  /// list, or does not; those of the cutoff gather in `heard`.
  void wait(ClapPlug& plug, const std::function<void()>& listen, int last = kNone) {
    const auto isOver = [&] { return last == kNone || (!heard.empty() && heard.back() == last); };
    for (int i = 0; i < 30 || (i < 1000 && !isOver()); ++i) {
      usleep(2000), tick(plug);
      plug.heard.count = 0;
      listen();
      for (const int type : plug.heard.typesOf(tag::cutoff)) heard.push_back(type);
    }
  }
  Types settle(ClapPlug& plug, const std::function<void()>& listen, int last) {
    return heard.clear(), wait(plug, listen, last), heard;
  }
  /// The cutoff's knob in `place`.
  Types drag(ClapPlug& plug, const std::function<void()>& listen, int last = kNone) {
    heard.clear();
    robot.moveTo(place.window, 252, 180), wait(plug, listen);
    robot.press(), wait(plug, listen);
    for (const int y : {170, 160}) robot.moveTo(place.window, 252, y), wait(plug, listen);
    robot.release(), wait(plug, listen), wait(plug, listen, last);
    return heard;
  }
  static bool isOneHold(const Types& heard) {
    return heard.size() > 2 && heard.front() == kBegin && heard.back() == kEnd &&
           std::count(heard.begin(), heard.end(), kMove) == std::ssize(heard) - 2;
  }
};

TEST_F(ClapWindow, AStepMakesTheSessionAnotherOneAndReadsNoValueAnew) {
  ClapPlug plug(44100.0, true);
  ASSERT_TRUE(open(plug, place));
  const auto listen = [&] { plug.process(sound, sound, 0, 64); };
  robot.moveTo(place.window, 460, 273), robot.click(), wait(plug, listen);  // the steps' tab
  plug.answerCallbacks();
  plug.host.rescans = plug.host.dirty = 0;
  robot.moveTo(place.window, 262, 300), robot.press(), wait(plug, listen);
  robot.release();
  for (int i = 0; i < 20 && plug.host.dirty == 0; ++i) wait(plug, listen), plug.answerCallbacks();
  EXPECT_EQ(plug.host.rescans * 10 + plug.host.dirty, 1);
  close(plug);
}

// Without timers of the host's no hand is told of: values move by themselves.
TEST_F(ClapWindow, TellsTheHostOfEachHoldInAndOutOfProcessing) {
  for (const bool hasTimers : {true, false}) {
    SCOPED_TRACE(hasTimers);
    ClapPlug plug(44100.0, hasTimers);
    ASSERT_TRUE(open(plug, place));
    EXPECT_EQ(plug.host.timers.size(), hasTimers ? 1U : 0U);
    for (const bool isProcessing : {true, false}) {
      if (!isProcessing) plug.stop();
      usleep(700'000);  // a press that comes sooner makes a double click
      plug.set({{tag::cutoff, 0.5}});
      double told = 0.0;
      const auto listen = [&] {
        if (isProcessing) plug.process(sound, sound, 0, 64);
        if (!isProcessing && (!hasTimers || plug.host.flushes.exchange(0) > 0)) plug.flush();
        plug.heard.typesOf(tag::cutoff, &told);
      };
      drag(plug, listen, hasTimers ? kEnd : kNone);
      EXPECT_TRUE(hasTimers ? isOneHold(heard)
                            : std::set(heard.begin(), heard.end()) == std::set{kMove});
      const auto isTold = [&] {
        return plug.value(tag::cutoff) > 0.5 && told == plug.value(tag::cutoff);
      };
      // a window's own thread takes its time on a busy machine
      for (int i = 0; i < 100 && !isTold(); ++i) wait(plug, listen);
      EXPECT_TRUE(isTold()) << told << ' ' << plug.value(tag::cutoff);
      EXPECT_EQ(plug.host.flushes.load(), 0);
    }
    close(plug);
    EXPECT_TRUE(plug.host.timers.empty());
  }
}

TEST_F(ClapWindow, KeepsWhatAFullListRefusesAndEndsAHoldWithTheWindow) {
  ClapPlug plug;
  const auto play = [&] { plug.process(sound, sound, 0, 64); };
  ASSERT_TRUE(open(plug, place));
  plug.heard.room = 0;
  EXPECT_EQ(drag(plug, play), Types{});
  plug.heard.room = 1;
  EXPECT_TRUE(isOneHold(settle(plug, play, kEnd)));
  plug.heard.room = 512;
  robot.press();
  EXPECT_EQ(settle(plug, play, kBegin), Types{kBegin});
  close(plug);
  EXPECT_EQ(settle(plug, play, kEnd), Types{kEnd});
  robot.release();
  const HostWindow passing(0);
  ASSERT_TRUE(open(plug, passing));
  robot.moveTo(passing.window, 252, 180), robot.press();
  EXPECT_EQ(settle(plug, play, kBegin), Types{kBegin});
  vanish(passing), tick(plug), close(plug);
  EXPECT_EQ(settle(plug, play, kEnd), Types{kEnd});
  robot.release();
}

TEST_F(ClapWindow, AsksForAFlushWhereNoBlockWillTellOfAnEdit) {
  for (const bool hasTimers : {true, false}) {
    for (const bool isDeactivated : {false, true}) {
      SCOPED_TRACE(testing::Message() << hasTimers << isDeactivated);
      ClapPlug plug(44100.0, hasTimers);
      ASSERT_TRUE(open(plug, place));
      drag(plug, [] {});  // behind the last block
      EXPECT_EQ(plug.host.flushes.load(), 0);
      const auto end = isDeactivated ? plug.plugin->deactivate : plug.plugin->stop_processing;
      end(plug.plugin);
      EXPECT_EQ(plug.host.flushes.load(), isDeactivated ? 1 : 0);  // not on the audio thread
      plug.answerCallbacks();
      EXPECT_EQ(plug.host.flushes.load(), 1);
      plug.flush();
      double told = 0.0;
      EXPECT_EQ(plug.heard.typesOf(tag::cutoff, &told).at(0), hasTimers ? kBegin : kMove);
      EXPECT_EQ(told, plug.value(tag::cutoff));
      close(plug), plug.stop(), plug.answerCallbacks();
      EXPECT_EQ(plug.host.flushes.load(), 1);  // nothing new
    }
  }
}

TEST_F(ClapWindow, OpensAgainAndAgainAndOutlivesItsPlace) {
  const HostWindow beside(512);
  for (const bool hasTimers : {true, false}) {
    const ClapPlug plug(44100.0, hasTimers);
    const ClapPlug neighbour(44100.0, hasTimers);
    ASSERT_TRUE(open(neighbour, beside));
    const auto& gui = plug.gui();
    for (int i = 0; i < 20; ++i) {
      ASSERT_TRUE(open(plug, place)) << i;
      EXPECT_TRUE(i % 3 != 0 || (gui.hide(plug.plugin) && gui.show(plug.plugin)));
      if (i % 4 == 0) usleep(40000);  // the own thread has a turn
      tick(plug), tick(neighbour);
      close(plug);
    }
    const HostWindow passing(0);
    ASSERT_TRUE(open(plug, passing));
    tick(plug), vanish(passing);
    for (int i = 0; i < 5; ++i) usleep(20000), tick(plug);
    gui.show(plug.plugin), gui.hide(plug.plugin), close(plug);
    ASSERT_TRUE(open(plug, place));
    tick(plug);
    robot.moveTo(place.window, 258, 186), robot.press(), tick(plug);
    usleep(50000), tick(plug);
  }  // by a host that closes nothing, while a knob is held
  robot.release();
}

TEST_F(ClapWindow, HasTheScaleAndTheRoomThatItsHostGives) {
  ClapPlug plug;
  const auto& gui = plug.gui();
  const clap_plugin_t* const plugin = plug.plugin;
  using Size = std::pair<int, int>;
  const auto told = [&] {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    gui.get_size(plugin, &width, &height);
    return Size(width, height);
  };
  ASSERT_TRUE(gui.create(plugin, "x11", false) && gui.set_scale(plugin, 1.5));
  EXPECT_EQ(told(), Size(762, 705));
  const clap_window_t window = windowOf(place);
  ASSERT_TRUE(gui.set_parent(plugin, &window) && gui.show(plugin) && gui.can_resize(plugin));
  EXPECT_EQ(place.innerSize(), told());
  clap_gui_resize_hints_t hints{};
  EXPECT_TRUE(gui.get_resize_hints(plugin, &hints) && hints.preserve_aspect_ratio);
  EXPECT_EQ(hints.aspect_ratio_width * 470, hints.aspect_ratio_height * 508);
  for (const auto& [offered, fits] : {std::pair(Size(1016, 940), Size(1016, 940)),
                                      {Size(5000, 588), Size(636, 588)},
                                      {Size(20, 20), Size(508, 470)},
                                      {Size(5000, 5000), Size(1524, 1410)},
                                      {Size(701, 900), Size(701, 649)}}) {
    auto width = static_cast<std::uint32_t>(offered.first);
    auto height = static_cast<std::uint32_t>(offered.second);
    ASSERT_TRUE(gui.adjust_size(plugin, &width, &height));
    EXPECT_EQ(Size(width, height), fits);
    ASSERT_TRUE(gui.set_size(plugin, width, height));
    EXPECT_EQ(told(), fits);  // a host looks at once
    wait(plug, [] {});
    EXPECT_EQ(place.innerSize(), fits);
    EXPECT_TRUE(gui.adjust_size(plugin, &width, &height));  // no window creeps
    EXPECT_EQ(Size(width, height), fits);
  }
  ASSERT_TRUE(gui.set_size(plugin, 508, 470));  // the last one is kept for windows to come
  close(plug);
}

TEST_F(ClapWindow, RefusesWhatItDoesNotDo) {
  const ClapPlug plug;
  const auto& gui = plug.gui();
  const clap_plugin_t* const plugin = plug.plugin;
  clap_window_t window = windowOf(place);
  EXPECT_FALSE(gui.set_parent(plugin, &window) || gui.show(plugin) || gui.hide(plugin));
  for (const char* api : {"wayland", "win32", "", "x11", static_cast<const char*>(nullptr)}) {
    const bool isFloating = api != nullptr && std::string(api) == "x11";
    EXPECT_FALSE(gui.is_api_supported(plugin, api, isFloating) ||
                 gui.create(plugin, api, isFloating));
  }
  ASSERT_TRUE(gui.is_api_supported(plugin, "x11", false) && gui.create(plugin, "x11", false));
  EXPECT_FALSE(gui.create(plugin, "x11", false));
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  EXPECT_TRUE(gui.get_size(plugin, &width, &height) && width > 300 && height > 300);
  window.x11 = 0;
  EXPECT_FALSE(gui.get_size(plugin, nullptr, nullptr) || gui.get_resize_hints(plugin, nullptr) ||
               gui.adjust_size(plugin, nullptr, &height) || gui.set_scale(plugin, -1.0) ||
               gui.set_transient(plugin, &window) || gui.set_parent(plugin, nullptr) ||
               gui.set_parent(plugin, &window));
  gui.suggest_title(plugin, nullptr);
  gui.destroy(plugin), gui.destroy(plugin);
}

}  // namespace
}  // namespace zum::test
