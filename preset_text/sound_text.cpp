#include "preset_text/sound_text.hpp"

#include <algorithm>
#include <exception>
#include <new>

#include "preset_text/failure.hpp"
#include "preset_text/preset_text.hpp"
#include "state/preset_files.hpp"

namespace zum {
namespace {

TextLines linesIn(std::string_view text) {
  return {"the clipboard",
          [text](char* to, std::size_t room) mutable {
            const std::size_t count = std::min(room, text.size());
            text.copy(to, count);
            text.remove_prefix(count);
            return count;
          },
          kMostPresetText};
}

/// Throws Failure.
void makePreset(std::string_view text, KvChunk& chunk) {
  PresetDocument document;
  document.name = "Pasted";
  TextLines lines = linesIn(text);
  readPresetText(lines, document, [](const std::string& /*odd*/) {});
  const bool holdsValues = std::ranges::any_of(document.values, [](const auto& v) { return !!v; });
  if (!holdsValues) throw Failure("the clipboard holds no [parameters] of a preset");
  writePresetDocument(document, chunk);
  PresetDocument again;  // of what is written, only what loads
  const PresetFault fault = readPresetDocument(chunk, again);
  if (fault || !fitsChunkFile(chunk)) {
    throw Failure("the clipboard makes no preset that loads" +
                  (fault ? ": " + describe(fault) : std::string()));
  }
}

}  // namespace

std::string soundText(KvUniClient& effect) try {
  KvChunk chunk;
  PresetDocument document;
  if (!effect.writePreset(chunk, 0) || readPresetDocument(chunk, document)) return {};
  return presetText(document);
} catch (const std::exception&) {
  return {};
}

std::string pasteSound(KvUniClient& effect, std::string_view text) try {
  KvChunk chunk;
  makePreset(text, chunk);
  if (effect.takeSound(chunk, "Paste")) return {};
  return "the clipboard makes no preset that loads";
} catch (const Failure& failure) {
  return failure.what();
} catch (const std::exception&) {
  return "the memory does not suffice; close other programs";
}

}  // namespace zum
