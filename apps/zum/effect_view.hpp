// What the command line reads and writes inside the effect, where hosts have no way to: everything
// else goes through the effect's record.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace zum {

class KvUniClient;

/// Results of one control pass, all 0..1 but the cutoff.
struct ControlPassResults {
  float seqOut;
  float lfoOut;
  float efOut;
  float cutoffHz;
  float resonance;
  float meter;
};

/// A program of the bank, called "folder/preset".
struct BankEntry {
  int folder;
  int program;
  std::string name;
};

class EffectView {
 public:
  explicit EffectView(KvUniClient& seen) : effect(&seen) {}

  /// What the last control pass came to.
  ControlPassResults results() const;
  /// Fills the sequencer's steps with `values`, again and again; not empty.
  void setSteps(std::span<const float> values);
  std::vector<BankEntry> bank() const;
  // Both load as the window does; false for a preset that is refused.
  /// `path` is full, in the internal form, and names the preset.
  bool loadPresetFile(const std::string& path);
  bool loadProgram(int folder, int program);
  /// `path`, in the internal form, is of a file that is known to be a map.
  void loadControllerMap(const std::string& path);
  /// As if it had been learned. Controller -1 is channel pressure.
  void bind(int controller, int tag);

 private:
  KvUniClient* effect;
};

}  // namespace zum
