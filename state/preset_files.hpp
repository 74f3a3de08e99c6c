// Preset files as they lie on disk: reading one whole, and the ones of a folder. Used by the effect
// object and the program bank.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/files.hpp"
#include "state/chunk.hpp"

namespace zum {

enum class ChunkFile : std::uint8_t {
  read,
  missing,  // or it cannot be opened
  tooLong,  // above a megabyte, which no preset or map is
};

/// [main] Fills `chunk` with the words that the file's header states, or with what there is of them
/// when that is less: whoever reads the chunk finds out. A file of another kind gives its first
/// words. `stamp` is for the file that was opened.
[[nodiscard]] ChunkFile readChunkFile(const std::string& path, KvChunk& chunk,
                                      FileStamp* stamp = nullptr);

/// [main] Names of a folder's files with the extension, in the order of listings.
std::vector<std::string> filesWithExtension(const std::string& folder,
                                            const std::string& extension);

/// Whether a file of these words is one that readChunkFile takes.
bool fitsChunkFile(const KvChunk& chunk);

struct FoundPreset {
  std::string path;    // of the file
  std::string folder;  // name of the folder that holds it
};

/// [main] The first file of exactly that name, depth first in the order of listings; empty texts
/// for none. Folders that links lead to twice are searched once, and a tree without an end is given
/// up.
FoundPreset findPresetFile(const std::string& root, const std::string& fileName);

}  // namespace zum
