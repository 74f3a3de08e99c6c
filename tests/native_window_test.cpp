// The real window, inside of a host's on an X server of our own: what it shows, what it tells, and
// how it gets along with a host that ends first.
#include "platform/native_window.hpp"

#include <gtest/gtest.h>
// X's macros after that
#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <unistd.h>

#include <atomic>
#include <functional>
#include <sstream>
#include <string>
#include <thread>

#include "platform/x11_connection.hpp"
#include "platform/x11_keys.hpp"
#include "support/own_display.hpp"
#include "support/process_use.hpp"

// X's library gives a lock back twice when its connection breaks.
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" const char* __tsan_default_suppressions() { return "mutex:libX11.so\n"; }

namespace zum::test {
namespace {

constexpr int kWidth = 200;
constexpr int kHeight = 100;
using Lines = std::vector<std::string>;

std::atomic<int> processErrors = 0;
int countError(Display*, XErrorEvent*) { return ++processErrors; }

/// Writes down what it is told. Knows the letter a, and no other key.
class Log final : public WindowEvents {
 public:
  void windowPressed(int x, int y, int word) override { add("press", x, y, word); }
  void windowReleased(int x, int y, int word) override {
    add("release", x, y, word);
    if (closes != nullptr) closes->reset();
  }
  void windowMoved(int x, int y, int word) override { add("move", x, y, word); }
  void windowLeft() override { add("left"); }
  void windowScrolled(int x, int y, float by, int word) override { add("wheel", x, y, by, word); }
  bool windowKeyPressed(const WindowKey& key) override { return addKey("down", key); }
  bool windowKeyReleased(const WindowKey& key) override { return addKey("up", key); }
  void windowExposed(int l, int t, int r, int b) override { add("exposed", l, t, r, b); }
  void windowDropped(int x, int y, const std::vector<std::string>& files) override {
    add("drop", x, y);
    lines.insert(lines.end(), files.begin(), files.end());
  }
  void windowResized(int width, int height) override { add("size", width, height); }
  void windowGone() override { add("gone"); }
  std::unique_ptr<NativeWindow>* closes = nullptr;  // at a release
  Lines take() { return std::exchange(lines, {}); }

 private:
  template <typename... Words>
  void add(const char* what, Words... words) {
    std::ostringstream text;
    text << what;
    ((text << ' ' << words), ...);
    lines.push_back(text.str());
  }
  bool addKey(const char* what, const WindowKey& key) {
    add(what, key.character, int{key.virt}, int{key.modifier});
    return key.character == 'a';
  }
  Lines lines;
};

class NativeWindowTest : public testing::Test {
 protected:
  std::unique_ptr<NativeWindow> open(Window parent) {
    return openNativeWindow({parent, kWidth, kHeight, "Title"}, log);
  }
  NativeWindowTest() {
    processErrors = 0;
    XSetErrorHandler(countError);
  }
  ~NativeWindowTest() override {
    EXPECT_EQ(processErrors, 0);
    EXPECT_EQ(XSetErrorHandler(nullptr), countError);
  }
  /// What has been told since; the round trip fetches all that came before it.
  Lines heard() {
    ours->currentButtons();
    ours->poll();
    return log.take();
  }
  void show(std::uint32_t colour, int left, int top, int right, int bottom) {
    cairo_surface_t* picture = cairo_image_surface_create(CAIRO_FORMAT_RGB24, kWidth, kHeight);
    auto* words = reinterpret_cast<std::uint32_t*>(cairo_image_surface_get_data(picture));
    std::fill_n(words, kWidth * kHeight, colour);
    cairo_surface_mark_dirty(picture);
    ours->show(picture, {{{left, top, right - left, bottom - top}}});
    cairo_surface_destroy(picture);
    ours->currentButtons();
  }

  OwnDisplay server;
  Robot robot;
  HostWindow host;
  Log log;
  std::unique_ptr<NativeWindow> ours = open(host.window);
};

TEST_F(NativeWindowTest, ShowsItsColoursInEveryKindOfParent) {
  for (const int depth : {24, 32}) {
    const HostWindow parent(100, depth);
    ours = open(parent.window);
    ASSERT_TRUE(ours) << depth;
    EXPECT_EQ(heard(), Lines{"exposed 0 0 200 100"});
    XClearArea(robot.connection(), ours->handle(), 5, 5, 10, 10, True);
    XClearArea(robot.connection(), ours->handle(), 50, 60, 20, 10, True);
    XSync(robot.connection(), False);
    EXPECT_EQ(heard(), Lines{"exposed 5 5 70 70"});
    show(0x204060, 0, 0, kWidth, kHeight);
    show(0xFF8001, 10, 20, 30, 40);
    const Screenshot shot = robot.screenshot(ours->handle());
    std::vector<std::uint32_t> wanted(std::size_t{kWidth} * kHeight, 0x204060);
    for (int y = 20; y < 40; ++y) std::fill_n(wanted.begin() + kWidth * y + 10, 20, 0xFF8001);
    EXPECT_TRUE(shot.words == wanted) << depth;
  }
}

TEST_F(NativeWindowTest, TellsTheMouseInRightWordsAndPlaces) {
  const auto at = [this](int x, int y) { robot.moveTo(ours->handle(), x, y); };
  Display* const display = robot.connection();
  const auto grab = [display] {
    XGrabPointer(display, DefaultRootWindow(display), False, 0, GrabModeAsync, GrabModeAsync, None,
                 None, CurrentTime);
  };
  at(-50, -50), heard();
  const std::pair<std::function<void()>, Lines> steps[] = {
      {[&] { at(10, 20); }, {"move 10 20 0", "move 10 20 0"}},  // it enters, and moves
      {[&] { at(11, 20), at(12, 20), robot.press(), at(13, 21), at(14, 21), robot.release(); },
       {"move 12 20 0", "press 12 20 2", "move 14 21 2", "release 14 21 0"}},
      {[&] { at(30, 21), robot.click(), robot.click(), robot.click(); },
       {"move 30 21 0", "press 30 21 2", "release 30 21 0", "press 30 21 1026", "release 30 21 0",
        "press 30 21 2", "release 30 21 0"}},
      // Not double: another button, too far, too late.
      {[&] { robot.click(3), at(35, 21), robot.click(3), usleep(450'000), robot.click(3); },
       {"press 30 21 8", "release 30 21 0", "move 35 21 0", "press 35 21 8", "release 35 21 0",
        "press 35 21 8", "release 35 21 0"}},
      {[&] { robot.press(2), robot.press(), robot.release(2), robot.release(); },
       {"press 35 21 4", "press 35 21 6", "release 35 21 2", "release 35 21 0"}},
      // The wheel, which does not turn sideways.
      {[&] { robot.click(4), robot.click(5), robot.click(6), robot.click(7); },
       {"wheel 35 21 1 0", "wheel 35 21 -1 0"}},
      {[&] { at(-5, 20); }, {"left"}},
      // Dragged out and back, then out to the end.
      {[&] { at(50, 50), robot.press(), at(-9, 300); },
       {"move 50 50 0", "move 50 50 0", "press 50 50 2", "move -9 300 2"}},
      {[&] { at(60, 50), robot.release(); }, {"move 60 50 2", "move 60 50 2", "release 60 50 0"}},
      {[&] { robot.press(2), at(250, 50); }, {"press 60 50 4", "move 250 50 4"}},
      {[&] { robot.release(2); }, {"release 250 50 0", "left"}},
      // Another program grabs the pointer, takes it away and gives it back.
      {[&] { at(50, 50), heard(), grab(); }, {}},
      {[&] { at(-9, 50); }, {"left"}},
      {[&] { at(50, 50), XUngrabPointer(display, CurrentTime); }, {"move 50 50 0"}},
  };
  for (const auto& [act, told] : steps) {
    act(), XSync(display, False);
    EXPECT_EQ(heard(), told);
  }
  int x = 60;
  for (const auto& [key, bit] : {std::pair<KeySym, int>(XK_Shift_L, buttons::kShift),
                                 {XK_Control_L, buttons::kControl},
                                 {XK_Alt_L, buttons::kAlt},
                                 {XK_Super_L, buttons::kCommand}}) {
    at(x += 10, 50), heard();  // no double clicks
    robot.keyDown(key), robot.press(2);
    EXPECT_EQ(ours->currentButtons(), bit + buttons::kMiddle);
    robot.release(2), robot.keyUp(key);
    log.windowPressed(x, 50, bit + buttons::kMiddle), log.windowReleased(x, 50, bit);
    const Lines wanted = log.take();
    EXPECT_EQ(heard(), wanted);
  }
  robot.press(3), at(250, 50), robot.release(3);
  log.closes = &ours;
  EXPECT_EQ(heard(), (Lines{"press 100 50 8", "move 250 50 8", "release 250 50 0"}));
  EXPECT_EQ(ours, nullptr);
}

TEST_F(NativeWindowTest, KeepsTheKeysItKnowsAndGivesTheHostTheRest) {
  robot.moveTo(ours->handle(), 5, 5);
  ours->takeFocus();
  heard();
  robot.type(XK_a);
  EXPECT_EQ(heard(), (Lines{"down 97 0 0", "up 97 0 0"}));
  robot.keyDown(XK_Control_L), robot.type(XK_F2);
  EXPECT_EQ(heard(), (Lines{"down 0 41 8", "up 0 41 8"}));
  EXPECT_EQ(host.keys(), (std::vector<KeySym>{XK_Control_L, XK_F2, XK_F2}));

  XEvent sent{};  // a host that hands its own keys down does not get them back
  sent.xkey.type = KeyPress;
  sent.xkey.window = ours->handle();
  sent.xkey.keycode = XKeysymToKeycode(host.display, XK_b);
  XSendEvent(host.display, ours->handle(), False, KeyPressMask, &sent);
  XSync(host.display, False);
  EXPECT_EQ(heard(), Lines{"down 98 0 0"});
  EXPECT_TRUE(host.keys().empty());

  const std::tuple<KeySym, int, int> table[] = {
      {XK_Adiaeresis, 0xC4, 0},           {0x0100263A, 0x263A, 0},
      {XK_Cyrillic_zhe, 0x436, 0},        {XK_space, ' ', keys::kSpace},
      {XK_KP_7, '7', keys::kNumpad0 + 7}, {XK_KP_Subtract, '-', 0},
      {XK_KP_Enter, 0, keys::kEnter},     {XK_F12, 0, keys::kF1 + 11},
      {XK_ISO_Left_Tab, 0, keys::kTab},   {XK_KP_Delete, 0, keys::kDelete}};
  for (const auto& [symbol, character, virt] : table) {
    const WindowKey key = windowKeyOf(symbol, Mod1Mask | Mod4Mask | LockMask);
    EXPECT_EQ(std::pair(key.character, int{key.virt}), std::pair(character, virt)) << symbol;
    EXPECT_EQ(key.modifier, keys::kAltBit | keys::kCommandBit);
  }
}

// Under any locale: the process has none, as a plug-in in many a host.
TEST_F(NativeWindowTest, DeadKeysComposeInAWindowOfItsOwn) {
  constexpr int kSpareKeys = 250;  // without a meaning so far
  KeySym added[] = {XK_EuroSign, XK_dead_acute, XK_dead_caron, XK_Multi_key};
  XChangeKeyboardMapping(robot.connection(), kSpareKeys, 1, added, std::size(added));
  const auto typed = [this](std::initializer_list<KeySym> symbols) {
    std::string characters;
    for (const KeySym symbol : symbols) robot.type(symbol);
    for (const std::string& line : heard()) {
      if (line.starts_with("down")) characters += line.substr(5, line.find(' ', 5) - 4);
    }
    return characters;
  };
  for (const char* locale : {"C", "de_DE.UTF-8", "no_SUCH"}) {
    setenv("LC_ALL", locale, 1);
    ours = open(0);
    robot.giveFocus(ours->handle());
    EXPECT_EQ(typed({XK_EuroSign, XK_dead_acute, XK_e, XK_dead_caron, XK_s, XK_e, XK_Multi_key,
                     XK_s, XK_s, XK_dead_acute, XK_q, XK_e}),
              "8364 233 353 101 223 113 101 ")  // there is no q with an accent
        << locale;
  }
  unsetenv("LC_ALL");
  ours = open(host.window);
  ours->takeFocus();
  EXPECT_EQ(typed({XK_dead_acute, XK_e}), "101 ");
  EXPECT_EQ(host.keys().front(), KeySym{XK_dead_acute});
}

TEST_F(NativeWindowTest, GivesBackTheFocusThatItStillHas) {
  enum Before { stays, ends, takesItBack };
  for (const Before before : {stays, ends, takesItBack}) {
    ours = open(host.window);
    HostWindow other;
    robot.giveFocus(other.window);
    heard();
    EXPECT_FALSE(ours->hasFocus());
    ours->takeFocus();
    heard();
    EXPECT_TRUE(ours->hasFocus());
    if (before == ends) other.end();
    if (before == takesItBack) robot.giveFocus(DefaultRootWindow(host.display));
    heard();
    EXPECT_EQ(ours->hasFocus(), before != takesItBack);
    ours.reset();
    EXPECT_EQ(robot.focus(), before == stays  ? other.window
                             : before == ends ? host.window
                                              : DefaultRootWindow(host.display));
  }
}

TEST_F(NativeWindowTest, OutlivesItsHostAndItsServer) {
  heard();
  const auto useAll = [this] {
    ours->takeFocus();
    ours->setCursor(WindowCursor::hourglass);
    show(0, 0, 0, kWidth, kHeight);
    EXPECT_EQ(ours->currentButtons(), 0);
  };
  const std::unique_ptr<NativeWindow> untold = open(host.window);
  host.end();
  useAll();
  EXPECT_EQ(heard(), Lines{"gone"});
  useAll();
  EXPECT_EQ(ours->handle(), 0U);
  EXPECT_EQ(heard(), Lines{});

  ours = open(0);  // a window of its own
  heard();
  XSizeHints sizes{};
  long supplied = 0;
  XGetWMNormalHints(robot.connection(), ours->handle(), &sizes, &supplied);
  EXPECT_EQ(std::pair(sizes.min_width, sizes.max_height), std::pair(kWidth, kHeight));
  robot.close(ours->handle());
  EXPECT_EQ(heard(), Lines{"gone"});

  ours = open(0);
  heard();
  // The test's own connections end before, as no one here keeps them from ending the process.
  robot.disconnect();
  server.stop();
  std::thread([&] { EXPECT_EQ(heard(), Lines{"gone"}); }).join();  // not the one that closes it
  useAll();
  const auto before = openFiles();
  ours.reset();
  EXPECT_EQ(openFiles(), before - 1);
  setenv("DISPLAY", ":59999", 1);  // another test's server may have taken the number of ours
  EXPECT_EQ(open(0), nullptr);
}

TEST_F(NativeWindowTest, LeavesTheProcessTheErrorsOfOthersAndNoOpenFiles) {
  constexpr int kErrors = 300;
  const auto before = openFiles();
  std::atomic<bool> done = false;
  std::thread other([&] {
    for (int i = 0; i < kErrors; ++i) {
      XMapWindow(host.display, 1);
      XSync(host.display, False);
    }
    done = true;
  });
  while (!done) {
    EXPECT_EQ(open(1), nullptr);  // no such parent: an error of ours
    heard();
  }
  other.join();
  EXPECT_EQ(processErrors.exchange(0), kErrors);
  EXPECT_NE(open(0), nullptr);
  EXPECT_EQ(openFiles(), before);
}

// A host on another window system goes on when the X server goes, and may expect no SIGPIPE.
// Sizes that others give it, as a window manager does, are told; those that it asked for are not,
// nor what the server said before it had heard of them.
TEST_F(NativeWindowTest, TakesASizeAndTellsOfOnesThatOthersGiveIt) {
  for (const Window parent : {host.window, Window{0}}) {
    ours = open(parent);
    heard();
    const auto handle = static_cast<Window>(ours->handle());
    const auto size = [&] {
      XWindowAttributes attributes{};
      XGetWindowAttributes(robot.connection(), handle, &attributes);
      return std::pair(attributes.width, attributes.height);
    };
    const auto sizesHeard = [&] {
      Lines lines = heard();
      std::erase_if(lines, [](const std::string& line) { return !line.starts_with("size"); });
      return lines;
    };
    ours->resize(300, 150);
    EXPECT_EQ(sizesHeard(), Lines{});
    EXPECT_EQ(size(), std::pair(300, 150));
    XResizeWindow(robot.connection(), handle, 310, 160);
    XSync(robot.connection(), False);
    EXPECT_EQ(sizesHeard(), Lines{"size 310 160"});
    XResizeWindow(robot.connection(), handle, 250, 140);
    XSync(robot.connection(), False);
    ours->resize(200, 100);  // what others did is old news by now
    EXPECT_EQ(sizesHeard(), Lines{});
    EXPECT_EQ(size(), std::pair(200, 100));
    if (parent == 0) {
      XSizeHints hints{};
      long given = 0;
      XGetWMNormalHints(robot.connection(), handle, &hints, &given);
      EXPECT_EQ(std::pair(hints.min_width, hints.max_height), std::pair(200, 100));
    }
    ours.reset();
  }
}

TEST(PipeSignal, OfAServerThatWentReachesNobody) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  close(ends[0]);
  {
    const PipeSignalHeld held;
    EXPECT_EQ(write(ends[1], "x", 1), -1);
  }
  sigset_t waiting;
  sigpending(&waiting);
  EXPECT_EQ(sigismember(&waiting, SIGPIPE), 0);
  close(ends[1]);
}

}  // namespace
}  // namespace zum::test
