// The effect object: the one thing that a host talks to. Owns every parameter record, the engine,
// the timing block, the program bank and the editor. Its operations stand in one source each for
// what the host asks, parameters, the block call, MIDI, states in memory, preset files and
// programs.
#pragma once

#include <array>
#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/controller_map.hpp"
#include "core/create_effect.hpp"
#include "core/effect_editor.hpp"
#include "core/event_inbox.hpp"
#include "core/event_queue.hpp"
#include "core/note_state.hpp"
#include "core/parameter.hpp"
#include "core/parameter_table.hpp"
#include "core/plugin_base.hpp"
#include "engine/engine.hpp"
#include "state/group_mask.hpp"
#include "state/mouse_area_chunk.hpp"
#include "state/preset_format.hpp"
#include "state/settings.hpp"
#include "state/shared_bank.hpp"
#include "state/shared_text.hpp"
#include "state/table_xy.hpp"

namespace zum {

/// What a readout shows beside a raw value. [any] aligned words
struct Readouts {
  float efGain = 0.0F;  // linear, 0 to 2
  float efGainDb = 0.0F;
  float lfoThreshold = 0.0F;  // linear
  float lfoThresholdDb = 0.0F;
  float glidePercent = 0.0F;
};

class MissingFiles;
class SystemRandom;

/// Where the current state of a slot came from. [any]
struct PresetSlot {
  SharedName name{"default"};
  SharedText<4096> path;  // of the file
  SharedText<1024> folder;
};

/// How a state is loaded.
struct LoadFlags {
  bool restoreAll = false;  // as a host's session: excluded parameters and program position, too
  bool quiet = false;       // no messages
  bool findPath = false;    // looks for the preset's file on disk
  bool storesRevertPoint = false;
  std::string_view title = {};  // in place of the preset's own name
};

class KvUniClient final : public KvPluginBase, public KvAligned, private ControlPassOwner {
 public:
  static constexpr std::int32_t kPrograms = 128;
  static constexpr int kSlots = 1;
  // Switches that outlast a session, by their index in the settings.
  static constexpr int kIgnoreProgramChanges = 0;
  static constexpr int kIsolateMap = 1;

  KvUniClient(audioMasterCallback host, EditorFactory makeEditor);
  /// What it asked the user is dropped, and its window closed.
  ~KvUniClient() override;

  // [main] the host's operations
  void suspend() override;
  void resume() override;
  void setSampleRate(float rate) override;
  /// Steps through the whole bank: behind a folder's end into the next folder, at both ends
  /// around.
  void setProgram(std::int32_t index) override;
  void setProgramName(const char* /*name*/) override {}
  void getProgramName(char* name) override;
  void getParameterLabel(std::int32_t index, char* text) override;
  void getParameterDisplay(std::int32_t index, char* text) override;
  void getParameterName(std::int32_t index, char* text) override;
  bool getParameterProperties(std::int32_t index, VstParameterProperties* properties) override;
  bool getProgramNameIndexed(std::int32_t category, std::int32_t index, char* text) override;
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

  // [any] parameters, by control tag
  void setParameter(std::int32_t tag, float value) ZUM_REALTIME override;
  float getParameter(std::int32_t index) ZUM_REALTIME override;
  void setParameterAutomated(std::int32_t index, float value) override;

  // [main] presets. What is refused changes nothing; messages tell of it.
  /// Fills the chunk with the state of a slot. False when there is no such slot.
  bool writePreset(KvChunk& chunk, int slot);
  /// Takes a state over, in silence. False when it is refused.
  bool loadPreset(const KvChunk& preset, int slot, LoadFlags flags);
  /// A null path asks the user and goes on with the answer, a null extension is that of presets.
  /// `notify` tells the host, `done` is called when the file is written, and is a program where it
  /// lies in the bank's tree.
  void loadPresetFile(const char* path, int slot, const char* extension, bool notify);
  void savePreset(const char* path, int slot, const char* extension, bool notify,
                  const std::function<void()>& done = {});
  /// The neighbours of the current file in its folder, around its ends.
  void nextPreset(int slot) { stepPreset(slot, 1); }
  void previousPreset(int slot) { stepPreset(slot, -1); }
  /// Any program of a folder of several.
  void randomPreset();
  void storeRevertPoint();
  void revertToStored();
  /// Reads the bank anew from the folder of the settings.
  void scanBank();
  /// Root of the preset tree with a backslash at its end; empty for none, and for one that would
  /// lie in whatever folder the host runs in.
  static std::string presetRoot();
  /// Asks for another root of the preset tree, and reads the bank from it. `done` follows also
  /// when none was chosen.
  void choosePresetRoot(const std::function<void()>& done);
  /// Back to the presets that came with the content; a message where none are installed.
  void resetPresetRoot();
  /// Every parameter of the host's moves by chance, as far as its range for that goes.
  void randomise(SystemRandom& random);
  /// Switch 0 ignores program changes, switch 1 isolates the controller map from presets.
  /// `persist` keeps it in the settings.
  void setOption(int index, int value, bool persist);
  // Sizes of the step table. False when the block call did not end in time: then the effect stays
  // silent until a state is loaded.
  bool setStepColumns(std::int32_t count);
  bool setStepPages(std::int32_t count);

  // [main] MIDI learn and controller maps
  /// The next controller, or pressure, moves the parameter from now on. False for a tag that there
  /// is not.
  bool beginLearn(std::int32_t tag);
  void endLearn();
  /// What was learned of the parameter, by controllers; pressure keeps it.
  void clearBindings(std::int32_t tag);
  void clearAllBindings();
  /// A null path asks the user and goes on with the answer.
  void saveCcMap(const char* path);
  void loadCcMap(const char* path);

  /// [host] One thread at a time, which need not be that of the block. Always 1.
  std::int32_t processEvents(VstEvents* events) override;

  // [audio]
  /// What is due in a control pass.
  void handleEvent(const EngineEvent& event) ZUM_REALTIME;
  /// The program of that number in the folder for MIDI, from memory.
  void playMidiProgram(int index) ZUM_REALTIME;
  void processReplacing(float** inputs, float** outputs, std::int32_t frames) ZUM_REALTIME override;

  /// Every constant of sample rate and tempo, and every stored parameter set anew.
  void recomputeEngine(bool keepBuffers) ZUM_REALTIME;

  /// Set while a state is replaced or the engine set anew: blocks are silent and touch nothing.
  std::atomic<bool> muteRequest{false};
  /// Set while a block runs; stays set behind a block that the host took offline.
  std::atomic<bool> inProcess{false};
  /// Set by an adaptor that fills `timeRecord` and feeds events itself.
  std::atomic<bool> adaptorTransport{false};

  /// [any] The last block was left as the host gave it.
  bool isOffline() const { return offline.load(std::memory_order_relaxed); }

  const KvSystemInfo& timing() const { return clock; }
  const EngineControls& controls() const { return engine.controls; }
  const Readouts& readouts() const { return readout; }
  GroupMask& groups() { return groupMask; }
  const Engine& signal() const { return engine; }
  KvTableXY& steps() { return stepTable; }
  /// [any] The stored forms of a row's value; of a tag without one, nothing that ever moves.
  const ControlValue& value(int tag) const ZUM_REALTIME;
  /// The tag that learns, -1 for none.
  const std::atomic<std::int32_t>& learning() const { return learnTarget; }
  /// [main] The tab strip as it is pressed just now: left and right button, x, y, Shift, Control.
  void setMouseArea(const std::array<float, KvMouseAreaChunk::kCount>& words);
  ControllerMap& controllers() { return controllerMap; }
  const PresetSlot& slot() const { return slots[0]; }
  const NoteState& played() const { return noteState; }
  EventQueue& eventQueue() { return events; }
  /// The last value of a controller, 0 to 1.
  float controllerValue(int number) const {
    return loadShared(controllerValues[static_cast<std::size_t>(number)]);
  }
  std::int32_t currentFolder() const { return loadShared(curFolder); }
  float option(int index) const { return loadShared(options[static_cast<std::size_t>(index)]); }
  /// [any but audio]
  SharedBank::Held programs() const { return bank.get(); }
  VstTimeInfo& adaptorTime() { return *timeRecord; }

 private:
  class StateSource;
  class PresetCheck;
  class PresetIntake;
  /// The loaders' turn, and no block at work while it lasts. A mute that was there before stays.
  class Silence {
   public:
    explicit Silence(KvUniClient& owner);
    ~Silence() { effect.muteRequest.store(muted); }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;

   private:
    KvUniClient& effect;
    const std::lock_guard<std::recursive_mutex> turn;
    const bool muted;
  };
  /// Room that a state asks for.
  struct PresetNeeds {
    ControllerMap::Counts bindings{};
    std::size_t objectWords = 0;
  };

  // steps of the construction, in their order
  void constructRecords();
  void readHostNames();
  void setFixedFacts();
  void buildLinks();
  void readSettings();
  void loadDefaults();

  static bool isSlot(int slot) ZUM_REALTIME { return slot >= 0 && slot < kSlots; }
  PresetFault checkPreset(const KvChunk& preset, int slot, PresetNeeds& needs) ZUM_REALTIME;
  PresetFault checkProgram(const BankPreset& program, PresetNeeds& needs);
  static void tellFault(const PresetFault& fault);
  /// False, and a message, for a preset that is refused.
  bool accepts(const KvChunk& preset, int slot, bool quiet, PresetNeeds& needs);
  /// Under the loaders' turn. False when the memory does not suffice.
  bool replaceState(const KvChunk& preset, int slot, const PresetNeeds& needs, bool restoreAll,
                    bool quiet, std::string_view title);
  void updateEditor() ZUM_REALTIME;
  bool reserve(const PresetNeeds& needs) noexcept;
  /// In silence, so that no block writes into what grows; without it where there is room. False
  /// when the memory does not suffice.
  bool makeRoom(const PresetNeeds& needs);
  ControllerMap::Read takeCcMap(KvChunk& map);
  bool hasRoomFor(const PresetNeeds& needs) const ZUM_REALTIME;
  /// `missing` is null on the audio thread, where nobody can look for files.
  void takePreset(const KvChunk& preset, int slot, bool restoreAll, MissingFiles* missing,
                  std::string_view title) ZUM_REALTIME;
  /// Silence from here on. False when a block is still at work after half a second, or, unless
  /// `waitsForOffline`, when the last block was left offline: it cannot tell that from one at work.
  bool silenceBlocks(bool waitsForOffline = true);
  template <class Edit>
  bool editSteps(const Edit& edit);
  void askWhereToSave(int slot, const std::string& extension, bool notify,
                      const std::function<void()>& done);
  bool writePresetFile(const std::string& file, int slot);
  void stepPreset(int slot, int direction);
  /// Path and folder of a slot after a file, or after where a search finds it.
  void takeOrigin(int slot, const std::string& file);
  void findOrigin(int slot);
  void setPresetRoot(std::string root);
  /// Reads a new bank by `scan`, which gets it with what it checks presets by. The old one stays
  /// where the memory does not suffice.
  void readBank(const std::function<void(KvProgramBank&, const KvProgramBank::Check&)>& scan);
  void setBank(const SharedBank::Held& newBank);
  /// A file that was written plays as it is from now on, where it is a program. Reads one folder.
  void readBankBehind(const std::string& file);
  /// In the bank that is in use: the program of that place, or the neighbour folder's.
  const BankPreset* moveTo(const KvProgramBank& all, std::int32_t index);
  /// The program position goes where the current file lies in the bank, if it does.
  void takePosition();

  const KvParameter* hostParameter(std::int32_t index) const ZUM_REALTIME;
  const ControlValue& valueOf(int row) const ZUM_REALTIME;
  ControlValue& valueOf(int row) ZUM_REALTIME {
    return const_cast<ControlValue&>(std::as_const(*this).valueOf(row));
  }
  /// Derives the forms of a row's value, which stands as it is.
  void applyValue(int row, float value) ZUM_REALTIME;
  /// Derives the forms of the stored value anew.
  void applyStored(int row) ZUM_REALTIME;
  void multiplySequence(ControlValue& amount) ZUM_REALTIME;
  void setVowel(VowelFormants& formants, float value) ZUM_REALTIME;
  void pressReset(int row, float position) ZUM_REALTIME;
  void requestFullRedraw() ZUM_REALTIME;
  EffectEditor* effectEditor() const ZUM_REALTIME;

  /// Of what arrives just now.
  bool isShut(EngineEvent::Code code) const ZUM_REALTIME;
  void takeDueEvents() ZUM_REALTIME;
  void moveController(std::int32_t number, std::int32_t data) ZUM_REALTIME;
  void learnAndMove(BindingList& list, float value) ZUM_REALTIME;

  void readTransport() ZUM_REALTIME;
  void takeTempo() ZUM_REALTIME;
  void beginControlPass() ZUM_REALTIME override;
  void modPageMoved(float position) ZUM_REALTIME override;
  float stepValue(std::int32_t step) ZUM_REALTIME override;

  // parameter lists, in the order of construction
  std::vector<KvParameter*> allRecords;
  std::vector<KvParameter*> presetRecords;
  std::vector<KvParameter*> frequencyRecords;
  std::array<KvParameter*, kHostParameters> hostTable{};

  // timing block and its registries
  std::vector<BufferRecord> bufferRegistry;
  std::vector<TempoListener*> tempoListeners;
  KvSystemInfo clock;
  double workingTempo = 120.0;  // of this block, beats per minute

  // MIDI
  EventInbox inbox;
  EventQueue events;
  NoteState noteState;
  std::array<float, preset::kControllers> controllerValues{};
  std::atomic<std::int32_t> learnTarget{-1};  // tag that learns, -1 for none

  // states
  std::array<PresetSlot, kSlots> slots;
  std::int32_t curFolder = 0;
  KvChunk stateChunk;   // what the host was given last
  KvChunk revertChunk;  // snapshot
  std::string revertName = "default";
  ControllerMap controllerMap;
  std::array<float, kSwitches.size()> options = {1.0F, 0.0F};
  /// Of those who replace states; never taken by the audio thread.
  std::recursive_mutex loadTurn;
  /// Twice the number of presets that were taken over; odd while one is.
  std::atomic<std::uint32_t> intakes{0};
  SharedBank bank{std::make_shared<const KvProgramBank>(preset::kExtension)};
  std::string fullRoot;  // of a tree that the bank has no room for, once told

  // host flags
  std::atomic<bool> offline{false};
  bool hostIsFxpansion = false;  // stored, nothing reads it
  bool hostIsOwn = false;
  bool hostIsAcid = false;

  std::array<KvParameter, kParameterRows> records{};
  std::array<ControlValue, kParameterRows - kPresetRows> windowValues{};
  std::array<float, kParameterRows> resetMarks{};
  Readouts readout;
  GroupMask groupMask;
  Engine engine;
  KvTableXY stepTable;
  KvMouseAreaChunk mouseArea;
  std::unique_ptr<VstTimeInfo> timeRecord;
};

}  // namespace zum
