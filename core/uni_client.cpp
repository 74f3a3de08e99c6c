// Construction, the block call, and what a host asks of the effect. States and steps of the way
// back stand in core/uni_client_states.cpp.

#include "core/uni_client.hpp"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <exception>

#include "core/host_text.hpp"
#include "core/tags.hpp"
#include "engine/shared_value.hpp"
#include "platform/files.hpp"
#include "platform/random_source.hpp"
#include "platform/registry_store.hpp"

namespace zum {
namespace {

constexpr const char* kProduct = "ZUM";
constexpr const char* kNoParameter = "empty";

/// "%f" whatever the host's locale says: six digits behind a point.
void showValue(char* text, float value, const char* label) {
  std::array<char, kHostTextRoom> shown{};
  const auto end = std::to_chars(shown.data(), shown.data() + shown.size() - 2,
                                 static_cast<double>(value), std::chars_format::fixed, 6);
  *end.ptr = ' ';
  std::strncpy(end.ptr + 1, label, static_cast<std::size_t>(&shown.back() - (end.ptr + 1)));
  copyText(text, shown.data(), kHostTextRoom);
}

void silence(float* const* outputs, std::int32_t frames) ZUM_REALTIME {
  if (outputs == nullptr || frames <= 0) return;
  for (int channel = 0; channel < 2; ++channel) {
    if (outputs[channel] != nullptr) std::fill_n(outputs[channel], frames, 0.0F);
  }
}

bool complete(const float* const* channels) ZUM_REALTIME {
  return channels != nullptr && channels[0] != nullptr && channels[1] != nullptr;
}

}  // namespace

// ---- construction

KvUniClient::KvUniClient(audioMasterCallback host, EditorFactory makeEditor)
    : KvPluginBase(host, kPrograms, kHostParameters) {
  const RegistryStore::OneWait oneWait;  // for settings that another program keeps locked
  readHostNames();
  setFixedFacts();
  clock.setControlInterval(Engine::kControlFrames);
  clock.controlCounter = Engine::kControlFrames;  // the very first frame runs a control pass
  clock.setSampleRate(clock.sampleRate);
  for (const BufferRecord& buffer : engine.buffers()) bufferRegistry.push_back(buffer);
  const StartSettings start = initSettings();
  for (std::size_t i = 0; i < start.switches.size(); ++i) {
    switches.set(static_cast<int>(i), static_cast<float>(start.switches[i]));
  }
  if (makeEditor != nullptr) {
    EffectEditor* made = makeEditor(*this);
    setEditor(made);
    window.connect(made);
  }
  recomputeEngine(false);
  loadDefaults(PresetDesk::rootOf(start.presetRoot));
  setNumPrograms(kPrograms);
}

KvUniClient::~KvUniClient() {
  dialogs.cancel();
  // Not with the base: the window shows what goes here.
  window.connect(nullptr);
  delete getEditor();
  setEditor(nullptr);
}

void KvUniClient::readHostNames() {
  char vendor[256];
  char product[256];
  getHostVendorString(vendor);
  getHostProductString(product);
  transport.setHost(vendor, product);
}

void KvUniClient::setFixedFacts() {
  canProcessReplacing();
  programsAreChunks();
  noTail(true);
  // In memory the four characters stand in this order.
  std::int32_t identifier = 0;
  std::memcpy(&identifier, "kvzm", sizeof identifier);
  setUniqueID(identifier);
  setNumInputs(2);
  setNumOutputs(2);
}

// Up to here there are no programs; none of what a user keeps can make the construction fail.
void KvUniClient::loadDefaults(const std::string& root) {
  setNumPrograms(0);
  if (!root.empty()) makeFolders(root);
  loadDefault(root);
  storeShared(position.folder, 0);
  bank.readLater(root);
}

void KvUniClient::loadDefault(const std::string& root) {
  if (!root.empty()) files.load(root + "default." + preset::kExtension, 0);
}

AEffect* createEffect(audioMasterCallback host, EditorFactory makeEditor) noexcept {
  try {
    return (new KvUniClient(host, makeEditor))->getAeffect();
  } catch (const std::exception&) {
    return nullptr;
  }
}

// ---- the block

void KvUniClient::process(const float* const* inputs, const float* const* sideChain,
                          float* const* outputs, std::int32_t frames) ZUM_REALTIME {
  StateGate::Block block(gate);
  if (!block.isOpen()) {
    silence(outputs, frames);
    return midi.passBlock();
  }
  // An offline host gets its buffers back untouched.
  if (getCurrentProcessLevel() == kVstProcessLevelOffline) {
    block.leaveOffline();
    return midi.passBlock();
  }
  transport.read(transport.isFed() ? &transport.adaptorTime() : getTimeInfo(Transport::kFilter));
  midi.beginBlock();
  if (resetWanted.load(std::memory_order_relaxed) && resetWanted.exchange(false)) engine.forget();
  if (frames > 0 && complete(inputs) && complete(outputs)) {
    engine.process(inputs, complete(sideChain) ? sideChain : inputs, outputs, frames, clock, *this);
  }
}

void KvUniClient::beginControlPass() ZUM_REALTIME {
  midi.takeDue(Engine::kControlFrames, bank);
  if (transport.takeTempo()) recomputeEngine(true);
}

void KvUniClient::modPageMoved(float page) ZUM_REALTIME { setParameter(tag::modChoice, page); }

void KvUniClient::recomputeEngine(bool keepBuffers) ZUM_REALTIME {
  engine.recompute(clock, keepBuffers);
  parameters.applyAllStored();
}

std::int32_t KvUniClient::processEvents(VstEvents* events) {
  if (!transport.isFed()) midi.receive(*events);  // else the adaptor feeds the queue itself
  return 1;
}

// Hosts promise that no block runs meanwhile, and say nothing of who loads a state on another
// thread.
void KvUniClient::suspend() {
  const StateGate::Silence silence(gate);
  clock.clearBuffers();
}

void KvUniClient::resume() {
  wantEvents();
  bank.fetch();
  const StateGate::Silence silence(gate);
  engine.resetOutput();
}

// Some hosts play without ever switching an effect on, but none without a rate.
void KvUniClient::setSampleRate(float rate) {
  bank.fetch();
  const StateGate::Silence silence(gate);
  KvPluginBase::setSampleRate(rate);
  clock.setSampleRate(rate);
  recomputeEngine(false);
}

// ---- parameters towards the host

// Label and name are the same text: no parameter has a unit.
void KvUniClient::getParameterLabel(std::int32_t index, char* text) {
  getParameterName(index, text);
}

void KvUniClient::getParameterName(std::int32_t index, char* text) {
  const KvParameter* record = parameters.hostParameter(index);
  copyText(text, record != nullptr ? record->name : kNoParameter, kHostTextRoom);
}

void KvUniClient::getParameterDisplay(std::int32_t index, char* text) {
  const KvParameter* record = parameters.hostParameter(index);
  if (record == nullptr) {
    copyText(text, kNoParameter, kHostTextRoom);
  } else {
    showValue(text, getParameter(index), record->label);
  }
}

bool KvUniClient::getParameterProperties(std::int32_t index, VstParameterProperties* properties) {
  const KvParameter* record = parameters.hostParameter(index);
  properties->flags = 0;
  copyText(properties->label, record != nullptr ? record->name : kNoParameter,
           sizeof properties->label);
  if (record != nullptr && record->flags == KvParameter::kSwitch) {
    properties->flags |= kVstParameterIsSwitch;
  }
  return record != nullptr;
}

bool KvUniClient::isKnownToHost(std::int32_t tag) const {
  return hasFace ? facePosition(tag) >= 0 : tag >= 0 && tag < kHostParameters;
}

void KvUniClient::setParameterAutomated(std::int32_t index, float value) {
  if (!isKnownToHost(index)) return;
  history.touch(index);
  parameters.setFromHost(index, value);  // it hears of it here
  callHost(audioMasterAutomate, index, 0, nullptr, value);
}

void KvUniClient::setByUser(std::int32_t tag, float value) {
  if (isKnownToHost(tag)) return setParameterAutomated(tag, value);
  history.touch(tag);
  setParameter(tag, value);
}

// A step begins ahead of what a host may do there, and ends ahead of it, too.
bool KvUniClient::beginEdit(std::int32_t index) {
  history.beginGesture(index);
  return isKnownToHost(index) && KvPluginBase::beginEdit(index);
}

bool KvUniClient::endEdit(std::int32_t index) {
  history.endGesture(index);
  return isKnownToHost(index) && KvPluginBase::endEdit(index);
}

void KvUniClient::moveBack(int tag, float raw) {
  if (!isKnownToHost(tag)) return setParameter(tag, raw);
  KvPluginBase::beginEdit(tag);
  setParameterAutomated(tag, raw);
  KvPluginBase::endEdit(tag);
}

void KvUniClient::randomise(SystemRandom& random) {
  const SoundHistory::Step step(history, SoundHistory::Part::values, "Randomise");
  for (std::int32_t tag = 0; tag < kHostParameters; ++tag) {
    const KvParameter* record = parameters.hostParameter(tag);
    if (record == nullptr) continue;
    const float moved = ParameterStore::moved(*record, random);
    beginEdit(tag);
    setParameterAutomated(tag, moved);
    endEdit(tag);
  }
}

// ---- what the effect is

bool KvUniClient::getOutputProperties(std::int32_t /*index*/, VstPinProperties* properties) {
  properties->flags = kVstPinIsActive | kVstPinIsStereo;
  return transport.host().isAcid;
}

bool KvUniClient::getEffectName(char* name) {
  copyText(name, kProduct, kVstMaxEffectNameLen);
  return true;
}

bool KvUniClient::getVendorString(char* text) {
  copyText(text, kVendor, kVstMaxVendorStrLen);
  return true;
}

bool KvUniClient::getProductString(char* text) {
  copyText(text, kProduct, kVstMaxProductStrLen);
  return true;
}

std::int32_t KvUniClient::canDo(const char* text) {
  struct Ability {
    const char* name;
    std::int32_t answer;
  };
  const Ability abilities[] = {
      {"receiveVstEvents", 1},   {"receiveVstMidiEvent", 1},
      {"sendVstMidiEvent", 0},   {"sendVstEvent", 0},
      {"receiveVstTimeInfo", 1}, {"hasAboutScreen", editor != nullptr && editor->isOpen() ? 1 : 0},
  };
  for (const Ability& ability : abilities) {
    if (std::strcmp(text, ability.name) == 0) return ability.answer;
  }
  return -1;
}

// No sound outlasts the input by a time that a host could wait for.
std::int32_t KvUniClient::getGetTailSize() { return truncate(loadShared(sampleRate) * 0.0F); }

void KvUniClient::raiseAbout() {
  if (EffectEditor* shown = effectEditor()) shown->raiseAbout();
}

void KvUniClient::openManual() {
  if (EffectEditor* shown = effectEditor()) shown->openManual();
}

bool KvUniClient::aboutIsOpen() const {
  const EffectEditor* shown = effectEditor();
  return shown != nullptr && shown->aboutIsOpen();
}

}  // namespace zum
