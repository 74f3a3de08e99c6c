#include "state/preset_format.hpp"

#include <algorithm>

namespace zum {
namespace {

using namespace preset;

/// One walk over one chunk. Every step returns false at a fault, which `fault` then tells.
class Walk {
 public:
  Walk(KvChunk& walked, bool isFirstSlot, PresetVisitor& told) ZUM_REALTIME
      : chunk(walked),
        firstSlot(isFirstSlot),
        visitor(told) {}

  // The order of the words.
  PresetFault run() ZUM_REALTIME {
    if (prelude() && records() && (!firstSlot || map()) && name() && trailerVersion() &&
        (!firstSlot || (position() && aftertouch())) && table()) {
      text();
    }
    return fault;
  }

 private:
  bool fail(PresetFault::Kind kind, const char* why) ZUM_REALTIME {
    fault = {kind, start, why};
    return false;
  }
  bool damaged(const char* why) ZUM_REALTIME { return fail(PresetFault::damaged, why); }
  /// Takes one word of the body and remembers its place for reports.
  bool take(std::int32_t& word, const char* what) ZUM_REALTIME {
    start = chunk.cursor;
    chunk.getInt(word);
    return !chunk.overrun() || damaged(what);
  }
  bool takeBinding(std::int32_t tag, Binding& binding) ZUM_REALTIME {
    // Cut to 16 bits, such a tag might become an end mark.
    if (tag != static_cast<std::int16_t>(tag)) return damaged("a binding's tag is out of range");
    std::int32_t mode = 0;
    if (layout >= kFirstModeLayout && !take(mode, "breaks off in a binding")) return false;
    binding = {static_cast<std::int16_t>(tag), static_cast<std::int16_t>(mode)};
    return true;
  }

  bool prelude() ZUM_REALTIME {
    if (!chunk.readHeader()) return fail(PresetFault::wrongMagic, "another magic number");
    if (chunk.totalWords < 0 || !chunk.limit(static_cast<std::uint32_t>(chunk.totalWords))) {
      return damaged("states more words than there are");
    }
    std::int32_t word = 0;
    if (!take(word, "breaks off behind its header") ||
        !take(word, "breaks off behind its header")) {
      return false;
    }
    if (word != kProductFormat) return fail(PresetFault::wrongProduct, "another product format");
    if (!take(layout, "breaks off behind its header")) return false;
    if (layout < 1) return fail(PresetFault::wrongLayout, "no layout version");
    if (layout >= kFirstReservedLayout) {
      if (!take(word, "breaks off behind its header")) return false;
      if (word != 0) return fail(PresetFault::wrongLayout, "the reserved word is not 0");
    }
    visitor.header(chunk, layout);
    return true;
  }

  bool records() ZUM_REALTIME {
    for (;;) {
      std::int32_t id = 0;
      std::int32_t size = 0;
      if (!take(id, "breaks off between the parameters")) return false;
      if (id == kEndOfRecords) return true;
      if (!take(size, "breaks off in a parameter")) return false;
      if (size < 0 || static_cast<std::uint32_t>(size) > chunk.wordsLeft()) {
        return damaged("a parameter states more words than there are");
      }
      const std::uint32_t end = chunk.cursor + static_cast<std::uint32_t>(size);
      if (const char* why = visitor.record(id, size, chunk)) return damaged(why);
      if (chunk.overrun() || chunk.cursor != end) {
        return damaged("a parameter's words are not as many as it states");
      }
    }
  }

  bool map() ZUM_REALTIME {
    visitor.mapBegins();
    const bool whole = controllers();
    visitor.mapEnds();
    return whole;
  }

  bool controllers() ZUM_REALTIME {
    for (;;) {
      std::int32_t number = 0;
      if (!take(number, "breaks off between the controllers")) return false;
      if (number == kEndOfMap) return true;
      if (number < 0 || number >= kControllers) return damaged("there is no such controller");
      for (;;) {
        std::int32_t tag = 0;
        Binding binding;
        if (!take(tag, "breaks off in a controller")) return false;
        if (tag == kEndOfController) break;
        if (!takeBinding(tag, binding)) return false;
        visitor.controller(number, binding);
      }
    }
  }

  bool name() ZUM_REALTIME {
    std::int32_t count = 0;  // not used: there is one name, whatever it says
    if (firstSlot && !take(count, "breaks off ahead of the name")) return false;
    start = chunk.cursor;
    const std::string_view text = chunk.getText();
    if (chunk.overrun()) return damaged("the name is longer than what is left");
    if (!text.empty() && text.front() != '\0') visitor.name(text);
    return true;
  }

  bool trailerVersion() ZUM_REALTIME { return take(trailer, "breaks off behind the name"); }

  bool position() ZUM_REALTIME {
    PresetPosition at;
    if (trailer >= kFirstPositionTrailer && trailer <= kTrailer) {
      if (!take(at.program, "breaks off in the program position")) return false;
      at.hasProgram = true;
      if (trailer >= kFirstFolderTrailer) {
        if (!take(at.folder, "breaks off in the program position")) return false;
        at.hasFolder = true;
      }
    }
    visitor.position(trailer, at);
    return true;
  }

  bool aftertouch() ZUM_REALTIME {
    if (trailer < kFirstAftertouchTrailer) return true;
    visitor.aftertouchBegins();
    const bool whole = aftertouchBindings();
    visitor.aftertouchEnds();
    return whole;
  }

  bool aftertouchBindings() ZUM_REALTIME {
    std::int32_t count = 0;
    if (!take(count, "breaks off ahead of the aftertouch")) return false;
    if (count < 0 || static_cast<std::uint32_t>(count) > chunk.wordsLeft()) {
      return damaged("aftertouch states more bindings than there are words");
    }
    for (std::int32_t i = 0; i < count; ++i) {
      std::int32_t tag = 0;
      Binding binding;
      if (!take(tag, "breaks off in the aftertouch") || !takeBinding(tag, binding)) return false;
      visitor.aftertouch(binding);
    }
    std::int32_t end = 0;
    if (!take(end, "breaks off behind the aftertouch")) return false;
    return end == kEndOfAftertouch || damaged("aftertouch does not end where it should");
  }

  bool table() ZUM_REALTIME {
    if (trailer < kFirstTableTrailer) return true;
    std::int32_t rows = 0;
    std::int32_t columns = 0;
    if (!take(rows, "breaks off in the trailer") || !take(columns, "breaks off in the trailer")) {
      return false;
    }
    const std::int64_t cells = std::int64_t{rows} * columns;
    if (rows < 0 || columns < 0 || cells > std::int64_t{chunk.wordsLeft()}) {
      return damaged("the trailer states more cells than there are words");
    }
    chunk.skip(static_cast<std::uint32_t>(cells));
    return true;
  }

  bool text() ZUM_REALTIME {
    if (trailer < kFirstTextTrailer) return true;
    start = chunk.cursor;
    chunk.getText();
    return !chunk.overrun() || damaged("the last text is longer than what is left");
  }

  KvChunk& chunk;
  const bool firstSlot;
  PresetVisitor& visitor;
  PresetFault fault;
  std::uint32_t start = 0;  // of what was taken last
  std::int32_t layout = 0;
  std::int32_t trailer = 0;
};

void putBindings(KvChunk& chunk, const std::vector<Binding>& bindings) {
  for (const Binding& binding : bindings) {
    chunk.putInt(binding.tag);
    chunk.putInt(binding.mode);
  }
}

void putRecords(KvChunk& chunk, const PresetSource& source) {
  for (int record = 0; record < source.recordCount(); ++record) {
    KvChunk counted;
    source.writeRecord(record, counted);
    chunk.putInt(source.recordId(record));
    chunk.putInt(static_cast<std::int32_t>(counted.cursor));
    source.writeRecord(record, chunk);
  }
  chunk.putInt(kEndOfRecords);
}

void putMap(KvChunk& chunk, const PresetSource& source) {
  for (int controller = 0; controller < kControllers; ++controller) {
    const std::vector<Binding> bindings = source.bindings(controller);
    if (bindings.empty()) continue;
    chunk.putInt(controller);
    putBindings(chunk, bindings);
    chunk.putInt(kEndOfController);
  }
  chunk.putInt(kEndOfMap);
}

void putAftertouch(KvChunk& chunk, const PresetSource& source) {
  const std::vector<Binding> bindings = source.aftertouchBindings();
  chunk.putInt(static_cast<std::int32_t>(bindings.size()));
  putBindings(chunk, bindings);
  chunk.putInt(kEndOfAftertouch);
}

void put(KvChunk& chunk, bool firstSlot, const PresetSource& source) {
  chunk.writeHeader();
  chunk.putInt(KvChunk::kHeaderWords);
  chunk.putInt(kProductFormat);
  chunk.putInt(kLayout);
  chunk.putInt(0);
  putRecords(chunk, source);
  if (firstSlot) {
    putMap(chunk, source);
    chunk.putInt(1);
  }
  chunk.putString(source.name().c_str());
  chunk.putInt(kTrailer);
  if (firstSlot) {
    const PresetPosition position = source.position();
    chunk.putInt(position.program);
    chunk.putInt(position.folder);
    putAftertouch(chunk, source);
  }
  chunk.putInt(0);  // rows
  chunk.putInt(0);  // columns
  chunk.putString(kTrailerText);
}

}  // namespace

bool writePreset(KvChunk& chunk, int slot, const PresetSource& source) {
  chunk.reset();
  put(chunk, slot == 0, source);
  const std::uint32_t counted = chunk.cursor;
  chunk.countOnly = false;
  chunk.allocate(counted);
  put(chunk, slot == 0, source);
  return chunk.cursor == counted && !chunk.overrun();
}

PresetFault walkPreset(KvChunk& chunk, int slot, PresetVisitor& visitor) ZUM_REALTIME {
  return Walk(chunk, slot == 0, visitor).run();
}

}  // namespace zum
