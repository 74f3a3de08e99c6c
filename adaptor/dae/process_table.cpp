#include "adaptor/dae/process_table.hpp"

#include <array>
#include <atomic>
#include <mutex>
#include <new>

namespace zum {
namespace {

struct Entry {
  std::atomic<const AEffect*> effect{nullptr};
  std::atomic<KvRTASWrapperProcess*> process{nullptr};
};

/// The audio thread walks the table while others add to it: it grows by pieces that never move, and
/// never shrinks.
struct Piece {
  std::array<Entry, 32> entries;
  std::atomic<Piece*> next{nullptr};
};

Piece firstPiece;
std::mutex writers;

Entry* entryOf(const AEffect* effect) ZUM_REALTIME {
  for (Piece* piece = &firstPiece; piece != nullptr; piece = piece->next.load()) {
    for (Entry& entry : piece->entries) {
      if (entry.effect.load() == effect) return &entry;
    }
  }
  return nullptr;
}

}  // namespace

bool tryAddProcess(const AEffect* effect, KvRTASWrapperProcess* process) {
  const std::lock_guard turn(writers);
  Entry* free = entryOf(nullptr);
  if (free == nullptr) {
    auto* const piece = new (std::nothrow) Piece;
    if (piece == nullptr) return false;
    free = piece->entries.data();
    piece->next.store(firstPiece.next.load());
    firstPiece.next.store(piece);
  }
  free->process.store(process);
  free->effect.store(effect);
  return true;
}

void removeProcess(const AEffect* effect) {
  const std::lock_guard turn(writers);
  if (Entry* const entry = entryOf(effect); entry != nullptr && effect != nullptr) {
    entry->effect.store(nullptr);
    entry->process.store(nullptr);
  }
}

KvRTASWrapperProcess* findProcess(const AEffect* effect) ZUM_REALTIME {
  if (effect == nullptr) return nullptr;
  const Entry* const entry = entryOf(effect);
  return entry != nullptr ? entry->process.load() : nullptr;
}

}  // namespace zum
