#include "state/fileio.hpp"

#include <cstring>

#include "platform/files.hpp"
#include "state/path_text.hpp"

namespace zum {

const KvFileio::Name* KvFileio::list(const std::string& folder, int& count, bool withFolders) {
  names.clear();
  folderFlags.clear();
  count = 0;
  const auto entries = listFolder(folder);
  if (!entries) return nullptr;
  for (const FolderEntry& entry : *entries) {
    if (entry.name.size() >= kNameBytes || (entry.isFolder && !withFolders)) continue;
    Name name{};
    std::memcpy(name.data(), entry.name.data(), entry.name.size());
    names.push_back(name);
    folderFlags.push_back(entry.isFolder ? 1 : 0);
  }
  count = static_cast<int>(names.size());
  if (names.empty()) names.emplace_back();  // null would say that the folder is missing
  return names.data();
}

int KvFileio::readFile(const char* path, void* buffer, std::size_t byteCount) {
  if (path == nullptr || buffer == nullptr || std::strlen(path) < 2) return 0;
  const auto got = readStart(path, buffer, byteCount);
  if (!got) return 0;
  std::memset(static_cast<char*>(buffer) + *got, 0, byteCount - *got);
  return 1;
}

int KvFileio::writeFile(const char* path, const void* buffer, std::size_t byteCount) {
  if (path == nullptr || buffer == nullptr) return 0;
  return writeWhole(path, buffer, byteCount) ? 1 : 0;
}

KvStreamableFile::KvStreamableFile(const std::string& path, const char* mode) {
  // Opening a pipe could wait for ever.
  const bool reads = *mode == 'r';
  if (reads && !fileExists(path)) return;
  // "e" keeps it from programs that this process starts.
  file = std::fopen(toSystemPath(path).c_str(), (std::string(mode) + "e").c_str());
}

KvStreamableFile::~KvStreamableFile() {
  if (file != nullptr) (void)std::fclose(file);  // writers flush it before
}

}  // namespace zum
