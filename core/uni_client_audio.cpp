// The block call: silence on request, the host's time, the engine.

#include <algorithm>

#include "core/uni_client.hpp"

namespace zum {
namespace {

constexpr std::int32_t kTimeFilter =
    kVstTransportPlaying | kVstPpqPosValid | kVstTempoValid | kVstBarsValid | kVstCyclePosValid;

void silence(float** outputs, std::int32_t frames) ZUM_REALTIME {
  if (outputs == nullptr || frames <= 0) return;
  for (int channel = 0; channel < 2; ++channel) {
    if (outputs[channel] != nullptr) std::fill_n(outputs[channel], frames, 0.0F);
  }
}

bool complete(const float* const* channels) ZUM_REALTIME {
  return channels != nullptr && channels[0] != nullptr && channels[1] != nullptr;
}

}  // namespace

void KvUniClient::processReplacing(float** inputs, float** outputs, std::int32_t frames)
    ZUM_REALTIME {
  const auto mute = [&]() ZUM_REALTIME {
    silence(outputs, frames);
    inbox.passBlock();
  };
  if (muteRequest.load()) return mute();
  offline.store(false);  // ahead of the byte: who sees both sees a block that is over
  inProcess.store(true);
  // A state may be on its way in since the test above; its loader waits for the byte just set.
  if (muteRequest.load()) {
    inProcess.store(false);
    return mute();
  }
  // An offline host gets its buffers back untouched, and the byte stays set.
  const bool isLeft = getCurrentProcessLevel() == kVstProcessLevelOffline;
  if (isLeft) {
    offline.store(true);
    return inbox.passBlock();
  }
  readTransport();
  inbox.takeInto(events);
  if (frames > 0 && complete(inputs) && complete(outputs)) {
    engine.process(inputs, outputs, frames, clock, *this);
  }
  inProcess.store(false);
}

// Hosts mark position and tempo as valid or not, and many forget to: the record is trusted.
void KvUniClient::readTransport() ZUM_REALTIME {
  workingTempo = clock.tempoBpm;
  const VstTimeInfo* time = adaptorTransport.load(std::memory_order_relaxed)
                                ? timeRecord.get()
                                : getTimeInfo(kTimeFilter);
  if (time == nullptr) return;
  workingTempo =
      time->tempo < KvSystemInfo::kLowestTempo ? KvSystemInfo::kLowestTempo : time->tempo;
  const bool playing = (time->flags & kVstTransportPlaying) != 0 || hostIsAcid;
  const bool running = playing && time->ppqPos >= 0.0;  // a pre-roll counts as stopped
  clock.transportPpqWide = running ? time->ppqPos : 0.0;
  clock.transportPpq = static_cast<float>(clock.transportPpqWide);
  clock.transportRunning = running ? 1.0F : 0.0F;
}

void KvUniClient::beginControlPass() ZUM_REALTIME {
  takeDueEvents();
  takeTempo();
}

void KvUniClient::takeTempo() ZUM_REALTIME {
  if (workingTempo == clock.tempoBpm) return;
  // A tempo that is not taken differs again in the next pass, and all of this is repeated.
  clock.setTempo(workingTempo);
  clock.notifyTempoListeners();
  recomputeEngine(true);
}

float KvUniClient::stepValue(std::int32_t step) ZUM_REALTIME { return stepTable.getValue(step, 0); }

void KvUniClient::modPageMoved(float position) ZUM_REALTIME { setParameter(165, position); }

}  // namespace zum
