// [main] What the user is asked and told about presets and controller maps. The answers come by
// calls, later or at once; with this object its questions are dropped.
#pragma once

#include <functional>
#include <string>

#include "state/missing_files.hpp"
#include "state/preset_format.hpp"

namespace zum {

class PresetDialogs {
 public:
  using Then = std::function<void(const std::string& path)>;

  PresetDialogs() = default;
  PresetDialogs(const PresetDialogs&) = delete;
  PresetDialogs& operator=(const PresetDialogs&) = delete;
  ~PresetDialogs() { cancel(); }
  /// What was asked is never answered.
  void cancel();

  // `then` is called when a path was chosen. A null extension is that of presets.
  void askWhatToLoad(const char* extension, const Then& then);
  /// Completes the name by the extension, and asks before a file is replaced by that.
  void askWhereToSave(const char* extension, const Then& then);
  // As KvFileChooser: also called when none was chosen.
  void askForMapToLoad(const Then& then);
  void askForMapToSave(const Then& then);
  /// Root of the preset tree; `otherwise` is called when none was chosen.
  void askForRoot(const std::string& start, const Then& then,
                  const std::function<void()>& otherwise);
  /// Where the files are that the objects of a state name.
  MissingFiles missingFiles(bool quiet) { return {this, quiet}; }

  static void tell(const std::string& text);
  /// Why a preset is refused.
  static void tellFault(const PresetFault& fault);
  static void tellInvalid();
};

}  // namespace zum
