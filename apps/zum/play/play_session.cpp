#include "apps/zum/play/play_session.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <ctime>

#include "apps/zum/effect_view.hpp"
#include "apps/zum/failure.hpp"
#include "apps/zum/preset_input.hpp"
#include "engine/clock.hpp"

namespace zum {
namespace {

constexpr double kUsualTempo = 120.0;
constexpr auto kLookEvery = std::chrono::seconds(1);
constexpr auto kMessageStands = std::chrono::seconds(8);

/// "ZUM 2026-11-26 14.03.59.wav" where the user keeps what he is about to hear.
std::filesystem::path recordingName() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  std::array<char, 64> text{};
  (void)std::strftime(text.data(), text.size(), "ZUM %Y-%m-%d %H.%M.%S.wav", &local);
  return text.data();
}

}  // namespace

PlaySession::PlaySession(const Options& options, EditorFactory makeEditor)
    : wish(options.device),
      effect(makeEditor, nullptr, "zum command line"),
      sound(effect),
      ports(sound.midi(), options.midiPorts) {
  EffectView view(effect.client());
  if (!options.preset.empty()) loadPresetFile(options.preset, view);
  if (!options.program.empty()) loadProgram(options.program, view);
  effect.loadState(options.sound);
  sound.setTempo(options.tempo.value_or(kUsualTempo));
  sound.hearInput(wish.input);
  if (!options.loop.empty()) sound.setLoop(options.loop);
  sound.play();
  if (!options.record.empty()) sound.record(options.record);
  openFirstDevice();
  ports.look();
}

void PlaySession::openFirstDevice() {
  try {
    if (!wish.isFirm && !wish.device.empty() && !isThere(wish)) wish.api = wish.device = "";
    openDevice();
  } catch (const Failure& failure) {
    if (wish.isFirm) throw;
    wish.api = wish.device = "";
    goSilent();
    warn(failure.what() + std::string("; until then time is silent"));
    tell("no sound device");
  }
}

PlaySession::~PlaySession() { end(); }

void PlaySession::end() {
  device.reset();
  sound.endAll();
  for (const std::string& problem : sound.takeProblems()) warn(problem);
}

// ---- devices

void PlaySession::openDevice() {
  device.reset();  // whose callback uses the rate that the next one sets
  sound.sweep(false);
  device = openSoundDevice(wish, sound);
  waits = false;
}

void PlaySession::goSilent() {
  device.reset();
  sound.sweep(false);
  DeviceWish silent = wish;
  silent.rate = sound.sampleRate() != 0 ? sound.sampleRate() : wish.rate;
  device = openSilentTime(silent, sound);
  waits = true;
}

void PlaySession::lookAfterDevice() {
  if (waits || device->isAlive()) return;
  const std::string gone = device->name() + " is gone; it is opened again when it returns";
  tell(gone);
  warn(gone);
  goSilent();
}

void PlaySession::lookForDevice() {
  if (!waits || !isThere(wish)) return;
  try {
    openDevice();
    tell(device->name());
  } catch (const Failure&) {
    goSilent();
  }
}

void PlaySession::lookAfterRecording() {
  const Recorder* const recorder = sound.recorder();
  if (recorder != nullptr && !recorder->isRunning()) sound.endRecord();
  sound.sweep(true);
  for (const std::string& problem : sound.takeProblems()) tell(problem), warn(problem);
}

void PlaySession::tick() {
  lookAfterRecording();
  lookAfterDevice();
  if (Clock::now() < nextLook) return;
  ports.look();  // ahead of devices: it lets go of a JACK that went
  lookForDevice();
  nextLook = Clock::now() + kLookEvery;
}

// ---- what the user does

template <class Work>
void PlaySession::tried(Work&& work) {
  try {
    work();
  } catch (const std::exception& error) {
    tell(error.what());
  }
}

void PlaySession::tell(const std::string& text) {
  told = text;
  toldAt = Clock::now();
}

void PlaySession::playOrStop() {
  tried([&] { sound.isPlaying() ? sound.stop() : sound.play(); });
}

void PlaySession::setTempo(double tempo) {
  sound.setTempo(std::clamp(tempo, KvSystemInfo::kLowestTempo, KvSystemInfo::kHighestTempo));
}

void PlaySession::tapTempo() {
  if (const auto tempo = taps.tap(Clock::now())) setTempo(*tempo);
}

// The input is opened with the first wish for it: until then nobody listens to a room.
void PlaySession::hearInput(bool heard) {
  if (heard && !wish.input) {
    wish.input = true;
    try {
      openDevice();
    } catch (const Failure& failure) {
      wish.input = false;
      tried([&] { openDevice(); });
      if (device == nullptr) goSilent();
      return tell(failure.what());
    }
  }
  sound.hearInput(heard);
}

void PlaySession::setLoop(const std::filesystem::path& path) {
  tried([&] { sound.setLoop(path); });
}

void PlaySession::loadPreset(const std::filesystem::path& path) {
  tried([&] {
    EffectView view(effect.client());
    loadPresetFile(path, view);
  });
}

void PlaySession::recordOrEnd() {
  if (isRecording()) return sound.endRecord();
  tried([&] {
    const std::filesystem::path name = recordingName();
    sound.record(name);
    tell("recording " + std::filesystem::absolute(name).string());
  });
}

// ---- what it shows

std::string PlaySession::deviceName() const {
  const std::string its = device->name();
  return (its.empty() ? std::string("no sound device") : its) + ", " +
         std::to_string(sound.sampleRate()) + " Hz, " + std::to_string(device->block()) + " frames";
}

std::string PlaySession::message() const {
  return Clock::now() - toldAt < kMessageStands ? told : std::string();
}

std::string PlaySession::summary() const {
  const auto [average, most, ownXruns] = device->load();
  std::array<char, 128> figures{};
  (void)std::snprintf(figures.data(), figures.size(),
                      "%d xruns, %d of our own, %.1f %% of the time, at most %.1f %%",
                      device->xruns(), ownXruns, 100.0 * average, 100.0 * most);
  return deviceName() + ": " + figures.data();
}

}  // namespace zum
