// Life of the effect instance and the answers to its questions.
#include "apps/zum/effect_host.hpp"

#include <algorithm>
#include <bit>
#include <cstring>
#include <string>

#include "apps/zum/failure.hpp"
#include "core/event_inbox.hpp"

namespace zum {
namespace {

constexpr std::intptr_t kHostVersion = 2400;

std::intptr_t giveText(void* ptr, std::size_t room, const char* text) {
  if (ptr == nullptr) return 0;
  char* end = std::copy_n(text, std::min(std::strlen(text), room - 1), static_cast<char*>(ptr));
  *end = '\0';
  return 1;
}

}  // namespace

EffectHost::EffectHost(double sampleRate, int blockSize, double tempo, bool plays,
                       EditorFactory makeEditor)
    : framesPerBlock(blockSize), effect(createEffect(&EffectHost::answer, makeEditor)) {
  if (effect == nullptr || effect->magic != kEffectMagic) {
    throw Failure("the effect could not be made; close other programs to free memory");
  }
  time.sampleRate = sampleRate;
  time.tempo = tempo;
  time.timeSigNumerator = 4;
  time.timeSigDenominator = 4;
  time.flags = kVstTempoValid | kVstTimeSigValid;
  if (plays) time.flags |= kVstTransportPlaying | kVstPpqPosValid;
  effect->reservedForHost[0] = reinterpret_cast<std::intptr_t>(this);
  dispatch(effOpen);
  dispatch(effSetSampleRate, 0, static_cast<float>(sampleRate));
  dispatch(effSetBlockSize, blockSize);
  dispatch(effMainsChanged, 1);
}

EffectHost::~EffectHost() {
  dispatch(effMainsChanged, 0);
  dispatch(effClose);  // the effect deletes itself
}

// Hosts ask for the size first, to make a window around it.
bool EffectHost::openEditor() {
  ERect* size = nullptr;
  return dispatch(effEditGetRect, 0, 0.0F, &size) != 0 && dispatch(effEditOpen) != 0;
}

void EffectHost::send(std::span<const MidiMessage> messages, std::int64_t start) {
  if (messages.empty()) return;
  if (messages.size() > EventInbox::kRoom) {
    warn("at " + std::to_string(static_cast<double>(start) / time.sampleRate) +
         " s one block has " + std::to_string(messages.size()) +
         " MIDI messages; of those behind " + std::to_string(EventInbox::kRoom) +
         " the last value of each controller counts, and comes early; use a smaller --block");
  }
  VstMidiEvent blank{};
  blank.type = kVstMidiType;
  blank.byteSize = sizeof(VstMidiEvent);
  midi.assign(messages.size(), blank);
  sent.resize(sizeof(VstEvents) + messages.size() * sizeof(void*));
  auto* list = new (sent.data()) VstEvents{static_cast<std::int32_t>(messages.size()), 0, {}};
  VstEvent** addresses = list->events;
  for (std::size_t i = 0; i < messages.size(); ++i) {
    midi[i].deltaFrames = static_cast<std::int32_t>(messages[i].frame - start);
    std::copy(messages[i].bytes.begin(), messages[i].bytes.end(), midi[i].midiData);
    addresses[i] = reinterpret_cast<VstEvent*>(&midi[i]);
  }
  dispatch(effProcessEvents, 0, 0.0F, list);
}

void EffectHost::process(float** inputs, float** outputs, int frames) {
  effect->processReplacing(effect, inputs, outputs, frames);
  if ((time.flags & kVstTransportPlaying) == 0) return;
  time.samplePos += frames;
  time.ppqPos = time.samplePos / time.sampleRate * time.tempo / 60.0;
}

// The effect asks before it has a record and before the record knows this host: `caller` may be
// null, and so may the host in it.
std::intptr_t EffectHost::answer(AEffect* caller, std::int32_t opcode, std::int32_t /*index*/,
                                 std::intptr_t /*value*/, void* ptr, float /*opt*/) {
  auto* host = caller == nullptr ? nullptr : std::bit_cast<EffectHost*>(caller->reservedForHost[0]);
  switch (opcode) {
    case audioMasterVersion: return kHostVersion;
    case audioMasterGetTime:
      return host == nullptr ? 0 : reinterpret_cast<std::intptr_t>(&host->time);
    case audioMasterGetSampleRate:
      return host == nullptr ? 0 : static_cast<std::intptr_t>(host->time.sampleRate);
    case audioMasterGetBlockSize: return host == nullptr ? 0 : host->framesPerBlock;
    case audioMasterGetCurrentProcessLevel:
      return kVstProcessLevelRealtime;  // at the offline level the effect leaves the buffers alone
    case audioMasterGetVendorString: return giveText(ptr, kVstMaxVendorStrLen, "ZUM");
    case audioMasterGetProductString:
      return giveText(ptr, kVstMaxProductStrLen, "zum command line");
    case audioMasterGetVendorVersion: return 1;
    default: return 0;
  }
}

}  // namespace zum
