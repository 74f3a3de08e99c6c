// [audio] What a host sends along with a block, in the order of its frames: the points of every
// parameter's queue, and notes.
#pragma once

#include <travesty/audio_processor.h>

#include <array>
#include <cstdint>

#include "adaptor/vst3/ids.hpp"
#include "engine/realtime.hpp"

namespace zum::vst3 {

struct BlockEvent {
  std::int32_t frame = 0;                 // as the host says it: may lie outside of the block
  int position = -1;                      // of a parameter, or of none for a note
  double value = 0.0;                     // of a parameter, 0 to 1
  std::array<std::uint8_t, 3> message{};  // of a note
};

class BlockEvents {
 public:
  /// Either may be null.
  BlockEvents(v3_param_changes** changes, v3_event_list** events) ZUM_REALTIME;

  /// The next one; points come ahead of notes of the same frame. False at the end.
  bool next(BlockEvent& event) ZUM_REALTIME;

 private:
  /// The next point of a parameter, and where those behind it come from.
  struct Cursor {
    std::int32_t frame;
    std::int32_t queue;  // in the order of the host's
    std::int32_t point;
    std::int32_t points;
    v3_param_value_queue** from;
    int position;
    double value;
  };
  static bool isLater(const Cursor& a, const Cursor& b) ZUM_REALTIME {
    return a.frame != b.frame ? a.frame > b.frame : a.queue > b.queue;
  }
  static bool readPoint(Cursor& cursor) ZUM_REALTIME;
  bool readNote() ZUM_REALTIME;

  // A host has one queue for each parameter; what it sends beyond is dropped.
  std::array<Cursor, kParameters> heap;
  std::int32_t cursors = 0;

  v3_event_list** notes;
  std::int32_t nextNote = 0;
  std::int32_t noteCount = 0;
  bool hasNote = false;
  BlockEvent note;
};

}  // namespace zum::vst3
