// Catches a processor, a compiler or a library on which a factory preset sounds otherwise, be it by
// one bit: two seconds of the factory loops through 50 of them, two or three of each filter type.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "preset_text/preset_text.hpp"
#include "support/sound_file.hpp"
#include "support/word_hash.hpp"

namespace zum::test {
namespace {

struct Row {
  std::string preset;  // folder/name
  std::string sum;     // of its sound
};

// A line for each preset: the sum, then its path below the presets.
std::vector<Row> readRows() {
  std::vector<Row> rows;
  std::ifstream file(ZUM_FACTORY_SUMS);
  for (Row row; file >> row.sum && std::getline(file >> std::ws, row.preset);) rows.push_back(row);
  return rows;
}

void load(TestHost& host, const std::string& preset) {
  std::ifstream file(std::string(ZUM_CONTENT "/Presets/") + preset + ".toml");
  const auto read = [&file](char* to, std::size_t room) {
    file.read(to, static_cast<std::streamsize>(room));
    return static_cast<std::size_t>(file.gcount());
  };
  TextLines lines(preset, read, kMostPresetText);
  PresetDocument document;
  document.name = std::filesystem::path(preset).filename().string();
  readPresetText(lines, document, [](const std::string& why) { ADD_FAILURE() << why; });
  KvChunk chunk;
  writePresetDocument(document, chunk);
  EXPECT_TRUE(host.client().loadPreset(chunk, 0, {}));
}

std::string sumOf(const std::string& preset, const Stereo& loops) {
  TestHost host(44100.0F);
  load(host, preset);
  host.giveTime(120.0, 0.0, kVstTransportPlaying | kVstPpqPosValid);
  host.host.moves = true;
  const Stereo sound = host.render(loops);
  EXPECT_GT(energy(sound), 1.0) << preset;
  WordHash hash;
  for (std::size_t i = 0; i < sound.frames(); ++i) {
    hash.add(sound.left[i]);
    hash.add(sound.right[i]);
  }
  return hash.text(16);
}

TEST(FactorySound, IsTheSameToTheBit) {
  Stereo loops = factoryLoops(ZUM_CONTENT);
  loops.left.resize(88200);
  loops.right.resize(88200);
  std::vector<Row> rows = readRows();
  EXPECT_EQ(rows.size(), 50U);
  for (Row& row : rows) {
    const std::string sum = sumOf(row.preset, loops);
    EXPECT_EQ(sum, row.sum) << row.preset;
    row.sum = sum;
  }
  if (std::getenv("ZUM_UPDATE_HASHES") == nullptr) return;
  // Records anew, for a change that is meant to be heard.
  std::ofstream file(ZUM_FACTORY_SUMS);
  for (const Row& row : rows) file << row.sum << ' ' << row.preset << '\n';
}

}  // namespace
}  // namespace zum::test
