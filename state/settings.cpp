#include "state/settings.hpp"

#include "platform/content_folder.hpp"
#include "state/library_record.hpp"
#include "state/path_text.hpp"
#include "state/registry_key.hpp"

namespace zum {
namespace {

std::optional<std::string> textOf(KvRegistryKey& key, const char* valueName) {
  std::array<char, KvRegistryKey::kTextBytes> buffer;
  if (!key.getString(valueName, buffer.data())) return std::nullopt;
  return buffer.data();
}

bool has(KvRegistryKey& key, const char* valueName) { return textOf(key, valueName).has_value(); }

bool isInitialised(KvRegistryKey& key) {
  std::int32_t marker = 0;
  return key.getInt(kInitialised, marker) && marker != 0;
}

void writeFolders(KvRegistryKey& key, const ContentType& type, const std::string& content) {
  const auto write = [&](const std::string& valueName, const std::string& path) {
    if (!type.useNamedKeys || !has(key, valueName.c_str())) key.setString(valueName.c_str(), path);
  };
  const std::string name = type.name;
  const std::string index = std::to_string(type.index);
  std::string path = content + name;
  ensureTrailingBackslash(path);
  write(type.useNamedKeys ? name : "presetpath" + index, path);
  if (type.hasUserFolder) path += "User";
  ensureTrailingBackslash(path);
  write(type.useNamedKeys ? name + "save" : "presetsavepath" + index, path);
}

void initialise(KvRegistryKey& key) {
  key.setInt(kInitialised, 1);
  auto content = textOf(key, kContentPath);
  // Without an installer's folder, the one that the user chose in an older version stays.
  const auto older = content ? std::nullopt : textOf(key, kOldPresetPath);
  if (!content) {
    if (std::string installed = installedContentFolder(); !installed.empty()) {
      key.setString(kContentPath, installed);
      content = std::move(installed);
    }
  }
  for (const ContentType& type : kContentTypes) writeFolders(key, type, content.value_or(""));
  if (older) key.setString(kPresetPath, *older);
  key.setString(kAudioFilePath, content.value_or("") + "Samples\\Factory");
  for (const PersistentSwitch& one : kSwitches) key.setInt(one.valueName, one.initial);
}

void fillIn(KvRegistryKey& key, const std::string& product) {
  // What is complete, as at every start but the first, is only read.
  if (isInitialised(key) && has(key, kInstallPath) && has(key, kPresetPath)) return;
  auto whole = key.transaction();
  if (!whole.begun()) return;
  if (!has(key, kInstallPath)) {
    key.setString(kInstallPath, "c:\\Programme\\Zelvane\\" + product + "\\");
  }
  if (!isInitialised(key)) initialise(key);
  if (!has(key, kPresetPath)) {
    if (const auto older = textOf(key, kOldPresetPath)) key.setString(kPresetPath, *older);
  }
  whole.commit();
}

}  // namespace

std::optional<std::string> readSettingString(const char* valueName) {
  KvRegistryKey key(libraryRecord().product);
  return textOf(key, valueName);
}

std::optional<std::int32_t> readSettingInt(const char* valueName) {
  KvRegistryKey key(libraryRecord().product);
  std::int32_t value = 0;
  return key.getInt(valueName, value) ? std::optional(value) : std::nullopt;
}

bool writeSettingString(const char* valueName, const std::string& text) {
  return KvRegistryKey(libraryRecord().product).setString(valueName, text);
}

bool writeSettingInt(const char* valueName, std::int32_t value) {
  return KvRegistryKey(libraryRecord().product).setInt(valueName, value);
}

void initSettings(const std::function<void(int index, float value)>& applySwitch) {
  const std::string product = libraryRecord().product;
  KvRegistryKey key(product);
  fillIn(key, product);
  for (std::size_t i = 0; i < kSwitches.size(); ++i) {
    std::int32_t value = kSwitches[i].initial;
    key.getInt(kSwitches[i].valueName, value);
    applySwitch(static_cast<int>(i), static_cast<float>(value));
  }
}

}  // namespace zum
