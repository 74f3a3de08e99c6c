// `zum install-content [FOLDER]`: gives a user the content (presets, samples) and tells the
// settings where it lies.
#include <unistd.h>

#include <array>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "apps/zum/commands.hpp"
#include "apps/zum/content_copy.hpp"
#include "apps/zum/failure.hpp"
#include "apps/zum/option_checks.hpp"
#include "apps/zum/settings_failure.hpp"
#include "platform/content_folder.hpp"
#include "platform/files.hpp"
#include "platform/printable_text.hpp"
#include "state/library_record.hpp"
#include "state/path_text.hpp"
#include "state/registry_key.hpp"
#include "state/settings.hpp"

namespace zum {
namespace {

namespace fs = std::filesystem;

struct InstallOptions {
  fs::path folder;
  bool inPlace = false;
};

fs::path defaultSource() {
  for (const std::string& folder :
       {programContentFolder(), systemContentFolder(), userContentFolder()}) {
    if (!folder.empty() && holdsContent(folder)) return toSystemPath(folder);
  }
  throw Failure("no content is installed; name the folder that holds Presets and Samples");
}

fs::path sourceFolder(const fs::path& given) {
  if (given.empty()) return defaultSource();
  // A link is registered as it is: what it leads to may change.
  fs::path folder = (fs::absolute(given) / "").lexically_normal();
  if (!holdsContent(toInternalPath(folder.string()))) {
    throw Failure("there is no folder Presets in " + given.string() +
                  "; name the folder that holds it");
  }
  return folder;
}

bool liesBelow(const fs::path& path, const fs::path& folder) {
  const fs::path way = path.lexically_relative(folder);
  return !way.empty() && *way.begin() != "..";
}

fs::path copyForUser(const fs::path& source) {
  fs::path target = toSystemPath(userContentFolder());
  if (target.empty()) throw Failure("this user has no home folder; set HOME or use --in-place");
  std::error_code none;
  if (fs::equivalent(source, target, none)) return target;
  const fs::path from = fs::weakly_canonical(source, none), to = fs::weakly_canonical(target, none);
  if (liesBelow(from, to) || liesBelow(to, from)) {
    throw Failure(source.string() + " and the copy's place, " + target.string() +
                      ", lie in one another; move the content or use --in-place",
                  kExitWrongUsage);
  }
  const ContentCopy done = copyContent(source, target);
  std::cout << "copied " << printable(source.string()) << " to " << printable(target.string())
            << ": " << done.added << " new, " << done.refreshed << " refreshed, " << done.unchanged
            << " unchanged\n";
  for (const fs::path& aside : done.keptAside) {
    std::cout << "what was there before is kept as " << printable(aside.string()) << '\n';
  }
  return target;
}

std::optional<std::string> textOf(KvRegistryKey& key, const char* name) {
  std::array<char, KvRegistryKey::kTextBytes> buffer{};
  if (!key.getString(name, buffer.data())) return std::nullopt;
  return buffer.data();
}

// True for a folder that the user chose: an absolute path outside of the content that was
// registered before.
bool staysAsChosen(const std::string& path, const std::optional<std::string>& oldContent,
                   const std::string& content) {
  if (!isAbsolutePath(path)) return false;
  return !oldContent || oldContent->empty() || *oldContent == content ||
         !path.starts_with(*oldContent);
}

void registerContent(const std::string& content) {
  struct {
    const char* name;
    std::string path;
    bool follows;  // moves to the new content, whatever the user chose
    std::optional<std::string> earlier{};
  } folders[] = {{kInstallPath, content, true},
                 {kContentPath, content, true},
                 {kPresetPath, content + "Presets\\", false},
                 {kPresetSavePath, content + "Presets\\User\\", false},
                 {kAudioFilePath, content + "Samples\\Factory", false}};
  const RegistryStore::OneWait oneWait;
  KvRegistryKey key(libraryRecord().product);
  for (auto& folder : folders) folder.earlier = textOf(key, folder.name);
  // Done now, or the next start of the effect would fill in the folders anew.
  initSettings();
  auto oldContent = textOf(key, kContentPath);
  if (oldContent) ensureTrailingBackslash(*oldContent);
  auto whole = key.transaction();
  if (!whole.begun()) throw settingsFailure("cannot write", key);
  std::string report;
  for (const auto& folder : folders) {
    const auto current = folder.earlier ? folder.earlier : textOf(key, folder.name);
    const bool stays = !folder.follows && current && staysAsChosen(*current, oldContent, content);
    const std::string& path = stays ? *current : folder.path;
    if (textOf(key, folder.name) != path && !key.setString(folder.name, path)) {
      throw settingsFailure("cannot write", key);
    }
    report += std::string(folder.name) + (path != folder.path ? " stays " : " is ") +
              printable(toSystemPath(path)) + '\n';
  }
  if (!whole.commit()) throw settingsFailure("cannot write", key);
  std::cout << report;
}

void warnIfNothingCanBeSaved(const fs::path& content) {
  const fs::path folder = content / "Presets" / "User";
  std::error_code none;
  fs::create_directories(folder, none);
  if (access(folder.c_str(), W_OK) != 0) {
    warn("you may not write to " + folder.string() +
         "; to save presets there, leave out --in-place");
  }
}

void installContent(const InstallOptions& options) {
  const fs::path source = sourceFolder(options.folder);
  const fs::path place = options.inPlace ? source : copyForUser(source);
  std::string content = toInternalPath(place.string());
  ensureTrailingBackslash(content);
  if (toSystemPath(content) != (place / "").string() || content.size() > 1000) {
    throw Failure("the name " + place.string() +
                  " holds a backslash or is longer than 1000 bytes; put the content elsewhere");
  }
  warnIfNothingCanBeSaved(place);
  registerContent(content);
}

}  // namespace

void addInstallContentCommand(CLI::App& app) {
  auto options = std::make_shared<InstallOptions>();
  CLI::App* command = app.add_subcommand(
      "install-content", "Copy presets and samples to your own folder and use them from there");
  command
      ->add_option("FOLDER", options->folder,
                   "Content to install; without it, what was installed with this program")
      ->check(notEmpty());
  command->add_flag("--in-place", options->inPlace, "Copy nothing: use the content where it lies");
  command->callback([options] { installContent(*options); });
}

}  // namespace zum
