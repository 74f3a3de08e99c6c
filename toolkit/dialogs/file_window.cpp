#include "toolkit/dialogs/file_window.hpp"

#include "platform/user_folders.hpp"
#include "state/path_text.hpp"

namespace zum {
namespace {

constexpr CPoint kSize{480, 400};  // pixels, as all here
constexpr int kEdge = 12;
constexpr int kFieldHeight = 22;
constexpr int kListTop = kEdge + kFieldHeight + 8;
constexpr int kListTag = 3;
constexpr int kRoot = 1;  // bytes of the topmost folder's path

constexpr const char* kTopFolder = "\\";

const char* okWord(FileChoice choice) {
  switch (choice) {
    case FileChoice::load: return "Open";
    case FileChoice::save: return "Save";
    case FileChoice::folder: break;
  }
  return "Choose";
}

std::string withoutEnd(std::string path) {
  while (path.size() > kRoot && path.ends_with('\\')) path.pop_back();
  return path;
}

bool isFolder(const std::string& path) { return listFolder(path).has_value(); }

}  // namespace

FileWindow::FileWindow(FileChoice what, const FileQuestion& question, const DialogPlace& place)
    : DialogWindow(kSize, place), choice(what), asked(question) {
  KvFrame& owner = getFrame();
  const int right = kSize.x - kEdge;
  const int fieldTop = kSize.y - 2 * kEdge - kButtonHeight - kFieldHeight;
  path = put(new TextField({kEdge, kEdge, right, kEdge + kFieldHeight}, this, 0, owner));
  path->hasCursor = false;
  const bool hasName = choice == FileChoice::save;
  const int listEnd = hasName ? fieldTop - 8 : fieldTop + kFieldHeight;
  list = put(new FileList({kEdge, kListTop, right, listEnd}, this, kListTag, owner));
  if (hasName) {
    name = put(new TextField({kEdge, fieldTop, right, fieldTop + kFieldHeight}, this, 0, owner));
  }
  addButton("Cancel", kCancelTag, 0);
  ok = addButton(okWord(choice), kOkTag, 1);
  replace = addButton("Replace", kOkTag, 1);
  ask({});
  enter(kTopFolder);
  enter(toInternalPath(userHome().string()));
  if (isAbsolutePath(question.startFolder)) enter(question.startFolder);
  open(question.title);
}

std::string FileWindow::pathOf(const std::string& entry) const {
  std::string whole = folder;
  ensureTrailingBackslash(whole);
  return whole + entry;
}

void FileWindow::enter(const std::string& fresh) {
  const std::string inside = withoutEnd(fresh);
  if (!isAbsolutePath(inside) || !list->read(inside, asked.filters)) return;
  folder = inside;
  path->setText(toSystemPath(folder));
  ask({});
}

void FileWindow::enterSelected() {
  const FolderEntry* const entry = list->getSelected();
  if (entry == nullptr || !entry->isFolder) return;
  if (entry->name != "..") return enter(pathOf(entry->name));
  std::string above = folder;
  cutToFolder(above);
  enter(above);
}

/// Shows that a file is there already; an empty path that there is no such question.
void FileWindow::ask(const std::string& existing) {
  toReplace = existing;
  ok->setVisible(existing.empty());
  replace->setVisible(!existing.empty());
}

void FileWindow::choose(std::string file) {
  chosen = std::move(file);
  finish();
}

void FileWindow::accept() {
  const FolderEntry* const entry = list->getSelected();
  switch (choice) {
    case FileChoice::folder:
      return choose(entry != nullptr && entry->name != ".." ? pathOf(entry->name) : folder);
    case FileChoice::load:
      if (entry == nullptr) return;
      return entry->isFolder ? enterSelected() : choose(pathOf(entry->name));
    case FileChoice::save: return acceptName();
  }
}

void FileWindow::acceptName() {
  if (name == nullptr || name->getText().empty()) return enterSelected();
  const std::string file = pathOf(name->getText());
  if (isFolder(file)) {
    name->setText({});
    return enter(file);
  }
  if (fileExists(file) && toReplace != file) return ask(file);
  choose(file);
}

void FileWindow::valueChanged(CControl& control) {
  if (control.getTag() != kListTag) return DialogWindow::valueChanged(control);
  const FolderEntry* const entry = list->getSelected();
  ask({});
  if (name != nullptr && entry != nullptr && !entry->isFolder) name->setText(entry->name);
  if (!list->wasOpened() || entry == nullptr) return;
  if (entry->isFolder) {
    enterSelected();
  } else {
    accept();
  }
}

bool FileWindow::keyPressed(const WindowKey& key) {
  const bool separates = key.character == '/' || key.character == '\\';
  switch (key.virt) {
    case keys::kUp: list->moveSelection(-1); return true;
    case keys::kDown: list->moveSelection(1); return true;
    case keys::kPageUp: list->moveSelection(-list->rowsInside()); return true;
    case keys::kPageDown: list->moveSelection(list->rowsInside()); return true;
    default: break;
  }
  if (name != nullptr && !separates && name->type(key)) {
    ask({});
    return true;
  }
  return DialogWindow::keyPressed(key);
}

}  // namespace zum
