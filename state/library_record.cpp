#include "state/library_record.hpp"

namespace zum {
namespace {

LibraryRecord current = {"ZUM", 3, "1.0.0.000"};

}  // namespace

const LibraryRecord& libraryRecord() { return current; }

void setLibraryRecord(const LibraryRecord& record) { current = record; }

}  // namespace zum
