// Construction, and what a host asks of the effect outside of the block.

#include "core/uni_client.hpp"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <exception>

#include "core/create_effect.hpp"
#include "core/host_text.hpp"
#include "platform/file_dialogs.hpp"
#include "platform/message_box.hpp"
#include "platform/registry_store.hpp"

namespace zum {
namespace {

constexpr const char* kVendor = "Zelvane";
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

}  // namespace

KvUniClient::KvUniClient(audioMasterCallback host, EditorFactory makeEditor)
    : KvPluginBase(host, kPrograms, kHostParameters),
      clock(bufferRegistry, tempoListeners),
      mouseArea([this] {
        std::array<float*, KvMouseAreaChunk::kCount> words{};
        std::transform(engine.controls.mouseArea.begin(), engine.controls.mouseArea.end(),
                       words.begin(), [](float& word) { return &word; });
        return words;
      }()) {
  const RegistryStore::OneWait oneWait;  // for settings that another program keeps locked
  constructRecords();
  readHostNames();
  timeRecord = std::make_unique<VstTimeInfo>();
  setFixedFacts();
  clock.setControlInterval(Engine::kControlFrames);
  clock.controlCounter = Engine::kControlFrames;  // the very first frame runs a control pass
  clock.setSampleRate(clock.sampleRate);
  for (const BufferRecord& buffer : engine.buffers()) bufferRegistry.push_back(buffer);
  controllerMap.reserve();
  buildLinks();
  readSettings();
  if (makeEditor != nullptr) setEditor(makeEditor(*this));
  recomputeEngine(false);
  loadDefaults();
  setNumPrograms(kPrograms);
}

KvUniClient::~KvUniClient() {
  cancelFileQuestions(this);
  cancelMessages(this);
  // Not with the base: the window shows what goes here.
  delete getEditor();
  setEditor(nullptr);
}

void KvUniClient::constructRecords() {
  const auto rows = parameterRows();
  for (std::size_t i = 0; i < rows.size(); ++i) {
    records[i].id = rows[i].id;
    records[i].tag = rows[i].tag;
    records[i].name = rows[i].name;
  }
}

void KvUniClient::readHostNames() {
  char text[256];
  getHostVendorString(text);
  hostIsFxpansion = std::strcmp(text, "FXpansion") == 0;
  hostIsOwn = std::strcmp(text, kVendor) == 0;
  getHostProductString(text);
  hostIsAcid = std::strcmp(text, "Sony ACID Pro") == 0;
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

// Hosts promise that no block runs meanwhile, and say nothing of who loads a state on another
// thread.
void KvUniClient::suspend() {
  const Silence silence(*this);
  clock.clearBuffers();
}

void KvUniClient::resume() {
  wantEvents();
  const Silence silence(*this);
  engine.resetOutput();
}

void KvUniClient::setSampleRate(float rate) {
  const Silence silence(*this);
  KvPluginBase::setSampleRate(rate);
  clock.setSampleRate(rate);
  recomputeEngine(false);
}

const KvParameter* KvUniClient::hostParameter(std::int32_t index) const ZUM_REALTIME {
  return index >= 0 && index < kHostParameters ? hostTable[static_cast<std::size_t>(index)]
                                               : nullptr;
}

// Label and name are the same text: no parameter has a unit.
void KvUniClient::getParameterLabel(std::int32_t index, char* text) {
  getParameterName(index, text);
}

void KvUniClient::getParameterName(std::int32_t index, char* text) {
  const KvParameter* record = hostParameter(index);
  copyText(text, record != nullptr ? record->name : kNoParameter, kHostTextRoom);
}

void KvUniClient::getParameterDisplay(std::int32_t index, char* text) {
  const KvParameter* record = hostParameter(index);
  if (record == nullptr) {
    copyText(text, kNoParameter, kHostTextRoom);
  } else {
    showValue(text, getParameter(index), record->label);
  }
}

bool KvUniClient::getParameterProperties(std::int32_t index, VstParameterProperties* properties) {
  const KvParameter* record = hostParameter(index);
  properties->flags = 0;
  copyText(properties->label, record != nullptr ? record->name : kNoParameter,
           sizeof properties->label);
  if (record != nullptr && record->flags == KvParameter::kSwitch) {
    properties->flags |= kVstParameterIsSwitch;
  }
  return record != nullptr;
}

bool KvUniClient::getOutputProperties(std::int32_t /*index*/, VstPinProperties* properties) {
  properties->flags = kVstPinIsActive | kVstPinIsStereo;
  return hostIsAcid;
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

bool KvUniClient::beginEdit(std::int32_t index) {
  return index >= 0 && index < kHostParameters && KvPluginBase::beginEdit(index);
}

bool KvUniClient::endEdit(std::int32_t index) {
  return index >= 0 && index < kHostParameters && KvPluginBase::endEdit(index);
}

EffectEditor* KvUniClient::effectEditor() const ZUM_REALTIME {
  return static_cast<EffectEditor*>(editor);
}

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

AEffect* createEffect(audioMasterCallback host, EditorFactory makeEditor) noexcept {
  try {
    return (new KvUniClient(host, makeEditor))->getAeffect();
  } catch (const std::exception&) {
    return nullptr;
  }
}

}  // namespace zum
