#include "platform/zenity_dialogs.hpp"

#include <utility>

#include "platform/files.hpp"

namespace zum {
namespace {

constexpr const char* kProgram = "zenity";

/// A path with a backslash has no internal form; what is no absolute path is no answer.
std::optional<std::string> pathIn(std::string output) {
  if (output.ends_with('\n')) output.pop_back();
  if (output.find_first_of(std::string_view("\\\0", 2)) != std::string::npos) return std::nullopt;
  std::string path = toInternalPath(output);
  if (!isAbsolutePath(path)) return std::nullopt;
  return path;
}

}  // namespace

ZenityDialogs::~ZenityDialogs() {
  program.stop();
  if (pending) std::exchange(pending, nullptr)(std::nullopt);
}

bool ZenityDialogs::isInstalled() { return !findProgram(kProgram).empty(); }

void ZenityDialogs::load(const FileQuestion& question, FileAnswer answer) {
  open(question, {}, std::move(answer));
}

void ZenityDialogs::save(const FileQuestion& question, FileAnswer answer) {
  open(question, {"--save", "--confirm-overwrite"}, std::move(answer));
}

void ZenityDialogs::folder(const FileQuestion& question, FileAnswer answer) {
  open(question, {"--directory"}, std::move(answer));
}

// Each option is one argument with its value, so that no title or path is taken for another.
void ZenityDialogs::open(const FileQuestion& question, std::vector<std::string> options,
                         FileAnswer answer) {
  std::vector<std::string> arguments{kProgram, "--file-selection"};
  for (std::string& option : options) arguments.push_back(std::move(option));
  arguments.push_back("--title=" + question.title);
  if (isAbsolutePath(question.startFolder)) {
    std::string start = toSystemPath(question.startFolder);
    if (!start.ends_with('/')) start += '/';  // a folder to be in, not one to choose
    arguments.push_back("--filename=" + start);
  }
  for (const FileFilter& filter : question.filters) {
    const std::string pattern = "*." + filter.extension;
    std::string option = "--file-filter=" + filter.name;
    option.append(" (").append(pattern).append(") | ").append(pattern);
    arguments.push_back(std::move(option));
  }
  if (!question.filters.empty()) arguments.emplace_back("--file-filter=All files | *");
  if (isOpen() || !program.start(findProgram(kProgram), std::move(arguments))) {
    return answer(std::nullopt);
  }
  pending = std::move(answer);
  asker = question.owner;
}

void ZenityDialogs::cancel(void* owner) {
  if (!isOpen() || asker != owner) return;
  pending = nullptr;
  program.stop();
}

// The answer may open the next dialog, or end this object.
void ZenityDialogs::poll() {
  if (!isOpen()) return;
  std::optional<std::string> said = program.poll();
  if (program.isRunning()) return;
  const FileAnswer answer = std::exchange(pending, nullptr);
  answer(said ? pathIn(std::move(*said)) : std::nullopt);
}

}  // namespace zum
