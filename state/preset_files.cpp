#include "state/preset_files.hpp"

#include <algorithm>
#include <array>
#include <memory>
#include <set>

#include "state/fileio.hpp"
#include "state/path_text.hpp"

namespace zum {
namespace {

/// A preset has some hundred words. A file with more bytes than this is refused.
constexpr std::uint64_t kMostBytes = 1U << 20U;
/// Read in one go; few files have more.
constexpr std::size_t kFirstWords = 1024;

/// How many words to read from a file of so many bytes: what its header states and the file has, or
/// the header alone where it is none of ours.
std::uint32_t wordsWorthReading(const std::uint32_t* first, std::uint64_t bytes) {
  constexpr auto kHeader = static_cast<std::uint32_t>(KvChunk::kHeaderWords);
  KvChunk header;
  header.borrow(first, kHeader);
  if (bytes / 4 < kHeader || !header.readHeader()) return kHeader;
  const auto stated = static_cast<std::uint32_t>(std::max(header.totalWords, 0));
  return std::max(static_cast<std::uint32_t>(std::min<std::uint64_t>(bytes / 4, stated)), kHeader);
}

constexpr int kMostEntries = 100000;  // of a tree; a host waits for this search

class Search {
 public:
  explicit Search(const std::string& wantedName) : wanted(wantedName) {}

  FoundPreset in(std::string folder) {
    const auto id = folderId(folder);
    if (!id || !visited.insert(*id).second) return {};
    const auto entries = listFolder(folder);
    if (!entries) return {};
    ensureTrailingBackslash(folder);
    for (const FolderEntry& entry : *entries) {
      if (--entriesLeft < 0) return {};
      if (entry.isFolder) {
        FoundPreset found = in(folder + entry.name);
        if (!found.path.empty()) return found;
      } else if (entry.name == wanted) {
        const std::string path = folder + entry.name;
        return {path, std::string(folderName(path))};
      }
    }
    return {};
  }

 private:
  const std::string& wanted;
  std::set<FolderId> visited;
  int entriesLeft = kMostEntries;
};

}  // namespace

// The length that a header states counts only as far as the file goes.
ChunkFile readChunkFile(const std::string& path, KvChunk& chunk, FileStamp* stamp) {
  if (path.size() < 2) return ChunkFile::missing;
  std::array<std::uint32_t, kFirstWords> first{};
  const auto got = readStart(path, first.data(), sizeof first, stamp);
  if (!got) return ChunkFile::missing;
  std::uint64_t bytes = *got;
  if (bytes == sizeof first) bytes = fileSize(path).value_or(bytes);
  if (bytes > kMostBytes) return ChunkFile::tooLong;
  const std::uint32_t count = wordsWorthReading(first.data(), bytes);
  auto words = std::make_unique<std::uint32_t[]>(count);
  if (count <= kFirstWords) {
    std::copy_n(first.begin(), count, words.get());
  } else if (KvFileio::readFile(path.c_str(), words.get(), std::size_t{4} * count) == 0) {
    return ChunkFile::missing;
  }
  chunk.adopt(std::move(words), count);
  return ChunkFile::read;
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

FoundPreset findPresetFile(const std::string& root, const std::string& fileName) {
  return Search(fileName).in(root);
}

}  // namespace zum
