// The transport strip without a screen: what each control tells its owner, and what it shows of
// what the owner says.
#include "apps/zum/play/strip.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <map>

#include "platform/files.hpp"
#include "platform/message_box.hpp"
#include "platform/offscreen_window.hpp"
#include "resources/strip_places.hpp"
#include "state/settings.hpp"
#include "support/chooser.hpp"
#include "support/fake_strip_owner.hpp"
#include "support/own_home.hpp"

namespace zum::test {
namespace {

namespace places = pictures::strip;
using pictures::Rect;

const OwnHome home;

class StripTest : public testing::Test {
 protected:
  StripTest() {
    frame->open(WindowRequest{}, [this](const WindowRequest& request, WindowEvents& events) {
      auto opened = std::make_unique<OffscreenWindow>(request, events);
      window = opened.get();
      return opened;
    });
    tick(2);
  }
  ~StripTest() override { frame->shut(); }

  void tick(int count = 1) {
    for (; count > 0; --count) strip->poll(), frame->idle();
  }
  CPoint middleOf(const Rect& rect) const {
    return {corner.x + rect.x + rect.w / 2, corner.y + rect.y + rect.h / 2};
  }
  void click(const Rect& rect) {
    const auto [x, y] = middleOf(rect);
    window->press(x, y), window->release(x, y), tick(2);
  }
  /// 0xRRGGBB of a rectangle, row by row.
  std::vector<std::uint32_t> pixels(const Rect& rect) const {
    std::vector<std::uint32_t> all;
    for (int y = 0; y < rect.h; ++y) {
      for (int x = 0; x < rect.w; ++x) {
        all.push_back(window->pixel(corner.x + rect.x + x, corner.y + rect.y + y));
      }
    }
    return all;
  }
  /// Letters of a colour: 1 for red, 2 for green, 3 for both, 0 for grey ones.
  int colours(const Rect& rect) const {
    int found = 0;
    for (const std::uint32_t word : pixels(rect)) {
      const unsigned red = word >> 16U;
      const unsigned green = word >> 8U & 0xFFU;
      if (red > 120 && 2 * red > 3 * green) found |= 1;
      if (green > 120 && 2 * green > 3 * red) found |= 2;
    }
    return found;
  }
  /// The lit segments of a level: "111100010000000".
  std::string lit(const Rect& level) const {
    std::string all;
    for (int i = 0; i < places::kSegments; ++i) {
      const auto word = pixels({level.x + i * places::kSegmentWidth + 1, level.y + 4, 1, 1})[0];
      all += std::max(word >> 16U, word >> 8U & 0xFFU) > 0x78U ? '1' : '0';
    }
    return all;
  }

  const CPoint corner{0, 10};
  FakeStripOwner owner;
  Held<KvFrame> frame{new KvFrame({0, 0, 508, 100}, nullptr)};
  OffscreenWindow* window = nullptr;
  std::unique_ptr<Strip> strip = std::make_unique<Strip>(*frame.get(), corner, owner);
};

TEST_F(StripTest, EachPressTellsTheOwnerWhatItSays) {
  const std::pair<Rect, const char*> presses[] = {
      {places::kPlay, "play"},     {places::kPlay, "play"},  {places::kRecord, "record"},
      {places::kRecord, "record"}, {places::kTap, "tap"},    {places::kTap, "tap"},
      {places::kInput, "card"},    {places::kInput, "loop"}, {places::kLevelIn, ""},
      {places::kClipIn, ""},       {places::kXruns, ""},     {places::kPlate, ""},
      {places::kTempo, ""},        {{0, 0, 20, 20}, ""},
  };
  for (const auto& [rect, told] : presses) {
    click(rect);
    EXPECT_EQ(owner.told(), told) << rect.x;
    EXPECT_EQ(owner.beats, 120.0);
  }
  const auto [x, y] = middleOf(places::kInput);  // two in one slow tick
  for (int i = 0; i < 2; ++i) window->press(x, y), window->release(x, y);
  tick();
  EXPECT_EQ(owner.told(), "card, loop");
}

TEST_F(StripTest, WhatTheOwnerSaysIsShownWithTheNextTick) {
  const struct {
    Rect rect;
    std::function<void()> change;
    std::function<void()> back;
  } cases[] = {
      {places::kPlay, [&] { owner.playing = true; }, [&] { owner.playing = false; }},
      {places::kRecord, [&] { owner.recording = true; }, [&] { owner.recording = false; }},
      {places::kInput, [&] { owner.input = true; }, [&] { owner.input = false; }},
      {places::kTempo, [&] { owner.beats = 120.01; }, [&] { owner.beats = 120.0; }},
      {places::kXruns, [&] { owner.lateBlocks = 1; }, [&] { owner.lateBlocks = 0; }},
      {places::kLoop, [&] { owner.loopPath = "/a.wav"; }, [&] { owner.loopPath = ""; }},
      {places::kDevice, [&] { owner.messageText = "!"; }, [&] { owner.messageText = ""; }},
  };
  window->forgetShows();
  tick(5);
  EXPECT_EQ(window->shownPixels(), 0);  // nothing is drawn while nothing moves
  for (const auto& [rect, change, back] : cases) {
    const auto everything = pixels(places::kStrip);
    const auto before = pixels(rect);
    change(), tick();
    EXPECT_NE(pixels(rect), before) << rect.x;
    back(), tick();
    EXPECT_EQ(pixels(places::kStrip), everything) << rect.x;
  }
  // a file that is not heard, something to tell, blocks that were late
  owner.loopPath = "/name.wav", tick();
  EXPECT_EQ(colours(places::kLoop), 2);
  EXPECT_EQ(colours(places::kDevice), 2);
  EXPECT_EQ(colours(places::kXruns), 2);
  owner.input = true, owner.messageText = "gone", owner.lateBlocks = 12, tick();
  EXPECT_EQ(colours(places::kLoop), 0);
  EXPECT_EQ(colours(places::kDevice), 1);
  EXPECT_EQ(colours(places::kXruns), 1);
}

TEST_F(StripTest, TempoIsDraggedAndTurned) {
  const auto [x, y] = middleOf(places::kTempo);
  const auto drag = [&, x = x, y = y](int up, int modifier) {
    window->press(x, y, buttons::kLeft | modifier), tick();
    window->move(x, y - up, buttons::kLeft | modifier), tick();
    window->release(x, y - up), tick();
  };
  const auto wheel = [&, x = x, y = y](float notches, int modifier) {
    window->wheel(x, y, notches, modifier), tick();
  };
  const std::pair<std::function<void()>, double> moves[] = {
      {[&] { drag(10, 0); }, 125.0},
      {[&] { drag(-11, 0); }, 119.5},
      {[&] { drag(10, buttons::kShift); }, 119.75},
      {[&] { wheel(1, 0); }, 120.0},  // to whole numbers
      {[&] { wheel(2, 0); }, 122.0},
      {[&] { wheel(-1, buttons::kShift); }, 121.9},
      {[&] { wheel(1, buttons::kShift); }, 122.0},
      {[&] { owner.beats = 99.99, tick(), wheel(-1, 0); }, 99.0},
      {[&] { drag(5000, 0); }, 500.0},
      {[&] { wheel(1, 0); }, 500.0},
      {[&] { drag(-5000, 0); }, 45.0},
      {[&] { wheel(-3, 0); }, 45.0},
  };
  int number = 0;
  for (const auto& [move, tempo] : moves) {
    move();
    EXPECT_EQ(owner.beats, tempo) << number++;
    EXPECT_NE(owner.told(), "");
  }
  window->wheel(middleOf(places::kLoop).x, middleOf(places::kLoop).y, 1), tick();
  EXPECT_EQ(owner.told(), "");
}

TEST_F(StripTest, SpacePlaysOncePerPress) {
  const WindowKey space{' ', keys::kSpace, 0};
  EXPECT_TRUE(strip->pressKey(space));
  for (int i = 0; i < 20; ++i) {  // held
    tick(3);
    EXPECT_TRUE(strip->pressKey(space));
  }
  EXPECT_EQ(owner.told(), "play");
  strip->releaseKey(space), tick(3);
  EXPECT_TRUE(strip->pressKey(space));
  EXPECT_EQ(owner.told(), "play");
  for (const WindowKey& other : {WindowKey{' ', keys::kSpace, keys::kControlBit},
                                 {'p', 0, 0},
                                 {0, keys::kReturn, 0},
                                 {0, keys::kF1 + 1, 0}}) {
    EXPECT_FALSE(strip->pressKey(other));
  }
  EXPECT_EQ(owner.told(), "");
}

TEST_F(StripTest, LevelsFallSlowlyHoldTheirPeakAndRememberThatTheyClipped) {
  const auto peak = [&](float in, float out) { owner.peaks = {in, out}, tick(); };
  const auto dark = pixels(places::kClipIn);
  peak(0.5F, 0.0F);  // -6 dB
  EXPECT_EQ(lit(places::kLevelIn), "111111111111100");
  EXPECT_EQ(lit(places::kLevelOut), "000000000000000");
  tick(15);  // 10 dB less
  EXPECT_EQ(lit(places::kLevelIn), "111111111100100");
  tick(13);
  EXPECT_EQ(lit(places::kLevelIn), "111111110000100");
  tick(3);  // a second later the peak is forgotten
  EXPECT_EQ(lit(places::kLevelIn), "111111110000000");
  peak(0.001F, 0.00158F);  // below and just in the lowest segment
  tick(80);
  peak(0.0015F, 0.0016F);
  EXPECT_EQ(lit(places::kLevelIn), "000000000000000");
  EXPECT_EQ(lit(places::kLevelOut), "100000000000000");

  peak(1.0F, 1.0F);  // full scale does not clip
  EXPECT_EQ(lit(places::kLevelIn), "111111111111111");
  EXPECT_EQ(pixels(places::kClipIn), dark);
  peak(1.0001F, 1.0F);
  tick(300);
  EXPECT_NE(pixels(places::kClipIn), dark);
  const auto alight = pixels(places::kClipIn);
  click(places::kClipOut);
  EXPECT_EQ(pixels(places::kClipIn), alight);
  click(places::kClipIn);
  EXPECT_EQ(pixels(places::kClipIn), dark);
  peak(std::numeric_limits<float>::quiet_NaN(), 1e30F);
  EXPECT_NE(pixels(places::kClipIn), dark);
  EXPECT_EQ(lit(places::kLevelOut), "111111111111111");
}

TEST_F(StripTest, NamesOfAnyLengthAndBytesStayInTheirPlace) {
  const auto around = [&] {
    return std::map<int, std::vector<std::uint32_t>>{
        {0, pixels({0, 0, 508, places::kLoop.y})},
        {1, pixels({0, places::kLoop.y, places::kLoop.x, places::kLoop.h})},
        {2, pixels({182, places::kLoop.y, 11, places::kLoop.h})},
        {3, pixels({422, places::kLoop.y, 86, places::kLoop.h})}};
  };
  const auto before = around();
  for (const std::string& name :
       {std::string(4000, 'W'), std::string(300, '\xFF'), std::string("a\nb\tc"),
        std::string("\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D.wav"), std::string(200, '.')}) {
    owner.loopPath = "/folder/" + name, owner.messageText = name;
    const auto shown = pixels(places::kLoop);
    tick();
    EXPECT_NE(pixels(places::kLoop), shown);
    EXPECT_TRUE(around() == before) << name.substr(0, 9);
  }
}

TEST_F(StripTest, ALoopIsChosenWhereTheLastOneWas) {
  Chooser dialogs;
  dialogs.chosen = toInternalPath("/music/new/Beat.flac");
  click(places::kLoop);
  EXPECT_EQ(owner.told(), "loop /music/new/Beat.flac");
  dialogs.chosen = std::nullopt;
  click(places::kLoopButton);
  EXPECT_EQ(owner.told(), "");
  EXPECT_EQ(dialogs.asked.startFolder, "\\music\\new");
  EXPECT_EQ(readSettingString(kAudioFilePath), "\\music\\new");
  frame->shut(), strip.reset();
  EXPECT_EQ(dialogs.cancelled, 1);  // a question that is open would be answered to nobody
}

TEST_F(StripTest, TheLineIsToldInFullWhenItIsPressed) {
  attachMessages();
  owner.messageText = std::string(300, 'm'), tick();
  click(places::kDevice);
  const auto message = nextMessage();
  ASSERT_TRUE(message);
  EXPECT_EQ(message->text, owner.messageText);
  messageClosed(), detachMessages();
}

TEST_F(StripTest, OfDroppedFilesTheFirstOfEachKindCounts) {
  const std::pair<std::vector<std::string>, const char*> drops[] = {
      {{"/a.wav"}, "loop /a.wav"},
      {{"/a.kvz"}, "preset /a.kvz"},
      {{"/A.KVZ", "/b.kvz", "/c", "/d.wav"}, "preset /A.KVZ, loop /c"},
      {{"/kvz", "/.kvz"}, "loop /kvz"},
      {{}, ""},
  };
  for (const auto& [files, told] : drops) {
    strip->takeFiles(files);
    EXPECT_EQ(owner.told(), told);
  }
}

}  // namespace
}  // namespace zum::test
