#include "state/file_chooser.hpp"

#include "state/path_text.hpp"
#include "state/settings.hpp"

namespace zum {
namespace {

constexpr const char* kLoadTitle = "Choose a file to load";
constexpr const char* kSaveTitle = "Choose a file to save";
constexpr const char* kFolderTitle = "Select Directory";
constexpr const char* kPresetFolderTitle = "Choose Preset Directory";
constexpr const char* kPresetLabel = "Preset file";
constexpr const char* kSound = "wav";

using Answer = std::optional<std::string>;
using Dialog = Answer (FileDialogs::*)(const FileQuestion&);

Answer ask(Dialog dialog, const FileQuestion& question) {
  if (fileDialogs() == nullptr) return std::nullopt;
  Answer chosen = (fileDialogs()->*dialog)(question);
  if (chosen && (chosen->empty() || chosen->size() >= KvFileChooser::kPathBytes)) return {};
  return chosen;
}

bool take(const Answer& chosen, std::string& path) {
  if (chosen) path = *chosen;
  return chosen.has_value();
}

std::string askWithSetting(Dialog dialog, FileQuestion question, const char* setting) {
  question.startFolder = readSettingString(setting).value_or("");
  const Answer chosen = ask(dialog, question);
  if (!chosen) return KvFileChooser::kNothing;
  std::string folder = *chosen;
  cutToFolder(folder);
  writeSettingString(setting, folder);
  return *chosen;
}

}  // namespace

bool KvFileChooser::chooseLoad(std::string& path, const std::string& extension) {
  FileQuestion question{kLoadTitle, {{kPresetLabel, extension}}, "", owner};
  if (extension == kSound) {
    question.filters = {
        {"Audio IFF file", "aif"}, {"Audio IFF file", "aiff"}, {"Audio file", kSound}};
  }
  return take(ask(&FileDialogs::load, question), path);
}

bool KvFileChooser::chooseSave(std::string& path, const std::string& extension,
                               const std::string& startFolder) {
  FileQuestion question{kSaveTitle, {{kPresetLabel, extension}}, startFolder, owner};
  if (extension == kSound) question.filters = {{"Audio file", kSound}, {"Audio IFF file", "aif"}};
  return take(ask(&FileDialogs::save, question), path);
}

bool KvFileChooser::chooseFolder(std::string& path, const char* title) {
  return take(ask(&FileDialogs::folder, {title != nullptr ? title : kFolderTitle, {}, path, owner}),
              path);
}

void KvFileChooser::addFilter(const std::string& name, const std::string& extension) {
  filters.push_back({name, extension});
}

std::string KvFileChooser::load(const std::string& title, const char* folderSetting) {
  return askWithSetting(&FileDialogs::load, {title, filters, "", owner}, folderSetting);
}

std::string KvFileChooser::save(const std::string& title, const char* folderSetting) {
  return askWithSetting(&FileDialogs::save, {title, filters, "", owner}, folderSetting);
}

std::string KvFileChooser::folder(const std::string& startPath) {
  return ask(&FileDialogs::folder, {kPresetFolderTitle, {}, startPath, owner}).value_or(kNothing);
}

}  // namespace zum
