// A user without aim: mouse and keys at random over the whole window, while blocks play, a host
// automates, MIDI and presets come, and the window opens and closes. Three seconds, or as many as
// ZUM_STORM_SECONDS says; ZUM_STORM_SEED begins it elsewhere, GDK_SCALE at another size.
#include <gtest/gtest.h>
#include <malloc.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <thread>

#include "support/chance.hpp"
#include "support/editor_desk.hpp"
#include "support/gestures.hpp"
#include "support/settings_user.hpp"
#include "toolkit/key_focus.hpp"

namespace zum::test {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

int fromEnvironment(const char* name, int otherwise) {
  const char* const word = std::getenv(name);
  return word != nullptr ? static_cast<int>(std::strtol(word, nullptr, 10)) : otherwise;
}

/// Some questions are answered with a file, others cancelled.
struct Answers final : FileDialogs {
  Answers(Chance& dice, std::vector<std::string> paths) : chance(dice), files(std::move(paths)) {
    setFileDialogs(this);
  }
  ~Answers() override { setFileDialogs(nullptr); }
  void load(const FileQuestion& /*question*/, FileAnswer answer) override { give(answer); }
  void save(const FileQuestion& /*question*/, FileAnswer answer) override { give(answer); }
  void folder(const FileQuestion& /*question*/, FileAnswer answer) override { answer({}); }
  void cancel(void* /*owner*/) override {}

 private:
  void give(const FileAnswer& answer) {
    if (chance.once(3)) return answer({});
    answer(chance.oneOf(files));
  }

  Chance& chance;
  std::vector<std::string> files;
};

/// Blocks with MIDI on one thread, automation on another, as long as it lives.
class Traffic {
 public:
  Traffic(TestHost& host, unsigned seed)
      : blocks([this, &host, seed] {
          Chance chance(seed);
          const Stereo in = noise(kBlock);
          Stereo out(kBlock);
          while (!ends) {
            const auto byte = [&chance] { return chance.below(128); };
            if (chance.once(4)) host.send({{0, 0xB0, byte(), byte()}});
            if (chance.once(8)) host.send({{5, 0x90, byte(), byte()}, {30, 0xE0, 0, byte()}});
            if (chance.once(200)) host.send({{9, 0xC0, byte(), 0}});
            host.process(in, out, 0, kBlock);
            std::this_thread::sleep_for(std::chrono::microseconds(500));
          }
        }),
        automation([this, &host, seed] {
          Chance chance(seed + 1);
          while (!ends) {
            if (!chance.once(20)) {
              host.set(chance.below(kHostParameters), chance.unit());
            } else {
              host.set(chance.oneOf(std::array{tag::bank, tag::lfoStyle, tag::modChoice}),
                       chance.unit());
            }
            std::this_thread::sleep_for(milliseconds(1));
          }
        }) {}
  Traffic(const Traffic&) = delete;
  Traffic& operator=(const Traffic&) = delete;
  ~Traffic() {
    ends = true;
    blocks.join();
    automation.join();
  }

 private:
  static constexpr std::int32_t kBlock = 64;
  std::atomic<bool> ends{false};
  std::thread blocks;
  std::thread automation;
};

class Storm : public SettingsTest {
 protected:
  Storm() {
    installContent(ZUM_CONTENT, folder / "data");
    fs::create_directories(folder / "mine");
    setenv("PATH", "/nowhere", 1);  // the manual opens nothing
  }
  ~Storm() override { setenv("PATH", path.c_str(), 1); }

  void act() {
    EditorDesk& desk = *opened;
    OffscreenWindow& window = *desk.window;
    const int modifiers = chance.once(4) ? chance.below(16) << 4 : 0;
    switch (chance.below(14)) {
      case 0:
      case 1: aim(); [[fallthrough]];
      case 2: return window.move(seen().x, seen().y, held);
      case 3:
      case 4:
      case 5:
        if (held != 0) {
          at = {at.x + chance.below(41) - 20, at.y + chance.below(41) - 20};
          return window.move(seen().x, seen().y, held);
        }
        held = chance.oneOf(std::array{buttons::kLeft, buttons::kLeft, buttons::kLeft,
                                       buttons::kRight, buttons::kMiddle});
        return window.press(seen().x, seen().y,
                            held | modifiers | (chance.once(5) ? buttons::kDoubleClick : 0));
      case 6:
      case 7:
        if (chance.once(30)) held = 0;  // a release that is lost
        window.release(seen().x, seen().y);
        held = 0;
        return;
      case 8: return window.wheel(seen().x, seen().y, chance.once(2) ? 1.0F : -1.5F, modifiers);
      case 9:
        if (chance.once(10)) window.leave();
        if (chance.once(10)) window.setFocus(chance.once(2));
        if (chance.once(10)) window.expose(chance.below(500), 0, 508, chance.below(470));
        return;
      default: return pressKey();
    }
  }
  CPoint seen() { return opened->onScreen(at); }
  void aim() {
    const auto stops = opened->editor().shownFrame()->keyFocus().stops();
    at = {chance.below(layout::kWindow.right), chance.below(layout::kWindow.bottom)};
    if (stops.empty() || chance.once(3)) return;
    const CRect& rect = chance.oneOf(stops)->getViewSize();
    at = {rect.left + chance.below(rect.width()), rect.top + chance.below(rect.height())};
  }
  void pressKey() {
    constexpr std::array kKeys = {
        keys::kTab,   keys::kTab,    keys::kTab,    keys::kUp,     keys::kDown,    keys::kLeft,
        keys::kRight, keys::kSpace,  keys::kReturn, keys::kEscape, keys::kHome,    keys::kEnd,
        keys::kBack,  keys::kDelete, keys::kPageUp, keys::kEnter,  keys::kPageDown};
    WindowKey key{0, chance.oneOf(kKeys), 0};
    if (chance.once(5)) key = {chance.oneOf(std::string("0123456789.,-% kHzZ\u00e9")), 0, 0};
    if (chance.once(10)) key = {'z', 0, keys::kControlBit};
    if (chance.once(40)) key = {0, keys::kF1 + 1, 0};
    if (chance.once(6)) key.modifier ^= static_cast<std::uint8_t>(chance.below(16));
    for (int repeats = chance.once(4) ? chance.below(5) : 1; repeats > 0; --repeats) {
      if (chance.once(3)) {
        opened->host.dispatch(effEditKeyDown, key.character, key.virt);
      } else {
        opened->window->keyDown(key);
      }
    }
    if (chance.once(8)) return;  // its release is lost
    opened->window->keyUp(key);
  }
  // Between the user's doings: what a host and time do.
  void happen() {
    EditorDesk& desk = *opened;
    desk.editor().idle();
    if (WindowServices::get().isMessageOpen()) {
      desk.boxes["ZUM"]->keyDown({0, keys::kReturn, 0});
      desk.editor().idle();
    }
    if (chance.once(300)) desk.host.dispatch(effSetProgram, 0, chance.below(200));
    if (chance.once(300)) desk.effect().randomPreset();
    if (chance.once(300)) {
      void* bytes = nullptr;
      const auto size = desk.host.dispatch(effGetChunk, 0, 0, &bytes);
      const std::vector<char> copy(static_cast<char*>(bytes), static_cast<char*>(bytes) + size);
      desk.host.dispatch(effSetChunk, 0, size, const_cast<char*>(copy.data()));
    }
    if (chance.once(2000)) reopen();
  }
  void reopen() {
    opened->editor().close();
    EXPECT_TRUE(heard->open.none());
    held = 0;
    opened->reopen();
  }
  // Everything is let go of; what was begun has ended, and the picture is that of a whole redraw.
  void expectCalm() {
    EditorDesk& desk = *opened;
    desk.window->release(seen().x, seen().y);
    held = 0;
    desk.window->setFocus(true);
    desk.tick();
    desk.window->setFocus(false);  // ends what a key holds whose release was lost
    desk.tick(60);
    EXPECT_TRUE(heard->open.none()) << heard->open;
    EXPECT_EQ(heard->wrong, 0);
    const std::vector<std::uint32_t> parts = desk.pixels();
    desk.editor().requestFullRedraw();
    desk.tick();
    EXPECT_EQ(desk.differsFrom(parts), "");
  }
  // A window of another size, which the menu offers, has another picture and other frames.
  std::size_t memoryAt(double factor) {
    opened->editor().chooseFactor(factor);
    reopen();
    return mallinfo2().uordblks;
  }
  std::size_t views() {
    std::size_t count = 0;
    for (const auto& view : opened->editor().shownFrame()->children()) {
      ++count;
      const auto* const panel = dynamic_cast<const KvViewContainer*>(view.get());
      if (panel != nullptr) count += panel->children().size();
    }
    return count;
  }

  const std::string path = std::getenv("PATH");
  Chance chance{static_cast<unsigned>(fromEnvironment("ZUM_STORM_SEED", 1))};
  Answers answers{chance, {internal("mine/a"), internal("mine/b.kvz"), internal("none/c")}};
  std::optional<EditorDesk> opened{std::in_place};
  std::optional<Gestures> heard{std::in_place, opened->host.host};
  CPoint at;
  int held = 0;  // button
};

TEST_F(Storm, LeavesNoGestureOpenAndNothingBehind) {
  opened->plays = false;
  opened->reopen();  // the content is this user's
  const std::size_t viewsBefore = views();
  const double factor = opened->editor().factor();
  const auto end = Clock::now() + std::chrono::seconds(fromEnvironment("ZUM_STORM_SECONDS", 3));
  std::size_t memoryBefore = 0;
  for (unsigned round = 0; Clock::now() < end && !HasFailure(); ++round) {
    SCOPED_TRACE(round);
    {
      const Traffic traffic(opened->host, round);
      for (const auto pause = Clock::now() + milliseconds(300); Clock::now() < pause;) {
        for (int i = chance.below(3); i >= 0; --i) act();
        happen();
      }
    }
    expectCalm();
    reopen();
    EXPECT_EQ(views(), viewsBefore);
    if (round == 3) memoryBefore = memoryAt(factor);
  }
  EXPECT_GT(heard->ended, 50);
  // The frames that a window has shown, and the steps of the way back, take 1 MB to fill up.
  constexpr std::size_t kGrowth = std::size_t{4} << 20U;
  if (memoryBefore != 0) {
    EXPECT_LT(memoryAt(factor), memoryBefore + kGrowth);
  }
}

}  // namespace
}  // namespace zum::test
