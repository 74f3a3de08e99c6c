// A file chosen by a user in the real dialog.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "platform/files.hpp"
#include "platform/zenity_dialogs.hpp"
#include "support/own_display.hpp"
// X's macros after that
#include <X11/keysym.h>

namespace zum::test {
namespace {

namespace fs = std::filesystem;

class RealZenityTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!ZenityDialogs::isInstalled()) GTEST_SKIP() << "zenity is not installed";
    // Of keys that need no Shift.
    folder = fs::temp_directory_path() / ("zum." + std::to_string(getpid()));
    fs::create_directory(folder);
    std::ofstream(folder / "a.kvz") << "a";
  }
  void TearDown() override {
    if (!folder.empty()) fs::remove_all(folder);
  }
  void pollFor(int milliseconds) {
    for (; milliseconds > 0 && dialogs.isOpen(); milliseconds -= 10) dialogs.poll(), usleep(10'000);
  }
  /// Types the keys into the dialog until it is answered; it takes a while to listen.
  std::string answerTo(FileOperation ask, const std::string& title, const std::string& keys,
                       unsigned long last) {
    std::string answer = "pending";
    (dialogs.*ask)({title, {{"Preset file", "kvz"}}, toInternalPath(folder.string()), this},
                   [&](const std::optional<std::string>& path) { answer = path.value_or("none"); });
    std::uintptr_t window = 0;
    for (int i = 0; i < 300 && window == 0; ++i) {
      pollFor(50);
      window = robot.findWindow(title);
    }
    for (int i = 0; i < 20 && answer == "pending" && window != 0; ++i) {
      robot.giveFocus(window);
      pollFor(500);
      for (const char key : keys) robot.type(static_cast<unsigned char>(key));
      pollFor(500);
      robot.type(last);
      pollFor(1000);
    }
    dialogs.cancel(this);
    return answer;
  }

  OwnDisplay server;
  Robot robot;
  ZenityDialogs dialogs;
  fs::path folder;
};

TEST_F(RealZenityTest, ReturnsWhatTheUserTypes) {
  const std::string file = (folder / "a.kvz").string();
  EXPECT_EQ(answerTo(&FileDialogs::load, "Load it", file, XK_Return), toInternalPath(file));
  EXPECT_EQ(answerTo(&FileDialogs::save, "Save it", "b.kvz", XK_Return),
            toInternalPath((folder / "b.kvz").string()));
  EXPECT_EQ(answerTo(&FileDialogs::load, "Leave it", "", XK_Escape), "none");
}

}  // namespace
}  // namespace zum::test
