#include "state/preset_files.hpp"

#include <algorithm>
#include <memory>
#include <new>

#include "platform/files.hpp"
#include "state/fileio.hpp"
#include "state/path_text.hpp"

namespace zum {
namespace {

/// A preset has some hundred words. What claims more than this is not worth its memory.
constexpr std::uint64_t kMostBytes = 1U << 20U;

/// A buffer of the first `count` words; null when the file cannot be opened.
std::unique_ptr<std::uint32_t[]> firstWords(const std::string& path, std::uint32_t count) {
  std::unique_ptr<std::uint32_t[]> words(new (std::nothrow) std::uint32_t[count]());
  const bool read = words != nullptr &&
                    KvFileio::readFile(path.c_str(), words.get(), std::size_t{4} * count) != 0;
  return read ? std::move(words) : nullptr;
}

}  // namespace

// No length of a header is believed further than the file goes.
bool readChunkFile(const std::string& path, KvChunk& chunk) {
  constexpr auto kHeader = static_cast<std::uint32_t>(KvChunk::kHeaderWords);
  const auto size = fileSize(path);
  if (!size || *size > kMostBytes) return false;
  auto words = firstWords(path, kHeader);
  if (words == nullptr) return false;
  chunk.adopt(std::move(words), kHeader);
  if (*size / 4 < kHeader || !chunk.readHeader()) return true;
  const auto stated = static_cast<std::uint32_t>(std::max(chunk.totalWords, 0));
  const auto there = static_cast<std::uint32_t>(std::min<std::uint64_t>(*size / 4, stated));
  words = firstWords(path, std::max(there, kHeader));
  if (words == nullptr) return false;
  chunk.adopt(std::move(words), std::max(there, kHeader));
  return true;
}

std::vector<std::string> filesWithExtension(const std::string& folder,
                                            const std::string& extension) {
  KvFileio listing;
  int count = 0;
  const KvFileio::Name* names = listing.listFiles(folder, count);
  std::vector<std::string> files;
  for (int i = 0; i < count; ++i) {
    const std::string name = names[i].data();
    if (name.ends_with("." + extension)) files.push_back(name);
  }
  sortNames(files);
  return files;
}

bool fitsChunkFile(const KvChunk& chunk) {
  return std::uint64_t{4} * chunk.dataWords() <= kMostBytes;
}

}  // namespace zum
