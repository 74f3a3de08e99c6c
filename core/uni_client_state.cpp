// States in memory: what a host saves and gives back, the revert point, and the way of a preset
// into the parameters.

#include <chrono>
#include <string>
#include <thread>

#include "core/uni_client.hpp"
#include "engine/shared_value.hpp"
#include "platform/message_box.hpp"
#include "state/library_record.hpp"
#include "state/missing_files.hpp"

namespace zum {
namespace {

constexpr std::int32_t kTempoOfPreset = 50;  // private opcode of hosts of our own

/// A second reader of a chunk's words: the chunk itself may be in use by others.
void readAgain(KvChunk& reader, const KvChunk& chunk) ZUM_REALTIME {
  reader.borrow(chunk.data(), chunk.dataWords());
}

}  // namespace

// ---- writing

/// The parameters as they stand, word by word while others may set them.
class KvUniClient::StateSource final : public PresetSource {
 public:
  StateSource(const KvUniClient& owner, int slot)
      : effect(owner), names(owner.slots[static_cast<std::size_t>(slot)]) {}

  int recordCount() const override { return static_cast<int>(effect.presetRecords.size()); }
  std::int32_t recordId(int record) const override { return at(record).id; }
  void writeRecord(int record, KvChunk& chunk) const override {
    const KvParameter& parameter = at(record);
    if (parameter.object != nullptr) {
      parameter.object->writeChunk(&chunk);
    } else {
      chunk.putFloat(loadShared(*parameter.value));
    }
  }
  std::vector<Binding> bindings(int controller) const override {
    return effect.controllerMap.controllers[static_cast<std::size_t>(controller)].all();
  }
  std::string name() const override { return names.name.get(); }
  PresetPosition position() const override {
    return {.program = loadShared(effect.curProgram), .folder = loadShared(effect.curFolder)};
  }
  std::vector<Binding> aftertouchBindings() const override {
    return effect.controllerMap.aftertouch.all();
  }

 private:
  const KvParameter& at(int record) const {
    return *effect.presetRecords[static_cast<std::size_t>(record)];
  }
  const KvUniClient& effect;
  const PresetSlot& names;
};

// A program change on the audio thread may come in between; then all of it is written again, and at
// last in silence: a state is better old than none.
bool KvUniClient::writePreset(KvChunk& chunk, int slot) {
  if (!isSlot(slot)) return false;
  const std::lock_guard turn(loadTurn);  // a state that is half loaded is nobody's session
  constexpr int kTries = 8;
  const StateSource source(*this, slot);
  chunk.sampleRate = clock.sampleRate;
  const auto write = [&] {
    chunk.tempo = static_cast<float>(loadShared(clock.tempoBpm));
    PresetNeeds needs;
    return zum::writePreset(chunk, slot, source) && !checkPreset(chunk, slot, needs);
  };
  for (int i = 0; i < kTries; ++i) {
    const std::uint32_t intake = intakes.load();
    if (write() && intake % 2 == 0 && intake == intakes.load()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  const Silence silence(*this);
  return write();
}

std::int32_t KvUniClient::getChunk(void** data, bool /*isPreset*/) {
  const std::lock_guard turn(loadTurn);
  if (!writePreset(stateChunk, 0)) return 0;
  *data = const_cast<void*>(stateChunk.data());
  return static_cast<std::int32_t>(4 * stateChunk.dataWords());
}

void KvUniClient::storeRevertPoint() {
  const std::lock_guard turn(loadTurn);
  if (writePreset(revertChunk, 0)) {
    revertName = slots[0].name.get();
  } else {
    revertChunk.adopt(nullptr, 0);  // half a state is no point to come back to
  }
}

// ---- reading

/// Reads a whole preset and changes nothing: where it does not fit, and what room it asks for.
class KvUniClient::PresetCheck final : public PresetVisitor {
 public:
  PresetCheck(KvUniClient& owner, PresetNeeds& found) : effect(owner), needs(found) {}

  const char* record(std::int32_t id, std::int32_t size, KvChunk& chunk) ZUM_REALTIME override {
    const int row = rowOfId(id);
    if (row < 0) {
      chunk.skip(static_cast<std::uint32_t>(size));
      return nullptr;
    }
    const KvParameter& parameter = effect.records[static_cast<std::size_t>(row)];
    if (parameter.object != nullptr) {
      parameter.object->readChunk(&chunk, true);
      needs.objectWords = std::max(needs.objectWords, static_cast<std::size_t>(size));
      return chunk.overrun() ? "the step table does not fit together" : nullptr;
    }
    if (size < 1) return "a parameter has no value";
    chunk.skip(static_cast<std::uint32_t>(size));
    return nullptr;
  }
  void controller(int number, Binding /*binding*/) ZUM_REALTIME override {
    ++needs.bindings[static_cast<std::size_t>(number)];
  }
  void aftertouch(Binding /*binding*/) ZUM_REALTIME override { ++needs.bindings.back(); }
  void name(std::string_view /*text*/) ZUM_REALTIME override {}
  void position(std::int32_t /*trailer*/, const PresetPosition& /*at*/) ZUM_REALTIME override {}

 private:
  KvUniClient& effect;
  PresetNeeds& needs;
};

/// Takes over a preset that was checked, part by part in its own order.
class KvUniClient::PresetIntake final : public PresetVisitor {
 public:
  PresetIntake(KvUniClient& owner, int slot, bool all, MissingFiles* search) ZUM_REALTIME
      : effect(owner),
        names(owner.slots[static_cast<std::size_t>(slot)]),
        missing(search),
        restoreAll(all),
        isolated(owner.option(kIsolateMap) != 0.0F) {}

  const char* record(std::int32_t id, std::int32_t size, KvChunk& chunk) ZUM_REALTIME override {
    const int row = rowOfId(id);
    const auto words = static_cast<std::uint32_t>(size);
    if (row < 0) {
      chunk.skip(words);
      return nullptr;
    }
    const KvParameter& parameter = effect.records[static_cast<std::size_t>(row)];
    const bool keeps = parameter.excluded && !restoreAll;
    if (parameter.object != nullptr) {
      const bool taken = parameter.object->readChunk(&chunk, keeps) != 0;
      const bool lacksFile =
          !taken && !keeps && parameter.object->getType() == KvChunkableClass::kFile;
      if (lacksFile && missing != nullptr) {
        // there is no search on the audio thread
        trusted([&] { missing->search(static_cast<KvFileObject&>(*parameter.object)); });
      }
      return nullptr;
    }
    const float value = chunk.getFloat();
    if (!keeps) effect.setParameter(parameter.tag, value);
    chunk.skip(words - 1);
    return nullptr;
  }

  // A session that is recalled with an isolated map empties the map and does not fill it.
  void mapBegins() ZUM_REALTIME override {
    if (!isolated || restoreAll) effect.controllerMap.clearControllers();
    effect.controllerMap.learning.store(true);
  }
  void controller(int number, Binding binding) ZUM_REALTIME override {
    if (isolated) return;
    effect.controllerMap.controllers[static_cast<std::size_t>(number)].tryAppend(binding);
  }
  void mapEnds() ZUM_REALTIME override { effect.controllerMap.learning.store(false); }

  void name(std::string_view text) ZUM_REALTIME override {
    if (missing == nullptr) return names.name.setInBlock(text);
    names.name.set(text);
  }

  void position(std::int32_t trailer, const PresetPosition& at) ZUM_REALTIME override {
    if (!restoreAll || trailer < preset::kFirstAppliedTrailer) return;
    if (at.hasProgram && at.program >= 0 && at.program < KvProgramBank::kPresets) {
      storeShared(effect.curProgram, at.program);
    }
    if (at.hasFolder && at.folder >= 0 && at.folder < KvProgramBank::kFolders) {
      storeShared(effect.curFolder, at.folder);
    }
  }

  void aftertouchBegins() ZUM_REALTIME override {
    if (!isolated || restoreAll) effect.controllerMap.aftertouch.clear();
    effect.controllerMap.learning.store(true);
  }
  void aftertouch(Binding binding) ZUM_REALTIME override {
    if (!isolated) effect.controllerMap.aftertouch.tryAppend(binding);
  }
  void aftertouchEnds() ZUM_REALTIME override { effect.controllerMap.learning.store(false); }

 private:
  KvUniClient& effect;
  PresetSlot& names;
  MissingFiles* const missing;
  const bool restoreAll;
  const bool isolated;
};

PresetFault KvUniClient::checkPreset(const KvChunk& preset, int slot, PresetNeeds& needs)
    ZUM_REALTIME {
  return trusted([&] {  // the reader owns nothing that its end would free
    KvChunk reader;
    readAgain(reader, preset);
    PresetCheck check(*this, needs);
    return walkPreset(reader, slot, check);
  });
}

bool KvUniClient::reserve(const PresetNeeds& needs) noexcept {
  return controllerMap.reserve(needs.bindings) && stepTable.reserve(needs.objectWords);
}

bool KvUniClient::hasRoomFor(const PresetNeeds& needs) const ZUM_REALTIME {
  return controllerMap.hasRoomFor(needs.bindings) && needs.objectWords <= stepTable.capacity();
}

bool KvUniClient::makeRoom(const PresetNeeds& needs) {
  if (hasRoomFor(needs)) return true;
  const Silence silence(*this);
  return reserve(needs);
}

/// Parameters that the preset does not hold keep their values.
void KvUniClient::takePreset(const KvChunk& preset, int slot, bool restoreAll,
                             MissingFiles* missing, std::string_view title) ZUM_REALTIME {
  trusted([&] {  // as above
    KvChunk reader;
    readAgain(reader, preset);
    PresetIntake intake(*this, slot, restoreAll, missing);
    intakes.fetch_add(1);  // odd while it lasts
    walkPreset(reader, slot, intake);
    if (!title.empty()) intake.name(title);
    intakes.fetch_add(1);
    clock.clearBuffers();
    if (hostIsOwn) callHostInBlock(kTempoOfPreset, reader.tempo);
  });
}

KvUniClient::Silence::Silence(KvUniClient& owner)
    : effect(owner), turn(owner.loadTurn), muted(owner.muteRequest.load()) {
  effect.silenceBlocks(false);
}

// An offline block leaves its byte set, so the wait has an end.
bool KvUniClient::silenceBlocks(bool waitsForOffline) {
  constexpr int kPasses = 500;
  muteRequest.store(true);
  auto wake = std::chrono::steady_clock::now();
  for (int pass = 0; inProcess.load(); ++pass) {
    if (pass == kPasses || (!waitsForOffline && offline.load())) return false;
    std::this_thread::sleep_until(wake += std::chrono::milliseconds(1));
  }
  return true;
}

void KvUniClient::tellFault(const PresetFault& fault) {
  const std::string product = libraryRecord().product;
  std::string text;
  switch (fault.kind) {
    case PresetFault::none: return;
    case PresetFault::wrongMagic:
    case PresetFault::damaged: text = "\t This is no valid " + product + " format!"; break;
    case PresetFault::wrongProduct: text = "wrong plugin version"; break;
    case PresetFault::wrongLayout: text = "This is not a " + product + " file"; break;
  }
  showMessage(product.c_str(), text.c_str());
}

PresetFault KvUniClient::checkProgram(const BankPreset& program, PresetNeeds& needs) {
  return program.fault ? program.fault : checkPreset(program.chunk, 0, needs);
}

// The message comes before the turn is taken: a box that stays open holds nobody up.
bool KvUniClient::accepts(const KvChunk& preset, int slot, bool quiet, PresetNeeds& needs) {
  if (!isSlot(slot)) return false;
  const PresetFault fault = checkPreset(preset, slot, needs);
  if (fault && !quiet) tellFault(fault);
  return !fault;
}

bool KvUniClient::replaceState(const KvChunk& preset, int slot, const PresetNeeds& needs,
                               bool restoreAll, bool quiet, std::string_view title) {
  const bool room = hasRoomFor(needs);
  MissingFiles missing(this, quiet);
  silenceBlocks();
  const bool taken = room || reserve(needs);
  if (taken) {
    takePreset(preset, slot, restoreAll, &missing, title);
    clock.controlCounter = clock.controlFrames;  // the next block starts with a control pass
  }
  muteRequest.store(false);
  return taken;
}

bool KvUniClient::loadPreset(const KvChunk& preset, int slot, LoadFlags flags) {
  PresetNeeds needs;
  if (!accepts(preset, slot, flags.quiet, needs)) return false;
  {
    const std::lock_guard turn(loadTurn);
    if (!replaceState(preset, slot, needs, flags.restoreAll, flags.quiet, flags.title))
      return false;
    if (flags.findPath) findOrigin(slot);
    if (flags.storesRevertPoint) storeRevertPoint();
  }
  updateEditor();
  return true;
}

std::int32_t KvUniClient::setChunk(const void* data, std::int32_t byteSize, bool /*isPreset*/) {
  KvChunk state;
  state.borrow(data, static_cast<std::uint32_t>(byteSize > 0 ? byteSize / 4 : 0));
  loadPreset(state, 0, {.restoreAll = true, .findPath = true, .storesRevertPoint = true});
  return 1;
}

void KvUniClient::revertToStored() {
  {
    const std::lock_guard turn(loadTurn);
    PresetNeeds needs;
    if (revertChunk.dataWords() == 0 || checkPreset(revertChunk, 0, needs) ||
        !replaceState(revertChunk, 0, needs, false, true, revertName)) {
      return;  // nothing was stored yet
    }
  }
  updateEditor();
}

// Inside the block call, so no other block runs: the two bytes stay as they are.
void KvUniClient::playMidiProgram(int index) ZUM_REALTIME {
  const SharedBank::InBlock programsNow(bank);
  const BankPreset* program = programsNow->getMidiProgram(index);
  PresetNeeds needs;
  if (program == nullptr || checkPreset(program->chunk, 0, needs) || !hasRoomFor(needs)) return;
  takePreset(program->chunk, 0, false, nullptr, program->name);
  updateEditor();
}

void KvUniClient::updateEditor() ZUM_REALTIME {
  if (EffectEditor* shown = effectEditor()) shown->update();
}

// ---- sizes of the step table

template <class Edit>
bool KvUniClient::editSteps(const Edit& edit) {
  const std::lock_guard turn(loadTurn);
  if (!silenceBlocks()) return false;
  const bool done = edit();
  muteRequest.store(false);
  return done;
}

bool KvUniClient::setStepColumns(std::int32_t count) {
  return editSteps([&] { return stepTable.setColumns(count); });
}

bool KvUniClient::setStepPages(std::int32_t count) {
  return editSteps([&] { return stepTable.setPageCount(count); });
}

}  // namespace zum
