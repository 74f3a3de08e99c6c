#include "state/missing_files.hpp"

#include <deque>

#include "platform/files.hpp"
#include "platform/message_box.hpp"
#include "state/file_chooser.hpp"
#include "state/library_record.hpp"
#include "state/path_text.hpp"
#include "state/settings.hpp"

namespace zum {

struct MissingFiles::Search : std::enable_shared_from_this<MissingFiles::Search> {
  struct Wanted {
    KvFileObject* object;
    std::string path;

    /// False when another preset was loaded while the user was asked.
    bool isCurrent() const { return object->path() == path; }
  };

  Search(void* asker, bool asksNobody) : owner(asker), quiet(asksNobody) {}

  bool takeFromFolders(const Wanted& wanted) const {
    const std::string name(lastComponent(wanted.path));
    std::string factory = readSettingString(kContentPath).value_or("");
    if (!factory.empty()) factory += "Samples\\Factory\\";
    for (const std::string& folder : {factory, lastFolder}) {
      if (folder.empty() || !fileExists(folder + name)) continue;
      if (wanted.object->takeFile(folder + name)) return true;
    }
    return false;
  }

  void ask() {
    const std::string text = "The file " + waiting.front().path +
                             " could not be found!\nDo you want to search for the file ?";
    askMessage(owner, libraryRecord().product, text.c_str(), [self = shared_from_this()](bool yes) {
      if (!yes) return self->askNext();
      KvFileChooser(self->owner)
          .chooseLoad(
              "wav", [self](const std::string& found) { self->takeFound(found); },
              [self] { self->askNext(); });
    });
  }

  void takeFound(const std::string& found) {
    const Wanted& wanted = waiting.front();
    if (wanted.isCurrent() && wanted.object->takeFile(found)) {
      lastFolder = found;
      cutToFolder(lastFolder);
    }
    askNext();
  }

  void askNext() {
    do {
      waiting.pop_front();
      if (waiting.empty()) return;
    } while (!waiting.front().isCurrent() || takeFromFolders(waiting.front()));
    ask();
  }

  void* const owner;
  const bool quiet;
  std::string lastFolder;
  std::deque<Wanted> waiting;  // the user is asked about the first one
};

MissingFiles::MissingFiles(void* owner, bool asksNobody)
    : shared(std::make_shared<Search>(owner, asksNobody)) {}

void MissingFiles::search(KvFileObject& object) {
  const Search::Wanted wanted{&object, object.path()};
  if (shared->takeFromFolders(wanted) || shared->quiet) return;
  shared->waiting.push_back(wanted);
  if (shared->waiting.size() == 1) shared->ask();
}

}  // namespace zum
