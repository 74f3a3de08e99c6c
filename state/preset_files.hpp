// Preset files as they lie on disk: reading one whole, and the ones of a folder. Used by the effect
// object and the program bank.
#pragma once

#include <string>
#include <vector>

#include "state/chunk.hpp"

namespace zum {

/// [main] Fills `chunk` with the words that the file's header states, or with what there is of them
/// when that is less: whoever reads the chunk finds out. A file of another kind gives its first
/// words. False when there is no such file, and for one of more than a megabyte.
bool readChunkFile(const std::string& path, KvChunk& chunk);

/// [main] Names of a folder's files with the extension, in the order of listings.
std::vector<std::string> filesWithExtension(const std::string& folder,
                                            const std::string& extension);

/// Whether a file of these words is one that readChunkFile takes.
bool fitsChunkFile(const KvChunk& chunk);

}  // namespace zum
