// The one form of a state: preset files, a host's saved state, the revert point and the programs in
// memory are the same words. Read by walkPreset(), written by writePreset().
//
//   word 0...4   header of a chunk
//   word 5       cursor at this point, dropped
//   word 6       product format, 1
//   word 7       layout version: 3, older ones 1 and 2
//   word 8       reserved, 0; from layout 2 on
//   records      id, size in words, that many words; until an id of -1
//   * map        controller 0..127, then a binding's fields each (one field below layout 3) until
//                -2; until a controller of -3
//   * names      1
//   name         chunk string
//   trailer      version of what follows: 16, older ones less
//   * program    from 10 on, up to 16; the folder behind it from 11 on
//   * aftertouch from 14 on: count, bindings, -4
//   table        from 15 on: rows, columns and their floats, dropped
//   text         from 16 on: chunk string, dropped
//
// What has a star stands in the first slot's presets only.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "state/binding.hpp"
#include "state/chunk.hpp"

namespace zum {

namespace preset {
inline constexpr std::int32_t kProductFormat = 1;
inline constexpr std::int32_t kLayout = 3;
inline constexpr std::int32_t kFirstReservedLayout = 2;
inline constexpr std::int32_t kFirstModeLayout = 3;
inline constexpr std::int32_t kTrailer = 16;
inline constexpr std::int32_t kFirstPositionTrailer = 10;
inline constexpr std::int32_t kFirstFolderTrailer = 11;
inline constexpr std::int32_t kFirstAppliedTrailer = 13;
inline constexpr std::int32_t kFirstAftertouchTrailer = 14;
inline constexpr std::int32_t kFirstTableTrailer = 15;
inline constexpr std::int32_t kFirstTextTrailer = 16;
inline constexpr std::int32_t kEndOfRecords = -1;
inline constexpr std::int32_t kEndOfController = -2;
inline constexpr std::int32_t kEndOfMap = -3;
inline constexpr std::int32_t kEndOfAftertouch = -4;
inline constexpr int kControllers = 128;
inline constexpr const char* kExtension = "kvz";
inline constexpr const char* kTrailerText = "Host";
}  // namespace preset

/// Why a chunk is no preset, and the word at which that showed.
struct PresetFault {
  enum Kind : std::uint8_t {
    none,
    wrongMagic,    // no chunk of this library
    wrongProduct,  // of another product
    wrongLayout,   // of an unknown version
    damaged,       // does not fit together, or breaks off
  };
  Kind kind = none;
  std::uint32_t word = 0;
  const char* why = "";  // of a damaged one, for reports

  explicit operator bool() const ZUM_REALTIME { return kind != none; }
};

/// Where the preset stood in the bank.
struct PresetPosition {
  std::int32_t program = 0;
  std::int32_t folder = 0;
  bool hasProgram = false;
  bool hasFolder = false;
};

/// Is told of a preset's parts in their order. The walk has checked sizes, marks and ends, and
/// never reads past the end.
class PresetVisitor {
 public:
  PresetVisitor() = default;
  PresetVisitor(const PresetVisitor&) = delete;
  PresetVisitor& operator=(const PresetVisitor&) = delete;
  virtual ~PresetVisitor() = default;

  virtual void header(const KvChunk& /*chunk*/, std::int32_t /*layout*/) ZUM_REALTIME {}
  /// Reads the `size` words of the record, which are all in the buffer. Returns null, or what is
  /// wrong with them.
  virtual const char* record(std::int32_t id, std::int32_t size, KvChunk& chunk) ZUM_REALTIME = 0;
  virtual void mapBegins() ZUM_REALTIME {}
  virtual void controller(int number, Binding binding) ZUM_REALTIME = 0;
  virtual void mapEnds() ZUM_REALTIME {}
  /// Not called for an empty name, nor for one that starts with a zero byte.
  virtual void name(std::string_view text) ZUM_REALTIME = 0;
  virtual void position(std::int32_t trailer, const PresetPosition& position) ZUM_REALTIME = 0;
  virtual void aftertouchBegins() ZUM_REALTIME {}
  virtual void aftertouch(Binding binding) ZUM_REALTIME = 0;
  virtual void aftertouchEnds() ZUM_REALTIME {}
};

/// [any] Leads `visitor` through a preset of slot `slot` from its first word. The words that the
/// header states are the ones that count, as far as the buffer has them. Stops at the first fault.
PresetFault walkPreset(KvChunk& chunk, int slot, PresetVisitor& visitor) ZUM_REALTIME;

/// What a preset is written from.
class PresetSource {
 public:
  PresetSource() = default;
  PresetSource(const PresetSource&) = delete;
  PresetSource& operator=(const PresetSource&) = delete;
  virtual ~PresetSource() = default;

  virtual int recordCount() const = 0;
  virtual std::int32_t recordId(int record) const = 0;
  /// The record's data words alone.
  virtual void writeRecord(int record, KvChunk& chunk) const = 0;
  virtual std::vector<Binding> bindings(int controller) const = 0;
  virtual std::string name() const = 0;  // not empty
  virtual PresetPosition position() const = 0;
  virtual std::vector<Binding> aftertouchBindings() const = 0;
};

/// [main] Fills `chunk`, whose tempo and sample rate are set, with a preset of the latest versions.
/// False when the source changed in between: then the words do not fit together.
bool writePreset(KvChunk& chunk, int slot, const PresetSource& source);

}  // namespace zum
