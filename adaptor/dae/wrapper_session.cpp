// The effect's state in the host's session: its own bytes behind the host's header.

#include <cstddef>
#include <cstring>

#include "adaptor/dae/wrapper_process.hpp"

namespace zum {
namespace {

std::byte* bytesBehind(SessionRecord& record) {
  return reinterpret_cast<std::byte*>(&record) + kSessionHeader;
}
const std::byte* bytesBehind(const SessionRecord& record) {
  return reinterpret_cast<const std::byte*>(&record) + kSessionHeader;
}

}  // namespace

std::int32_t KvRTASWrapperProcess::ReportChunkSize(std::int32_t id, std::int32_t& size) {
  if (id != chunkId || aeffect == nullptr) return CEffectProcess::ReportChunkSize(id, size);
  void* bytes = nullptr;
  size = static_cast<std::int32_t>(call(effGetChunk, 0, &bytes)) + kSessionHeader;
  return kNoError;
}

// The state may have grown since the host asked for its size.
std::int32_t KvRTASWrapperProcess::ReadChunk(std::int32_t id, SessionRecord& record,
                                             std::int32_t room) {
  if (id != chunkId || aeffect == nullptr) return CEffectProcess::ReadChunk(id, record, room);
  void* bytes = nullptr;
  const auto count = static_cast<std::int32_t>(call(effGetChunk, 0, &bytes));
  if (room < kSessionHeader || count > room - kSessionHeader) return kBadChunk;
  record.size = count;
  if (count == 0) return CEffectProcess::ReadChunk(id, record, room);
  std::memcpy(bytesBehind(record), bytes, static_cast<std::size_t>(count));
  record.size += kSessionHeader;
  return kNoError;
}

std::int32_t KvRTASWrapperProcess::WriteChunk(std::int32_t id, const SessionRecord& record,
                                              std::int32_t room) {
  if (id != chunkId || aeffect == nullptr) return CEffectProcess::WriteChunk(id, record, room);
  if (room < kSessionHeader) return kBadChunk;
  if (record.size == kSessionHeader) return kNoError;  // nothing was saved
  if (record.size < kSessionHeader || record.size > room) return kBadChunk;
  call(effSetChunk, record.size - kSessionHeader,
       const_cast<std::byte*>(bytesBehind(record)));  // which it only reads
  return kNoError;
}

}  // namespace zum
