// The text form of a preset, as TOML: printed for reading and editing, and read back. Used by the
// presets command, by the build of the factory presets, and where a sound is copied and pasted.
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

#include <functional>
#include <string>

#include "preset_text/preset_document.hpp"
#include "preset_text/text_lines.hpp"

namespace zum {

/// What readPresetText reads back word for word, but for a name that is missing.
std::string presetText(const PresetDocument& document);

/// A text of a preset has no more bytes.
inline constexpr std::size_t kMostPresetText = 4U << 20U;

/// Fills a fresh document. Throws Failure with the text's name and the line; `warn` hears of what
/// is taken as it is, though it is odd.
void readPresetText(TextLines& lines, PresetDocument& document,
                    const std::function<void(const std::string&)>& warn);

}  // namespace zum
