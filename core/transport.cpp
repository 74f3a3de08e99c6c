#include "core/transport.hpp"

#include <cstring>

#include "core/plugin_base.hpp"

namespace zum {

void Transport::setHost(const char* vendor, const char* product) {
  hostFlags.isFxpansion = std::strcmp(vendor, "FXpansion") == 0;
  hostFlags.isOwn = std::strcmp(vendor, kVendor) == 0;
  hostFlags.isAcid = std::strcmp(product, "Sony ACID Pro") == 0;
}

// Hosts mark position and tempo as valid or not, and many forget to: the record is trusted.
void Transport::read(const VstTimeInfo* time) ZUM_REALTIME {
  workingTempo = clock.tempoBpm;
  if (time == nullptr) return;
  workingTempo =
      time->tempo < KvSystemInfo::kLowestTempo ? KvSystemInfo::kLowestTempo : time->tempo;
  const bool playing = (time->flags & kVstTransportPlaying) != 0 || hostFlags.isAcid;
  const bool running = playing && time->ppqPos >= 0.0;  // a pre-roll counts as stopped
  clock.transportPpqWide = running ? time->ppqPos : 0.0;
  clock.transportPpq = static_cast<float>(clock.transportPpqWide);
  clock.transportRunning = running ? 1.0F : 0.0F;
}

// A tempo that the timing block refuses differs again in the next pass, and all of this is
// repeated.
bool Transport::takeTempo() ZUM_REALTIME {
  if (workingTempo == clock.tempoBpm) return false;
  clock.setTempo(workingTempo);
  clock.notifyTempoListeners();
  return true;
}

}  // namespace zum
