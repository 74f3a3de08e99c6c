#include "core/state_gate.hpp"

#include <chrono>
#include <thread>

namespace zum {

bool StateGate::tryEnter() ZUM_REALTIME {
  if (muteRequest.load()) return false;
  offline.store(false);  // ahead of the byte: who sees both sees a block that is over
  inProcess.store(true);
  // A state may be on its way in since the test above; its loader waits for the byte just set.
  if (!muteRequest.load()) return true;
  inProcess.store(false);
  return false;
}

StateGate::Silence::Silence(StateGate& entered, Ends ending)
    : gate(entered),
      turn(entered),
      mutedAfterwards(ending == Ends::asItBegan && entered.muteRequest.load()),
      complete(entered.silenceBlocks(ending == Ends::withEveryMute)) {}

// An offline block leaves its byte set and cannot be told from one at work, so the wait has an end.
bool StateGate::silenceBlocks(bool waitsForOffline) {
  constexpr int kPasses = 500;
  muteRequest.store(true);
  auto wake = std::chrono::steady_clock::now();
  for (int pass = 0; inProcess.load(); ++pass) {
    if (pass == kPasses || (!waitsForOffline && offline.load())) return false;
    std::this_thread::sleep_until(wake += std::chrono::milliseconds(1));
  }
  return true;
}

}  // namespace zum
