#include "adaptor/vst3/processor.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

namespace zum::vst3 {
namespace {

void clear(float* channel, std::int32_t frames) ZUM_REALTIME {
  if (channel != nullptr) std::fill_n(channel, frames, 0.0F);
}

}  // namespace

bool Processor::setUp(const v3_process_setup& setup) {
  const bool isRate = HostSide::isRate(setup.sample_rate);
  if (host.isActive() || setup.symbolic_sample_size != V3_SAMPLE_32) return false;
  if (!isRate || setup.max_block_size < 1) return false;
  rate = setup.sample_rate;
  mostFrames = setup.max_block_size;
  return true;
}

void Processor::setActive(bool active) {
  if (host.isActive()) host.deactivate();
  if (!active) return;
  silence.assign(static_cast<std::size_t>(mostFrames), 0.0F);
  unheard.assign(static_cast<std::size_t>(mostFrames), 0.0F);
  values.forgetPoints();
  host.activate(rate, mostFrames);
}

Processor::Pair Processor::busOf(const v3_audio_bus_buffers* buses, std::int32_t count,
                                 std::int32_t index) ZUM_REALTIME {
  if (buses == nullptr || index >= count) return {};
  const v3_audio_bus_buffers& bus = buses[index];
  if (bus.channel_buffers_32 == nullptr || bus.num_channels < 1) return {};
  return {bus.channel_buffers_32[0], bus.num_channels > 1 ? bus.channel_buffers_32[1] : nullptr};
}

// What a host does not say goes on as it was: beats are counted meanwhile.
HostSide::Song Processor::songOf(const v3_process_context* context) ZUM_REALTIME {
  HostSide::Song song = host.song();
  if (context == nullptr) return song;
  const auto has = [&](std::uint32_t flag) ZUM_REALTIME { return (context->state & flag) != 0; };
  song.isPlaying = has(V3_PROCESS_CTX_PLAYING);
  if (has(V3_PROCESS_CTX_TEMPO_VALID) && std::isfinite(context->bpm) && context->bpm > 0.0) {
    song.tempo = context->bpm;
  }
  const double beats = context->project_time_quarters;
  if (has(V3_PROCESS_CTX_PROJECT_TIME_VALID) && std::isfinite(beats)) song.beats = beats;
  return song;
}

v3_result Processor::process(const v3_process_data& data) ZUM_REALTIME {
  if (data.symbolic_sample_size != V3_SAMPLE_32 || data.nframes < 0) return V3_INVALID_ARG;
  const Pair in = busOf(data.inputs, data.num_input_buses, 0);
  const Pair side = busOf(data.inputs, data.num_input_buses, 1);
  const Pair out = busOf(data.outputs, data.num_output_buses, 0);
  const bool hears = hearsSideChain.load(std::memory_order_relaxed) && side.isComplete();
  const bool isWhole = in.isComplete() && out.isComplete();
  std::int32_t frames = data.nframes;
  // what is missing has room for as many frames as were announced
  if (!host.isActive() || (!isWhole && frames > mostFrames)) {
    clear(out.left, frames), clear(out.right, frames);
    frames = 0;
  }
  const std::array<const float*, 2> inputs = {in.isComplete() ? in.left : silence.data(),
                                              in.isComplete() ? in.right : silence.data()};
  const std::array<const float*, 2> sideChain = {side.left, side.right};
  // both sides may write into one buffer that nobody reads
  const std::array<float*, 2> outputs = {out.left != nullptr ? out.left : unheard.data(),
                                         out.right != nullptr ? out.right : unheard.data()};
  const float* const* heard = host.heardSideChain(hears ? sideChain.data() : nullptr, frames);
  playBlock(data, {inputs.data(), heard, outputs.data(), frames});
  if (data.outputs != nullptr && data.num_output_buses > 0) {
    data.outputs[0].channel_silence_bitset = 0;
  }
  tellChanges(data);
  return V3_OK;
}

void Processor::playBlock(const v3_process_data& data, const HostSide::Buffers& buffers)
    ZUM_REALTIME {
  HostSide::Block block(host, buffers, songOf(data.ctx));
  BlockEvents events(data.input_params, data.input_events);
  for (BlockEvent event; events.next(event);) values.play(block, event);
}

void Processor::tellChanges(const v3_process_data& data) ZUM_REALTIME {
  std::uint64_t changes = host.takeChanges();
  if (changes == 0) return;
  std::uint64_t left = 0;
  v3_param_changes** const told = data.output_params;
  trusted([&] {  // the host's own routines, which it calls real-time safe
    for (; changes != 0; changes &= changes - 1) {
      const int position = std::countr_zero(changes);
      auto id = static_cast<v3_param_id>(faceTags()[static_cast<std::size_t>(position)]);
      std::int32_t index = 0;
      v3_param_value_queue** const queue =
          told != nullptr ? v3_cpp_obj(told)->add_param_data(told, &id, &index) : nullptr;
      const std::int32_t last = std::max(data.nframes - 1, 0);
      if (queue == nullptr ||
          v3_cpp_obj(queue)->add_point(queue, last, values.get(position), &index) != V3_OK) {
        left |= changes & (~changes + 1);
      }
    }
  });
  if (left != 0) untold |= left;
}

}  // namespace zum::vst3
