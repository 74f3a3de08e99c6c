// The block call and its events.

#include <algorithm>
#include <bit>
#include <cmath>

#include "adaptor/clap/events.hpp"
#include "adaptor/clap/face.hpp"

namespace zum::clap {
namespace {

bool isStereo(const clap_audio_buffer_t& buffer) ZUM_REALTIME {
  return buffer.channel_count >= 2 && buffer.data32 != nullptr && buffer.data32[0] != nullptr &&
         buffer.data32[1] != nullptr;
}

/// Where values alone can be taken.
struct ValuesAlone {
  HostSide& effect;
  void setPlain(std::int32_t /*frame*/, int tag, float plain) ZUM_REALTIME {
    effect.setPlain(tag, plain);
  }
  void midi(std::int32_t /*frame*/, const std::uint8_t* /*bytes*/) ZUM_REALTIME {}
  void moveSong(std::int32_t /*frame*/, const clap_event_transport_t& /*to*/) ZUM_REALTIME {}
};

}  // namespace

clap_process_status Face::process(const clap_process_t& block) ZUM_REALTIME {
  tellEdits(block.out_events);
  const bool isPlayed = effect.isActive() && play(block);
  if (!isPlayed) {
    ValuesAlone values{effect};
    deliver(block.in_events, values);
  }
  tellChanges(block.out_events, std::max(block.frames_count, 1U) - 1U);
  if (takePresets()) askForRescan();
  return isPlayed ? CLAP_PROCESS_CONTINUE : CLAP_PROCESS_ERROR;
}

void Face::flush(const clap_input_events_t* in, const clap_output_events_t* out) ZUM_REALTIME {
  tellEdits(out);
  ValuesAlone values{effect};
  deliver(in, values);
  tellChanges(out, 0);
  if (takePresets()) askForRescan();
}

bool Face::play(const clap_process_t& given) ZUM_REALTIME {
  if (given.audio_inputs == nullptr || given.audio_inputs_count == 0) return false;
  if (given.audio_outputs == nullptr || given.audio_outputs_count == 0) return false;
  if (!isStereo(given.audio_inputs[0]) || !isStereo(given.audio_outputs[0])) return false;
  if (given.frames_count > INT32_MAX) return false;

  struct Sink {
    Face& face;
    HostSide::Block block;
    void setPlain(std::int32_t frame, int tag, float plain) ZUM_REALTIME {
      block.setPlain(frame, tag, plain);
    }
    void midi(std::int32_t frame, const std::uint8_t* bytes) ZUM_REALTIME {
      block.midi(frame, bytes);
    }
    void moveSong(std::int32_t frame, const clap_event_transport_t& to) ZUM_REALTIME {
      block.playTo(frame);
      block.moveSong(frame, face.songOf(&to));
    }
  };
  const auto frames = static_cast<std::int32_t>(given.frames_count);
  const bool hasSideChain = given.audio_inputs_count > 1 && isStereo(given.audio_inputs[1]);
  const HostSide::Buffers buffers{
      given.audio_inputs[0].data32,
      effect.heardSideChain(hasSideChain ? given.audio_inputs[1].data32 : nullptr, frames),
      given.audio_outputs[0].data32, frames};
  Sink sink{*this, {effect, buffers, songOf(given.transport)}};
  deliver(given.in_events, sink);
  given.audio_outputs[0].constant_mask = 0;
  return true;
}

// What the host does not tell stays as it was, and beats go on by themselves.
HostSide::Song Face::songOf(const clap_event_transport_t* transport) ZUM_REALTIME {
  HostSide::Song song = effect.song();
  if (transport == nullptr) {
    song.isPlaying = false;
    return song;
  }
  const auto tells = [flags = transport->flags](std::uint32_t what)
                         ZUM_REALTIME { return (flags & what) != 0; };
  song.isPlaying = tells(CLAP_TRANSPORT_IS_PLAYING);
  if (tells(CLAP_TRANSPORT_HAS_TEMPO) && std::isfinite(transport->tempo)) {
    song.tempo = transport->tempo;
  }
  if (tells(CLAP_TRANSPORT_HAS_BEATS_TIMELINE)) {
    song.beats = static_cast<double>(transport->song_pos_beats) / CLAP_BEATTIME_FACTOR;
  } else if (tells(CLAP_TRANSPORT_HAS_SECONDS_TIMELINE)) {
    const double seconds = static_cast<double>(transport->song_pos_seconds) / CLAP_SECTIME_FACTOR;
    song.beats = seconds * song.tempo / 60.0;
  }
  return song;
}

// ---- towards the host

void Face::tellEdits(const clap_output_events_t* out) ZUM_REALTIME {
  if (out != nullptr) edits.tell(*out);
}

void Face::tellChanges(const clap_output_events_t* out, std::uint32_t frame) ZUM_REALTIME {
  untold |= effect.takeChanges();
  if (out == nullptr) return;
  for (; untold != 0; untold &= untold - 1) {
    const int tag = faceTags()[static_cast<std::size_t>(std::countr_zero(untold))];
    const auto plain = static_cast<double>(effect.plainValue(tag));
    // what MIDI or a preset did is recorded as such, if at all
    if (!pushValue(*out, frame, tag, plain, CLAP_EVENT_DONT_RECORD)) return;
  }
}

bool Face::hasUntold() ZUM_REALTIME {
  untold |= effect.takeChanges();
  return untold != 0 || edits.hasUntold();
}

}  // namespace zum::clap
