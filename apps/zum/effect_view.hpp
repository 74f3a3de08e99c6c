// What the command line reads and writes inside the effect, where hosts have no way to: everything
// else goes through the effect's record.
#pragma once

#include <span>

#include "core/aeffect.hpp"

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

class EffectView {
 public:
  explicit EffectView(const AEffect& record);

  /// Of the last control pass so far.
  ControlPassResults results() const;
  /// Fills the sequencer's steps with `values`, again and again; not empty.
  void setSteps(std::span<const float> values);

 private:
  KvUniClient* effect;
};

}  // namespace zum
