// `zum edit` as a user starts it: the window that it opens, how it ends, what it says when it
// cannot.
#include <cairo.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>
// X's macros after that
#include <X11/Xlib.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <utility>

#include "support/own_display.hpp"
#include "support/own_home.hpp"

namespace zum::test {
namespace {

namespace fs = std::filesystem;

const std::string kEdit = "'" ZUM_PROGRAM "' edit ";
const std::string kLoop = "'" ZUM_SOURCE_DIR "/content/Samples/Factory/Drums.wav'";

using Image = std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)>;
Image readPicture(const std::string& file) {
  return {cairo_image_surface_create_from_png(file.c_str()), cairo_surface_destroy};
}

class EditCommandTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { server = std::make_unique<OwnDisplay>(); }
  static void TearDownTestSuite() { server.reset(); }
  EditCommandTest() : folder(fs::temp_directory_path() / ("zum-edit-" + std::to_string(getpid()))) {
    fs::create_directories(folder);
  }
  ~EditCommandTest() override { fs::remove_all(folder); }

  /// Exit code, and what was printed.
  static std::pair<int, std::string> run(
      const std::string& command, const std::function<void()>& meanwhile = [] {}) {
    FILE* const pipe = popen((command + " 2>&1").c_str(), "r");
    meanwhile();
    std::string text;
    std::array<char, 256> part{};
    while (std::fgets(part.data(), part.size(), pipe) != nullptr) text += part.data();
    return {WEXITSTATUS(pclose(pipe)), text};
  }
  std::uintptr_t shownWindow() {
    std::uintptr_t window = 0;
    for (int i = 0; i < 1000 && window == 0; ++i) usleep(10'000), window = robot.findWindow("ZUM");
    return window;
  }

  static inline std::unique_ptr<OwnDisplay> server;
  OwnHome home;
  Robot robot;
  fs::path folder;
};

TEST_F(EditCommandTest, WindowMovesWithTheMusicAndItsPictureIsWritten) {
  const fs::path picture = folder / "window.png";
  const auto watch = [&] {
    const std::uintptr_t window = shownWindow();
    ASSERT_NE(window, 0U);
    for (int i = 0; i < 1000 && !fs::exists(picture); ++i) usleep(10'000);
    const Screenshot before = robot.screenshot(window);
    usleep(400'000);
    EXPECT_NE(robot.screenshot(window).words, before.words);
  };
  EXPECT_EQ(run(kEdit + "--seconds 3 --loop " + kLoop + " --picture " + picture.string(), watch),
            std::pair(0, std::string()));
  const Image image = readPicture(picture);
  ASSERT_EQ(cairo_image_surface_get_width(image.get()), 508);
  ASSERT_EQ(cairo_image_surface_get_height(image.get()), 470);
  const unsigned char* const data = cairo_image_surface_get_data(image.get());
  const int bytes = 470 * cairo_image_surface_get_stride(image.get());
  EXPECT_GT(std::set<int>(data, data + bytes).size(), 64U);
}

// Both files hold the same bytes.
TEST_F(EditCommandTest, PresetHasTheNameOfItsFileAsFromTheMenu) {
  const fs::path first = folder / "first.kvz";
  ASSERT_EQ(run("'" ZUM_PROGRAM "' presets make '" ZUM_SOURCE_DIR
                "/content/Presets/Drums/Basement.toml' " +
                first.string())
                .first,
            0);
  fs::copy_file(first, folder / "second.kvz");
  const auto shownName = [this](const char* preset) {
    const std::string picture = folder / "window.png";
    const auto [code, text] = run("cd " + folder.string() + "; " + kEdit + "--seconds 1 --preset " +
                                  preset + " --picture " + picture);
    EXPECT_EQ(code, 0) << text;
    const Image image = readPicture(picture);
    const unsigned char* const data = cairo_image_surface_get_data(image.get());
    const int stride = cairo_image_surface_get_stride(image.get());
    std::string pixels;
    for (int y = 35; y < 52; ++y)
      pixels.append(data + y * stride + 46 * 4, data + y * stride + 157 * 4);
    return pixels;
  };
  EXPECT_TRUE(shownName("first.kvz") != shownName("second.kvz"));
}

TEST_F(EditCommandTest, EndsWithItsWindowAndAtASignal) {
  const auto close = [&] {
    Display* const display = robot.connection();
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = shownWindow();
    event.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(XInternAtom(display, "WM_DELETE_WINDOW", False));
    XSendEvent(display, event.xclient.window, False, 0, &event);
    XSync(display, False);
  };
  const fs::path picture = folder / "closed.png";
  EXPECT_EQ(run(kEdit + "--picture " + picture.string(), close).first, 0);
  EXPECT_TRUE(fs::remove(picture));
  // The picture's beginning goes with it: nothing was skipped on the way out.
  EXPECT_EQ(run(kEdit + "--picture " + picture.string() + " & program=$!; while ! ls -A " +
                folder.string() + " | grep -q .; do sleep 0.01; done; kill $program; wait $program")
                .first,
            128 + SIGTERM);
  EXPECT_TRUE(fs::is_empty(folder));
}

TEST_F(EditCommandTest, WhatCannotBeIsToldWithTheWayOut) {
  const std::string song = folder / "song.wav";
  fs::copy_file(ZUM_SOURCE_DIR "/content/Samples/Factory/Drums.wav", song);
  const struct {
    std::string command;
    int exitCode;
    const char* advice;
  } cases[] = {
      {"env -u DISPLAY " + kEdit, 1, "no display; start it on a desktop, or under xvfb-run\n"},
      {kEdit + "--loop /nowhere.wav", 1, "check the name"},
      {kEdit + "--preset /nowhere.kvz", 1, "zum presets check"},
      {kEdit + "--picture /nowhere/a.png", 1, "choose a folder that exists"},
      {kEdit + "--loop " + song + " --picture " + song, 2, "give it another name"},
      {kEdit + "--tempo 44", 2, "zum edit --help"},
      {kEdit + "--seconds soon", 2, "zum edit --help"},
  };
  for (const auto& [command, exitCode, advice] : cases) {
    const auto [code, text] = run(command);
    EXPECT_EQ(code, exitCode) << command;
    EXPECT_NE(text.find(advice), std::string::npos) << text;
  }
}

}  // namespace
}  // namespace zum::test
