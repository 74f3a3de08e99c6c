// `daehost render`: a music file through a process, block by block, with MIDI from a thread of its
// own and a transport that moves along.
#include <algorithm>
#include <array>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <vector>

#include "adaptor/dae/event_buffers.hpp"
#include "apps/daehost/commands.hpp"
#include "apps/daehost/midi_feeder.hpp"
#include "apps/zum/audio_input.hpp"
#include "apps/zum/audio_output.hpp"
#include "apps/zum/failure.hpp"
#include "apps/zum/interruption.hpp"
#include "apps/zum/option_checks.hpp"
#include "apps/zum/temporary_file.hpp"
#include "platform/printable_text.hpp"

namespace zum {
namespace {

struct RenderOptions : HostOptions {
  std::filesystem::path input;
  std::filesystem::path output;
  std::filesystem::path midi;
  int block = 512;  // frames
  bool stopped = false;
};

// `seconds` into the song.
void warnOfLostMessages(std::size_t messages, std::size_t room, double seconds) {
  if (messages <= room) return;
  warn("at " + std::to_string(seconds) + " s " + std::to_string(messages - room) +
       " MIDI messages of one block are lost; use a smaller --block");
}

void render(const RenderOptions& options) {
  refuseToOverwrite(options.output, "output",
                    {options.plugIn, options.input, options.midi, options.session});
  const PlugInFile file(options.plugIn);
  AudioInput input(options.input);
  holdSignals();
  AudioOutput output(options.output, input, input.frames());
  HostedProcess process(file, options.type(), static_cast<float>(input.sampleRate()),
                        options.tempo);
  process.isRunning = !options.stopped;
  options.apply(process);
  std::optional<MidiFeeder> midi;
  if (!options.midi.empty()) midi.emplace(process, MidiFile(options.midi, input.sampleRate()));

  const auto size = static_cast<std::size_t>(options.block);
  std::array<std::vector<float>, 2> in{std::vector<float>(size), std::vector<float>(size)};
  std::array<std::vector<float>, 2> out = in;
  std::array<float*, 2> inputs{in[0].data(), in[1].data()};
  std::array<float*, 2> outputs{out[0].data(), out[1].data()};
  std::int64_t done = 0;
  for (;;) {
    throwIfInterrupted();
    const int count = input.read(inputs[0], inputs[1], options.block);
    if (count < 1) break;
    if (midi) {
      warnOfLostMessages(midi->deliverUntil(done + count), EventBuffers::kEvents,
                         static_cast<double>(done) / input.sampleRate());
    }
    process.routines().render(process.get(), inputs.data(), outputs.data(), count);
    output.write(outputs[0], options.mono ? outputs[0] : outputs[1], count);
    done += count;
    if (process.isRunning) process.position = done;
  }
  output.finish();
  input.warnOfDamage();
  output.warnOfDamage();
  std::cout << printable(options.output.string()) << ": " << done << " frames, peak "
            << output.peak() << '\n';
}

}  // namespace

void addRenderCommand(CLI::App& app) {
  auto options = std::make_shared<RenderOptions>();
  CLI::App* const command = app.add_subcommand("render", "Render a music file");
  command->add_option("input", options->input, "Music file to read")->required()->check(notEmpty());
  command->add_option("output", options->output, "Music file to write")
      ->required()
      ->check(notEmpty());
  addHostOptions(*command, *options);
  command->add_option("--midi", options->midi, "MIDI file to play along")
      ->type_name("FILE.mid")
      ->check(notEmpty());
  command->add_option("--block", options->block, "Frames in a block")
      ->check(between(1, 65536))
      ->capture_default_str();
  command->add_flag("--stopped", options->stopped, "The transport stands still");
  command->callback([options] { render(*options); });
}

}  // namespace zum
