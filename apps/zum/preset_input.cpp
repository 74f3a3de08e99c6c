#include "apps/zum/preset_input.hpp"

#include <strings.h>

#include <algorithm>
#include <system_error>

#include "apps/zum/failure.hpp"
#include "platform/files.hpp"
#include "state/library_record.hpp"
#include "state/preset_files.hpp"

namespace zum {
namespace {

namespace fs = std::filesystem;

// Empty, or why there is nothing to read.
std::string readWords(const fs::path& path, KvChunk& chunk) {
  std::error_code error;
  if (fs::is_directory(path, error)) return "it is a folder";
  if (!fs::exists(path, error)) return "there is no such file";
  switch (readChunkFile(toInternalPath(fs::absolute(path).string()), chunk)) {
    case ChunkFile::read: return {};
    case ChunkFile::missing: break;
    case ChunkFile::tooLong: return "it is too long for a preset";
  }
  return "it cannot be read";
}

// Looks for faults in the same order as the effect, so that both name the same one.
std::string readDocument(KvChunk& chunk, PresetDocument& document) {
  const bool isChunk = chunk.readHeader();
  const std::string product = libraryRecord().product;
  if (isChunk && chunk.isNewer()) return "it was written with a newer version of " + product;
  const PresetFault fault = readPresetDocument(chunk, document);
  return fault ? describe(fault) : std::string();
}

}  // namespace

std::string readPresetFile(const fs::path& path, PresetDocument& document) {
  KvChunk chunk;
  std::string why = readWords(path, chunk);
  if (why.empty()) why = readDocument(chunk, document);
  if (!why.empty()) return why;
  std::error_code error;
  const auto size = fs::file_size(path, error);
  const auto stated = std::uintmax_t{4} * static_cast<std::uint32_t>(chunk.totalWords);
  if (!error && size > stated) {
    document.remarks.push_back(std::to_string(size - stated) + " bytes behind its end dropped");
  }
  return {};
}

void loadPresetFile(const fs::path& path, EffectView& effect) {
  PresetDocument document;
  std::string why = readPresetFile(path, document);
  // The file's own name counts, and its folder's, also where the one is a link or the other ".".
  const fs::path full = fs::absolute(path);
  std::error_code error;
  const fs::path file = fs::canonical(full.parent_path(), error) / full.filename();
  if (why.empty() && !effect.loadPresetFile(toInternalPath(file.string()))) {
    why = "the effect refuses it";
  }
  if (!why.empty()) {
    throw Failure(path.string() + " is no preset that loads: " + why +
                  "; run zum presets check to see which ones do");
  }
}

void loadProgram(const std::string& name, EffectView& effect) {
  const auto bank = effect.bank();
  auto found = std::find_if(bank.begin(), bank.end(),
                            [&](const BankEntry& entry) { return entry.name == name; });
  if (found == bank.end()) {
    found = std::find_if(bank.begin(), bank.end(), [&](const BankEntry& entry) {
      return strcasecmp(entry.name.c_str(), name.c_str()) == 0;
    });
  }
  if (found == bank.end()) {
    throw Failure("no program of the bank is called \"" + name +
                  "\"; run zum presets list to see them all");
  }
  if (!effect.loadProgram(found->folder, found->program)) {
    throw Failure("the program \"" + name +
                  "\" does not load; run zum presets check on its folder");
  }
}

}  // namespace zum
