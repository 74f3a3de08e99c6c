// What a host and the plug-in file say to each other: tables of plain C routines, the only thing
// that crosses the border between the two. The file gives its table by _PI_GetRoutineDescriptor,
// the host gives its own with each process.
#pragma once

#include <cstdint>
#include <cstring>

namespace zum {

/// Four characters as a number, as hosts compare them: in memory they stand in their order.
inline std::int32_t identifier(const char (&text)[5]) {
  std::int32_t word = 0;
  std::memcpy(&word, text, sizeof word);
  return word;
}

/// Version of the interface; a file refuses any other.
inline constexpr std::int32_t kInterfaceVersion = 73;
/// Codes of stems.
inline constexpr std::int32_t kMonoStem = 0;
inline constexpr std::int32_t kStereoStem = 1;

/// A session record. The library's header comes first, the plug-in's bytes follow it.
struct SessionRecord {
  std::int32_t size;  // bytes of all of it, this word included
  std::int32_t header[13];
};
inline constexpr std::int32_t kSessionHeader = 56;  // bytes
static_assert(sizeof(SessionRecord) == kSessionHeader);

struct ViewRect {
  std::int16_t top, left, bottom, right;
};

/// Where a host shows a plug-in: its origin inside of the window, and that window.
struct ViewPort {
  std::int32_t originX, originY;
  std::uintptr_t nativeWindow;  // as the system names it, 0 for none
};

/// Given by a host with each process, and outlives it. Every routine gets `context`.
struct HostRoutines {
  void* context;
  // [any] the transport; positions in samples, 960000 ticks to the quarter note
  double (*tempo)(void* context);
  std::int32_t (*isRunning)(void* context);
  void (*meter)(void* context, std::int32_t* numerator, std::int32_t* denominator);
  std::int64_t (*realTimeSample)(void* context);
  std::int64_t (*timelineSample)(void* context);
  std::int64_t (*samplesToTicks)(void* context, std::int64_t samples);
  // [any] a control moved, or a hand is on it, by index
  void (*controlChanged)(void* context, std::int32_t index, std::int32_t value);
  void (*touched)(void* context, std::int32_t index);
  void (*released)(void* context, std::int32_t index);
};

struct GroupDescription {
  const char* manufacturer;
  std::int32_t manufacturerId;
  const char* product;  // forms of falling length, by line feeds
  std::int32_t version;
  std::int32_t category;
  std::int32_t types;
};

/// What the numbers mean to a host is its own affair; they are handed on.
struct TypeDescription {
  std::int32_t typeId;
  std::int32_t productId;
  const char* name;  // forms of falling length, by line feeds
  std::int32_t sizes[2];
  std::int32_t inputStem, outputStem, thirdStem;
  std::int32_t option;
  std::int32_t features[2];
};

struct ChunkDescription {
  std::int32_t id;
  const char* name;  // lives as long as the process
  std::int32_t size;
};

struct ProcessHandle;

/// Given by a plug-in file. Routines that can fail answer 0 for success.
struct PlugInRoutines {
  std::int32_t version;  // kInterfaceVersion

  // [main]
  void (*setSampleRate)(float rate);  // of processes that are made from now on
  void (*describeGroup)(GroupDescription* group);
  std::int32_t (*describeType)(std::int32_t index, TypeDescription* type);
  /// Ready to render; null when it cannot be made.
  ProcessHandle* (*createProcess)(std::int32_t type, const HostRoutines* host);
  void (*destroyProcess)(ProcessHandle* process);

  // [main] controls, by index; there is none at 0
  std::int32_t (*controlCount)(ProcessHandle* process);
  std::int32_t (*controlSteps)(ProcessHandle* process, std::int32_t index);  // -1 for continuous
  void (*controlName)(ProcessHandle* process, std::int32_t index, char* text, std::int32_t room);
  void (*valueToText)(ProcessHandle* process, std::int32_t index, std::int32_t value, char* text,
                      std::int32_t room);
  std::int32_t (*textToValue)(ProcessHandle* process, std::int32_t index, const char* text);
  std::int32_t (*masterBypass)(ProcessHandle* process);  // index of that control, 0 for none
  std::int32_t (*getControl)(ProcessHandle* process, std::int32_t index);
  void (*setControl)(ProcessHandle* process, std::int32_t index, std::int32_t value);

  // [main] session records
  std::int32_t (*describeChunkType)(ProcessHandle* process, std::int32_t index,
                                    ChunkDescription* type);
  std::int32_t (*reportChunkSize)(ProcessHandle* process, std::int32_t chunkId, std::int32_t* size);
  /// `room` bytes are there for the record.
  std::int32_t (*readChunk)(ProcessHandle* process, std::int32_t chunkId, SessionRecord* record,
                            std::int32_t room);
  std::int32_t (*writeChunk)(ProcessHandle* process, std::int32_t chunkId,
                             const SessionRecord* record, std::int32_t room);

  // [main] the view; a null port takes it away
  void (*viewRect)(ProcessHandle* process, ViewRect* rect);
  void (*setViewPort)(ProcessHandle* process, const ViewPort* port);
  void (*viewIdle)(ProcessHandle* process);

  const char* (*midiNodeName)(ProcessHandle* process);
  // [host] a short message; a flag of 0 means now
  void (*deliverMidi)(ProcessHandle* process, std::int32_t timestampFlag,
                      const unsigned char* message);
  // [audio]
  void (*render)(ProcessHandle* process, float** inputs, float** outputs, std::int32_t samples);
};

}  // namespace zum
