// The program's own window on a real X server: the effect's window and the strip as one, keys and
// files wherever the pointer is, and where it stands.
#include "apps/zum/play/play_window.hpp"

#include <cairo.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <thread>

#include "apps/zum/failure.hpp"
#include "core/effect_editor.hpp"
#include "core/tags.hpp"
#include "editor/create_editor.hpp"
#include "support/drag_source.hpp"
#include "support/fake_strip_owner.hpp"
#include "support/own_display.hpp"
#include "support/own_home.hpp"
#include "support/temporary_folder.hpp"
// X's macros after that
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/keysym.h>

namespace zum::test {
namespace {

constexpr CPoint kPlay{64, 501};     // the button of the strip
constexpr CPoint kCutoff{252, 180};  // in the effect's window

const NoHome home;

class PlayWindowTest : public testing::Test {
 protected:
  PlayWindowTest() { host.activate(48000, 1024); }

  void open(std::optional<ScreenPlace> place = std::nullopt) {
    window.reset();
    window.emplace(host, owner, place);
    settle();
    handle = robot.findWindow("ZUM");
  }
  /// What the user did has come, and is done and seen.
  void settle() {
    for (int i = 0; i < 4; ++i) usleep(2000), window->idle();
  }
  void moveTo(CPoint at) { robot.moveTo(handle, at.x, at.y), settle(); }
  void click(CPoint at) { moveTo(at), robot.click(), settle(); }
  std::string typed(KeySym key) {
    robot.type(key), settle();
    return owner.told();
  }

  OwnDisplay server;
  Robot robot;
  HostSide host{createEditor, nullptr};
  FakeStripOwner owner;
  std::optional<PlayWindow> window;
  std::uintptr_t handle = 0;
};

// The desktop says how large it comes up; a corner that is dragged has its say from then on, and
// both parts keep to one size and to their proportion.
TEST_F(PlayWindowTest, HasTheSizeOfTheDesktopOrOfTheUser) {
  const auto size = [&] {
    XWindowAttributes now{};
    XGetWindowAttributes(robot.connection(), handle, &now);
    return std::pair(now.width, now.height);
  };
  const auto inner = [&] {
    const auto [width, height] = host.windowSize();
    return std::pair(width, height);
  };
  const struct {
    const char* resources;  // of the screen
    const char* environment;
    std::pair<int, int> comesUp;
  } desktops[] = {{"*color:\tred\nXft.dpi:\t120\n", nullptr, {635, 700}},
                  {"Xft.dpi: 144", "2", {697, 768}},  // as large as the screen
                  {"Xft.dpi: 1e999\n", nullptr, {508, 560}},
                  {"Xft.dpi: letters", "", {508, 560}}};
  for (const auto& desktop : desktops) {
    SCOPED_TRACE(desktop.resources);
    Display* const screen = robot.connection();
    XChangeProperty(screen, DefaultRootWindow(screen), XA_RESOURCE_MANAGER, XA_STRING, 8,
                    PropModeReplace, reinterpret_cast<const unsigned char*>(desktop.resources),
                    static_cast<int>(std::strlen(desktop.resources)));
    XSync(screen, False);
    desktop.environment != nullptr ? setenv("GDK_SCALE", desktop.environment, 1)
                                   : unsetenv("GDK_SCALE");
    HostSide fresh{createEditor, nullptr};
    PlayWindow shown(fresh, owner);
    handle = robot.findWindow("ZUM");
    EXPECT_EQ(size(), desktop.comesUp);
  }
  unsetenv("GDK_SCALE");
  open();
  for (const auto& [dragged, rests] : {std::pair(std::pair(763, 841), std::pair(763, 841)),
                                       {std::pair(900, 701), std::pair(636, 701)},
                                       {std::pair(100, 100), std::pair(508, 560)}}) {
    const auto [width, height] = dragged;
    XResizeWindow(robot.connection(), handle, static_cast<unsigned>(width),
                  static_cast<unsigned>(height));
    XSync(robot.connection(), False);
    for (int i = 0; i < 100 && size() != rests; ++i) settle();
    settle();
    EXPECT_EQ(size(), rests);
    EXPECT_EQ(inner().first, rests.first);
  }
}

TEST_F(PlayWindowTest, BothPartsAreOnePictureOnTheScreenAndInAFile) {
  open();
  owner.loopPath = "/a.wav", owner.playing = true;
  robot.moveTo(0, 1000, 700), settle();
  const TemporaryFolder folder;
  const auto file = folder / "window.png";
  ASSERT_TRUE(window->writePicture(file));
  cairo_surface_t* const image = cairo_image_surface_create_from_png(file.c_str());
  const Screenshot shot = robot.screenshot(handle);
  ASSERT_EQ(cairo_image_surface_get_width(image), shot.width);
  ASSERT_EQ(cairo_image_surface_get_height(image), shot.height);
  EXPECT_EQ(std::pair(shot.width, shot.height), std::pair(508, 560));
  const auto* const words = reinterpret_cast<std::uint32_t*>(cairo_image_surface_get_data(image));
  int different = 0;
  for (std::size_t i = 0; i < shot.words.size(); ++i) {
    different += (words[i] & 0xFFFFFFU) != shot.words[i] ? 1 : 0;
  }
  EXPECT_EQ(different, 0);
  cairo_surface_destroy(image);
  for (const CPoint& at : {kPlay, kCutoff}) EXPECT_NE(shot.at(at.x, at.y), 0U);
  EXPECT_FALSE(window->writePicture("/nowhere/window.png"));
}

TEST_F(PlayWindowTest, BothPartsAnswerTheMouseAndTheKeys) {
  open();
  robot.giveFocus(handle);  // as a window manager does
  click(kPlay);
  EXPECT_EQ(owner.told(), "play");
  const float before = host.plainValue(tag::cutoff);
  moveTo(kCutoff), robot.press(), settle();
  moveTo({kCutoff.x, kCutoff.y - 20}), robot.release(), settle();
  EXPECT_GT(host.plainValue(tag::cutoff), before);
  // The focus is the effect's now, and the pointer on either part.
  for (const bool isGiven : {false, true}) {
    for (const CPoint& at : {kCutoff, CPoint{kPlay.x, kPlay.y - 20}}) {
      if (isGiven) robot.giveFocus(handle);
      moveTo(at);
      EXPECT_EQ(typed(XK_space), "play") << at.y;
      EXPECT_EQ(typed(XK_x), "");
      host.setPlain(tag::cutoff, 0.5F);
      EXPECT_EQ(typed(XK_F2), "");  // the effect's dice
      EXPECT_NE(host.plainValue(tag::cutoff), 0.5F) << at.y;
    }
  }
  click({90, 80}), settle();  // the list of filter types is open, and has the keys
  robot.type(XK_Escape), settle();
  EXPECT_EQ(typed(XK_space), "play");
}

TEST_F(PlayWindowTest, FilesAreTakenOnBothParts) {
  open();
  for (const CPoint& at : {kPlay, kCutoff}) {
    DragSource source(handle);
    source.data = "file:///x/first.kvz\r\nfile:///x/beat.wav\r\nfile:///x/second.kvz\r\n";
    source.enter({"text/uri-list"}), source.moveTo(at.x, at.y), source.drop();
    std::string heard;
    for (int i = 0; i < 3; ++i) settle(), heard += source.heard() + ' ';
    EXPECT_EQ(owner.told(), "preset /x/first.kvz, loop /x/beat.wav") << heard;
  }
}

TEST_F(PlayWindowTest, ComesBackToWhereItsUserHasPutIt) {
  const auto onScreen = [this] {
    ScreenPlace corner;
    Window ignored = 0;
    XTranslateCoordinates(robot.connection(), handle, DefaultRootWindow(robot.connection()), 0, 0,
                          &corner.x, &corner.y, &ignored);
    return corner;
  };
  open(ScreenPlace{310, 120});
  EXPECT_EQ(onScreen(), (ScreenPlace{310, 120}));
  EXPECT_EQ(window->place(), (ScreenPlace{310, 120}));
  XMoveWindow(robot.connection(), handle, 77, 88), XSync(robot.connection(), False);
  settle();
  EXPECT_EQ(window->place(), (ScreenPlace{77, 88}));
  robot.close(handle), settle();
  EXPECT_TRUE(window->isGone());
  EXPECT_EQ(window->place(), (ScreenPlace{77, 88}));
  // from a larger screen
  const std::pair<ScreenPlace, ScreenPlace> places[] = {{{3000, 2000}, {1024 - 508, 768 - 560}},
                                                        {{-900, -900}, {0, 0}}};
  for (const auto& [wanted, shown] : places) {
    open(wanted);
    EXPECT_EQ(onScreen(), shown);
  }
}

TEST_F(PlayWindowTest, EndsWithItsUserAndTheDisplayAndNeedsOne) {
  for (int i = 0; i < 2; ++i) {
    open();
    EXPECT_FALSE(window->isGone());
    robot.close(handle), settle();
    EXPECT_TRUE(window->isGone());
    settle();
  }
  open();
  robot.disconnect(), server.stop();
  settle();
  EXPECT_TRUE(window->isGone());
  window.reset();
  try {
    window.emplace(host, owner);
    ADD_FAILURE();
  } catch (const Failure& failure) {
    EXPECT_STREQ(failure.what(), "no display; start it on a desktop, or under xvfb-run");
  }
  EXPECT_FALSE(host.isWindowOpen());
}

TEST_F(PlayWindowTest, EndsWithADisplayThatGoesWhileItDraws) {
  for (const int after : {30'000, 60'000, 90'000}) {  // microseconds
    OwnDisplay other;
    open();
    std::thread logout([&] { usleep(static_cast<useconds_t>(after)), other.stop(); });
    while (!window->isGone()) {
      owner.playing = !owner.playing;
      static_cast<EffectEditor*>(host.client().getEditor())->requestFullRedraw();
      window->idle();
    }
    logout.join();
    window.reset();
  }
}

}  // namespace
}  // namespace zum::test
