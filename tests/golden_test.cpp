// Renders of an independent model, played through the effect's published record.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "support/sound_file.hpp"
#include "support/test_host.hpp"

namespace zum::test {
namespace {

const std::filesystem::path kFolder = ZUM_GOLDEN_FOLDER;

std::vector<std::string> caseNames() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(kFolder)) {
    if (entry.path().extension() == ".json") names.push_back(entry.path().stem().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

class Golden : public testing::TestWithParam<std::string> {};

TEST_P(Golden, AgreesWithTheModel) {
  const auto score = nlohmann::json::parse(std::ifstream(kFolder / (GetParam() + ".json")));
  const Stereo in = readStereo(kFolder / score["input"]);
  const Stereo expected = readStereo(kFolder / score["output"]);
  TestHost host(score["sampleRate"].get<float>());
  host.host.moves = true;
  for (const auto& [tag, value] : score["parameters"].get<std::vector<std::pair<int, float>>>()) {
    host.set(tag, value);
  }
  for (std::int32_t step = 0; const float value : score["steps"].get<std::vector<float>>()) {
    host.client().steps().setValue(step++, value);
  }
  Stereo out(in.frames());
  const std::size_t block = score["block"];
  auto changes = score["changes"].get<std::vector<std::tuple<std::size_t, int, float>>>();
  std::size_t change = 0;
  std::size_t place = 0;  // next entry of the host's time
  for (std::size_t at = 0; at < in.frames(); at += block) {
    for (; change < changes.size() && std::get<0>(changes[change]) <= at; ++change) {
      host.set(std::get<1>(changes[change]), std::get<2>(changes[change]));
    }
    for (; place < score["host"].size() && score["host"][place]["frame"] <= at; ++place) {
      const auto& entry = score["host"][place];
      host.giveTime(entry["tempo"], entry["position"], entry["playing"] ? kVstTransportPlaying : 0);
    }
    host.process(in, out, at, static_cast<std::int32_t>(std::min(block, in.frames() - at)));
  }

  // One frame of rounding may move a held cell.
  const bool holds = GetParam().ends_with("-8") || GetParam().ends_with("-9");
  const double error = errorDb(out, expected);
  RecordProperty("errorDb", std::to_string(error));
  EXPECT_LE(error, holds ? -50.0 : -100.0);
}

INSTANTIATE_TEST_SUITE_P(Model, Golden, testing::ValuesIn(caseNames()), [](const auto& score) {
  std::string name = score.param;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
});

}  // namespace
}  // namespace zum::test
