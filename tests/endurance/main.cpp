// A year on stage, played fast: instances, rates, presets, windows, controllers, settings and files
// come and go, disks fill up, memory fails, the X server dies. Behind each step all must hold that
// Stage::check() asks for, behind each day what Stage::clear() does.
//
//   zum_endurance --seconds 7200 --seed 7
//
// What breaks is told with its seed and step. A day begins on an empty stage, so `--from STEP`
// plays the day of a step once more, as far as threads play twice the same.
#include <charconv>
#include <csignal>
#include <iostream>

#include "endurance/acts.hpp"

extern "C" [[gnu::weak]] void __sanitizer_set_death_callback(void (*callback)());

namespace zum::test {
namespace {

using Clock = std::chrono::steady_clock;
constexpr unsigned kStepsOfDay = 100;
constexpr int kHardshipOnceIn = 6;
constexpr unsigned kPatience = 300;  // seconds, for a step

// Also where a sanitizer or a signal has the last word.
void tellFailure(const char* what) {
  dprintf(STDERR_FILENO,
          "seed %u, step %u, %s %s: %s\nonce more: zum_endurance --seed %u --from %u\n", now.seed,
          now.step, now.hardship, now.act, what, now.seed, now.step);
}

void tellProgress(const Stage& stage, Clock::duration played) {
  std::cout << played / std::chrono::seconds(1) << " s, seed " << now.seed << ": " << now.step
            << " steps, " << stage.made << " instances, heap " << heapBytes() / 1024
            << " KB, resident " << residentBytes() / 1024 << " KB, " << openFiles() << " files\n"
            << std::flush;
}

void step(Stage& stage) {
  alarm(kPatience);
  now.hardship = "";
  now.act = "night";
  stage.chance = Chance(now.seed * 1'000'003U + now.step);
  if (now.step % kStepsOfDay == 0) stage.clear();
  if (stage.players.empty()) stage.addPlayer();
  actOneOf(stage.chance.once(kHardshipOnceIn) ? hardship() : dailyLife(), stage);
  stage.check();
}

int play(std::chrono::seconds length) try {
  Stage stage;
  const auto start = Clock::now();
  for (auto report = start; Clock::now() < start + length; ++now.step) {
    step(stage);
    if (Clock::now() < report + std::chrono::minutes(1)) continue;
    report = Clock::now();
    tellProgress(stage, report - start);
  }
  stage.clear();
  tellProgress(stage, Clock::now() - start);
  return 0;
} catch (const std::exception& failure) {
  tellFailure(failure.what());
  return 1;
}

int begin(const std::vector<std::string>& words) {
  if (words.size() == 3 && words[0] == "--writer") return writeSettings(words[1], words[2][0]);
  unsigned seconds = 60;
  for (std::size_t i = 0; i < words.size(); i += 2) {
    unsigned* const value = words[i] == "--seconds" ? &seconds
                            : words[i] == "--seed"  ? &now.seed
                            : words[i] == "--from"  ? &now.step
                                                    : nullptr;
    const std::string number = i + 1 < words.size() ? words[i + 1] : "";
    const char* const end = number.data() + number.size();
    if (value != nullptr && std::from_chars(number.data(), end, *value).ptr == end &&
        !number.empty())
      continue;
    std::cerr << "zum_endurance: what is '" << words[i] << ' ' << number
              << "'? Give whole numbers: [--seconds N] [--seed S] [--from STEP]\n";
    return 2;
  }
  now.step -= now.step % kStepsOfDay;
  static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));  // a full disk is an error, and not the end
  static_cast<void>(std::signal(SIGALRM, [](int) { tellFailure("does not end"), std::abort(); }));
  if (__sanitizer_set_death_callback != nullptr)
    __sanitizer_set_death_callback([] { tellFailure("a sanitizer ended it"); });
  return play(std::chrono::seconds(seconds));
}

}  // namespace
}  // namespace zum::test

int main(int count, char** words) { return zum::test::begin({words + 1, words + count}); }
