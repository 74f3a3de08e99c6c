// Words that one thread writes and grows while others read: cells of the step table, controller
// bindings.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <memory>
#include <new>
#include <vector>

#include "engine/shared_value.hpp"

namespace zum {

/// Storage that was outgrown is kept to the end, since a reader may still be in it. Every block is
/// at least twice as large as the one before, so all that is kept takes less than what is in use.
template <class Word>
class GrowingArray {
 public:
  GrowingArray() = default;
  GrowingArray(const GrowingArray&) = delete;
  GrowingArray& operator=(const GrowingArray&) = delete;

  /// [any]
  std::size_t capacity() const ZUM_REALTIME {
    const Block* block = current.load(std::memory_order_acquire);
    return block != nullptr ? block->size : 0;
  }
  /// [any] 0 where there is no room.
  Word load(std::size_t at) const ZUM_REALTIME {
    const Block* block = current.load(std::memory_order_acquire);
    return block != nullptr && at < block->size ? loadShared(block->words[at]) : Word{};
  }
  /// [any] False where there is no room.
  bool tryStore(std::size_t at, Word value) ZUM_REALTIME {
    const Block* block = current.load(std::memory_order_acquire);
    if (block == nullptr || at >= block->size) return false;
    storeShared(block->words[at], value);
    return true;
  }
  /// One writer at a time. Room for `count` words, new ones 0; allocates only when there is less.
  /// False when the memory does not suffice.
  bool reserve(std::size_t count) noexcept {
    const std::size_t old = capacity();
    if (count <= old) return true;
    try {
      auto block = std::make_unique<Block>();
      block->size = std::max(count, 2 * old);
      block->words = std::make_unique<Word[]>(block->size);
      for (std::size_t i = 0; i < old; ++i) block->words[i] = load(i);
      blocks.push_back(std::move(block));
    } catch (const std::bad_alloc&) {
      return false;
    }
    current.store(blocks.back().get(), std::memory_order_release);
    return true;
  }

 private:
  struct Block {
    std::size_t size = 0;
    std::unique_ptr<Word[]> words;
  };
  std::vector<std::unique_ptr<Block>> blocks;  // the last one is in use
  std::atomic<const Block*> current{nullptr};
};

}  // namespace zum
