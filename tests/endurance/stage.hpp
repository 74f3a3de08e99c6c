// All that takes part, and what must always hold of it: a user's folders, a screen, some instances.
#pragma once

#include <stdexcept>

#include "core/tags.hpp"
#include "endurance/player.hpp"
#include "engine/shared_value.hpp"
#include "platform/content_folder.hpp"
#include "platform/files.hpp"
#include "state/settings.hpp"
#include "tests/support/child_program.hpp"
#include "tests/support/chooser.hpp"
#include "tests/support/process_use.hpp"
#include "tests/support/temporary_folder.hpp"
#include "toolkit/dialogs/window_services.hpp"

namespace zum::test {

inline void demand(bool holds, const char* otherwise) {
  if (!holds) throw std::logic_error(otherwise);
}

class Stage {
 public:
  Stage() { useHome(home), startServer(); }

  void addPlayer() {
    if (players.size() == 3) return;
    players.push_back(std::make_unique<Player>(static_cast<unsigned>(chance.below(1 << 30))));
    players.back()->effect.setOption(UserSwitches::kIgnoreProgramChanges, 0, false);
    ++made;
  }
  Player& one() { return *chance.oneOf(players); }

  /// As effects name what lies in the user's tree of presets.
  std::string path(const std::string& name) const { return toInternalPath((tree / name).string()); }
  /// Of the user's own, which may be there or not.
  std::string preset() { return path("User/" + std::to_string(chance.below(10)) + ".kvz"); }
  /// The factory's presets lie there as on the first day, and are found.
  void restoreFiles() const {
    using enum std::filesystem::copy_options;
    std::filesystem::create_directories(tree / "User");
    std::filesystem::copy(toSystemPath(programContentFolder()) + "Presets", tree,
                          recursive | overwrite_existing);
    initSettings();
    writeSettingString(kPresetPath, path(""));
  }

  void startServer() { server.emplace(), hand.emplace(); }
  void stopServer() { hand.reset(), server.reset(); }

  /// Behind each step.
  void check() {
    demand(comesTrue([this] { return isCalm(); }), "a gesture stays open");
    for (const auto& player : players) checkState(player->host), checkSound(*player);
  }
  /// Everybody goes home, and leaves nothing behind: no file, no setting, no memory.
  void clear() {
    players.clear();
    mirror.reset();
    std::filesystem::remove_all(tree);
    std::filesystem::remove_all(home / "config");
    restoreFiles();
    constexpr int kNightsToLearn = 5;  // then caches have seen all there is
    if (++nights == kNightsToLearn) memory = heapBytes(), files = openFiles();
    demand(nights <= kNightsToLearn || openFiles() == files, "files stay open");
    demand(nights <= kNightsToLearn || heapBytes() < memory + (2U << 20U), "memory grows");
  }

  Chance chance{0};
  const TemporaryFolder home;
  const std::filesystem::path tree = home / "system/zum/Presets";
  std::optional<OwnDisplay> server;
  std::optional<Robot> hand;  // while there is a server
  Chooser chooser;            // of files, in dialogs
  std::vector<std::unique_ptr<Player>> players;
  int made = 0;  // instances

 private:
  // The user lets go of all, and answers what was asked.
  bool isCalm() {
    const MessageWindow* const box = WindowServices::get().getMessageWindow();
    if (box != nullptr && hand) hand->close(box->getFrame().nativeHandle());
    bool calm = true;
    for (const auto& player : players) {
      player->idle();
      calm = calm && player->gestures.open.none();
      demand(player->gestures.wrong == 0, "a gesture begins twice, or ends without a begin");
    }
    for (const unsigned button : {1U, 2U, 3U}) calm || !hand ? void() : hand->release(button);
    return calm;
  }
  void checkState(const TestHost& host) {
    if (!mirror) mirror.emplace().client().setOption(UserSwitches::kIsolateMap, 0, false);
    constexpr std::size_t kClock = 16;  // ahead of that are tempo and rate of who writes
    const std::string state = host.state();
    demand(state.size() > kClock, "a state cannot be saved");
    mirror->load(state);
    demand(mirror->state().substr(kClock) == state.substr(kClock), "a state loads to another one");
  }
  // Bypassed, every sound is heard. A program that plays from MIDI may end the bypass.
  static void checkSound(Player& player) {
    player.setLevel(kVstProcessLevelRealtime);
    const float bypass = loadShared(player.effect.value(tag::bypass).raw);
    const int before = player.heard();
    demand(before >= 0, "output is not finite");
    demand(comesTrue([&] { return player.host.set(tag::bypass, 1.0F), player.heard() != before; }),
           "an instance stays mute");
    player.host.set(tag::bypass, bypass);
    demand(player.heard() >= 0, "output is not finite");
  }

  std::optional<TestHost> mirror;  // takes every state and gives it back
  int nights = 0;
  std::size_t memory = 0;  // of an empty stage
  std::ptrdiff_t files = 0;
};

}  // namespace zum::test
