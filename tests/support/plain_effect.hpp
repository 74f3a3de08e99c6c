// An effect without a host, for benchmarks and fuzz targets.
#pragma once

#include "core/create_effect.hpp"
#include "core/uni_client.hpp"

namespace zum::test {

struct PlainEffect {
  AEffect* record = createEffect(nullptr);
  KvUniClient& client = *dynamic_cast<KvUniClient*>(static_cast<AudioEffect*>(record->object));

  PlainEffect() = default;
  PlainEffect(const PlainEffect&) = delete;
  PlainEffect& operator=(const PlainEffect&) = delete;
  ~PlainEffect() { record->dispatcher(record, effClose, 0, 0, nullptr, 0.0F); }
};

}  // namespace zum::test
