// [main] Presets as files: loading, saving, and the neighbours of the current one in its folder.
#pragma once

#include <optional>
#include <string>

#include "core/bank_walk.hpp"
#include "core/preset_desk.hpp"

namespace zum {

class FileDesk {
 public:
  FileDesk(StateGate& stateGate, PresetDesk& presetDesk, BankWalk& bankWalk,
           const EditorLink& shown)
      : gate(stateGate), desk(presetDesk), bank(bankWalk), window(shown) {}
  FileDesk(const FileDesk&) = delete;
  FileDesk& operator=(const FileDesk&) = delete;

  /// False, and a message where there is something to tell, for a file that is refused.
  bool load(const std::string& file, int slot);
  /// False, and a message, when the file could not be written.
  bool save(const std::string& file, int slot);
  /// The file behind the current one, or ahead of it for a negative direction, around the ends of
  /// its folder. Nothing for a folder without presets.
  std::optional<std::string> neighbour(int slot, int direction) const;

 private:
  bool write(const std::string& file, int slot);

  StateGate& gate;
  PresetDesk& desk;
  BankWalk& bank;
  const EditorLink& window;
};

}  // namespace zum
