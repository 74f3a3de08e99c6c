// [main] The bank that the effects of a process share: read once, and by the next one only what has
// changed since. It goes with the last effect that holds it.
#pragma once

#include <memory>
#include <string>

#include "state/program_bank.hpp"

namespace zum {

class BankShelf {
 public:
  using Held = std::shared_ptr<const KvProgramBank>;

  /// The tree as it is now. Effects that ask at once wait for the one that reads. Throws
  /// std::bad_alloc, and then nothing has changed.
  static Held read(const std::string& root, const KvProgramBank::Check& check);
  /// A newer one, for who asks next.
  static void put(const Held& bank);
};

}  // namespace zum
