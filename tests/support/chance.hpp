// Chance that begins with a seed, so that what it led to can be played again.
#pragma once

#include <iterator>
#include <random>

namespace zum::test {

class Chance {
 public:
  explicit Chance(unsigned seed) : source(seed) {}
  /// 0 to count - 1.
  int below(int count) { return std::uniform_int_distribution<int>(0, count - 1)(source); }
  bool once(int in) { return below(in) == 0; }
  float unit() { return std::uniform_real_distribution<float>(0.0F, 1.0F)(source); }
  template <class List>
  const auto& oneOf(const List& list) {
    return list[static_cast<std::size_t>(below(static_cast<int>(std::size(list))))];
  }
  /// Each as often as its weight says.
  template <class List>
  const auto& byWeight(const List& list) {
    int sum = 0;
    for (const auto& each : list) sum += each.weight;
    auto picked = std::begin(list);
    for (int place = below(sum); place >= picked->weight; ++picked) place -= picked->weight;
    return *picked;
  }

 private:
  std::mt19937 source;
};

}  // namespace zum::test
