// What the transport strip shows, and whom it tells what the user does on it.
#pragma once

#include <filesystem>
#include <string>

#include "apps/zum/play/live_sound.hpp"

namespace zum {

/// [main] Nothing throws: what fails is told by message().
class StripOwner {
 public:
  virtual bool isPlaying() const = 0;
  virtual void playOrStop() = 0;
  /// Quarter notes per minute.
  virtual double tempo() const = 0;
  virtual void setTempo(double tempo) = 0;
  virtual void tapTempo() = 0;
  /// The sound card's input is heard, and not the loop.
  virtual bool isInputHeard() const = 0;
  virtual void hearInput(bool heard) = 0;
  /// Empty for none.
  virtual std::filesystem::path loop() const = 0;
  virtual void setLoop(const std::filesystem::path& path) = 0;
  virtual void loadPreset(const std::filesystem::path& path) = 0;
  virtual bool isRecording() const = 0;
  /// Begins a file in the folder of recordings, named by the time of day, or ends it.
  virtual void recordOrEnd() = 0;
  virtual LiveSound::Peaks takePeaks() = 0;
  /// Blocks that came too late.
  virtual int xruns() const = 0;
  /// "JACK: system, 48000 Hz, 128 frames", or that there is no sound device.
  virtual std::string deviceName() const = 0;
  /// What there is to tell just now, as of a device that went or a recording that stopped; empty
  /// for nothing.
  virtual std::string message() const = 0;

 protected:
  ~StripOwner() = default;
};

}  // namespace zum
