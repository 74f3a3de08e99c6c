// The failure of every command that cannot get at the user's settings.
#pragma once

#include <string>

#include "apps/zum/failure.hpp"
#include "platform/registry_store.hpp"
#include "state/registry_key.hpp"

namespace zum {

/// `what` is "cannot read" or "cannot write"; the reason is that of the key's last call.
inline Failure settingsFailure(const std::string& what, const KvRegistryKey& key) {
  const std::string file = RegistryStore::file().string();
  if (file.empty()) return Failure(what + " settings: " + key.problem() + "; set HOME");
  return Failure(what + " " + file + ": " + key.problem() +
                 "; check the file and its folder, or move the file away to start afresh");
}

}  // namespace zum
