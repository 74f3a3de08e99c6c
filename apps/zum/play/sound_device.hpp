// Who calls for blocks: a device of the system's, or, where there is none, a thread that takes as
// long for a block as it lasts.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "apps/zum/play/live_sound.hpp"

namespace zum {

/// What the user asked for; empty words and 0 leave it to the system.
struct DeviceWish {
  std::string api;      // "jack", "pulse" or "alsa"
  std::string device;   // name, or a part of it
  bool isFirm = false;  // no other one will do
  int rate = 0;         // Hz
  int block = 0;        // frames
  bool input = false;   // what comes in is wanted, too
};

/// [main] Calls LiveSound::process from the time it is made until it goes.
class SoundDevice {
 public:
  SoundDevice() = default;
  SoundDevice(const SoundDevice&) = delete;
  SoundDevice& operator=(const SoundDevice&) = delete;
  virtual ~SoundDevice() = default;

  /// False when it stopped calling: it is to be made anew.
  virtual bool isAlive() = 0;
  /// "JACK: system"; empty for silent time.
  virtual std::string name() const = 0;
  /// The same as a wish for it; empty words for silent time.
  struct Identity {
    std::string api;
    std::string device;
  };
  virtual Identity identity() const = 0;
  virtual int block() const = 0;  // frames
  /// Blocks that came too late since it was made.
  virtual int xruns() const = 0;
  /// Part of the time of its blocks that went into them, 0 to 1: on average, and at most. And how
  /// many took longer than they last: xruns of our own, where the system's are anybody's.
  struct Load {
    double average;
    double most;
    int ownXruns;
  };
  virtual Load load() const = 0;
};

/// Throws Failure where there is none such. It sets the rate of `played`.
std::unique_ptr<SoundDevice> openSoundDevice(const DeviceWish& wish, LiveSound& played);
/// Whether there is one such, without opening it.
bool isThere(const DeviceWish& wish);
/// At the rate that was asked for, or 44100 Hz. Throws Failure for a rate that the effect does not
/// have.
std::unique_ptr<SoundDevice> openSilentTime(const DeviceWish& wish, LiveSound& played);

struct DeviceEntry {
  std::string api;
  std::string name;
  int inputs;
  int outputs;
  std::vector<int> rates;  // Hz
  bool isDefault;
};
/// What answers now, in the order in which it is tried.
std::vector<DeviceEntry> listSoundDevices();

}  // namespace zum
