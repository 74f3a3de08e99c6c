// States and presets of the effect, and what of it is a step of the way back.

#include "core/fresh_source.hpp"
#include "core/host_text.hpp"
#include "core/uni_client.hpp"
#include "engine/shared_value.hpp"

namespace zum {
namespace {

constexpr std::int32_t kTempoOfPreset = 50;  // private opcode of hosts of our own

}  // namespace

std::int32_t KvUniClient::getChunk(void** data, bool /*isPreset*/) { return desk.writeState(data); }

std::int32_t KvUniClient::setChunk(const void* data, std::int32_t byteSize, bool /*isPreset*/) {
  KvChunk state;
  state.borrow(data, static_cast<std::uint32_t>(byteSize > 0 ? byteSize / 4 : 0));
  loadPreset(state, 0, {.restoreAll = true, .findPath = true, .storesRevertPoint = true});
  return 1;
}

bool KvUniClient::loadPreset(const KvChunk& preset, int slot, const LoadFlags& flags) {
  if (!desk.load(preset, slot, flags)) return false;
  history.clear();
  return true;
}

bool KvUniClient::loadState(const void* data, std::uint32_t words) {
  KvChunk state;
  state.borrow(data, words);
  return loadPreset(
      state, 0, {.restoreAll = true, .quiet = true, .findPath = true, .storesRevertPoint = true});
}

// At the first program, and at none, the name is that of the state.
void KvUniClient::getProgramName(char* name) {
  const std::int32_t program = loadShared(curProgram);
  getProgramNameIndexed(0, program == 0 ? -1 : program, name);
}

bool KvUniClient::getProgramNameIndexed(std::int32_t /*category*/, std::int32_t index, char* text) {
  if (index == -1) {
    slot().name.copyTo(text, kVstMaxProgNameLen);
  } else {
    copyText(text, bank.programName(index).c_str(), kVstMaxProgNameLen);
  }
  return true;
}

template <class Play>
void KvUniClient::playAsStep(const Play& play) {
  SoundHistory::Step step(history, SoundHistory::Part::whole, "Preset");
  play();
  step.rename("Preset " + slot().name.get());
}

void KvUniClient::setProgram(std::int32_t index) {
  playAsStep([&] { bank.setProgram(index); });
}

bool KvUniClient::playProgram(std::string_view folder, std::string_view name) {
  bool isPlayed = false;
  playAsStep([&] { isPlayed = bank.play(folder, name); });
  return isPlayed;
}

void KvUniClient::randomPreset() {
  playAsStep([&] { bank.playAny(); });
}

void KvUniClient::revertToStored() {
  const SoundHistory::Step step(history, SoundHistory::Part::whole, "Revert");
  desk.revertToStored();
}

bool KvUniClient::takeSound(const KvChunk& preset, const std::string& stepName) {
  const SoundHistory::Step step(history, SoundHistory::Part::whole, stepName);
  if (!desk.load(preset, 0, {.quiet = true})) return false;
  updateDisplay();
  return true;
}

void KvUniClient::initialise() {
  SoundHistory::Step step(history, SoundHistory::Part::whole, "Initialise");
  KvChunk fresh;
  zum::writePreset(fresh, 0, FreshSource());
  {
    const StateGate::Turn turn(gate);
    if (!desk.restore(fresh, "", "")) return;
    loadDefault(PresetDesk::root());
    storeShared(position.program, 0);
    storeShared(position.folder, 0);
  }
  step.rename("Initialise");  // and not after the preset that is in it
  window.update();
  updateDisplay();
}

void KvUniClient::clearBindings(std::int32_t tag) {
  const SoundHistory::Step step(history, SoundHistory::Part::map, "Clear controllers");
  midi.clearBindings(tag);
}

void KvUniClient::clearAllBindings() {
  const SoundHistory::Step step(history, SoundHistory::Part::map, "Clear controllers");
  midi.clearAllBindings();
}

void KvUniClient::presetTaken(float tempo) ZUM_REALTIME {
  if (transport.host().isOwn) callHostInBlock(kTempoOfPreset, tempo);
}

void KvUniClient::setOption(int index, int value, bool persist) {
  if (!UserSwitches::exists(index)) return;
  if (persist) writeSettingInt(kSwitches[static_cast<std::size_t>(index)].valueName, value);
  switches.set(index, static_cast<float>(value));
}

template <class Edit>
bool KvUniClient::editSteps(const Edit& edit) {
  const SoundHistory::Step step(history, SoundHistory::Part::steps, "Steps");
  StateGate::Silence silence(gate, StateGate::Silence::Ends::withEveryMute);
  if (silence.isComplete()) return edit();
  silence.staysUntilAStateIsLoaded();
  return false;
}

bool KvUniClient::setStepColumns(std::int32_t count) {
  return editSteps([&] { return stepTable.setColumns(count); });
}

bool KvUniClient::setStepPages(std::int32_t count) {
  return editSteps([&] { return stepTable.setPageCount(count); });
}

}  // namespace zum
