// The effect object: the one thing that a host talks to. It owns the rooms in which all of the
// effect's work is done, says in which order they are made and passed through, and forwards: what a
// host, the window or an adaptor asks for stands here under its name, and is done in a room.
#pragma once

#include <array>
#include <atomic>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/bank_walk.hpp"
#include "core/create_effect.hpp"
#include "core/effect_editor.hpp"
#include "core/file_desk.hpp"
#include "core/midi_in.hpp"
#include "core/parameter_store.hpp"
#include "core/plugin_base.hpp"
#include "core/preset_desk.hpp"
#include "core/preset_dialogs.hpp"
#include "core/sound_history.hpp"
#include "core/state_gate.hpp"
#include "core/transport.hpp"
#include "core/user_switches.hpp"
#include "engine/engine.hpp"
#include "state/table_xy.hpp"

namespace zum {

class SystemRandom;

class KvUniClient final : public KvPluginBase,
                          public KvAligned,
                          private ControlPassOwner,
                          private PresetHost,
                          private SoundHistory::Teller {
 public:
  static constexpr std::int32_t kPrograms = 128;

  KvUniClient(audioMasterCallback host, EditorFactory makeEditor);
  /// What it asked the user is dropped, and its window closed.
  ~KvUniClient() override;

  // ---- [main] the host's operations
  void suspend() override;
  void resume() override;
  void setSampleRate(float rate) override;
  /// Steps through the whole bank: behind a folder's end into the next folder, at both ends
  /// around.
  void setProgram(std::int32_t index) override;
  void setProgramName(const char* /*name*/) override {}
  void getProgramName(char* name) override;
  bool getProgramNameIndexed(std::int32_t category, std::int32_t index, char* text) override;
  void getParameterLabel(std::int32_t index, char* text) override;
  void getParameterDisplay(std::int32_t index, char* text) override;
  void getParameterName(std::int32_t index, char* text) override;
  bool getParameterProperties(std::int32_t index, VstParameterProperties* properties) override;
  bool getOutputProperties(std::int32_t index, VstPinProperties* properties) override;
  /// The state as the bytes of a preset file. They stay valid until the next call.
  std::int32_t getChunk(void** data, bool isPreset) override;
  /// Always 1: a state that is refused changes nothing, and was told to the user.
  std::int32_t setChunk(const void* data, std::int32_t byteSize, bool isPreset) override;
  std::int32_t getPlugCategory() override { return kPlugCategEffect; }
  bool getEffectName(char* name) override;
  bool getVendorString(char* text) override;
  bool getProductString(char* text) override;
  std::int32_t getVendorVersion() override { return 1020; }
  std::int32_t canDo(const char* text) override;
  std::int32_t getGetTailSize() override;
  std::int32_t getNumMidiInputChannels() override { return 1; }
  bool beginEdit(std::int32_t index) override;
  bool endEdit(std::int32_t index) override;
  void raiseAbout() override;
  void openManual() override;
  bool aboutIsOpen() const override;

  // ---- parameters
  /// [any] By control tag.
  void setParameter(std::int32_t tag, float value) ZUM_REALTIME override {
    parameters.setParameter(tag, value);
  }
  /// [any]
  float getParameter(std::int32_t index) ZUM_REALTIME override {
    return parameters.hostValue(index);
  }
  /// [any] The same for a value that the host knows already.
  void setFromHost(std::int32_t tag, float value) ZUM_REALTIME {
    parameters.setFromHost(tag, value);
  }
  /// [any] What was set since the last call and is to be told to a host: bits by facePosition().
  std::uint64_t takeChanges() ZUM_REALTIME { return parameters.takeChanges(); }
  /// [main] Of what the host knows: it is told.
  void setParameterAutomated(std::int32_t index, float value) override;
  /// [any] The stored forms of a row's value; of a tag without one, nothing that ever moves.
  const ControlValue& value(int tag) const ZUM_REALTIME { return parameters.value(tag); }
  /// [main] The tab strip as it is pressed just now: left and right button, x, y, Shift, Control.
  void setMouseArea(const std::array<float, KvMouseAreaChunk::kCount>& words) {
    parameters.setMouseArea(words);
  }
  /// [main] What the user sets: the host is told where it knows the value.
  void setByUser(std::int32_t tag, float value);
  /// [main] Every parameter of the host's moves by chance, as far as its range for that goes.
  void randomise(SystemRandom& random);

  // ---- [main] the way back: core/sound_history.hpp
  /// A window opened: what the user does is kept from now on.
  void keepHistory() { history.start(); }
  /// The gesture that is open and those of the same tag behind it are one step, until sealStep().
  void mergeStep() { history.merge(); }
  void sealStep() { history.seal(); }
  // False where there is nothing to do, and while something is held.
  bool undo() { return history.undo(); }
  bool redo() { return history.redo(); }
  /// What it would be, such as "Cutoff" or "Preset Deep"; nothing where it would do nothing.
  std::optional<std::string> undoName() { return history.undoName(); }
  std::optional<std::string> redoName() { return history.redoName(); }
  bool canUndo() { return undoName().has_value(); }
  bool canRedo() { return redoName().has_value(); }
  /// Sound 0 or 1: A or B.
  bool chooseSound(int sound) { return history.choose(sound); }
  int chosenSound() const { return history.chosen(); }
  /// The chosen one over the other.
  bool copySound() { return history.copy(); }
  /// The sound that an effect has when it is made.
  void initialise();
  /// A preset as the user's new sound, which is one step of that name. False when it is refused.
  bool takeSound(const KvChunk& preset, const std::string& stepName);

  // ---- [main] presets. What is refused changes nothing; messages tell of it.
  /// Fills the chunk with the state of a slot. False when there is no such slot.
  bool writePreset(KvChunk& chunk, int slot) { return desk.write(chunk, slot); }
  /// Takes a state over, in silence. False when it is refused.
  bool loadPreset(const KvChunk& preset, int slot, const LoadFlags& flags);
  /// A null path asks the user and goes on with the answer, a null extension is that of presets.
  /// `notify` tells the host, `done` is called when the file is written, and is a program where it
  /// lies in the bank's tree.
  void loadPresetFile(const char* path, int slot, const char* extension, bool notify) {
    files.loadPresetFile(path, slot, extension, notify);
  }
  void savePreset(const char* path, int slot, const char* extension, bool notify,
                  const std::function<void()>& done = {}) {
    files.savePreset(path, slot, extension, notify, done);
  }
  /// The neighbours of the current file in its folder, around its ends.
  void nextPreset(int slot) { files.step(slot, 1); }
  void previousPreset(int slot) { files.step(slot, -1); }
  /// Any program of a folder of several.
  void randomPreset();
  void storeRevertPoint() { desk.storeRevertPoint(); }
  void revertToStored();
  bool canRevert() { return desk.canRevert(); }
  /// Reads the bank anew from the folder of the settings.
  void scanBank() { bank.scan(); }
  /// Root of the preset tree with a backslash at its end; empty for none.
  static std::string presetRoot() { return PresetDesk::root(); }
  /// Asks for another root of the preset tree, and reads the bank from it. `done` follows also
  /// when none was chosen.
  void choosePresetRoot(const std::function<void()>& done) { files.choosePresetRoot(done); }
  /// Back to the presets that came with the content; a message where none are installed.
  void resetPresetRoot() { bank.resetRoot(); }
  /// Switch 0 ignores program changes, switch 1 isolates the controller map from presets.
  /// `persist` keeps it in the settings.
  void setOption(int index, int value, bool persist);
  float option(int index) const { return switches.get(index); }
  // Sizes of the step table. False when the block call did not end in time: then the effect stays
  // silent until a state is loaded.
  bool setStepColumns(std::int32_t count);
  bool setStepPages(std::int32_t count);

  // ---- [main] MIDI learn and controller maps
  /// The next controller, or pressure, moves the parameter from now on. False for a tag that there
  /// is not.
  bool beginLearn(std::int32_t tag) { return midi.beginLearn(tag); }
  void endLearn() { midi.endLearn(); }
  /// What was learned of the parameter, by controllers; pressure keeps it.
  void clearBindings(std::int32_t tag);
  void clearAllBindings();
  /// A null path asks the user and goes on with the answer.
  void saveCcMap(const char* path) { files.saveCcMap(path); }
  void loadCcMap(const char* path) { files.loadCcMap(path); }

  /// [host] One thread at a time, which need not be that of the block. Always 1.
  std::int32_t processEvents(VstEvents* events) override;

  // ---- [audio]
  void processReplacing(float** inputs, float** outputs, std::int32_t frames)
      ZUM_REALTIME override {
    process(inputs, nullptr, outputs, frames);
  }
  /// The follower and the trigger of the LFO hear `sideChain`, two channels, in place of the
  /// inputs; null for none.
  void process(const float* const* inputs, const float* const* sideChain, float* const* outputs,
               std::int32_t frames) ZUM_REALTIME;
  /// [any] The next block that plays starts in silence: nothing of what it heard before rings on.
  void askForReset() ZUM_REALTIME { resetWanted.store(true); }
  /// What is due in a control pass.
  void handleEvent(const EngineEvent& event) ZUM_REALTIME { midi.handle(event, bank); }
  /// The program of that number in the folder for MIDI, from memory.
  void playMidiProgram(int index) ZUM_REALTIME { bank.playMidiProgram(index); }
  /// Every constant of sample rate and tempo, and every stored parameter set anew.
  void recomputeEngine(bool keepBuffers) ZUM_REALTIME;

  // ---- [main] a host of a newer interface, which is there as long as the effect
  /// It is told of gestures of all parameters in faceTags(), and bypass fades.
  void setFace() {
    hasFace = true;
    engine.fadeBypass();
  }
  /// [any]
  bool isKnownToHost(std::int32_t tag) const;
  /// Takes a host's session over. False, and no message, when it is refused.
  bool loadState(const void* data, std::uint32_t words);
  /// [host] A message of three bytes, due at a frame of the next block.
  void receiveMidi(std::int32_t frame, const std::uint8_t* bytes) ZUM_REALTIME {
    midi.receive(frame, bytes);
  }
  /// [main] The program of that name in the bank. False for one that is not there, or that is
  /// refused.
  bool playProgram(std::string_view folder, std::string_view name);
  /// [audio] The same between two blocks. False also where there is no room for it: then only the
  /// main thread can.
  bool tryProgram(std::string_view folder, std::string_view name) ZUM_REALTIME {
    const StateGate::Block block(gate);
    return block.isOpen() && bank.tryPlay(folder, name);
  }
  /// [any] Moves with each preset that is taken over.
  std::uint32_t presetCount() const ZUM_REALTIME { return gate.intakeCount() / 2; }

  // ---- [any] what the window and hosts of our own look at
  bool isOffline() const { return gate.isOffline(); }
  const KvSystemInfo& timing() const { return clock; }
  const EngineControls& controls() const { return engine.controls; }
  const Engine& signal() const { return engine; }
  const Readouts& readouts() const { return parameters.readouts(); }
  GroupMask& groups() { return parameters.groups(); }
  KvTableXY& steps() { return stepTable; }
  /// The tag that learns, -1 for none.
  const std::atomic<std::int32_t>& learning() const { return midi.learning(); }
  ControllerMap& controllers() { return midi.map(); }
  /// The last value of a controller, 0 to 1.
  float controllerValue(int number) const { return midi.controllerValue(number); }
  const NoteState& played() const { return midi.played(); }
  const PresetSlot& slot() const { return desk.slot(); }
  std::int32_t currentFolder() const ZUM_REALTIME { return loadShared(position.folder); }
  std::int32_t currentProgram() const ZUM_REALTIME { return loadShared(position.program); }
  /// [main]
  SharedBank::Held programs() { return bank.programs(); }
  /// [audio]
  EventQueue& eventQueue() { return midi.queue(); }
  /// [audio] What an adaptor fills ahead of a block.
  VstTimeInfo& adaptorTime() { return transport.adaptorTime(); }

 private:
  // steps of the construction, in their order
  void readHostNames();
  void setFixedFacts();
  void loadDefaults(const std::string& root);
  void loadDefault(const std::string& root);

  template <class Edit>
  bool editSteps(const Edit& edit);
  EffectEditor* effectEditor() const { return window.get(); }

  // What the engine and the desks ask of their owner.
  void beginControlPass() ZUM_REALTIME override;
  void modPageMoved(float position) ZUM_REALTIME override;
  float stepValue(std::int32_t step) ZUM_REALTIME override { return stepTable.getValue(step, 0); }
  void presetTaken(float tempo) ZUM_REALTIME override;
  void namesChanged() override { updateDisplay(); }
  void moveBack(int tag, float raw) override;
  void soundMoved() override { updateDisplay(); }
  /// What `play` does is a step that is called after the preset.
  template <class Play>
  void playAsStep(const Play& play);

  // A room knows those above it alone.
  std::vector<BufferRecord> bufferRegistry;
  std::vector<TempoListener*> tempoListeners;
  KvSystemInfo clock{bufferRegistry, tempoListeners};
  Engine engine;
  KvTableXY stepTable;
  EditorLink window;
  UserSwitches switches;
  StateGate gate;
  Transport transport{clock};
  ParameterStore parameters{engine, stepTable, window};
  MidiIn midi{gate, parameters, switches};
  ProgramPosition position{curProgram};
  PresetDialogs dialogs;
  PresetDesk desk{
      {gate, parameters, midi.map(), stepTable, clock, position, switches, window, dialogs, *this}};
  SoundHistory history{{gate, parameters, midi, stepTable, position, desk}, window, *this};
  BankWalk bank{gate, desk, position, window};
  bool hasFace = false;
  std::atomic<bool> resetWanted{false};
  FileDesk files{gate, desk, bank, midi, window, dialogs, *this, history};

 public:
  // Under the names by which hosts of our own know them.
  std::atomic<bool>& muteRequest = gate.muteRequest;
  std::atomic<bool>& inProcess = gate.inProcess;
  std::atomic<bool>& adaptorTransport = transport.adaptorTransport;
};

}  // namespace zum
