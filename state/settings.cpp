#include "state/settings.hpp"

#include <mutex>

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

// Without a folder of content the paths are relative.
void writeAllFolders(KvRegistryKey& key, const std::string& content) {
  for (const ContentType& type : kContentTypes) writeFolders(key, type, content);
  key.setString(kAudioFilePath, content + "Samples\\Factory");
}

bool startedWithoutContent(KvRegistryKey& key) {
  return textOf(key, kPresetPath) == std::string(kContentTypes[0].name) + "\\";
}

void initialise(KvRegistryKey& key, const std::string& installed) {
  key.setInt(kInitialised, 1);
  const auto content = textOf(key, kContentPath);
  // Without an installer's folder, the one that the user chose in an older version stays.
  const auto older = content ? std::nullopt : textOf(key, kOldPresetPath);
  if (!content && !installed.empty()) key.setString(kContentPath, installed);
  writeAllFolders(key, content.value_or(installed));
  if (older) key.setString(kPresetPath, *older);
  for (const PersistentSwitch& one : kSwitches) key.setInt(one.valueName, one.initial);
}

void takeContent(KvRegistryKey& key, const std::string& installed) {
  key.setString(kContentPath, installed);
  if (startedWithoutContent(key)) writeAllFolders(key, installed);
}

// Content may come after the first start, by a package for all users.
std::string newContent(KvRegistryKey& key) {
  return has(key, kContentPath) ? std::string() : installedContentFolder();
}

// As at every start but the first: nothing is to be written.
bool isComplete(KvRegistryKey& key) {
  return isInitialised(key) && has(key, kInstallPath) && has(key, kPresetPath) &&
         newContent(key).empty();
}

void fillIn(KvRegistryKey& key, const std::string& product) {
  auto whole = key.transaction();
  if (!whole.begun()) return;
  const std::string installed = newContent(key);
  if (!has(key, kInstallPath)) {
    key.setString(kInstallPath, "c:\\Programme\\Zelvane\\" + product + "\\");
  }
  if (!isInitialised(key)) {
    initialise(key, installed);
  } else if (!installed.empty()) {
    takeContent(key, installed);
  }
  if (!has(key, kPresetPath)) {
    if (const auto older = textOf(key, kOldPresetPath)) key.setString(kPresetPath, *older);
  }
  whole.commit();
}

StartSettings startSettings(KvRegistryKey& key) {
  StartSettings start{};
  for (std::size_t i = 0; i < kSwitches.size(); ++i) {
    start.switches[i] = kSwitches[i].initial;
    key.getInt(kSwitches[i].valueName, start.switches[i]);
  }
  start.presetRoot = textOf(key, kPresetPath).value_or("");
  return start;
}

/// [any] What the last start found, for the next one.
class LastStart {
 public:
  std::optional<StartSettings> find(const std::optional<FileStamp>& store) {
    const std::lock_guard lock(access);
    return store && store == stamp ? std::optional(settings) : std::nullopt;
  }
  void keep(const std::optional<FileStamp>& store, const StartSettings& found) {
    const std::lock_guard lock(access);
    stamp.reset();
    settings = found;
    stamp = store;
  }

 private:
  std::mutex access;
  std::optional<FileStamp> stamp;  // of the store that they were read from
  StartSettings settings{};
};

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

StartSettings initSettings() {
  static LastStart last;
  const auto stamp = RegistryStore::stamp();
  if (const auto kept = last.find(stamp)) return *kept;
  const RegistryStore::OneWait oneWait;
  const std::string product = libraryRecord().product;
  KvRegistryKey key(product);
  {
    const RegistryStore::Look look = key.look();
    if (isComplete(key)) {
      const StartSettings found = startSettings(key);
      if (has(key, kContentPath)) last.keep(stamp, found);  // else content may come
      return found;
    }
  }
  fillIn(key, product);
  const RegistryStore::Look look = key.look();
  return startSettings(key);
}

}  // namespace zum
