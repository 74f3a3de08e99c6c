// Who writes a chunk: the product's name and the version of its formats. This product's own unless
// a program sets another one at its start, before it makes anything.
#pragma once

#include <cstdint>

namespace zum {

struct LibraryRecord {
  const char* product;   // caption of messages, and the %s in them
  std::int32_t version;  // of what a chunk's header tells
  const char* versionText;
};

const LibraryRecord& libraryRecord();
void setLibraryRecord(const LibraryRecord& record);

}  // namespace zum
