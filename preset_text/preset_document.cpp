#include "preset_text/preset_document.hpp"

#include <string_view>

#include "preset_text/failure.hpp"
#include "state/library_record.hpp"

namespace zum {
namespace {

const ParameterRow& rowAt(int row) { return parameterRows()[static_cast<std::size_t>(row)]; }

/// Where the parts of a preset lie. A walk may not ask for memory: there is room ahead of it for
/// everything that the words can hold.
class PresetPlaces final : public PresetVisitor {
 public:
  struct Record {
    std::int32_t id;
    std::int32_t size;   // words
    std::uint32_t word;  // the first one
  };
  struct Learned {
    int controller;
    Binding binding;
  };

  explicit PresetPlaces(std::size_t words) {
    records.reserve(words / 2);
    learned.reserve(words);
    pressed.reserve(words);
  }

  void header(const KvChunk& chunk, std::int32_t version) ZUM_REALTIME override {
    library = chunk.version;
    layout = version;
    tempo = chunk.tempo;
    sampleRate = chunk.sampleRate;
  }
  const char* record(std::int32_t id, std::int32_t size, KvChunk& chunk) ZUM_REALTIME override {
    trusted([&] { records.push_back({id, size, chunk.cursor}); });
    chunk.skip(static_cast<std::uint32_t>(size));
    return nullptr;
  }
  void controller(int number, Binding binding) ZUM_REALTIME override {
    trusted([&] { learned.push_back({number, binding}); });
  }
  void name(std::string_view text) ZUM_REALTIME override { title = text; }
  void position(std::int32_t version, const PresetPosition& at) ZUM_REALTIME override {
    trailer = version;
    place = at;
  }
  void aftertouch(Binding binding) ZUM_REALTIME override {
    trusted([&] { pressed.push_back(binding); });
  }

  std::int32_t library = 0;
  std::int32_t layout = 0;
  std::int32_t trailer = 0;
  float tempo = 0.0F;
  float sampleRate = 0.0F;
  std::vector<Record> records;
  std::vector<Learned> learned;
  std::string_view title;
  PresetPosition place;
  std::vector<Binding> pressed;
};

std::string remarkOn(std::int32_t id, const std::string& what) {
  const int row = rowOfId(id);
  const std::string name = row < 0 ? "" : std::string(" (") + rowAt(row).name + ')';
  return "parameter " + std::to_string(id) + name + ": " + what;
}

void remarkOnVersions(const PresetPlaces& places, PresetDocument& document) {
  const auto remark = [&](const char* what, std::int32_t is, std::int32_t latest) {
    if (is != latest) document.remarks.push_back(what + (' ' + std::to_string(is)));
  };
  remark("written by library version", places.library, libraryRecord().version);
  remark("layout version", places.layout, preset::kLayout);
  remark("trailer version", places.trailer, preset::kTrailer);
}

// False when its words do not fit together.
bool readSteps(KvChunk& chunk, std::int32_t size, PresetDocument& document) {
  const std::uint32_t end = chunk.cursor + static_cast<std::uint32_t>(size);
  if (!document.steps.reserve(static_cast<std::size_t>(size))) {
    throw Failure("the memory does not suffice for the step table; close other programs");
  }
  document.hasSteps = document.steps.readChunk(&chunk, false) != 0;
  if (!document.hasSteps) document.remarks.emplace_back("the step table is of an unused old form");
  return !chunk.overrun() && chunk.cursor == end;
}

PresetFault readRecord(const PresetPlaces::Record& record, KvChunk& chunk,
                       PresetDocument& document) {
  const auto fault = [&](const char* why) {
    return PresetFault{PresetFault::damaged, record.word, why};
  };
  const int row = rowOfId(record.id);
  if (row < 0) {
    document.remarks.push_back(
        remarkOn(record.id, "unknown, " + std::to_string(record.size) + " words dropped"));
    return {};
  }
  chunk.cursor = record.word;
  if (rowAt(row).rule == Rule::table) {
    const bool whole = readSteps(chunk, record.size, document);
    return whole ? PresetFault{} : fault("the step table does not fit together");
  }
  if (record.size < 1) return fault("a parameter has no value");
  document.values[static_cast<std::size_t>(row)] = chunk.getFloat();
  if (record.size > 1) {
    document.remarks.push_back(
        remarkOn(record.id, std::to_string(record.size - 1) + " words behind its value dropped"));
  }
  return {};
}

class DocumentSource final : public PresetSource {
 public:
  explicit DocumentSource(const PresetDocument& written) : document(written) {}

  int recordCount() const override { return kPresetRows; }
  std::int32_t recordId(int record) const override { return rowAt(record).id; }
  void writeRecord(int record, KvChunk& chunk) const override {
    if (rowAt(record).rule == Rule::table) {
      document.steps.writeChunk(&chunk);
    } else {
      const auto& value = document.values[static_cast<std::size_t>(record)];
      chunk.putFloat(value.value_or(rowAt(record).initial));
    }
  }
  std::vector<Binding> bindings(int controller) const override {
    return document.controllers[static_cast<std::size_t>(controller)];
  }
  std::string name() const override { return document.name; }
  PresetPosition position() const override {
    return {.program = document.program, .folder = document.folder};
  }
  std::vector<Binding> aftertouchBindings() const override { return document.aftertouch; }

 private:
  const PresetDocument& document;
};

}  // namespace

PresetFault readPresetDocument(KvChunk& chunk, PresetDocument& document) {
  PresetPlaces places(chunk.dataWords());
  if (const PresetFault fault = walkPreset(chunk, 0, places)) return fault;
  remarkOnVersions(places, document);
  document.tempo = places.tempo;
  document.sampleRate = places.sampleRate;
  for (const auto& record : places.records) {
    if (const PresetFault fault = readRecord(record, chunk, document)) return fault;
  }
  for (const auto& [controller, binding] : places.learned) {
    document.controllers[static_cast<std::size_t>(controller)].push_back(binding);
  }
  document.aftertouch = places.pressed;
  document.name = places.title;
  document.program = places.place.program;
  document.folder = places.place.folder;
  return {};
}

void writePresetDocument(const PresetDocument& document, KvChunk& chunk) {
  chunk.tempo = document.tempo;
  chunk.sampleRate = document.sampleRate;
  writePreset(chunk, 0, DocumentSource(document));
}

std::string describe(const PresetFault& fault) {
  return std::string(fault.why) + " (byte " + std::to_string(std::size_t{4} * fault.word) + ')';
}

}  // namespace zum
