// Failing memory, a full disk, a dying X server, files that vanish, and other programs.
#include "endurance/acts.hpp"
#include "tests/support/failing_memory.hpp"
// X's macros after that
#include <X11/Xlib.h>

namespace zum::test {
namespace {

void liveOn(Stage& stage) {
  now.hardship = now.act;
  actOneOf(dailyLife(), stage);
}

void runOutOfMemory(Stage& stage, Player& /*player*/) {
  try {
    const int number = 1 + stage.chance.below(1 << stage.chance.below(13));
    failsAt(number, [&stage] { liveOn(stage); });
  } catch (const std::runtime_error&) {  // an instance that is none
    failAllocation(0);
  }
}

// Files of this process end early, as long as it lives.
class SmallDisk {
 public:
  explicit SmallDisk(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{bytes, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
  }
  ~SmallDisk() { setrlimit(RLIMIT_FSIZE, &before); }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;

 private:
  rlimit before{};
};

void runOutOfDisk(Stage& stage, Player& /*player*/) {
  const SmallDisk small(rlim_t{1} << stage.chance.below(15));
  liveOn(stage);
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
  if (stage.chance.once(8)) std::filesystem::remove_all(stage.home / "config", ignored);
}

// A setting is a text of one letter, so that a mixture shows.
bool shareSetting(char letter, int size) {
  writeSettingString("endurance", std::string(static_cast<std::size_t>(50 * size + 1), letter));
  const std::string text = readSettingString("endurance").value_or("a");
  return text.size() % 50 == 1 && text.find_first_not_of(text.front()) == std::string::npos;
}

void meetOtherPrograms(Stage& stage, Player& /*player*/) {
  const std::string home = stage.home.string();
  ChildProgram one({"/proc/self/exe", "--writer", home, "b"}, "/dev/null");
  ChildProgram other({"/proc/self/exe", "--writer", home, "c"}, "/dev/null");
  while (one.isRunning() || other.isRunning())
    demand(shareSetting('a', 3), "a setting is a mixture");
  demand(one.wait() == 0 && other.wait() == 0, "another program read a mixture of settings");
}

constexpr Act kHardship[] = {
    {"no memory", 50, runOutOfMemory},
    {"a full disk", 20, runOutOfDisk},
    {"the X server dies", 2, loseServer},
    {"files vanish", 10, loseFiles},
    {"files are back", 5, [](Stage& s, Player& p) { s.restoreFiles(), p.effect.scanBank(); }},
    {"other programs write", 2, meetOtherPrograms},
};

}  // namespace

std::span<const Act> hardship() { return kHardship; }

int writeSettings(const std::string& home, char letter) {
  useHome(home);
  initSettings();
  int writes = 0;
  while (writes < 200 && shareSetting(letter, writes % 20)) ++writes;
  return writes == 200 ? 0 : 1;
}

}  // namespace zum::test
