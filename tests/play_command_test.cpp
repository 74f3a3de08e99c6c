// `zum edit` as a user starts it: the window that it opens, how it ends, what it says when it
// cannot.
#include <cairo.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <future>
#include <set>
#include <string>

#include "support/own_display.hpp"
#include "support/settings_user.hpp"

namespace zum::test {
namespace {

const std::string kLoop = "'" ZUM_SOURCE_DIR "/content/Samples/Factory/Drums.wav'";

class EditCommandTest : public SettingsTest {
 protected:
  /// Ends well and silently.
  void edit(
      const std::string& options, const std::function<void()>& meanwhile = [] {}) const {
    auto ended = std::async(std::launch::async, [&] { return run("edit " + options); });
    meanwhile();
    EXPECT_EQ(ended.get(), std::pair(0, ""s)) << options;
  }
  std::uintptr_t shownWindow() {
    std::uintptr_t window = 0;
    for (int i = 0; i < 1000 && window == 0; ++i) usleep(10'000), window = robot.findWindow("ZUM");
    return window;
  }
  /// The pixels of window.png from one corner to the other, a row after the other.
  std::vector<std::uint32_t> picture(int left, int top, int right, int bottom) const {
    cairo_surface_t* image = cairo_image_surface_create_from_png((folder / "window.png").c_str());
    EXPECT_EQ(cairo_image_surface_get_width(image), 508);
    EXPECT_EQ(cairo_image_surface_get_height(image), 470);
    const auto* words = reinterpret_cast<std::uint32_t*>(cairo_image_surface_get_data(image));
    std::vector<std::uint32_t> pixels;
    for (const auto* row = words + 508 * top; row < words + 508 * bottom; row += 508) {
      pixels.insert(pixels.end(), row + left, row + right);
    }
    cairo_surface_destroy(image);
    return pixels;
  }

  const OwnDisplay server;
  Robot robot;
};

TEST_F(EditCommandTest, WindowMovesWithTheMusicUntilItIsClosedAndItsPictureIsWritten) {
  edit("--picture window.png --loop " + kLoop, [&] {
    const std::uintptr_t window = shownWindow();
    ASSERT_NE(window, 0U);
    for (int i = 0; i < 1000 && !fs::exists(folder / "window.png"); ++i) usleep(10'000);
    const Screenshot before = robot.screenshot(window);
    usleep(400'000);
    EXPECT_NE(robot.screenshot(window).words, before.words);
    robot.close(window);
  });
  const auto pixels = picture(0, 0, 508, 470);
  EXPECT_GT(std::set<std::uint32_t>(pixels.begin(), pixels.end()).size(), 64U);
}

// Both files hold the same bytes.
TEST_F(EditCommandTest, PresetHasTheNameOfItsFileAsFromTheMenu) {
  const auto shownName = [this](const std::string& preset) {
    putText(folder / "a.toml", "");
    expectTold("", {{"presets make a.toml " + preset, 0, ""}});
    edit("--seconds 1 --picture window.png --preset " + preset);
    return picture(46, 35, 157, 52);
  };
  EXPECT_NE(shownName("first.kvz"), shownName("second.kvz"));
}

TEST_F(EditCommandTest, EndsAtASignal) {
  // The picture's beginning goes with it: nothing was skipped on the way out.
  fs::create_directory(folder / "own");
  EXPECT_EQ(
      shell(kProgram + "edit --picture own/a.png & program=$!; while ! ls -A own | grep -q .; do"
                       " sleep 0.01; done; kill $program; wait $program")
          .first,
      128 + SIGTERM);
  EXPECT_TRUE(fs::is_empty(folder / "own"));
}

TEST_F(EditCommandTest, WhatCannotBeIsToldWithTheWayOut) {
  fs::copy_file(ZUM_SOURCE_DIR "/content/Samples/Factory/Drums.wav", folder / "song.wav");
  expectTold("zum: ", {
                          {"edit --loop /nowhere.wav", 1, "check the name"},
                          {"edit --picture /nowhere/a.png", 1, "choose a folder that exists"},
                          {"edit --loop song.wav --picture song.wav", 2, "give it another name"},
                          {"edit --tempo 44", 2, "zum edit --help"},
                      });
  unsetenv("DISPLAY");
  expectTold("zum: ", {{"edit", 1, "no display; start it on a desktop, or under xvfb-run\n"}});
}

}  // namespace
}  // namespace zum::test
