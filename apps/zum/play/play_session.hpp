// What `zum play` is made of, and what its transport strip talks to: the effect, its sound, the
// device, the MIDI ports.
#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "adaptor/host_side.hpp"
#include "apps/zum/play/live_sound.hpp"
#include "apps/zum/play/midi_ports.hpp"
#include "apps/zum/play/sound_device.hpp"
#include "apps/zum/play/strip_owner.hpp"
#include "apps/zum/play/tap_tempo.hpp"

namespace zum {

/// [main]
class PlaySession final : public StripOwner {
 public:
  struct Options {
    DeviceWish device;
    std::optional<double> tempo;  // quarter notes per minute
    std::filesystem::path loop;
    std::filesystem::path preset;  // or
    std::string program;           // or, which may be no state at all:
    std::vector<std::byte> sound;
    std::vector<std::string> midiPorts;
    std::filesystem::path record;
  };

  /// Plays from now on. Throws Failure for what the user asked for and there is not; without a
  /// device, where he asked for none, time is silent.
  PlaySession(const Options& options, EditorFactory makeEditor);
  ~PlaySession();
  PlaySession(const PlaySession&) = delete;
  PlaySession& operator=(const PlaySession&) = delete;

  HostSide& host() { return effect; }
  /// Some thirty times a second: looks after devices, ports and files.
  void tick();
  /// Ends the sound; a recording is complete behind it.
  void end();
  /// "12.0 s at 48000 Hz, 64 frames: 0 xruns, 0 of our own, 7.1 % of the time, at most 11.4 %".
  std::string summary() const;
  SoundDevice::Identity deviceInUse() const { return device->identity(); }

  bool isPlaying() const override { return sound.isPlaying(); }
  void playOrStop() override;
  double tempo() const override { return sound.tempo(); }
  void setTempo(double tempo) override;
  void tapTempo() override;
  bool isInputHeard() const override { return sound.isInputHeard(); }
  void hearInput(bool heard) override;
  std::filesystem::path loop() const override { return sound.loop(); }
  void setLoop(const std::filesystem::path& path) override;
  void loadPreset(const std::filesystem::path& path) override;
  bool isRecording() const override { return sound.recorder() != nullptr; }
  void recordOrEnd() override;
  LiveSound::Peaks takePeaks() override { return sound.takePeaks(); }
  int xruns() const override { return device->xruns(); }
  std::string deviceName() const override;
  std::string message() const override;

 private:
  using Clock = std::chrono::steady_clock;

  /// Tells the user when it throws.
  template <class Work>
  void tried(Work&& work);
  void tell(const std::string& text);
  void lookAfterDevice();
  void lookForDevice();
  void lookAfterRecording();
  void openFirstDevice();
  void openDevice();
  void goSilent();

  DeviceWish wish;
  HostSide effect;
  LiveSound sound;
  MidiPorts ports;
  std::unique_ptr<SoundDevice> device;
  bool waits = false;  // for a device that went
  Clock::time_point nextLook{};
  TapTempo taps;
  std::string told;
  Clock::time_point toldAt{};
};

}  // namespace zum
