// `zum play` as a user starts it where there is no sound device: the window that it opens, how it
// ends, what it says when it cannot.
#include <cairo.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <functional>
#include <future>
#include <set>
#include <string>

#include "support/own_display.hpp"
#include "support/settings_user.hpp"
#include "support/sound_file.hpp"

namespace zum::test {
namespace {

const std::string kDrums = ZUM_SOURCE_DIR "/content/Samples/Factory/Drums.wav";
constexpr int kWidth = 508;
constexpr int kHeight = 560;

class PlayCommandTest : public SettingsTest {
 protected:
  PlayCommandTest() {
    useNoSound(folder);
    const Sound drums = readSound(kDrums);
    writeSound((folder / "loop.wav").string(), SF_FORMAT_WAV | SF_FORMAT_FLOAT, drums.info.channels,
               drums.info.samplerate, drums.samples);
  }

  /// Ends well, and says no more than that there is no device.
  void play(
      const std::string& options, const std::function<void()>& meanwhile = [] {}) const {
    auto ended = std::async(std::launch::async, [&] { return run("play " + options); });
    meanwhile();
    const auto [exitCode, text] = ended.get();
    EXPECT_EQ(exitCode, 0) << options << '\n' << text;
    const std::string rest = text.substr(std::min(text.find('\n'), text.size() - 1) + 1);
    EXPECT_EQ(text.find("zum: warning: there is no sound device"), 0U) << text;
    const bool hasSummary = options.find("--seconds") != std::string::npos;
    EXPECT_EQ(rest.find("no sound device, 44100 Hz, "), hasSummary ? 0U : std::string::npos);
    EXPECT_EQ(std::count(rest.begin(), rest.end(), '\n'), hasSummary ? 1 : 0) << rest;
  }
  std::uintptr_t shownWindow() {
    std::uintptr_t window = 0;
    for (int i = 0; i < 1000 && window == 0; ++i) usleep(10'000), window = robot.findWindow("ZUM");
    return window;
  }
  /// The pixels of window.png from one corner to the other, a row after the other.
  std::vector<std::uint32_t> picture(int left, int top, int right, int bottom) const {
    cairo_surface_t* image = cairo_image_surface_create_from_png((folder / "window.png").c_str());
    EXPECT_EQ(cairo_image_surface_get_width(image), kWidth);
    EXPECT_EQ(cairo_image_surface_get_height(image), kHeight);
    const auto* words = reinterpret_cast<std::uint32_t*>(cairo_image_surface_get_data(image));
    std::vector<std::uint32_t> pixels;
    for (const auto* row = words + kWidth * top; row < words + kWidth * bottom; row += kWidth) {
      pixels.insert(pixels.end(), row + left, row + right);
    }
    cairo_surface_destroy(image);
    return pixels;
  }
  /// A recording is what `zum render` makes of the loop, as far as it goes.
  void expectRecorded(const std::string& name) const {
    ASSERT_EQ(run("render loop.wav rendered.wav --play").first, 0);
    const Sound rendered = readSound((folder / "rendered.wav").string());
    Sound recorded = readSound((folder / name).string());
    recorded.samples.resize(std::min(recorded.samples.size(), rendered.samples.size()));
    ASSERT_GT(recorded.samples.size(), 20'000U);
    EXPECT_TRUE(
        std::equal(recorded.samples.begin(), recorded.samples.end(), rendered.samples.begin()));
  }

  const OwnDisplay server;
  Robot robot;
};

TEST_F(PlayCommandTest, WindowMovesWithTheMusicUntilItIsClosedAndItsPictureIsWritten) {
  play("--picture window.png --record heard.rf64 --loop loop.wav", [&] {
    const std::uintptr_t window = shownWindow();
    ASSERT_NE(window, 0U);
    for (int i = 0; i < 1000 && !fs::exists(folder / "window.png"); ++i) usleep(10'000);
    const Screenshot before = robot.screenshot(window);
    usleep(400'000);
    EXPECT_NE(robot.screenshot(window).words, before.words);
    robot.close(window);
  });
  const auto pixels = picture(0, 0, kWidth, kHeight);
  EXPECT_GT(std::set<std::uint32_t>(pixels.begin(), pixels.end()).size(), 64U);
  expectRecorded("heard.rf64");
}

// Both files hold the same bytes.
TEST_F(PlayCommandTest, PresetHasTheNameOfItsFileAsFromTheMenu) {
  const auto shownName = [this](const std::string& preset) {
    putText(folder / "a.toml", "");
    expectTold("", {{"presets make a.toml " + preset, 0, ""}});
    play("--seconds 1 --picture window.png --preset " + preset);
    return picture(46, 35, 157, 52);
  };
  EXPECT_NE(shownName("first.kvz"), shownName("second.kvz"));
}

TEST_F(PlayCommandTest, EndsAtASignalWithTheRecordingComplete) {
  // The picture's beginning goes with it: nothing was skipped on the way out.
  fs::create_directory(folder / "own");
  auto ended = std::async(std::launch::async, [&] {
    return shell(kProgram +
                 "play --loop loop.wav"
                 " --picture own/a.png --record heard.wav & echo $! > id; wait $!");
  });
  ASSERT_NE(shownWindow(), 0U);
  usleep(700'000);
  const auto told = std::chrono::steady_clock::now();
  ASSERT_EQ(shell("kill $(cat id)").first, 0);
  EXPECT_EQ(ended.get().first, 128 + SIGTERM);
  EXPECT_LT(std::chrono::steady_clock::now() - told, std::chrono::seconds(ZUM_ENDS_WITHIN));
  EXPECT_TRUE(fs::is_empty(folder / "own"));
  expectRecorded("heard.wav");
}

TEST_F(PlayCommandTest, WhatCannotBeIsToldWithTheWayOut) {
  putText(folder / "text.wav", "no music\n");
  expectTold("zum: ", {
                          {"play --loop /nowhere.wav", 1, "check the name"},
                          {"play --loop text.wav", 1, "give a music file"},
                          {"play --record /nowhere/a.wav", 1, "choose a folder that exists"},
                          {"play --record a.txt", 2, "does not tell a format"},
                          {"play --loop loop.wav --picture loop.wav", 2, "give it another name"},
                          {"play --loop loop.wav --record loop.wav", 2, "give it another name"},
                          {"play --tempo 44", 2, "zum play --help"},
                          {"play --block 8", 2, "zum play --help"},
                          {"play --api sun", 2, "zum play --help"},
                          {"play --api jack", 1, "there is no sound device at jack"},
                          {"play --device horn", 1, "start JACK or PulseAudio"},
                      });
  expectTold("no sound devices\nno MIDI ports\n", {{"play --list", 0, ""}});
  const auto [exitCode, text] = run("play --seconds 1 --picture /nowhere/a.png");
  EXPECT_EQ(exitCode, 1);
  EXPECT_NE(text.find("choose a folder that exists"), std::string::npos) << text;
  unsetenv("DISPLAY");
  const auto without = run("play --loop loop.wav --record heard.wav");
  EXPECT_EQ(without.first, 1);
  EXPECT_NE(without.second.find("zum: no display; start it on a desktop, or under xvfb-run\n"),
            std::string::npos)
      << without.second;
}

}  // namespace
}  // namespace zum::test
