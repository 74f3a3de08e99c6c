// The text form of a preset, as TOML: printed for reading and editing, and read back. Used by the
// presets command and by the build of the factory presets.
//
//   name, tempo, sample-rate, program, folder     of the header; name is the file's without it
//   [parameters]  NAME = value, raw; see zum parameters
//   [steps]       name, range = [extra, highest, lowest], pages = [[step, ...], ...]
//   [[binding]]   controller = 0...127, parameter = "NAME" or tag, mode
//   [[aftertouch]] parameter, mode
//
// All of it may be left out. A number that no decimal stands for is a text of its word in hex, and
// a byte of a name that is no UTF-8 is the character \uF7 with its two digits.
#pragma once

#include <filesystem>
#include <string>

#include "apps/zum/preset_document.hpp"

namespace zum {

/// What readPresetText reads back word for word, but for a name that is missing.
std::string presetText(const PresetDocument& document);

/// Fills a fresh document. Throws Failure with file and line.
void readPresetText(const std::filesystem::path& path, PresetDocument& document);

}  // namespace zum
