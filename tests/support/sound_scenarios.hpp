// What may come to an effect, played and hashed: sound at all rates and levels, in blocks of all
// sizes, while parameters, types, tempo and buffers change. Each run is the same everywhere.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/test_host.hpp"

namespace zum::test {

/// Numbers by chance, the same everywhere.
class Chance {
 public:
  explicit Chance(std::uint32_t start) : seed(start) {}
  /// 0 to count - 1.
  int below(int count) {
    return static_cast<int>((std::uint64_t{next()} * unsigned(count)) >> 32U);
  }
  bool oneIn(int count) { return below(count) == 0; }
  /// 0 to below 1.
  float unit() { return static_cast<float>(next() >> 8U) * 0x1p-24F; }

 private:
  std::uint32_t next() {
    seed = seed * 1664525U + 1013904223U;
    const std::uint32_t mixed = (seed ^ (seed >> 15U)) * 0x2C1B3C6DU;
    return mixed ^ (mixed >> 16U);
  }
  std::uint32_t seed;
};

struct Run;

struct Scenario {
  const char* name;
  float rate = 44100.0F;
  std::size_t frames = 48000;
  int longestBlock = 200;
  bool modulated = false;         // all amounts are set, and the transport plays
  void (*alter)(Run&) = nullptr;  // the sound, before it is played
  void (*aheadOfBlock)(Run&) = nullptr;
};

/// Of what the host hands over in a block. Outputs may be the inputs, crossed, or one buffer.
enum class Layout { apart, inPlace, crossed, oneOutput, oneBuffer, sideChain };

/// An effect in the middle of a scenario.
struct Run {
  Run(const Scenario& scenario, int filterType, std::uint32_t seed);
  /// A raw value, also at and beyond the ends.
  float anyValue();
  /// Another sound; the amounts of modulation only if `modulated`.
  void turnKnobs(bool modulated);

  TestHost host;
  Chance chance;
  const int type;
  const float rate;  // at the start
  Stereo sound;
  std::size_t at = 0;
  int block = 0;  // frames of the one that comes
  Layout layout = Layout::apart;
};

std::vector<Scenario> scenarios();

/// The scenario's hashes of a filter type, 0 to 19.
struct RunHashes {
  static constexpr std::size_t kParts = 8;

  std::string sound;                      // all samples
  std::string shown;                      // displays after each block, scopes after each part
  std::array<std::string, kParts> parts;  // both up to the end of each part, shortened

  bool operator==(const RunHashes&) const = default;
};
RunHashes play(const Scenario& scenario, int type);

}  // namespace zum::test
