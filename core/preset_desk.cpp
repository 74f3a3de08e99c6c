#include "core/preset_desk.hpp"

#include <chrono>
#include <memory>
#include <new>
#include <thread>
#include <utility>

#include "core/preset_intake.hpp"
#include "core/state_source.hpp"
#include "engine/shared_value.hpp"
#include "platform/files.hpp"
#include "state/path_text.hpp"
#include "state/preset_files.hpp"
#include "state/settings.hpp"

namespace zum {

// ---- out of the parameters

// A program change on the audio thread may come in between; then all of it is written again, and at
// last in silence: a state is better old than none.
bool PresetDesk::write(KvChunk& chunk, int slot) {
  if (!isSlot(slot)) return false;
  const StateGate::Turn turn(around.gate);  // a state that is half loaded is nobody's session
  constexpr int kTries = 8;
  const StateSource source(around.parameters, around.map, this->slot(slot), around.position);
  chunk.sampleRate = around.clock.sampleRate;
  const auto write = [&] {
    chunk.tempo = static_cast<float>(loadShared(around.clock.tempoBpm));
    PresetNeeds needs;
    return writePreset(chunk, slot, source) && !check(chunk, slot, needs);
  };
  for (int i = 0; i < kTries; ++i) {
    const std::uint32_t intake = around.gate.intakeCount();
    if (write() && intake % 2 == 0 && intake == around.gate.intakeCount()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  const StateGate::Silence silence(around.gate);
  return write();
}

std::int32_t PresetDesk::writeState(void** data) {
  const StateGate::Turn turn(around.gate);
  if (!write(stateChunk, 0)) return 0;
  *data = const_cast<void*>(stateChunk.data());
  return static_cast<std::int32_t>(4 * stateChunk.dataWords());
}

// Without memory the old point stays; a state that does not check is none.
void PresetDesk::storeRevertPoint() try {
  const StateGate::Turn turn(around.gate);
  auto written = std::make_unique<KvChunk>();
  std::string name = slot().name.get();
  if (!write(*written, 0)) written.reset();
  revertChunk = std::move(written);
  revertName = std::move(name);
} catch (const std::bad_alloc&) {
}

// ---- into the parameters

PresetFault PresetDesk::check(const KvChunk& preset, int slot, PresetNeeds& needs) const
    ZUM_REALTIME {
  return trusted([&] {  // the reader owns nothing that its end would free
    KvChunk reader;
    reader.borrow(preset.data(), preset.dataWords());  // the chunk may be read by others, too
    PresetCheck visitor(around.parameters, needs);
    return walkPreset(reader, slot, visitor);
  });
}

PresetFault PresetDesk::check(const BankPreset& program, PresetNeeds& needs) const {
  return program.fault ? program.fault : check(program.chunk, 0, needs);
}

// The message comes before the turn is taken: a box that stays open holds nobody up.
bool PresetDesk::accepts(const KvChunk& preset, int slot, bool quiet, PresetNeeds& needs) const {
  if (!isSlot(slot)) return false;
  const PresetFault fault = check(preset, slot, needs);
  if (fault && !quiet) PresetDialogs::tellFault(fault);
  return !fault;
}

bool PresetDesk::reserve(const PresetNeeds& needs) noexcept {
  return around.map.reserve(needs.bindings) && around.steps.reserve(needs.objectWords);
}

bool PresetDesk::hasRoomFor(const PresetNeeds& needs) const ZUM_REALTIME {
  return around.map.hasRoomFor(needs.bindings) && needs.objectWords <= around.steps.capacity();
}

bool PresetDesk::makeRoom(const PresetNeeds& needs) {
  if (hasRoomFor(needs)) return true;
  const StateGate::Silence silence(around.gate);
  return reserve(needs);
}

// A session that is recalled with an isolated map empties the map and does not fill it. What was
// here before is no session: the way back takes no button of the programs its controller.
PresetIntake::MapRule PresetDesk::mapRule(const LoadFlags& flags) const ZUM_REALTIME {
  using enum PresetIntake::MapRule;
  const bool isSession = flags.restoreAll && !flags.isOwn;
  if (!around.switches.isOn(UserSwitches::kIsolateMap)) return isSession ? replaces : takes;
  return isSession ? empties : keeps;
}

void PresetDesk::take(const KvChunk& preset, int slot, const LoadFlags& flags,
                      MissingFiles* missing) ZUM_REALTIME {
  trusted([&] {  // the reader owns nothing that its end would free
    KvChunk reader;
    reader.borrow(preset.data(), preset.dataWords());
    PresetIntake visitor(
        {around.parameters, around.map, slots[static_cast<std::size_t>(slot)], around.position},
        flags.restoreAll, mapRule(flags), missing);
    {
      const StateGate::Intake intake(around.gate);
      walkPreset(reader, slot, visitor);
      if (!flags.title.empty()) visitor.name(flags.title);
    }
    around.clock.clearBuffers();
    if (!flags.isOwn) around.host.presetTaken(reader.tempo);
  });
}

bool PresetDesk::replace(const KvChunk& preset, int slot, const PresetNeeds& needs,
                         const LoadFlags& flags) {
  MissingFiles missing = around.dialogs.missingFiles(flags.quiet);
  const StateGate::Silence silence(around.gate, StateGate::Silence::Ends::withEveryMute);
  if (!hasRoomFor(needs) && !reserve(needs)) return false;
  take(preset, slot, flags, &missing);
  around.clock.controlCounter = around.clock.controlFrames;  // the next block starts with a pass
  return true;
}

bool PresetDesk::load(const KvChunk& preset, int slot, const LoadFlags& flags) {
  PresetNeeds needs;
  if (!accepts(preset, slot, flags.quiet, needs)) return false;
  {
    const StateGate::Turn turn(around.gate);
    if (!replace(preset, slot, needs, flags)) return false;
    if (flags.findPath) findOrigin(slot);
    if (flags.storesRevertPoint) storeRevertPoint();
  }
  around.window.update();
  return true;
}

bool PresetDesk::canRevert() {
  const StateGate::Turn turn(around.gate);
  return revertChunk != nullptr;
}

void PresetDesk::revertToStored() {
  {
    const StateGate::Turn turn(around.gate);
    PresetNeeds needs;
    const bool isStored = revertChunk != nullptr && !check(*revertChunk, 0, needs);
    if (!isStored || !replace(*revertChunk, 0, needs, {.quiet = true, .title = revertName})) return;
  }
  around.window.update();
}

bool PresetDesk::restore(const KvChunk& state, const std::string& path, const std::string& folder) {
  const StateGate::Turn turn(around.gate);
  PresetNeeds needs;
  const LoadFlags flags{.restoreAll = true, .quiet = true, .isOwn = true};
  if (check(state, 0, needs) || !replace(state, 0, needs, flags)) return false;
  slot().path.set(path);
  slot().folder.set(folder);
  return true;
}

bool PresetDesk::tryPlay(const BankPreset& program) ZUM_REALTIME {
  PresetNeeds needs;
  if (check(program.chunk, 0, needs) || !hasRoomFor(needs)) return false;
  take(program.chunk, 0, {.title = program.name}, nullptr);
  around.window.update();
  return true;
}

// ---- where it came from

std::string PresetDesk::root() { return rootOf(readSettingString(kPresetPath).value_or("")); }

std::string PresetDesk::rootOf(std::string setting) {
  if (!isAbsolutePath(setting)) return {};
  ensureTrailingBackslash(setting);
  return setting;
}

void PresetDesk::takeOrigin(int slot, const std::string& file) {
  PresetSlot& names = this->slot(slot);
  names.path.set(file);
  names.folder.set(folderName(file));
}

// It goes with a state that was taken, so it does not throw: without memory nothing is found, and
// the texts of the state before go.
void PresetDesk::findOrigin(int slot, const char* nowhere) {
  PresetSlot& names = this->slot(slot);
  try {
    const std::string tree = root();
    if (tree.empty()) return;
    const FoundPreset found = findPresetFile(tree, names.name.get() + "." + preset::kExtension);
    names.folder.set(found.folder.empty() ? nowhere : found.folder);
    if (!found.path.empty()) names.path.set(found.path);
  } catch (const std::bad_alloc&) {
    names.folder.set("");
    names.path.set("");
  }
}

}  // namespace zum
