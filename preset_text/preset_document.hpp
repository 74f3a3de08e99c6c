// A preset taken apart into numbers and names: what stands between the words of its file, read and
// written here, and its text, read and written by preset_text.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/parameter_table.hpp"
#include "state/preset_format.hpp"
#include "state/table_xy.hpp"

namespace zum {

struct PresetDocument {
  float tempo = 120.0F;         // beats per minute, of the writer
  float sampleRate = 44100.0F;  // Hz, of the writer
  std::string name = "default";
  std::int32_t program = 0;  // position in the bank
  std::int32_t folder = 0;
  /// Raw values by row; nothing for the step table, and for what a file does not hold.
  std::array<std::optional<float>, kPresetRows> values;
  bool hasSteps = false;
  KvTableXY steps;
  std::array<std::vector<Binding>, preset::kControllers> controllers;
  std::vector<Binding> aftertouch;
  /// Says what a file made from this document will lack.
  std::vector<std::string> remarks;
};

/// Fills a fresh document from a whole file. At a fault the document is of no use. Throws Failure
/// when the memory does not suffice.
PresetFault readPresetDocument(KvChunk& chunk, PresetDocument& document);

/// Parameters that the document does not hold are written as the effect starts with them.
void writePresetDocument(const PresetDocument& document, KvChunk& chunk);

/// One line: why a file is no preset, and at which of its bytes that showed.
std::string describe(const PresetFault& fault);

}  // namespace zum
