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

/// What another program of that user does; its exit code.
int writeSettings(const std::string& home, char letter);

/// What goes on, for whoever tells of a failure.
inline struct {
  unsigned seed = 1, step = 0;
  const char *act = "", *hardship = "";  // which the act lies in
} now;

inline void actOneOf(std::span<const Act> acts, Stage& stage) {
  const Act& act = stage.chance.byWeight(acts);
  now.act = act.name;
  act.run(stage, stage.one());
}

}  // namespace zum::test
