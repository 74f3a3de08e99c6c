// The effect that is linked into the program: by its record, as any host, and by what is behind it.
#pragma once

#include "core/create_effect.hpp"
#include "core/uni_client.hpp"
#include "tests/support/effect_instance.hpp"

namespace zum::test {

struct LinkedEffect : EffectInstance {
  /// Without a callback: a host that answers nothing.
  explicit LinkedEffect(audioMasterCallback host = nullptr, EditorFactory makeEditor = nullptr)
      : EffectInstance(createEffect(host, makeEditor)) {}
  /// What an entry made elsewhere, which has no client() here.
  explicit LinkedEffect(AEffect* made) : EffectInstance(made) {}
  KvUniClient& client() const {
    return *dynamic_cast<KvUniClient*>(static_cast<AudioEffect*>(effect->object));
  }
};

}  // namespace zum::test
