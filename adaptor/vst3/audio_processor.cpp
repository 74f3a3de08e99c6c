// The processor's table: arrangements, setup and the block call.
#include <travesty/audio_processor.h>

#include <algorithm>
#include <span>

#include "adaptor/vst3/effect.hpp"

#include <travesty/component.h>

namespace zum::vst3 {
namespace {

constexpr v3_speaker_arrangement kStereo = V3_SPEAKER_L | V3_SPEAKER_R;

bool areStereo(const v3_speaker_arrangement* given, std::int32_t count, std::int32_t most) {
  if (given == nullptr || count < 1 || count > most) return false;
  const std::span all(given, static_cast<std::size_t>(count));
  return std::ranges::all_of(all, [](v3_speaker_arrangement one) { return one == kStereo; });
}

v3_result process(void* self, v3_process_data* data) ZUM_REALTIME {
  if (data == nullptr) return V3_INVALID_ARG;
  return static_cast<Interface<Effect>*>(self)->object->processor.process(*data);
}

}  // namespace

constexpr v3_audio_processor_cpp kAudioProcessor = {
    unknownOf<Effect>(),
    {
        .set_bus_arrangements = [](void*, v3_speaker_arrangement* inputs, std::int32_t inputCount,
                                   v3_speaker_arrangement* outputs,
                                   std::int32_t outputCount) -> v3_result {
          return resultOf(areStereo(inputs, inputCount, 2) && areStereo(outputs, outputCount, 1));
        },
        .get_bus_arrangement = [](void*, std::int32_t direction, std::int32_t index,
                                  v3_speaker_arrangement* arrangement) -> v3_result {
          const std::int32_t count = direction == V3_INPUT ? 2 : direction == V3_OUTPUT ? 1 : 0;
          if (index < 0 || index >= count || arrangement == nullptr) return V3_INVALID_ARG;
          *arrangement = kStereo;
          return V3_OK;
        },
        .can_process_sample_size = [](void*, std::int32_t size) -> v3_result {
          return resultOf(size == V3_SAMPLE_32);
        },
        .get_latency_samples = [](void*) -> std::uint32_t { return 0; },
        .setup_processing = [](void* self, v3_process_setup* setup) -> v3_result {
          if (setup == nullptr) return V3_INVALID_ARG;
          return resultOf(objectOf<Effect>(self).processor.setUp(*setup));
        },
        .set_processing = [](void*, v3_bool) -> v3_result { return V3_OK; },
        .process = process,
        .get_tail_samples = [](void*) -> std::uint32_t { return 0; },
    },
};

constexpr v3_process_context_requirements_cpp kContextRequirements = {
    unknownOf<Effect>(),
    {.get_process_context_requirements = [](void*) -> std::uint32_t {
      return V3_PROCESS_CTX_NEED_PROJECT_TIME | V3_PROCESS_CTX_NEED_TEMPO |
             V3_PROCESS_CTX_NEED_TRANSPORT_STATE;
    }},
};

}  // namespace zum::vst3
