// The bank in use, which is replaced as a whole while the audio thread plays from it.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "engine/realtime.hpp"
#include "state/program_bank.hpp"

namespace zum {

/// The audio thread says which bank it is in (a hazard pointer: M. Michael, "Hazard pointers", IEEE
/// TPDS 15, 2004); all others hold on to theirs. So a bank that was replaced goes as soon as nobody
/// is in it, whatever has become of the block.
class SharedBank {
 public:
  using Held = std::shared_ptr<const KvProgramBank>;

  explicit SharedBank(Held first) : current(std::move(first)), published(current.get()) {}

  /// [main] Never null, and the same for as long as it is held.
  Held get() const {
    const std::lock_guard lock(access);
    dropReplaced();
    return current;
  }

  /// [main] Not null. What it replaces goes now, or with the next call where the audio
  /// thread is in it just now.
  void set(Held next) {
    const std::lock_guard lock(access);
    replaced.push_back(current);
    current = std::move(next);
    published.store(current.get());
    dropReplaced();
  }

  /// [audio] One at a time. The bank stays while this lives. No lock: it looks again only when the
  /// bank was replaced in between.
  class InBlock {
   public:
    explicit InBlock(SharedBank& from) ZUM_REALTIME : shared(from) {
      do {
        bank = shared.published.load();
        shared.inBlock.store(bank);
      } while (bank != shared.published.load());
    }
    InBlock(const InBlock&) = delete;
    InBlock& operator=(const InBlock&) = delete;
    ~InBlock() ZUM_REALTIME { shared.inBlock.store(nullptr); }

    const KvProgramBank* operator->() const ZUM_REALTIME { return bank; }
    const KvProgramBank& operator*() const ZUM_REALTIME { return *bank; }

   private:
    SharedBank& shared;
    const KvProgramBank* bank = nullptr;
  };

 private:
  // Runs after the store of `published`: whoever enters from then on enters the new bank.
  void dropReplaced() const {
    const KvProgramBank* const entered = inBlock.load();
    std::erase_if(replaced, [entered](const Held& bank) { return bank.get() != entered; });
  }

  mutable std::mutex access;
  Held current;
  mutable std::vector<Held> replaced;  // at most one between two calls
  std::atomic<const KvProgramBank*> published;
  std::atomic<const KvProgramBank*> inBlock{nullptr};
};

}  // namespace zum
