// [main] Presets and controller maps as files, which the user may be asked for.
#pragma once

#include <functional>
#include <string>

#include "core/bank_walk.hpp"
#include "core/midi_in.hpp"
#include "core/preset_desk.hpp"
#include "core/preset_dialogs.hpp"
#include "core/sound_history.hpp"

namespace zum {

class FileDesk {
 public:
  FileDesk(StateGate& stateGate, PresetDesk& presetDesk, BankWalk& bankWalk, MidiIn& midiIn,
           const EditorLink& shown, PresetDialogs& questions, PresetHost& told, SoundHistory& steps)
      : gate(stateGate),
        desk(presetDesk),
        bank(bankWalk),
        midi(midiIn),
        window(shown),
        dialogs(questions),
        host(told),
        history(steps) {}
  FileDesk(const FileDesk&) = delete;
  FileDesk& operator=(const FileDesk&) = delete;

  /// A null path asks the user and goes on with the answer, a null extension is that of presets.
  /// `notify` tells the host, `done` is called when the file is written, and is a program where it
  /// lies in the bank's tree.
  void loadPresetFile(const char* path, int slot, const char* extension, bool notify);
  void savePreset(const char* path, int slot, const char* extension, bool notify,
                  const std::function<void()>& done);
  /// Loads the file behind the current one, or the one ahead for a negative direction, around the
  /// ends of its folder.
  void step(int slot, int direction);
  /// Asks for another root of the preset tree, and reads the bank from it. `done` follows also
  /// when none was chosen.
  void choosePresetRoot(const std::function<void()>& done);
  /// A null path asks the user and goes on with the answer.
  void saveCcMap(const char* path);
  void loadCcMap(const char* path);

  /// False, and a message where there is something to tell, for a file that is refused.
  bool load(const std::string& file, int slot);
  /// False, and a message, when the file could not be written.
  bool save(const std::string& file, int slot);

 private:
  bool write(const std::string& file, int slot);

  StateGate& gate;
  PresetDesk& desk;
  BankWalk& bank;
  MidiIn& midi;
  const EditorLink& window;
  PresetDialogs& dialogs;
  PresetHost& host;
  SoundHistory& history;
};

}  // namespace zum
