// `zum render IN OUT`: the effect over a music file, block by block as in a host.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "apps/zum/audio_input.hpp"
#include "apps/zum/audio_output.hpp"
#include "apps/zum/automation.hpp"
#include "apps/zum/commands.hpp"
#include "apps/zum/controller_options.hpp"
#include "apps/zum/effect_host.hpp"
#include "apps/zum/effect_view.hpp"
#include "apps/zum/failure.hpp"
#include "apps/zum/option_checks.hpp"
#include "apps/zum/preset_input.hpp"
#include "apps/zum/render_loop.hpp"
#include "apps/zum/step_options.hpp"
#include "apps/zum/temporary_file.hpp"
#include "apps/zum/trace.hpp"
#include "engine/clock.hpp"
#include "engine/engine.hpp"
#include "platform/printable_text.hpp"
#include "preset_text/parameter_names.hpp"

namespace zum {
namespace {

constexpr int kLargestBlock = 65536;  // frames
// Beats per minute; the effect would quietly run at another tempo outside of them.
constexpr auto kLowestTempo = static_cast<int>(KvSystemInfo::kLowestTempo);
constexpr auto kHighestTempo = static_cast<int>(KvSystemInfo::kHighestTempo);
constexpr int kLongestTail = 3600;  // seconds
constexpr int kCurveBlock = 64;     // frames; curves move in steps of at most that

struct RenderOptions {
  std::filesystem::path input;
  std::filesystem::path output;
  std::filesystem::path sideChain;
  int block = 512;
  double tempo = 120.0;
  double tail = 0.0;
  std::filesystem::path preset;
  std::string program;
  std::vector<std::string> settings;
  std::string steps;
  std::string sequencerMode;
  bool plays = false;
  std::vector<std::string> curves;
  std::filesystem::path midi;
  std::filesystem::path controllerMap;
  std::vector<std::string> learned;
  std::filesystem::path trace;
  bool quiet = false;
};

void summarise(const RenderOptions& options, const Rendered& rendered, float peak) {
  std::cout << printable(options.output.string()) << ": " << std::fixed << std::setprecision(2)
            << rendered.length << " s, " << std::setprecision(0)
            << rendered.length / std::max(rendered.elapsed, 1e-9)
            << " times faster than real time, ";
  if (peak > 0.0F) {
    std::cout << "peak " << std::setprecision(1) << 20.0 * std::log10(peak) << " dBFS\n";
  } else {
    std::cout << "silent\n";
  }
}

// Everything that is written must have a name of its own.
void refuseSameFiles(const RenderOptions& options, const std::vector<AutomationCurve>& curves) {
  std::vector<std::filesystem::path> others = {options.input, options.sideChain, options.preset,
                                               options.midi, options.controllerMap};
  for (const AutomationCurve& curve : curves) others.push_back(curve.file());
  refuseToOverwrite(options.output, "output", others);
  others.push_back(options.output);
  refuseToOverwrite(options.trace, "trace", others);
}

// What is set before the first block.
struct Patch {
  explicit Patch(const RenderOptions& options)
      : preset(options.preset), program(options.program), controllerMap(options.controllerMap) {
    for (const std::string& text : options.settings) {
      settings.push_back(parseParameterSetting(text));
    }
    if (!options.sequencerMode.empty()) {
      settings.push_back(parseSequencerMode(options.sequencerMode));
    }
    for (const std::string& text : options.learned) {
      learned.push_back(parseControllerSetting(text));
    }
    if (!options.steps.empty()) steps = parseSteps(options.steps);
  }

  void applyTo(EffectHost& host) const {
    EffectView view(host.client());
    if (!preset.empty()) loadPresetFile(preset, view);
    if (!program.empty()) loadProgram(program, view);
    if (!controllerMap.empty()) loadControllerMap(controllerMap, view);
    for (const auto& [controller, tag] : learned) view.bind(controller, tag);
    for (const auto& [tag, value] : settings) host.setParameter(tag, value);
    if (!steps.empty()) view.setSteps(steps);
  }

  std::filesystem::path preset;
  std::string program;
  std::filesystem::path controllerMap;
  std::vector<ControllerSetting> learned;
  std::vector<ParameterSetting> settings;
  std::vector<float> steps;
};

int blockFrames(const RenderOptions& options) {
  if (!options.trace.empty()) return Engine::kControlFrames;
  return options.curves.empty() ? options.block : std::min(options.block, kCurveBlock);
}

std::unique_ptr<AudioInput> openSideChain(const std::filesystem::path& file, int rate) {
  if (file.empty()) return nullptr;
  auto opened = std::make_unique<AudioInput>(file);
  if (opened->sampleRate() != rate) {
    throw Failure("the side-chain has " + std::to_string(opened->sampleRate()) +
                  " Hz and the input " + std::to_string(rate) +
                  " Hz; bring one of them to the rate of the other");
  }
  return opened;
}

void render(const RenderOptions& options) {
  const Patch patch(options);
  std::vector<AutomationCurve> curves(options.curves.begin(), options.curves.end());
  refuseSameFiles(options, curves);
  AudioInput input(options.input);
  const std::unique_ptr<AudioInput> sideChain =
      openSideChain(options.sideChain, input.sampleRate());
  const sf_count_t tailFrames = std::llround(options.tail * input.sampleRate());
  AudioOutput output(options.output, input, input.frames() + tailFrames);
  std::optional<MidiFile> midi;
  if (!options.midi.empty()) midi.emplace(options.midi, input.sampleRate());
  std::optional<TraceWriter> trace;
  if (!options.trace.empty()) trace.emplace(options.trace);
  const int block = blockFrames(options);
  EffectHost host(input.sampleRate(), block, options.tempo, options.plays);
  patch.applyTo(host);
  const Rendered rendered = run({.host = host,
                                 .input = input,
                                 .sideChain = sideChain.get(),
                                 .output = output,
                                 .curves = curves,
                                 .midi = midi ? &*midi : nullptr,
                                 .trace = trace ? &*trace : nullptr,
                                 .block = block,
                                 .tailFrames = tailFrames});
  if (trace) trace->finish();
  output.finish();
  input.warnOfDamage();
  if (sideChain) sideChain->warnOfDamage();
  output.warnOfDamage();
  if (!options.quiet) summarise(options, rendered, output.peak());
}

}  // namespace

void addRenderCommand(CLI::App& app) {
  auto options = std::make_shared<RenderOptions>();
  CLI::App* command = app.add_subcommand("render", "Run a music file through the effect");
  command->add_option("IN", options->input, "File to read, mono or stereo")
      ->required()
      ->check(notEmpty());
  command->add_option("OUT", options->output, "File to write; its extension tells the format")
      ->required()
      ->check(notEmpty());
  command->add_option("--block", options->block, "Frames per block call")
      ->check(between(1, kLargestBlock))
      ->capture_default_str();
  command->add_option("--tempo", options->tempo, "Tempo of the host, in beats per minute")
      ->check(between(kLowestTempo, kHighestTempo))
      ->capture_default_str();
  CLI::Option* preset = command
                            ->add_option("--preset", options->preset,
                                         "Preset to start from, in place of your default one")
                            ->check(notEmpty());
  command
      ->add_option("--program", options->program,
                   "Program of the bank to start from, as zum presets list prints it")
      ->type_name("FOLDER/NAME")
      ->check(notEmpty())
      ->excludes(preset);
  command
      ->add_option("--set", options->settings,
                   "A parameter by name or tag number, from 0 to 1; may be repeated")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
  command->add_option("--tail", options->tail, "Seconds of silence to feed after the end")
      ->check(between(0, kLongestTail))
      ->capture_default_str();
  command
      ->add_option("--steps", options->steps,
                   "1 to 8 steps of the sequencer, from 0 to 1; fewer than 8 start over")
      ->type_name("A,B,...")
      ->check(notEmpty());
  command
      ->add_option("--seq-mode", options->sequencerMode,
                   "Way through the steps: forward, backward, ping-pong, inverse or random")
      ->type_name("NAME")
      ->check(notEmpty());
  CLI::Option* play =
      command->add_flag("--play", options->plays, "Run the transport from position 0 at the tempo");
  command->add_flag("--stopped")
      ->description("Leave the transport at rest, as without --play")
      ->excludes(play);
  command
      ->add_option(
          "--curve", options->curves,
          "Automation of a parameter: a text file of times in seconds and values from 0 to "
          "1, joined by lines; set once a block, of --block but at most " +
              std::to_string(kCurveBlock) + " frames; may be repeated")
      ->type_name("NAME=FILE")
      ->allow_extra_args(false);
  command
      ->add_option("--sidechain", options->sideChain,
                   "Music file that the follower and the LFO's trigger hear in place of the input")
      ->type_name("FILE")
      ->check(notEmpty());
  command->add_option("--midi", options->midi, "Standard MIDI file to play into the effect")
      ->type_name("FILE.mid")
      ->check(notEmpty());
  command
      ->add_option("--learn", options->learned,
                   "A parameter that a controller (or aftertouch) moves; may be repeated")
      ->type_name("CC=NAME")
      ->allow_extra_args(false);
  command
      ->add_option("--cc-map", options->controllerMap,
                   "Controllers to start with, in place of the preset's")
      ->type_name("FILE.kvm")
      ->check(notEmpty());
  command
      ->add_option(
          "--trace", options->trace,
          "Table to write of sequencer, LFO, follower, cutoff, resonance and meter in every "
          "control pass; blocks have " +
              std::to_string(Engine::kControlFrames) + " frames then")
      ->type_name("FILE.csv")
      ->check(notEmpty());
  command->add_flag("--quiet", options->quiet, "Leave the summary out");
  command->callback([options] { render(*options); });
}

}  // namespace zum
