// [main, with one door for audio] States in memory: what a host saves and gives back, the revert
// point, and the way of a preset into the parameters.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "core/effect_editor.hpp"
#include "core/preset_check.hpp"
#include "core/preset_dialogs.hpp"
#include "core/preset_intake.hpp"
#include "core/preset_slot.hpp"
#include "core/state_gate.hpp"
#include "core/user_switches.hpp"
#include "engine/clock.hpp"
#include "state/program_bank.hpp"
#include "state/table_xy.hpp"

namespace zum {

/// How a state is loaded.
struct LoadFlags {
  bool restoreAll = false;  // as a host's session: excluded parameters and program position, too
  bool quiet = false;       // no messages
  bool findPath = false;    // looks for the preset's file on disk
  bool storesRevertPoint = false;
  bool isOwn = false;  // no preset, but one that was here before: tempo and isolated map stay
  std::string_view title = {};  // in place of the preset's own name
};

/// The host, as the desks know it.
class PresetHost {
 public:
  /// [any] A preset was taken over, which was written at that tempo, in beats per minute.
  virtual void presetTaken(float tempo) ZUM_REALTIME = 0;
  /// [main] Names and values are to be shown anew.
  virtual void namesChanged() = 0;

 protected:
  ~PresetHost() = default;
};

class PresetDesk {
 public:
  static constexpr int kSlots = 1;

  /// What the desk works on; all of it outlives the desk.
  struct Around {
    StateGate& gate;
    ParameterStore& parameters;
    ControllerMap& map;
    KvTableXY& steps;
    KvSystemInfo& clock;
    ProgramPosition& position;
    const UserSwitches& switches;
    const EditorLink& window;
    PresetDialogs& dialogs;
    PresetHost& host;
  };
  explicit PresetDesk(const Around& rooms) : around(rooms) {}
  PresetDesk(const PresetDesk&) = delete;
  PresetDesk& operator=(const PresetDesk&) = delete;

  static bool isSlot(int slot) ZUM_REALTIME { return slot >= 0 && slot < kSlots; }
  /// Root of the preset tree with a backslash at its end; empty for none, and for one that would
  /// lie in whatever folder the host runs in.
  static std::string root();
  /// The same of the text that is kept in the settings.
  static std::string rootOf(std::string setting);

  PresetSlot& slot(int at = 0) { return slots[static_cast<std::size_t>(at)]; }
  const PresetSlot& slot(int at = 0) const { return slots[static_cast<std::size_t>(at)]; }

  // ---- out of the parameters
  /// Fills the chunk with the state of a slot. False when there is no such slot.
  bool write(KvChunk& chunk, int slot);
  /// The state's bytes, which stay valid until the next call; how many, 0 for a failure.
  std::int32_t writeState(void** data);
  void storeRevertPoint();

  // ---- into the parameters
  /// [any] Why the preset cannot be taken over, and what room it asks for.
  PresetFault check(const KvChunk& preset, int slot, PresetNeeds& needs) const ZUM_REALTIME;
  PresetFault check(const BankPreset& program, PresetNeeds& needs) const;
  /// False, and a message, for a preset that is refused.
  bool accepts(const KvChunk& preset, int slot, bool quiet, PresetNeeds& needs) const;
  /// Takes over what was accepted, in silence. False when the memory does not suffice.
  bool replace(const KvChunk& preset, int slot, const PresetNeeds& needs, const LoadFlags& flags);
  /// Both of them, all that the flags ask for, and the window is told. False when it is refused.
  bool load(const KvChunk& preset, int slot, const LoadFlags& flags);
  void revertToStored();
  bool canRevert();
  /// A state that was here before, and the file that it came from. False when the memory does not
  /// suffice.
  bool restore(const KvChunk& state, const std::string& path, const std::string& folder);
  /// [audio] Inside the block call, so no other block runs. False when there is no room for it.
  bool tryPlay(const BankPreset& program) ZUM_REALTIME;
  /// In silence, so that no block writes into what grows; without it where there is room. False
  /// when the memory does not suffice.
  bool makeRoom(const PresetNeeds& needs);

  // ---- where it came from
  /// A file. The name is set where the state is: it goes with what is heard.
  void takeOrigin(int slot, const std::string& file);
  /// Where a search for the name finds it; `nowhere` stands for the folder where it does not.
  void findOrigin(int slot, const char* nowhere = "");

 private:
  bool reserve(const PresetNeeds& needs) noexcept;
  bool hasRoomFor(const PresetNeeds& needs) const ZUM_REALTIME;
  PresetIntake::MapRule mapRule(const LoadFlags& flags) const ZUM_REALTIME;
  void take(const KvChunk& preset, int slot, const LoadFlags& flags, MissingFiles* missing)
      ZUM_REALTIME;

  const Around around;
  std::array<PresetSlot, kSlots> slots;
  KvChunk stateChunk;                          // what the host was given last
  std::unique_ptr<const KvChunk> revertChunk;  // snapshot; null for none
  std::string revertName = "default";
};

}  // namespace zum
