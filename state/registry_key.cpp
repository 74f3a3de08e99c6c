#include "state/registry_key.hpp"

#include <cstring>

namespace zum {

KvRegistryKey::KvRegistryKey(const std::string& product) : path("Software\\Zelvane\\" + product) {}

bool KvRegistryKey::getString(const char* valueName, char* buffer) {
  const auto data = store.read(path, valueName);
  const std::string* text = data ? std::get_if<std::string>(&*data) : nullptr;
  if (text == nullptr || text->size() >= kTextBytes) return false;
  std::memcpy(buffer, text->c_str(), text->size() + 1);
  return true;
}

bool KvRegistryKey::getInt(const char* valueName, std::int32_t& value) {
  const auto data = store.read(path, valueName);
  const std::int32_t* number = data ? std::get_if<std::int32_t>(&*data) : nullptr;
  if (number != nullptr) value = *number;
  return number != nullptr;
}

bool KvRegistryKey::setString(const char* valueName, const std::string& text) {
  return text.size() < kTextBytes && store.write(path, valueName, text);
}

bool KvRegistryKey::setInt(const char* valueName, std::int32_t value) {
  return store.write(path, valueName, value);
}

bool KvRegistryKey::remove(const char* valueName) { return store.remove(path, valueName); }

std::optional<RegistryStore::Data> KvRegistryKey::value(const char* valueName) {
  return store.read(path, valueName);
}

std::vector<RegistryStore::Value> KvRegistryKey::values() { return store.list(path); }

}  // namespace zum
