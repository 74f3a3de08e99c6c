#include "tests/support/sound_scenarios.hpp"

#include <algorithm>
#include <bit>
#include <limits>

#include "core/tags.hpp"
#include "tests/support/word_hash.hpp"

namespace zum::test {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNoNumber = std::numeric_limits<float>::quiet_NaN();

constexpr std::size_t kSettingFrames = 6000;  // from one setting of the knobs to the next

// ---- the sound

/// Noise on a wave of the bass, louder and softer every thousand frames.
Stereo manyLevels(std::size_t frames, Chance& chance) {
  constexpr float kLevels[] = {0.0F, 0.01F, 0.1F, 0.4F, 0.4F, 0.8F, 2.0F, 6.0F};
  Stereo made(frames);
  float level = 0.4F;
  float wave = 0.0F;
  float step = 0.0F;
  for (std::size_t i = 0; i < frames; ++i) {
    if (i % 1000 == 0) {
      level = kLevels[chance.below(std::size(kLevels))];
      step = 0.002F + 0.02F * chance.unit();
    }
    wave += step;
    if (wave > 1.0F) wave -= 2.0F;
    made.left[i] = level * (wave + chance.unit() - 0.5F);
    made.right[i] = level * (0.7F * wave + chance.unit() - 0.5F);
  }
  return made;
}

template <std::size_t count>
void sprinkle(Run& run, const float (&values)[count], std::size_t from, std::size_t to, int oneIn) {
  for (std::size_t i = from; i < to; ++i) {
    if (run.chance.oneIn(oneIn)) run.sound.left[i] = values[run.chance.below(count)];
    if (run.chance.oneIn(oneIn)) run.sound.right[i] = values[run.chance.below(count)];
  }
}

void fallSilent(Run& run) {
  std::fill(run.sound.left.begin() + 3000, run.sound.left.end(), 0.0F);
  std::fill(run.sound.right.begin() + 3000, run.sound.right.end(), 0.0F);
}

/// One side at a time, and the other one back for a moment.
void silenceOneSide(Run& run) {
  auto& first = run.type % 2 == 0 ? run.sound.left : run.sound.right;
  auto& second = run.type % 2 == 0 ? run.sound.right : run.sound.left;
  std::fill(first.begin() + 1000, first.begin() + 60000, 0.0F);
  std::fill(second.begin() + 50000, second.end(), 0.0F);
  first[45001] = second[58000] = 0.25F;
}

void addTinyAndZeros(Run& run) {
  constexpr float kZeros[] = {0.0F, -0.0F};
  constexpr float kTiny[] = {0.0F,    -0.0F,    1e-45F,  -1e-45F, 3e-39F,
                             -3e-39F, 1.2e-38F, -1e-38F, 1e-30F,  1e-18F};
  sprinkle(run, kZeros, 0, 4000, 1);
  sprinkle(run, kTiny, 4000, 20000, 1);
  sprinkle(run, kTiny, 20000, run.sound.frames(), 2);
}

void addWhatIsNotFinite(Run& run) {
  constexpr float kValues[] = {kInfinity, -kInfinity, kNoNumber, 3e38F,
                               -3e38F,    1e30F,      -1e30F,    1e20F};
  sprinkle(run, kValues, 0, run.sound.frames(), 700);
  sprinkle(run, kValues, 30000, 30300, 2);
}

// ---- what happens ahead of a block. One number by chance a statement: compilers choose the order
// of arguments.

void changeRate(Run& run, float rate) {
  if (run.at < run.sound.frames() / 2 || run.host.client().timing().sampleRate == rate) return;
  run.host.suspend();
  run.host.resume(rate, 512);
}

void restInSilence(Run& run) {
  if (run.at > 60000 && run.chance.oneIn(100)) run.host.client().askForReset();
  if (run.chance.oneIn(100)) run.host.set(tag::bypass, static_cast<float>(run.chance.below(2)));
}

void changeBuffers(Run& run) { run.layout = static_cast<Layout>(run.chance.below(6)); }

void changeTempo(Run& run) {
  if (!run.chance.oneIn(8)) return;
  constexpr double kTempos[] = {120.0, 45.0, 44.0, 500.0, 501.0, 133.7, 180.0, 240.0};
  const double tempo = kTempos[run.chance.below(8)];
  const double position = run.chance.below(64) * 0.37 - 2.0;
  run.host.giveTime(tempo, position, run.chance.oneIn(3) ? 0 : kVstTransportPlaying);
  if (run.chance.oneIn(4)) run.host.set(tag::lfoStyle, static_cast<float>(run.chance.below(2)));
}

/// The song glides to its start, and at this rate a little beyond it.
void jumpToStart(Run& run) {
  run.host.set(tag::lfoStyle, 1.0F);
  if (run.chance.oneIn(4)) run.host.set(tag::lfoWave, 0.0F);
  if (!run.chance.oneIn(3)) return changeTempo(run);
  const double tempo = 100.0 + run.chance.below(100);
  run.host.giveTime(tempo, 0.0, run.chance.oneIn(2) ? 0 : kVstTransportPlaying);
}

void changeParameters(Run& run) {
  if (run.chance.oneIn(2)) {
    const int tag = run.chance.below(60);
    if (tag < 53 || tag > 57) run.host.set(tag, run.anyValue());
  }
  if (run.at == 0) run.host.client().beginLearn(tag::cutoff);
  if (run.chance.oneIn(3)) {
    const std::int32_t at = run.chance.below(run.block + 40);
    const int value = run.chance.below(128);
    constexpr int kStatus[] = {0xB0, 0x90, 0x80, 0xE0, 0xD0};
    run.host.send({{at, 0xB0, 20, value}, {at / 2, kStatus[run.chance.below(5)], 60, value}});
  }
  const int step = run.chance.below(8);
  if (run.chance.oneIn(6)) run.host.client().steps().setValue(step, run.anyValue());
}

void changeTypes(Run& run) {
  if (run.chance.oneIn(6)) run.host.selectFilter(run.chance.below(20));
  if (run.chance.oneIn(6)) run.host.selectFilter(run.type);
  // by a controller, in the middle of a block
  if (run.at == 0) run.host.client().beginLearn(run.type < 10 ? tag::multiType : tag::vowelType);
  const std::int32_t frame = run.chance.below(run.block);
  const int value = run.chance.below(128);
  if (run.chance.oneIn(4)) run.host.send({{frame, 0xB0, 20, value}});
}

void fade(Run& run) {
  if (run.at == 0 && run.type % 2 == 0) run.host.client().setFace();  // bypass fades
  constexpr int kTags[] = {tag::bypass, tag::bypass, tag::mixDryWet, tag::overdrive, tag::master};
  if (!run.chance.oneIn(8)) return;
  const int tag = kTags[run.chance.below(5)];
  const bool anywhere = run.chance.oneIn(3);
  run.host.set(tag, anywhere ? run.anyValue() : static_cast<float>(run.chance.below(2)));
}

// ---- the hashes

template <class Values>
void addWords(WordHash& hash, const Values& values) {
  for (const float word :
       std::bit_cast<std::array<float, sizeof(Values) / sizeof(float)>>(values)) {
    hash.add(word);
  }
}

void addShown(WordHash& hash, const Engine& signal) {
  addWords(hash, signal.display());
  addWords(hash, signal.modulation());
  addWords(hash, signal.followerDisplay().readout());
  hash.add(signal.lfoDisplay().lampLevel());
  hash.add(signal.lfoDisplay().triggerValue());
  hash.add(signal.cutoffHz());
  hash.add(signal.sequenceLevel());
  hash.add(signal.resonanceSum());
  hash.add(signal.meters().meterValue);
}

void addScopes(WordHash& hash, const Engine& signal) {
  addWords(hash, signal.meters().meter);
  addWords(hash, signal.meters().meterInverse);
  addWords(hash, signal.followerDisplay().scopeRing());
}

/// One block, in buffers of its own. The host's position moves on.
void playBlock(Run& run, WordHash& hash) {
  const auto frames = static_cast<std::size_t>(run.block);
  const auto from = static_cast<std::ptrdiff_t>(run.at);
  std::array<std::vector<float>, 6> memory;
  for (auto& each : memory) each.assign(frames, 0.5F);
  std::copy_n(run.sound.left.begin() + from, frames, memory[0].begin());
  std::copy_n(run.sound.right.begin() + from, frames, memory[1].begin());
  std::reverse_copy(memory[0].begin(), memory[0].end(), memory[4].begin());
  std::reverse_copy(memory[1].begin(), memory[1].end(), memory[5].begin());

  struct Places {
    std::size_t in[2];
    std::size_t out[2];
  };
  constexpr Places kPlaces[] = {{{0, 1}, {2, 3}}, {{0, 1}, {0, 1}}, {{0, 1}, {1, 0}},
                                {{0, 1}, {2, 2}}, {{0, 0}, {0, 0}}, {{0, 1}, {2, 3}}};
  const Places& places = kPlaces[static_cast<std::size_t>(run.layout)];
  const float* in[] = {memory[places.in[0]].data(), memory[places.in[1]].data()};
  float* out[] = {memory[places.out[0]].data(), memory[places.out[1]].data()};
  const float* heard[] = {memory[4].data(), memory[5].data()};
  run.host.client().process(in, run.layout == Layout::sideChain ? heard : nullptr, out, run.block);

  for (std::size_t i = 0; i < frames; ++i) {
    hash.add(out[0][i]);
    hash.add(out[1][i]);
  }
  run.at += frames;
  VstTimeInfo& time = run.host.host.time;
  if ((time.flags & kVstTransportPlaying) == 0) return;
  time.ppqPos += run.block * time.tempo / (60.0 * static_cast<double>(run.rate));
}

}  // namespace

Run::Run(const Scenario& scenario, int filterType, std::uint32_t seed)
    : host(scenario.rate),
      chance(seed),
      type(filterType),
      rate(scenario.rate),
      sound(manyLevels(scenario.frames, chance)) {
  if (scenario.alter != nullptr) scenario.alter(*this);
  host.selectFilter(type);
  if (scenario.modulated) {
    host.giveTime(100.0 + chance.below(100), 0.0, kVstTransportPlaying);
  } else {
    host.giveTime(120.0);  // so that some ramps and phases end on whole numbers
  }
}

void Run::turnKnobs(bool modulated) {
  constexpr float kEnds[] = {0.0F, 0.5F, 1.0F};
  for (int tag = tag::vowelCutoff; tag <= tag::seqTempo; ++tag) {
    host.set(tag, chance.oneIn(5) ? kEnds[chance.below(3)] : chance.unit());
  }
  host.set(tag::vowelA, chance.unit());
  host.set(tag::vowelB, chance.unit());
  host.set(tag::master, 0.4F + 0.3F * chance.unit());
  host.set(tag::mixDryWet, 0.6F + 0.4F * chance.unit());
  // short notes, so that much happens
  host.set(tag::lfoRate, 0.6F + 0.4F * chance.unit());
  host.set(tag::seqTempo, 0.7F + 0.3F * chance.unit());
  host.set(tag::lfoStyle, static_cast<float>(chance.below(2)));
  for (std::int32_t step = 0; step < 8; ++step) host.client().steps().setValue(step, chance.unit());
  for (int amount = tag::cutoffEf; modulated && amount <= tag::masterSeq; ++amount) {
    host.set(amount, chance.unit());
  }
}

float Run::anyValue() {
  constexpr float kEnds[] = {0.0F, 1.0F,      0.5F,       -0.0F,     0.99999994F,
                             1.5F, kInfinity, -kInfinity, kNoNumber, -0.25F};
  return chance.oneIn(3) ? kEnds[chance.below(10)] : chance.unit();
}

std::vector<Scenario> scenarios() {
  // clang-format off
  return {
    {.name = "RandomBlocks", .rate = 32000.0F},
    {.name = "BlocksOfOne",  .frames = 18000, .longestBlock = 1, .modulated = true},
    {.name = "Rate22050",    .rate = 22050.0F, .longestBlock = 700, .modulated = true},
    {.name = "Rate44100",    .modulated = true,
     .aheadOfBlock = [](Run& run) { changeRate(run, 48000.0F); }},
    {.name = "Rate96000",    .rate = 96000.0F, .frames = 60000, .modulated = true,
     .aheadOfBlock = [](Run& run) { changeRate(run, 11050.0F); }},
    {.name = "Silence",      .rate = 32768.0F, .frames = 66000, .alter = fallSilent, .aheadOfBlock = restInSilence},
    {.name = "OneSide",      .rate = 32768.0F, .frames = 99000, .alter = silenceOneSide},
    {.name = "ZerosAndTiny", .alter = addTinyAndZeros},
    {.name = "NotFinite",    .modulated = true, .alter = addWhatIsNotFinite},
    {.name = "Buffers",      .modulated = true, .aheadOfBlock = changeBuffers},
    {.name = "Tempo",        .modulated = true, .aheadOfBlock = changeTempo},
    {.name = "Tempo48000",   .rate = 48000.0F, .modulated = true, .aheadOfBlock = jumpToStart},
    {.name = "Parameters",   .modulated = true, .aheadOfBlock = changeParameters},
    {.name = "Types",        .aheadOfBlock = changeTypes},
    {.name = "Everything",   .frames = 120000, .longestBlock = 513, .modulated = true},
    {.name = "Fades",        .aheadOfBlock = fade},
  };
  // clang-format on
}

RunHashes play(const Scenario& scenario, int type) {
  std::uint32_t seed = static_cast<std::uint32_t>(type) + 1;
  for (const char* letter = scenario.name; *letter != 0; ++letter) {
    seed = seed * 31 + static_cast<unsigned char>(*letter);
  }
  Run run(scenario, type, seed);
  const Engine& signal = run.host.client().signal();
  WordHash heard;
  WordHash shown;
  RunHashes hashes;
  std::size_t part = 0;
  std::size_t turnAt = 0;
  while (run.at < scenario.frames) {
    const auto left = static_cast<int>(scenario.frames - run.at);
    run.block = std::min(left, 1 + run.chance.below(scenario.longestBlock));
    if (run.at >= turnAt) {
      run.turnKnobs(scenario.modulated);
      turnAt += kSettingFrames;
    }
    if (scenario.aheadOfBlock != nullptr) scenario.aheadOfBlock(run);
    playBlock(run, heard);
    addShown(shown, signal);
    const std::size_t partNow = run.at * RunHashes::kParts / scenario.frames;
    if (partNow == part) continue;
    addScopes(shown, signal);
    for (; part < partNow; ++part) hashes.parts[part] = heard.text(4) + shown.text(4);
  }
  hashes.sound = heard.text(16);
  hashes.shown = shown.text(16);
  return hashes;
}

}  // namespace zum::test
