// [main] The bank of programs, the walk of a host's program arrows through it, chance. A program
// change by MIDI plays from it on the audio thread.
#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <string_view>

#include "core/midi_in.hpp"
#include "core/preset_desk.hpp"
#include "state/shared_bank.hpp"

namespace zum {

class BankWalk final : public MidiPrograms {
 public:
  BankWalk(StateGate& stateGate, PresetDesk& presetDesk, ProgramPosition& at,
           const EditorLink& shown)
      : gate(stateGate), desk(presetDesk), position(at), window(shown) {}
  BankWalk(const BankWalk&) = delete;
  BankWalk& operator=(const BankWalk&) = delete;

  /// The bank is that of the root from now on, and read when somebody first needs it. Up to here it
  /// is empty.
  void readLater(std::string root);
  /// [main] Reads what is still to be read. Ahead of blocks, since they do not wait for it.
  void fetch();
  /// Reads the bank anew from the folder of the settings.
  void scan();
  /// A file that was written plays as it is from now on, where it is a program. Reads one folder.
  void scanBehind(const std::string& file);
  /// Another root of the preset tree, which is kept in the settings and read.
  void setRoot(std::string root);
  /// Back to the presets that came with the content; a message where none are installed.
  void resetRoot();

  /// Plays a program of the current folder; behind a folder's end that of the next folder, at both
  /// ends around.
  void setProgram(std::int32_t index);
  /// Any program of a folder of several.
  void playAny();
  /// The program of that name, wherever the walk stands. False for one that is not there, or that
  /// is refused.
  bool play(std::string_view folder, std::string_view name);
  /// [audio] The same inside a block. False also where there is no room for it.
  bool tryPlay(std::string_view folder, std::string_view name) ZUM_REALTIME;
  /// [audio]
  void playMidiProgram(int index) ZUM_REALTIME override;
  /// [audio] As setProgram(), but the file behind the program is not looked for. The walk goes on
  /// from one that is refused, but not where there is none or no room to play it.
  void stepMidiProgram(int direction) ZUM_REALTIME override;
  /// The position goes where the current file lies in the bank, if it does.
  void takePosition();

  std::string programName(std::int32_t index);
  /// [main]
  SharedBank::Held programs() {
    fetch();
    return bank.get();
  }

 private:
  using Scan = std::function<SharedBank::Held(const KvProgramBank::Check&)>;
  /// Takes the bank that `make` gives, which gets what presets are checked by. The old one stays
  /// where the memory does not suffice.
  void read(const Scan& make);
  void setBank(const SharedBank::Held& newBank);
  struct Place {
    int folder;
    int program;
  };
  /// The program of that number in the current folder, or the neighbour folder's.
  Place placeOf(const KvProgramBank& all, std::int32_t index) const ZUM_REALTIME;
  void moveTo(const Place& place) ZUM_REALTIME;

  StateGate& gate;
  PresetDesk& desk;
  ProgramPosition& position;
  const EditorLink& window;
  SharedBank bank{std::make_shared<const KvProgramBank>(preset::kExtension)};
  std::atomic<bool> isUnread{false};  // changes in a turn
  std::string unreadRoot;
  std::string fullRoot;  // of a tree that the bank has no room for, once told
};

}  // namespace zum
