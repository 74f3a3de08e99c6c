#include "apps/zum/effect_host.hpp"

#include <new>
#include <string>

#include "apps/zum/failure.hpp"
#include "core/event_inbox.hpp"

namespace zum {

EffectHost::EffectHost(double sampleRate, int blockSize, double tempo, bool plays) try
    : host(std::make_unique<HostSide>(nullptr, nullptr, "zum command line")),
      rate(sampleRate),
      clock(sampleRate, tempo) {
  host->song() = {.isPlaying = plays, .tempo = tempo};
  host->activate(sampleRate, blockSize);
} catch (const std::bad_alloc&) {
  throw Failure("the effect could not be made; close other programs to free memory");
}

void EffectHost::send(std::span<const MidiMessage> messages, std::int64_t start) {
  if (messages.size() > EventInbox::kRoom) {
    warn("at " + std::to_string(static_cast<double>(start) / rate) + " s one block has " +
         std::to_string(messages.size()) + " MIDI messages; of those behind " +
         std::to_string(EventInbox::kRoom) +
         " the last value of each controller counts, and comes early; use a smaller --block");
  }
  for (const MidiMessage& message : messages) {
    host->receiveMidi(static_cast<std::int32_t>(message.frame - start), message.bytes.data());
  }
}

void EffectHost::process(const float* const* inputs, const float* const* sideChain,
                         float* const* outputs, int frames) {
  host->client().process(inputs, sideChain, outputs, frames);
  HostSide::Song& song = host->song();
  if (!song.isPlaying) return;
  clock.advance(frames);
  song.beats = clock.beats();
}

}  // namespace zum
