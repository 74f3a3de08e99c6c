// What the plug-in file offers to the second host: a stereo and a mono type of the effect.
#pragma once

#include "adaptor/dae/hostlib/effect_group.hpp"

namespace zum {

/// [main] The one group of its file.
class KvRTASWrapperGroup final : public CEffectGroupMIDI {
 public:
  KvRTASWrapperGroup();

 private:
  void CreateEffectTypes() override;
};

}  // namespace zum
