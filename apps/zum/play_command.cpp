// `zum play`: the effect's window over live sound.
#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <thread>

#include "apps/zum/commands.hpp"
#include "apps/zum/failure.hpp"
#include "apps/zum/interruption.hpp"
#include "apps/zum/option_checks.hpp"
#include "apps/zum/play/play_memory.hpp"
#include "apps/zum/play/play_session.hpp"
#include "apps/zum/play/play_window.hpp"
#include "apps/zum/temporary_file.hpp"
#include "editor/create_editor.hpp"
#include "engine/clock.hpp"
#include "platform/printable_text.hpp"

namespace zum {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kTick = std::chrono::microseconds(1'000'000 / 30);
constexpr auto kPictureTime = std::chrono::seconds(1);  // by then traces and meters have moved
constexpr int kLongest = 86400;                         // seconds
// Beats per minute; the effect would quietly run at another tempo outside of them.
constexpr auto kLowestTempo = static_cast<int>(KvSystemInfo::kLowestTempo);
constexpr auto kHighestTempo = static_cast<int>(KvSystemInfo::kHighestTempo);
constexpr auto kLowestRate = static_cast<int>(KvSystemInfo::kLowestSampleRate);
constexpr auto kHighestRate = static_cast<int>(KvSystemInfo::kHighestSampleRate);

struct PlayOptions {
  PlaySession::Options session;
  bool lists = false;
  double seconds = 0.0;  // 0: until the window is closed
  std::filesystem::path picture;
};

/// Writes the window as it was drawn last.
void writePicture(const PlayWindow& window, TemporaryFile& file,
                  const std::filesystem::path& name) {
  // The frame wants a name to write to, and the file does not have its own yet.
  if (!window.writePicture("/proc/self/fd/" + std::to_string(file.descriptor()))) {
    throw Failure("cannot write " + name.string() + "; free space or choose another folder");
  }
  file.commit();
}

std::string joined(const std::vector<int>& rates) {
  std::string text;
  for (const int rate : rates) text += (text.empty() ? "" : ", ") + std::to_string(rate);
  return text;
}

void list() {
  const std::vector<DeviceEntry> devices = listSoundDevices();
  if (devices.empty()) std::cout << "no sound devices\n";
  for (const DeviceEntry& each : devices) {
    std::cout << each.api << "  " << printable(each.name) << (each.isDefault ? " (default)" : "")
              << "  " << each.inputs << " in, " << each.outputs << " out, " << joined(each.rates)
              << " Hz\n";
  }
  const std::vector<std::string> ports = MidiPorts::list();
  if (ports.empty()) std::cout << "no MIDI ports\n";
  for (const std::string& name : ports) std::cout << "midi  " << printable(name) << '\n';
}

/// Until the window is closed, or its time is over.
void show(PlaySession& session, PlayWindow& window, const PlayOptions& options) {
  std::optional<TemporaryFile> picture;
  if (!options.picture.empty()) picture.emplace(options.picture);
  const auto start = Clock::now();
  for (auto next = start; !window.isGone(); std::this_thread::sleep_until(next)) {
    throwIfInterrupted();
    session.tick();
    window.idle();
    const std::chrono::duration<double> shown = Clock::now() - start;
    if (picture && shown >= kPictureTime) {
      writePicture(window, *picture, options.picture);
      picture.reset();
    }
    if (options.seconds > 0.0 && shown.count() >= options.seconds) break;
    next = std::max(next + kTick, Clock::now());  // missed ticks are not made up for
  }
  if (picture) writePicture(window, *picture, options.picture);  // it was closed early
}

void play(PlayOptions options) {
  if (options.lists) return list();
  PlaySession::Options& wanted = options.session;
  refuseToOverwrite(options.picture, "picture", {wanted.loop, wanted.preset});
  recall(wanted);
  refuseToOverwrite(wanted.record, "recording", {wanted.loop, wanted.preset, options.picture});
  holdSignals();
  PlaySession session(wanted, createEditor);
  PlayWindow window(session.host(), session, recallPlace());
  const auto end = [&] {
    remember(session, window.place());
    session.end();
  };
  try {
    show(session, window, options);
  } catch (const Interruption&) {
    end();
    throw;
  }
  if (options.seconds > 0.0) std::cout << printable(session.summary()) << '\n';
  end();
}

void addSoundOptions(CLI::App& command, PlaySession::Options& options) {
  DeviceWish& device = options.device;
  command
      .add_option("--api", device.api,
                  "Way to the sound device; the first that answers if not given")
      ->check(CLI::IsMember({"jack", "pulse", "alsa"}));
  command.add_option("--device", device.device, "Sound device, by its name or a part of it")
      ->type_name("NAME")
      ->check(notEmpty());
  command.add_option("--rate", device.rate, "Sample rate in Hz; the device's own if not given")
      ->check(between(kLowestRate, kHighestRate));
  command.add_option("--block", device.block, "Frames of a block")
      ->check(between(16, LiveSound::kMostFrames));
  command.add_flag("--input", device.input, "Filter what comes into the sound card");
  command
      .add_option("--midi-port", options.midiPorts,
                  "MIDI input to hear, by its name or a part of it; all there are if not given")
      ->type_name("NAME")
      ->check(notEmpty());
}

void addMusicOptions(CLI::App& command, PlaySession::Options& options) {
  command
      .add_option("--loop", options.loop,
                  "Music file to filter again and again, in place of the last one")
      ->type_name("FILE")
      ->check(notEmpty());
  auto* const preset = command
                           .add_option("--preset", options.preset,
                                       "Preset to start from, in place of the sound as it was left")
                           ->type_name("FILE.kvz")
                           ->check(notEmpty());
  command.add_option("--program", options.program, "Program of the bank to start from")
      ->type_name("FOLDER/NAME")
      ->check(notEmpty())
      ->excludes(preset);
  command
      .add_option("--tempo", options.tempo,
                  "Tempo of the transport in beats per minute; 120 at first, then the last one")
      ->check(between(kLowestTempo, kHighestTempo));
  command.add_option("--record", options.record, "Music file to write, of all that is heard")
      ->type_name("FILE")
      ->check(notEmpty());
}

}  // namespace

void addPlayCommand(CLI::App& app) {
  auto options = std::make_shared<PlayOptions>();
  CLI::App* command =
      app.add_subcommand("play",
                         "Open the effect's window over live sound: a loop or the sound "
                         "card's input, heard through the effect");
  command->add_flag("--list", options->lists, "List sound devices and MIDI ports, and end");
  addSoundOptions(*command, options->session);
  addMusicOptions(*command, options->session);
  command->add_option("--seconds", options->seconds, "Close the window after so long")
      ->check(between(1, kLongest));
  command
      ->add_option("--picture", options->picture,
                   "Picture of the window to write, when it has been open for a second")
      ->type_name("FILE.png")
      ->check(notEmpty());
  command->callback([options] { play(*options); });
}

}  // namespace zum
