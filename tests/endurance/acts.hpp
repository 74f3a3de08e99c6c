// What may happen in a step, and how often.
#pragma once

#include <span>

#include "endurance/stage.hpp"

namespace zum::test {

struct Act {
  const char* name;
  int weight;
  void (*run)(Stage& stage, Player& player);
};

/// What users and their hosts do all day; memory and disks may fail meanwhile.
std::span<const Act> dailyLife();
/// What comes over them.
std::span<const Act> hardship();

// A setting that others write, too: a text of one letter. False when it holds a mixture.
bool shareSetting(char letter, int size);
/// Again and again, as a program of its own; its exit code.
int writeSettings(const std::string& home, char letter);

/// What goes on, for whoever tells of a failure.
struct Now {
  unsigned seed = 1;
  unsigned step = 0;
  const char* act = "";
  const char* hardship = "";  // around it
};
inline Now now;

inline void actOneOf(std::span<const Act> acts, Stage& stage) {
  int sum = 0;
  for (const Act& act : acts) sum += act.weight;
  int place = stage.chance.below(sum);
  const Act* picked = acts.data();
  while (place >= picked->weight) place -= (picked++)->weight;
  now.act = picked->name;
  picked->run(stage, stage.one());
}

}  // namespace zum::test
