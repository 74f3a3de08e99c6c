// What the command line reads and writes inside the effect, where hosts have no way to: everything
// else goes through the effect's record.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "core/aeffect.hpp"

namespace zum {

class KvChunk;
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
  explicit EffectView(const AEffect& record);

  /// Of the last control pass so far.
  ControlPassResults results() const;
  /// Fills the sequencer's steps with `values`, again and again; not empty.
  void setSteps(std::span<const float> values);
  std::vector<BankEntry> bank() const;
  // Both as the window loads a preset, without messages; false for one that is refused.
  bool loadPreset(const KvChunk& preset);
  bool loadProgram(int folder, int program);

 private:
  KvUniClient* effect;
};

}  // namespace zum
