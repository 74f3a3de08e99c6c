// `zum render IN OUT`: the effect over a music file, block by block as in a host.
#include <chrono>
#include <cmath>
#include <iomanip>
#include <iostream>

#include "apps/zum/audio_output.hpp"
#include "apps/zum/commands.hpp"
#include "apps/zum/effect_host.hpp"
#include "apps/zum/failure.hpp"
#include "apps/zum/parameter_names.hpp"
#include "apps/zum/progress.hpp"
#include "engine/clock.hpp"

namespace zum {
namespace {

constexpr int kLargestBlock = 65536;  // frames
// Beats per minute; the effect would quietly run at another tempo outside of them.
constexpr auto kLowestTempo = static_cast<int>(KvSystemInfo::kLowestTempo);
constexpr auto kHighestTempo = static_cast<int>(KvSystemInfo::kHighestTempo);
constexpr int kLongestTail = 3600;  // seconds

struct RenderOptions {
  std::filesystem::path input;
  std::filesystem::path output;
  int block = 512;
  double tempo = 120.0;
  double tail = 0.0;
  std::vector<std::string> settings;
  bool quiet = false;
};

struct Rendered {
  double length = 0.0;   // seconds of music
  double elapsed = 0.0;  // seconds in the block calls alone
};

Rendered renderBlocks(EffectHost& host, AudioInput& input, AudioOutput& output, int block,
                      sf_count_t tailFrames) {
  using Clock = std::chrono::steady_clock;
  const auto size = static_cast<std::size_t>(block);
  std::vector<float> leftIn(size);
  std::vector<float> rightIn(size);
  std::vector<float> leftOut(size);
  std::vector<float> rightOut(size);
  float* inputs[] = {leftIn.data(), rightIn.data()};
  float* outputs[] = {leftOut.data(), rightOut.data()};
  Clock::duration elapsed{};
  sf_count_t done = 0;
  Progress progress;
  const auto expected = static_cast<double>(input.frames() + tailFrames);
  for (bool ended = false; !ended;) {
    const int music = input.read(inputs[0], inputs[1], block);
    const auto silence = static_cast<int>(std::min<sf_count_t>(block - music, tailFrames));
    std::fill_n(inputs[0] + music, silence, 0.0F);
    std::fill_n(inputs[1] + music, silence, 0.0F);
    tailFrames -= silence;
    const int count = music + silence;
    ended = count < block;
    if (count == 0) break;
    const auto start = Clock::now();
    host.process(inputs, outputs, count);
    elapsed += Clock::now() - start;
    output.write(outputs[0], outputs[1], count);
    done += count;
    progress.show(static_cast<double>(done) / expected);
  }
  return {static_cast<double>(done) / input.sampleRate(),
          std::chrono::duration<double>(elapsed).count()};
}

void summarise(const RenderOptions& options, const Rendered& rendered, float peak) {
  std::cout << options.output.string() << ": " << std::fixed << std::setprecision(2)
            << rendered.length << " s, " << std::setprecision(0)
            << rendered.length / std::max(rendered.elapsed, 1e-9)
            << " times faster than real time, ";
  if (peak > 0.0F) {
    std::cout << "peak " << std::setprecision(1) << 20.0 * std::log10(peak) << " dBFS\n";
  } else {
    std::cout << "silent\n";
  }
}

void warnOfDamage(const RenderOptions& options, const AudioOutput& output) {
  if (output.clippedSamples() > 0) {
    warn(options.output.string() + " clips in " + std::to_string(output.clippedSamples()) +
         " samples; turn the level down, or render from a float file to a float format");
  }
  if (output.nonFiniteSamples() > 0) {
    warn(options.output.string() + " has " + std::to_string(output.nonFiniteSamples()) +
         " samples that are no finite numbers; check " + options.input.string() + " for them");
  }
}

void render(const RenderOptions& options) {
  std::vector<ParameterSetting> settings;
  for (const std::string& text : options.settings) settings.push_back(parseParameterSetting(text));
  std::error_code ignored;
  if (std::filesystem::equivalent(options.input, options.output, ignored)) {
    throw Failure(options.output.string() + " is the input itself; give the output another name",
                  kExitWrongUsage);
  }
  AudioInput input(options.input);
  const sf_count_t tailFrames = std::llround(options.tail * input.sampleRate());
  AudioOutput output(options.output, input, input.frames() + tailFrames);
  EffectHost host(input.sampleRate(), options.block, options.tempo);
  for (const auto& [tag, value] : settings) host.setParameter(tag, value);
  const Rendered rendered = renderBlocks(host, input, output, options.block, tailFrames);
  output.finish();
  warnOfDamage(options, output);
  if (!options.quiet) summarise(options, rendered, output.peak());
}

// As CLI::Range, but refuses what is not a number, too, and prints bounds without decimals.
CLI::Validator between(int lowest, int highest) {
  const std::string bounds = std::to_string(lowest) + " to " + std::to_string(highest);
  const auto check = [lowest, highest, bounds](std::string& text) {
    double value = 0.0;
    const bool good = CLI::detail::lexical_cast(text, value) && value >= lowest && value <= highest;
    return good ? std::string() : text + " is not a number from " + bounds;
  };
  return {check, bounds};
}

}  // namespace

void addRenderCommand(CLI::App& app) {
  auto options = std::make_shared<RenderOptions>();
  CLI::App* command = app.add_subcommand("render", "Run a music file through the effect");
  command->add_option("IN", options->input, "File to read, mono or stereo")->required();
  command->add_option("OUT", options->output, "File to write; its extension tells the format")
      ->required();
  command->add_option("--block", options->block, "Frames per block call")
      ->check(between(1, kLargestBlock))
      ->capture_default_str();
  command->add_option("--tempo", options->tempo, "Tempo of the host, in beats per minute")
      ->check(between(kLowestTempo, kHighestTempo))
      ->capture_default_str();
  command
      ->add_option("--set", options->settings,
                   "A parameter by name or tag number, from 0 to 1; may be repeated")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
  command->add_option("--tail", options->tail, "Seconds of silence to feed after the end")
      ->check(between(0, kLongestTail))
      ->capture_default_str();
  command->add_flag("--quiet", options->quiet, "Leave the summary out");
  command->callback([options] { render(*options); });
}

}  // namespace zum
