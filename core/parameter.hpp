// The record of one control: what the host, presets and the editor know it by.
#pragma once

#include <cstdint>

namespace zum {

class KvChunkableClass;

struct KvParameter {
  static constexpr std::int32_t kPlain = 1;
  static constexpr std::int32_t kSwitch = 2;  // a step or button value

  std::int32_t id = -1;  // identifier in a preset, -1 for records that a preset does not hold
  std::int32_t tag = 0;
  std::int32_t count = 1;              // number of values
  float* value = nullptr;              // stored raw value, null for one that owns an object alone
  KvChunkableClass* object = nullptr;  // in place of a plain value
  const char* name = "";               // towards the host
  const char* label = "";              // unit
  float randomRange = 1.0F;            // how far chance moves it, at most
  std::int32_t flags = kPlain;         // kPlain or kSwitch
  std::int32_t option = -1;            // none
  bool excluded = false;               // presets leave it alone, a host's state does not
};

}  // namespace zum
