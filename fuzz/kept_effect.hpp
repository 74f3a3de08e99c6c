// An effect that outlives the inputs, since making one takes longer than most of them.
#pragma once

#include <memory>
#include <string>

#include "tests/support/linked_effect.hpp"

namespace zum {

class KeptEffect {
 public:
  explicit KeptEffect(audioMasterCallback host = nullptr) : callback(host) {}

  /// Of a new input: as a fresh one is, or a fresh one.
  void begin(bool anew) {
    if (effect == nullptr || anew) {
      effect = std::make_unique<test::LinkedEffect>(callback);
      if (start.empty()) start = effect->state();
    } else if (used) {
      // What no state holds. A rate costs as much as all else, so only one that moved.
      effect->client().endLearn();
      effect->client().controllers().learning.store(false);
      effect->client().askForReset();
      if (effect->client().timing().sampleRate != kRate) setRate();
      effect->load(start);
    }
    used = false;
  }

  test::LinkedEffect& use() {
    used = true;
    return *effect;
  }

 private:
  static constexpr float kRate = 44100.0F;
  void setRate() const { effect->dispatch(effSetSampleRate, 0, 0, nullptr, kRate); }

  audioMasterCallback callback;
  std::unique_ptr<test::LinkedEffect> effect;
  std::string start;
  bool used = false;
};

}  // namespace zum
