#include "state/file_chooser.hpp"

#include <utility>

#include "platform/message_box.hpp"
#include "state/library_record.hpp"
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

using Then = KvFileChooser::Then;

void tellTooLong(const std::string& path) {
  const std::string text = "The path " + path + " is too long!\nPlease choose one of at most " +
                           std::to_string(KvFileChooser::kPathBytes - 1) + " bytes.";
  showMessage(libraryRecord().product, text.c_str());
}

void ask(FileOperation operation, const FileQuestion& question, Then then,
         std::function<void()> otherwise = {}) {
  askForFile(operation, question,
             [then = std::move(then),
              otherwise = std::move(otherwise)](const std::optional<std::string>& chosen) {
               const bool fits = chosen && chosen->size() < KvFileChooser::kPathBytes;
               if (chosen && !fits) tellTooLong(*chosen);
               if (fits && !chosen->empty()) {
                 then(*chosen);
               } else if (otherwise) {
                 otherwise();
               }
             });
}

void askWithSetting(FileOperation operation, FileQuestion question, const std::string& setting,
                    const Then& then) {
  question.startFolder = readSettingString(setting.c_str()).value_or("");
  const auto keepFolder = [setting, then](const std::string& chosen) {
    std::string folder = chosen;
    cutToFolder(folder);
    writeSettingString(setting.c_str(), folder);
    then(chosen);
  };
  ask(operation, question, keepFolder, [then] { then(KvFileChooser::kNothing); });
}

}  // namespace

void KvFileChooser::chooseLoad(const std::string& extension, Then then,
                               std::function<void()> otherwise) {
  FileQuestion question{kLoadTitle, {{kPresetLabel, extension}}, "", owner};
  if (extension == kSound) {
    question.filters = {
        {"Audio IFF file", "aif"}, {"Audio IFF file", "aiff"}, {"Audio file", kSound}};
  }
  ask(&FileDialogs::load, question, std::move(then), std::move(otherwise));
}

void KvFileChooser::chooseSave(const std::string& extension, const std::string& startFolder,
                               Then then) {
  FileQuestion question{kSaveTitle, {{kPresetLabel, extension}}, startFolder, owner};
  if (extension == kSound) question.filters = {{"Audio file", kSound}, {"Audio IFF file", "aif"}};
  ask(&FileDialogs::save, question, std::move(then));
}

void KvFileChooser::chooseFolder(const std::string& startPath, const char* title, Then then) {
  ask(&FileDialogs::folder, {title != nullptr ? title : kFolderTitle, {}, startPath, owner},
      std::move(then));
}

void KvFileChooser::addFilter(const std::string& name, const std::string& extension) {
  filters.push_back({name, extension});
}

void KvFileChooser::load(const std::string& title, const char* folderSetting, const Then& then) {
  askWithSetting(&FileDialogs::load, {title, filters, "", owner}, folderSetting, then);
}

void KvFileChooser::save(const std::string& title, const char* folderSetting, const Then& then) {
  askWithSetting(&FileDialogs::save, {title, filters, "", owner}, folderSetting, then);
}

void KvFileChooser::folder(const std::string& startPath, const Then& then) {
  ask(&FileDialogs::folder, {kPresetFolderTitle, {}, startPath, owner}, then,
      [then] { then(kNothing); });
}

}  // namespace zum
