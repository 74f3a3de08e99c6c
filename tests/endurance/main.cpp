// A year on stage, played fast: instances, rates, presets, windows, controllers, settings and files
// come and go, disks fill up, memory fails, the X server dies. Behind each step all must hold that
// Stage::check() asks for, behind each day what Stage::clear() does.
//
//   zum_endurance --seconds 7200 --seed 7 2>&1 | tee log
//
// The pipe is for the disk that gets small, which would be the log's, too.
//
// What breaks is told with its seed and step. A day begins on an empty stage, so `--from STEP`
// plays the day of a step once more, as far as threads play twice the same.
#include <csignal>
#include <iostream>

#include "endurance/acts.hpp"

extern "C" [[gnu::weak]] void __sanitizer_set_death_callback(void (*callback)());

namespace zum::test {
namespace {

using Clock = std::chrono::steady_clock;
constexpr unsigned kStepsOfDay = 50;

// Also where a sanitizer or a signal has the last word.
void tellFailure(const char* what) {
  dprintf(STDERR_FILENO,
          "seed %u, step %u, %s %s: %s\nonce more: zum_endurance --seed %u --from %u\n", now.seed,
          now.step, now.hardship, now.act, what, now.seed, now.step);
}

void tellProgress(const Stage& stage, Clock::duration played) {
  dprintf(STDOUT_FILENO,
          "%ld s, seed %u: %u steps, %d instances, heap %zu KB, resident %zu KB, %td files\n",
          played / std::chrono::seconds(1), now.seed, now.step, stage.made, heapBytes() / 1024,
          residentBytes() / 1024, openFiles());
}

void step(Stage& stage) {
  alarm(120);  // seconds
  now.hardship = "";
  now.act = "night";
  stage.chance = Chance(now.seed * 1'000'003U + now.step);
  if (now.step % kStepsOfDay == 0) stage.clear();
  if (stage.players.empty()) stage.addPlayer();
  actOneOf(stage.chance.once(6) ? hardship() : dailyLife(), stage);
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

int begin(const std::vector<std::string>& words) try {
  if (words.size() == 3 && words[0] == "--writer") return writeSettings(words[1], words[2][0]);
  unsigned seconds = 60;
  const std::map<std::string, unsigned*> numbers{
      {"--seconds", &seconds}, {"--seed", &now.seed}, {"--from", &now.step}};
  for (std::size_t i = 0; i < words.size(); i += 2)
    *numbers.at(words[i]) = static_cast<unsigned>(std::stoul(words.at(i + 1)));
  now.step -= now.step % kStepsOfDay;
  static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));  // a full disk is an error, and not the end
  static_cast<void>(std::signal(SIGALRM, [](int) { tellFailure("does not end"), std::abort(); }));
  if (__sanitizer_set_death_callback != nullptr)
    __sanitizer_set_death_callback([] { tellFailure("a sanitizer ended it"); });
  return play(std::chrono::seconds(seconds));
} catch (const std::logic_error&) {  // no such name, or no number behind it
  std::cerr << "Give zum_endurance whole numbers: [--seconds N] [--seed S] [--from STEP]\n";
  return 2;
}

}  // namespace
}  // namespace zum::test

int main(int count, char** words) { return zum::test::begin({words + 1, words + count}); }
