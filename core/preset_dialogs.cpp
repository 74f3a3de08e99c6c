#include "core/preset_dialogs.hpp"

#include <mutex>

#include "core/effect_editor.hpp"
#include "platform/file_dialogs.hpp"
#include "platform/files.hpp"
#include "platform/message_box.hpp"
#include "state/file_chooser.hpp"
#include "state/library_record.hpp"
#include "state/settings.hpp"

namespace zum {
namespace {

std::string extensionOr(const char* extension) {
  return extension != nullptr ? extension : preset::kExtension;
}

KvFileChooser mapChooser(void* owner) {
  KvFileChooser chooser(owner);
  chooser.addFilter("ZUM CC Map", "kvm");
  return chooser;
}

}  // namespace

// The window of another effect may be answering one just now, on a thread of its own.
void PresetDialogs::cancel() {
  const std::lock_guard turn(windowTurn());
  cancelFileQuestions(this);
  cancelMessages(this);
}

void PresetDialogs::askWhatToLoad(const char* extension, const Then& then) {
  KvFileChooser(this).chooseLoad(extensionOr(extension), then);
}

// The dialog asked about the name as it was typed; with its ending it may be that of another file.
void PresetDialogs::askWhereToSave(const char* extension, const Then& then) {
  const std::string ending = extensionOr(extension);
  const auto complete = [this, ending = "." + ending, then](const std::string& chosen) {
    if (chosen.ends_with(ending)) return then(chosen);
    const std::string file = chosen + ending;
    if (!fileExists(file)) return then(file);
    const std::string text = "The file " + file + " exists.\nDo you want to replace it ?";
    askMessage(this, libraryRecord().product, text.c_str(), [file, then](bool yes) {
      if (yes) then(file);
    });
  };
  KvFileChooser(this).chooseSave(ending, readSettingString(kPresetSavePath).value_or(""), complete);
}

void PresetDialogs::askForMapToLoad(const Then& then) {
  mapChooser(this).load("Load File", kControllerMapPath, then);
}

void PresetDialogs::askForMapToSave(const Then& then) {
  mapChooser(this).save("Save File", kControllerMapPath, then);
}

void PresetDialogs::askForRoot(const std::string& start, const Then& then,
                               const std::function<void()>& otherwise) {
  KvFileChooser(this).folder(start, [then, otherwise](const std::string& chosen) {
    if (chosen == KvFileChooser::kNothing) return otherwise();
    then(chosen);
  });
}

void PresetDialogs::tell(const std::string& text) {
  showMessage(libraryRecord().product, text.c_str());
}

void PresetDialogs::tellInvalid() {
  tell(std::string("\t This is no valid ") + libraryRecord().product + " format!");
}

void PresetDialogs::tellFault(const PresetFault& fault) {
  switch (fault.kind) {
    case PresetFault::none: return;
    case PresetFault::wrongMagic:
    case PresetFault::damaged: return tellInvalid();
    case PresetFault::wrongProduct: return tell("wrong plugin version");
    case PresetFault::wrongLayout:
      return tell(std::string("This is not a ") + libraryRecord().product + " file");
  }
}

}  // namespace zum
