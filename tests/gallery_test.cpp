// Every control in a real window under a real mouse, and the program that shows them.
#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>
// X's macros after that
#include <X11/Xlib.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <tuple>
#include <utility>

#include "apps/gallery/gallery.hpp"
#include "apps/gallery/gallery_pictures.hpp"
#include "support/own_display.hpp"
#include "toolkit/option_menu.hpp"

namespace zum::test {
namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;
const std::string kProgram = "'" ZUM_GALLERY_PROGRAM "'";
constexpr unsigned long kShiftKey = 0xFFE1;
constexpr unsigned long kControlKey = 0xFFE3;
constexpr unsigned long kAltKey = 0xFFE9;
constexpr CRect kBars{21, 401, 419, 463};  // of the steps
constexpr CPoint kNowhere{600, 100};       // no control is there

std::uint32_t wordOf(CColor color) {
  return std::uint32_t{color.red} << 16U | std::uint32_t{color.green} << 8U | color.blue;
}

std::ptrdiff_t openFiles() {
  using Files = fs::directory_iterator;
  return std::distance(Files("/proc/self/fd"), Files());
}

/// A gallery, what it reports, and the user in front of it.
class Visit {
 public:
  explicit Visit(Robot& user, const std::string& folder = {})
      : robot(user),
        gallery([this](const std::string& name, float value) { add(name, value); }, folder) {
    if (!gallery.open()) throw std::runtime_error("no window");
    at(kNowhere);
  }
  void tick() {
    (void)gallery.window().getCurrentMouseButtons();  // all that came before is here now
    gallery.idle();
  }
  void at(CPoint where) { robot.moveTo(gallery.window().nativeHandle(), where.x, where.y), tick(); }
  void press(CPoint where, unsigned button = 1) { at(where), robot.press(button), tick(); }
  void release(unsigned button = 1) { robot.release(button), tick(); }
  void click(CPoint where, unsigned button = 1) { press(where, button), release(button); }
  void drag(CPoint from, int dx, int dy, unsigned button = 1) {
    press(from, button), at({from.x + dx, from.y + dy}), release(button);
  }
  CPoint on(const std::string& name) {
    const CRect& rect = gallery.get<KvControl>(name).getViewSize();
    return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
  }
  /// Of an open list, from its top.
  CPoint row(const std::string& menu, int number) {
    const CRect list = gallery.get<KvOptionMenu>(menu).getListRect();
    return {list.left + 10, list.top + 9 + 17 * number};
  }
  std::uint32_t pixel(CPoint where) {
    return robot.pixel(gallery.window().nativeHandle(), where.x, where.y);
  }
  /// Reports since the last call, as "name value".
  Lines taken() { return std::exchange(lines, {}); }

  Robot& robot;
  Gallery gallery;

 private:
  void add(const std::string& name, float value) {
    std::array<char, 64> line{};
    (void)std::snprintf(line.data(), line.size(), "%s %.4f", name.c_str(), double{value});
    lines.emplace_back(line.data());
  }
  Lines lines;
};

class GalleryTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { server = std::make_unique<OwnDisplay>(); }
  static void TearDownTestSuite() { server.reset(); }
  GalleryTest() : folder(fs::temp_directory_path() / ("zum-gallery-" + std::to_string(getpid()))) {
    fs::create_directories(folder);
  }
  ~GalleryTest() override { fs::remove_all(folder); }

  static inline std::unique_ptr<OwnDisplay> server;
  Robot robot;
  fs::path folder;
};

TEST_F(GalleryTest, EachGestureReportsWhatItMeans) {
  Visit visit(robot);
  enum Hand { click, twice, right, wheel, drag, fine, reset, choose };
  // clang-format off
  const struct {
    const char* name;
    Hand hand;
    int x, y;  // pixels of a drag; y also notches of the wheel and rows of a menu
    Lines reports;
  } cases[] = {
      {"knob", fine, 0, -20, {"knob 0.5100"}},
      {"knob", twice, 0, 0, {"knob 0.2500"}},
      {"fader", reset, 0, 0, {"fader 0.2500"}},
      {"jump", twice, 0, 0, {"jump 0.5000", "jump 0.5000"}},
      {"slider", wheel, 0, 2, {"slider 0.4175", "slider 0.4350"}},
      {"spring", wheel, 0, 2, {}},
      {"spring", drag, 0, -20, {"spring 0.7000", "spring 0.5000"}},
      {"plain", drag, 0, -10, {"plain 22.5000"}},  // a range of its own
      {"number", drag, 0, 20, {"number 0.3000"}},
      {"held", drag, 0, 500, {"held 1.0000", "held 0.0000"}},  // released outside of the window
      {"click", drag, 0, 100, {}},
      {"toggle", right, 0, 0, {"toggle 2.0000"}},
      {"picture", choose, 0, 3, {"picture 3.0000"}},
      {"folder", click, 0, 0, {}},  // empty
      {"area", click, 0, 0, {"area 0.5000", "area 0.5000"}},
  };
  // clang-format on
  const Screenshot shot = robot.screenshot(visit.gallery.window().nativeHandle());
  const auto hasCaption = [&shot](const CRect& below) {
    for (int x = below.left; x < below.right; ++x) {
      if (shot.at(x, below.top - 6) % 256 < 80) return true;  // ink
    }
    return false;
  };
  for (const auto& [name, hand, x, y, reports] : cases) {
    EXPECT_TRUE(hasCaption(visit.gallery.get<KvControl>(name).getViewSize())) << name;
    const CPoint place = visit.on(name);
    visit.at(place);
    if (hand == twice) robot.click(), robot.click(), visit.tick();
    if (hand == wheel) robot.wheel(y), visit.tick();
    if (hand == fine) robot.keyDown(kShiftKey);
    if (hand == reset) robot.keyDown(kControlKey);
    if (hand == drag || hand == fine) visit.drag(place, x, y);
    if (hand == reset) visit.click(place);
    if (hand == fine) robot.keyUp(kShiftKey);
    if (hand == reset) robot.keyUp(kControlKey);
    if (hand == click || hand == choose) visit.click(place);
    if (hand == right) visit.click(place, 3);
    if (hand == choose) visit.click(visit.row(name, y));
    visit.at(kNowhere);
    EXPECT_EQ(visit.taken(), reports) << name;
    EXPECT_EQ(visit.gallery.window().getModalView(), nullptr) << name;
  }
  visit.click(visit.on("menu"));
  visit.click(visit.row("rows", 1));
  EXPECT_EQ(visit.taken(), Lines{"menu 1.0000"});
}

TEST_F(GalleryTest, ReadoutComesAfterTwoTicksAndGoesAfterFive) {
  Visit visit(robot);
  const CPoint corner{69, 61};  // of the readout
  EXPECT_EQ(visit.pixel(corner), wordOf(kPaper));
  const auto ticksUntil = [&](CColor color) {
    int count = 1;  // that of the move
    while (count < 20 && visit.pixel(corner) != wordOf(color)) ++count, visit.tick();
    return count;
  };
  visit.at(visit.on("knob"));
  EXPECT_EQ(ticksUntil(kDark), 2);
  visit.at(kNowhere);
  EXPECT_EQ(ticksUntil(kPaper), 5);
}

TEST_F(GalleryTest, PanelStaysInsideAndAPressOutsideOnlyClosesIt) {
  Visit visit(robot);
  const KvViewContainer& panel = visit.gallery.panel();
  for (const bool swapped : {false, true}) {
    robot.swapButtons(swapped);
    const auto [left, right] = swapped ? std::pair(3U, 1U) : std::pair(1U, 3U);
    for (const char* const name : {"knob", "number", "steps"}) {
      const CRect& opener = visit.gallery.get<KvControl>(name).getViewSize();
      visit.click({opener.right - 2, opener.bottom - 2}, right);
      ASSERT_TRUE(panel.isVisible()) << name;
      const CRect place = panel.getViewSize();
      EXPECT_EQ(place.meet(Gallery::kWindow), place) << name;
      EXPECT_EQ(std::pair(place.width(), place.height()), std::pair(160, 72)) << name;
      EXPECT_EQ(visit.pixel({place.left + 2, place.bottom - 2}), wordOf(kPaper)) << name;
      visit.drag(visit.on("amount"), 10, 0, left);
      EXPECT_EQ(visit.taken().size(), 1U) << name;
      visit.click(visit.on("cycle"), left);
      EXPECT_FALSE(panel.isVisible()) << name;
      EXPECT_TRUE(visit.taken().empty()) << name;
      visit.click(visit.on("cycle"), left);
      EXPECT_EQ(visit.taken().size(), 1U) << name;
    }
  }
  robot.swapButtons(false);
  EXPECT_NEAR(visit.gallery.model().amount, 0.3F + 6 * 0.065F, 1e-5F);
  visit.click(visit.on("knob"), 3);
  visit.click(visit.on("close"));
  EXPECT_EQ(visit.taken(), Lines{"close 0.0000"});
  EXPECT_FALSE(panel.isVisible());
}

TEST_F(GalleryTest, SubMenuOpensUnderThePointerAndLongListsScroll) {
  for (int i = 0; i < 129; ++i) {
    std::ofstream(folder / ("preset " + std::to_string(1000 + i) + ".kvz")) << i;
  }
  Visit visit(robot, folder.string());
  auto& nested = visit.gallery.get<KvOptionMenu>("nested");
  visit.click(visit.on("nested"));
  for (int i = 0; const char* const name : {"waves", "noises"}) {
    visit.at(visit.row("nested", i++));
    ASSERT_NE(nested.openSubMenu(), nullptr);
    EXPECT_EQ(nested.openSubMenu()->getName(), name);
  }
  const CRect inner = nested.openSubMenu()->getListRect();
  const CPoint pink{inner.right - 3, inner.bottom - 3};
  EXPECT_EQ(inner.left, nested.getListRect().right);
  EXPECT_EQ(visit.pixel(pink), wordOf(kBox));
  visit.at(pink);
  EXPECT_EQ(visit.pixel(pink), wordOf(kAccent));
  visit.click(pink);
  EXPECT_FALSE(nested.isListOpen());
  EXPECT_EQ(nested.currentText(), "pink");
  EXPECT_EQ(visit.taken(), Lines{"nested 0.0000"});
  EXPECT_NE(visit.pixel(pink), wordOf(kAccent));

  for (const auto& [name, rows, last] :
       {std::tuple("long", 1024, "row 1023"), std::tuple("folder", 128, "preset 1127")}) {
    auto& menu = visit.gallery.get<KvOptionMenu>(name);
    EXPECT_EQ(menu.getNbEntries(), rows);
    visit.click(visit.on(name));
    ASSERT_TRUE(menu.isListOpen());
    const CPoint bottom{menu.getListRect().left + 10, menu.getListRect().bottom - 9};
    visit.at(bottom);
    robot.wheel(-rows / 3 - 1);
    visit.tick();
    visit.click(bottom);
    EXPECT_EQ(menu.currentText(), last);
    EXPECT_EQ(visit.taken(), Lines{std::string(name) + " " + std::to_string(rows - 1) + ".0000"});
  }
}

TEST_F(GalleryTest, StepsAreDrawnByOneFastStrokeAndSlideWithAlt) {
  Visit visit(robot);
  KvTableXY& steps = visit.gallery.model().steps;
  constexpr int kSteps = GalleryModel::kSteps;
  const auto at = [](int step, int y) {
    return CPoint{kBars.left + kBars.width() * (2 * step + 1) / (2 * kSteps), y};
  };
  const auto expect = [&](const std::vector<float>& values) {
    const Screenshot shot = robot.screenshot(visit.gallery.window().nativeHandle());
    for (int i = 0; i < kSteps; ++i) {
      const float value = values[static_cast<std::size_t>(i)];
      EXPECT_NEAR(steps.cell(i, 0), value, 1e-5F) << i;
      const int top = kBars.bottom - static_cast<int>(std::lround(value * 62.0F));
      EXPECT_NE(shot.at(at(i, 0).x, std::min(top + 3, kBars.bottom - 1)), wordOf(kBox)) << i;
      if (i < 2 || top - 3 < kBars.top) continue;  // under the position's label, or full
      EXPECT_EQ(shot.at(at(i, 0).x, top - 3), wordOf(kBox)) << i;
    }
  };
  std::vector<float> values;
  values.reserve(kSteps);
  for (int i = 0; i < kSteps; ++i) values.push_back(steps.cell(i, 0));
  visit.drag(at(2, kBars.bottom - 6), at(12, 0).x - at(2, 0).x, -50);
  for (int i = 2; i <= 12; ++i) {
    values[static_cast<std::size_t>(i)] = static_cast<float>(5 * i - 4) / 62.0F;
  }
  expect(values);
  robot.keyDown(kAltKey);
  visit.drag(at(8, 440), 0, -50);
  robot.keyUp(kAltKey);
  for (float& value : values) value = std::min(value + 0.1F, 1.0F);
  expect(values);
}

TEST_F(GalleryTest, OfStackedPagesTheShownOneAnswers) {
  Visit visit(robot);
  const CPoint knob = visit.on("first");
  ASSERT_EQ(visit.on("second"), knob);
  for (const char* const report : {"first 0.2175", "second 0.8175", "first 0.2350"}) {
    visit.at(knob);
    robot.wheel(1);
    visit.tick();
    EXPECT_EQ(visit.taken(), Lines{report});
    // The arc where both have begun, in the colour of the page.
    EXPECT_EQ(visit.pixel({knob.x - 16, knob.y + 5}),
              wordOf(*report == 'f' ? kAccent : kSecondAccent));
    visit.click(visit.on("page"));
    visit.taken();
  }
}

TEST_F(GalleryTest, OpensAndClosesFiveHundredTimesAndKeepsNothing) {
  Gallery gallery({});
  std::ptrdiff_t files = 0;
  std::size_t bytes = 0;
  for (int i = 0; i < 500; ++i) {
    ASSERT_TRUE(gallery.open()) << i;
    gallery.idle();
    gallery.close();
    if (i == 100) {
      files = openFiles();
      bytes = mallinfo2().uordblks;
    }
  }
  EXPECT_EQ(openFiles(), files);
  EXPECT_LT(mallinfo2().uordblks, bytes + 400 * 16);  // less than an object for each
}

TEST_F(GalleryTest, OfTwoAtOnceEachWorksAndOneOutlivesTheOther) {
  auto first = std::make_unique<Visit>(robot);
  Visit second(robot);
  XMoveWindow(robot.connection(), second.gallery.window().nativeHandle(), 384, 288);
  first->drag(first->on("knob"), 0, -20);
  second.drag(second.on("knob"), 0, 20);
  EXPECT_EQ(first->taken(), Lines{"knob 0.7000"});
  EXPECT_EQ(second.taken(), Lines{"knob 0.3000"});
  XDestroyWindow(robot.connection(), first->gallery.window().nativeHandle());
  XSync(robot.connection(), False);
  first->gallery.idle();
  EXPECT_TRUE(first->gallery.isGone());
  first.reset();
  second.drag(second.on("slider"), 20, 0);
  EXPECT_EQ(second.taken(), Lines{"slider 0.5300"});
  EXPECT_FALSE(second.gallery.isGone());
}

TEST_F(GalleryTest, ProgramReportsShowsItsPictureAndSaysWhatToDo) {
  const auto run = [](const std::string& arguments, const std::function<void()>& meanwhile) {
    FILE* const pipe = popen((arguments + " 2>&1").c_str(), "r");
    meanwhile();
    std::string text;
    std::array<char, 256> part{};
    while (std::fgets(part.data(), part.size(), pipe) != nullptr) text += part.data();
    return std::pair(WEXITSTATUS(pclose(pipe)), text);
  };
  const fs::path picture = folder / "window.png";
  const auto clickWhenShown = [&] {
    for (int i = 0; i < 500 && !fs::exists(picture); ++i) usleep(10'000);
    robot.moveTo(0, 48, 163);  // the first button
    robot.click();
  };
  EXPECT_EQ(run(kProgram + " --seconds 1 --picture " + picture.string(), clickWhenShown),
            std::pair(0, std::string("held 1\nheld 0\n")));
  const struct {
    std::string command;
    int exitCode;
    const char* advice;
  } cases[] = {
      {"env -u DISPLAY " + kProgram, 1, "No display: start it on a desktop, or under xvfb-run.\n"},
      {kProgram + " --picture /nowhere/a.png", 1, "name a file in a folder"},
      {kProgram + " --folder /nowhere", 2, "--help"},
      {kProgram + " --seconds soon", 2, "--help"},
  };
  for (const auto& [command, exitCode, advice] : cases) {
    const auto [code, text] = run(command, [] {});
    EXPECT_EQ(code, exitCode) << command;
    EXPECT_NE(text.find(advice), std::string::npos) << text;
  }
}

}  // namespace
}  // namespace zum::test
