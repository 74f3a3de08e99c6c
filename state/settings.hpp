// The settings of the running product: shorthands for single values, their names, and what the
// effect's constructor fills in at the first start. Paths are in the internal form.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace zum {

// Names of the values. Folders that belong to a content type end in its index.
inline constexpr const char* kInstallPath = "installpath";   // holds the manual
inline constexpr const char* kContentPath = "contentpath";   // ends in a backslash
inline constexpr const char* kPresetPath = "presetpath0";    // root of the tree of presets
inline constexpr const char* kOldPresetPath = "presetpath";  // of older versions
inline constexpr const char* kPresetSavePath = "presetsavepath0";
inline constexpr const char* kAudioFilePath = "audiofilepath";
inline constexpr const char* kControllerMapPath = "cc savepath";
inline constexpr const char* kFavourites = "favourites";    // of the preset menu
inline constexpr const char* kWindowSize = "window size";   // percent, by the user
inline constexpr const char* kInitialised = "initialised";  // not 0 behind the first start
inline constexpr const char* kIgnoreProgramChange = "ignorePrgChange";
inline constexpr const char* kIsolateMapRecall = "CC Map Recall isolate";

/// A switch of the user's, not 0 when it is on. The effect knows it by its index in kSwitches.
struct PersistentSwitch {
  const char* valueName;
  std::int32_t initial;
};
inline constexpr std::array<PersistentSwitch, 2> kSwitches = {
    {{kIgnoreProgramChange, 1}, {kIsolateMapRecall, 0}}};

/// A kind of file that the product keeps in a folder of its own.
struct ContentType {
  const char* name;   // of the folder
  const char* label;  // in file dialogs
  std::int32_t index;
  bool useNamedKeys;  // the value names come from the name, not from the index
  bool hasDefault;
  bool hasUserFolder;  // what the user saves goes into the folder User
  bool countsLoads;
  const char* subfolder;
};
inline constexpr std::array<ContentType, 1> kContentTypes = {
    {{"Presets", "Preset File", 0, false, false, true, false, ""}}};

// [any] Each opens the key of the running product for itself. Nothing is kept: a read sees what
// another process wrote just before. A write answers false when it did not happen.
std::optional<std::string> readSettingString(const char* valueName);
std::optional<std::int32_t> readSettingInt(const char* valueName);
bool writeSettingString(const char* valueName, const std::string& text);
bool writeSettingInt(const char* valueName, std::int32_t value);

/// What the effect starts with.
struct StartSettings {
  std::array<std::int32_t, kSwitches.size()> switches;
  std::string presetRoot;  // as it is written; empty for none
};
/// [main] Fills in what a fresh installation lacks, and the folders of content that came later. In
/// any other case the store is opened once and looked at once, or not at all where nothing was
/// written since the last start.
StartSettings initSettings();

}  // namespace zum
