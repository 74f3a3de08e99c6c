// A row of numbers that the window edits and a chunk carries: what all tables share.
#pragma once

#include "engine/realtime.hpp"
#include "state/chunkable.hpp"
#include "state/shared_text.hpp"

namespace zum {

/// Objects that can go back to how they were made.
class KvInitInterface {
 public:
  KvInitInterface() = default;
  KvInitInterface(const KvInitInterface&) = delete;
  KvInitInterface& operator=(const KvInitInterface&) = delete;
  virtual ~KvInitInterface() = default;
  virtual void init() = 0;
};

class KvTable : public KvChunkableClass {
 public:
  // Bits of the flags word.
  static constexpr std::uint32_t kEditable = 1U << 17U;
  static constexpr std::uint32_t kShowsPlayPosition = 1U << 18U;

  KvTable() : KvChunkableClass(kTable) {}

  virtual std::int32_t size() const ZUM_REALTIME = 0;
  /// False when the memory does not suffice; then nothing changes.
  virtual bool resize(std::int32_t count) ZUM_REALTIME = 0;
  virtual void setValue(std::int32_t index, float value) ZUM_REALTIME = 0;
  /// As setValue, with the index truncated from `position`.
  virtual void setPoint(float position, float value) ZUM_REALTIME = 0;

  float rangeExtra = 0.0F;  // carried by chunks, read by nothing
  float minValue = 0.0F;
  float maxValue = 1.0F;
  std::uint32_t flags = kEditable | kShowsPlayPosition;
  SharedText<256> name{"Default"};

 protected:
  /// The three floats that every form of a table's chunk holds ahead of its sizes.
  struct Range {
    float extra;
    float highest;
    float lowest;
  };
  static Range readRange(KvChunk& chunk) ZUM_REALTIME;
  void takeRange(const Range& range) ZUM_REALTIME;
  /// The plain form: range, an optional form number, count, values. Not 0 when taken.
  std::int32_t readPlainForm(KvChunk& chunk, bool discard) ZUM_REALTIME;
  /// An older mark that introduces a form number ahead of a count.
  static constexpr std::int32_t kFormMark = -3456378;
};

}  // namespace zum
