// What all effects of this maker have beyond the published interface.
#pragma once

#include "core/audio_effect.hpp"

namespace zum {

inline constexpr const char* kVendor = "Zelvane";

/// Gives an object an allocation that starts on a cache line.
struct alignas(64) KvAligned {};

class KvPluginBase : public AudioEffectX {
 public:
  using AudioEffectX::AudioEffectX;

  virtual void raiseAbout() = 0;
  virtual void openManual() = 0;
  virtual bool aboutIsOpen() const = 0;
};

}  // namespace zum
