// Catches the one bit that a change of the engine moves: every filter type in every scenario,
// hashed and compared with what was recorded of an engine whose sound is right.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <string>
#include <utility>

#include "support/sound_scenarios.hpp"

namespace zum::test {
namespace {

constexpr int kTypes = 20;
// Records anew, for a change that is meant to be heard.
const bool isUpdating = std::getenv("ZUM_UPDATE_HASHES") != nullptr;

using Recorded = std::map<std::pair<std::string, int>, RunHashes>;

// A line for each scenario and type: its name, the type, the hashes of sound and displays, the
// parts.
Recorded readHashes() {
  Recorded recorded;
  std::ifstream file(ZUM_SOUND_HASHES);
  std::string name;
  for (int type = 0; file >> name >> type;) {
    RunHashes& hashes = recorded[{name, type}];
    file >> hashes.sound >> hashes.shown;
    for (std::string& part : hashes.parts) file >> part;
  }
  return recorded;
}

void writeHashes(const Recorded& recorded) {
  std::ofstream file(ZUM_SOUND_HASHES);
  for (const auto& [key, hashes] : recorded) {
    file << key.first << ' ' << key.second << ' ' << hashes.sound << ' ' << hashes.shown;
    for (const std::string& part : hashes.parts) file << ' ' << part;
    file << '\n';
  }
}

std::string difference(const RunHashes& a, const RunHashes& b, std::size_t frames) {
  std::size_t part = 0;
  while (part + 1 < RunHashes::kParts && a.parts[part] == b.parts[part]) ++part;
  const std::size_t length = frames / RunHashes::kParts;
  return std::string(a.sound == b.sound ? "only displays differ" : "the sound differs") +
         ", from frame " + std::to_string(part * length) + " to " +
         std::to_string((part + 1) * length) + " on";
}

class SoundHash : public testing::TestWithParam<Scenario> {};
INSTANTIATE_TEST_SUITE_P(All, SoundHash, testing::ValuesIn(scenarios()),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_P(SoundHash, EveryBitIsAsItWas) {
  Recorded recorded = readHashes();
  for (int type = 0; type < kTypes; ++type) {
    const RunHashes now = play(GetParam(), type);
    RunHashes& before = recorded[{GetParam().name, type}];
    if (isUpdating) before = now;
    EXPECT_TRUE(now == before) << "type " << type << ": "
                               << difference(now, before, GetParam().frames);
  }
  if (isUpdating) writeHashes(recorded);
}

}  // namespace
}  // namespace zum::test
