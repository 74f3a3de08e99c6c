#include "state/missing_files.hpp"

#include "platform/files.hpp"
#include "platform/message_box.hpp"
#include "state/file_chooser.hpp"
#include "state/library_record.hpp"
#include "state/path_text.hpp"
#include "state/settings.hpp"

namespace zum {

void MissingFiles::search(KvFileObject& object) {
  const std::string wanted = object.path();
  const std::string name(lastComponent(wanted));
  std::string factory = readSettingString(kContentPath).value_or("");
  if (!factory.empty()) factory += "Samples\\Factory\\";
  for (const std::string& folder : {factory, lastFolder}) {
    if (!folder.empty() && fileExists(folder + name) && object.takeFile(folder + name)) return;
  }
  const std::string question =
      "The file " + wanted + " could not be found!\nDo you want to search for the file ?";
  if (quiet || !askMessage(libraryRecord().product, question.c_str())) return;
  std::string found;
  if (!KvFileChooser(this).chooseLoad(found, "wav") || !object.takeFile(found)) return;
  lastFolder = found;
  cutToFolder(lastFolder);
}

}  // namespace zum
