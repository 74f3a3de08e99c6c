// A way by which the host's MIDI thread hands its messages over as they come.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <string>
#include <utility>

namespace zum {

using ShortMessage = std::array<unsigned char, 3>;

class CEffectMIDIDirectDeliveryNode {
 public:
  using Callback = void (*)(std::int32_t timestampFlag, const ShortMessage& message, void* context);

  CEffectMIDIDirectDeliveryNode(std::string nodeName, Callback called, void* calledWith)
      : name(std::move(nodeName)), callback(called), context(calledWith) {}

  const std::string& getName() const { return name; }
  void activate() { active.store(true); }
  /// [host] Does nothing before activate().
  void deliver(std::int32_t timestampFlag, const ShortMessage& message) const {
    if (active.load()) callback(timestampFlag, message, context);
  }

 private:
  std::string name;
  Callback callback;
  void* context;
  std::atomic<bool> active{false};
};

}  // namespace zum
