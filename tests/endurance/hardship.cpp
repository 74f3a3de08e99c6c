// Failing memory, a full disk, a dying X server, files that vanish, and other programs.
#include <utility>

#include <X11/Xlib.h>  // its macros after all else
#include "endurance/acts.hpp"
#include "tests/support/failing_memory.hpp"

namespace zum::test {
namespace {

void liveOn(Stage& stage) {
  now.hardship = now.act;
  actOneOf(dailyLife(), stage);
}

/// 1 and more, as often small as large.
int anySize(Stage& stage, int doublings) {
  return 1 + stage.chance.below(1 << stage.chance.below(doublings));
}

void runOutOfMemory(Stage& stage, Player& /*player*/) {
  try {
    failsAt(anySize(stage, 13), [&stage] { liveOn(stage); });
  } catch (const std::runtime_error&) {  // an instance that is none
    failAllocation(0);
  }
}

// Files of this process end early.
void runOutOfDisk(Stage& stage, Player& /*player*/) {
  rlimit disk{};
  getrlimit(RLIMIT_FSIZE, &disk);
  const rlim_t all = std::exchange(disk.rlim_cur, anySize(stage, 15));
  setrlimit(RLIMIT_FSIZE, &disk);
  liveOn(stage);
  disk.rlim_cur = all;
  setrlimit(RLIMIT_FSIZE, &disk);
}

// Windows of hosts stay without their connections, which may not see the end of the server.
void loseServer(Stage& stage, Player& player) {
  player.openWindow(0);
  for (const auto& each : stage.players) {
    if (each->place) XSetCloseDownMode(each->place->display, RetainPermanent), each->place->end();
  }
  stage.stopServer();
  for (int i = 0; i < 3; ++i) {
    liveOn(stage);
    for (const auto& each : stage.players) each->idle();
  }
  for (const auto& each : stage.players) each->closeWindow();
  stage.startServer();
}

void loseFiles(Stage& stage, Player& /*player*/) {
  std::error_code ignored;
  const bool all = stage.chance.once(8);
  std::filesystem::remove_all(all ? stage.tree.string() : toSystemPath(stage.preset()), ignored);
  if (stage.chance.once(8) && stage.writers.empty())
    std::filesystem::remove_all(stage.home / "config", ignored);
}

void startWriter(Stage& stage, Player& /*player*/) {
  if (stage.writers.size() == 3) return;
  const std::string letter(1, static_cast<char>('b' + stage.chance.below(20)));
  const std::vector<std::string> words{"/proc/self/exe", "--writer", stage.home.string(), letter};
  stage.writers.push_back(std::make_unique<ChildProgram>(words, "/dev/null"));
}

constexpr Act kHardship[] = {
    {"no memory", 50, runOutOfMemory},
    {"a full disk", 20, runOutOfDisk},
    {"the X server dies", 2, loseServer},
    {"files vanish", 10, loseFiles},
    {"files are back", 5,
     [](Stage& stage, Player& player) { stage.restoreFiles(), player.effect.scanBank(); }},
    {"other programs write", 2, startWriter},
};

}  // namespace

std::span<const Act> hardship() { return kHardship; }

bool shareSetting(char letter, int size) {
  writeSettingString("endurance", std::string(static_cast<std::size_t>(50 * size + 1), letter));
  const std::string text = readSettingString("endurance").value_or("a");
  return text.size() % 50 == 1 && text.find_first_not_of(text.front()) == std::string::npos;
}

int writeSettings(const std::string& home, char letter) {
  useHome(home);
  initSettings();
  bool isWhole = true;
  for (int i = 0; i < 200; ++i) isWhole = shareSetting(letter, i % 20) && isWhole;
  return isWhole ? 0 : 1;
}

}  // namespace zum::test
