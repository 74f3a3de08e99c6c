// The settings of one product: typed values under its key in the user's store. Opened for one piece
// of work by whoever reads or writes several settings; state/settings.hpp has the shorthands for
// single ones.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/registry_store.hpp"

namespace zum {

/// [any] Used by one thread at a time. A read of a value that is absent, unreadable or of the other
/// type answers false, as does a write that did not happen.
class KvRegistryKey {
 public:
  /// Bytes of a buffer for getString, the terminator included.
  static constexpr std::size_t kTextBytes = 1025;

  /// Key "Software\Zelvane\<product>".
  explicit KvRegistryKey(const std::string& product);

  /// A longer text than the buffer holds counts as absent, and the buffer stays as it is.
  bool getString(const char* valueName, char* buffer);
  bool getInt(const char* valueName, std::int32_t& value);
  /// Replaces a value of any type. A text that getString could not give back is refused.
  bool setString(const char* valueName, const std::string& text);
  bool setInt(const char* valueName, std::int32_t value);
  /// True as well when there was no such value.
  bool remove(const char* valueName);
  std::optional<RegistryStore::Data> value(const char* valueName);
  /// All values, by name.
  std::vector<RegistryStore::Value> values();

  /// Until the transaction ends, what is read and written is one piece to other processes.
  RegistryStore::Transaction transaction() { return RegistryStore::Transaction(store); }
  /// For several reads at once; nothing is written meanwhile.
  RegistryStore::Look look() { return RegistryStore::Look(store); }
  /// Why the last call failed; empty when there was just no such value.
  const std::string& problem() const { return store.problem(); }

 private:
  std::string path;
  RegistryStore store;
};

}  // namespace zum
