// One aligned word that two threads may touch: read and written as a plain move, without order.
#pragma once

#include <atomic>
#include <type_traits>

#include "engine/realtime.hpp"

namespace zum {

/// [any] The word as it stands now.
template <class Word>
Word loadShared(const Word& word) ZUM_REALTIME {
  // an atomic_ref wants a mutable word; nothing is written
  return std::atomic_ref<Word>(const_cast<Word&>(word)).load(std::memory_order_relaxed);
}

/// [any] A reader sees the old or the new word, never a torn one.
template <class Word>
void storeShared(Word& word, std::type_identity_t<Word> value) ZUM_REALTIME {
  std::atomic_ref<Word>(word).store(value, std::memory_order_relaxed);
}

}  // namespace zum
