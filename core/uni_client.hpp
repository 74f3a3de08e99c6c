// The effect object: the one thing that a host talks to. Owns every parameter record, the engine,
// the timing block and the editor. Its operations stand in one source each for what the host asks,
// for parameters and for the block call.
#pragma once

#include <array>
#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "core/effect_editor.hpp"
#include "core/group_mask.hpp"
#include "core/parameter.hpp"
#include "core/parameter_table.hpp"
#include "core/plugin_base.hpp"
#include "engine/engine.hpp"
#include "state/mouse_area_chunk.hpp"
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

class KvUniClient final : public KvPluginBase, public KvAligned, private ControlPassOwner {
 public:
  static constexpr std::int32_t kPrograms = 128;

  explicit KvUniClient(audioMasterCallback host);
  ~KvUniClient() override = default;

  // [main] the host's operations
  void suspend() override;
  void resume() override;
  void setSampleRate(float rate) override;
  void setProgramName(const char* /*name*/) override {}
  void getProgramName(char* name) override;
  void getParameterLabel(std::int32_t index, char* text) override;
  void getParameterDisplay(std::int32_t index, char* text) override;
  void getParameterName(std::int32_t index, char* text) override;
  bool getParameterProperties(std::int32_t index, VstParameterProperties* properties) override;
  bool getProgramNameIndexed(std::int32_t category, std::int32_t index, char* text) override;
  bool getOutputProperties(std::int32_t index, VstPinProperties* properties) override;
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

  // [audio]
  void processReplacing(float** inputs, float** outputs, std::int32_t frames) ZUM_REALTIME override;

  /// Every constant of sample rate and tempo, and every stored parameter set anew.
  void recomputeEngine(bool keepBuffers) ZUM_REALTIME;

  /// Set while a state is being replaced: blocks are silent and touch nothing.
  std::atomic<bool> muteRequest{false};
  /// Set while a block runs; stays set behind a block that the host took offline.
  std::atomic<bool> inProcess{false};
  /// Set by an adaptor that fills `timeRecord` and feeds events itself.
  std::atomic<bool> adaptorTransport{false};

  const KvSystemInfo& timing() const { return clock; }
  const EngineControls& controls() const { return engine.controls; }
  const Readouts& readouts() const { return readout; }
  const GroupMask& groups() const { return groupMask; }
  const Engine& signal() const { return engine; }
  KvTableXY& steps() { return stepTable; }
  VstTimeInfo& adaptorTime() { return *timeRecord; }

 private:
  // steps of the construction, in their order
  void constructRecords();
  void readHostNames();
  void setFixedFacts();
  void buildLinks();

  const KvParameter* hostParameter(std::int32_t index) const ZUM_REALTIME;
  ControlValue& valueOf(int row) ZUM_REALTIME;
  /// Derives the forms of a row's value, which stands as it is.
  void applyValue(int row, float value) ZUM_REALTIME;
  /// Derives the forms of the stored value anew.
  void applyStored(int row) ZUM_REALTIME;
  void multiplySequence(ControlValue& amount) ZUM_REALTIME;
  void setVowel(VowelFormants& formants, float value) ZUM_REALTIME;
  void pressReset(int row, float position) ZUM_REALTIME;
  void requestFullRedraw() ZUM_REALTIME;
  EffectEditor* effectEditor() const ZUM_REALTIME;

  void readTransport() ZUM_REALTIME;
  void beginControlPass() ZUM_REALTIME override;
  void modPageMoved(float position) ZUM_REALTIME override;
  float stepValue(std::int32_t step) ZUM_REALTIME override;

  // parameter lists, in the order of construction
  std::vector<KvParameter*> allRecords;
  std::vector<KvParameter*> presetRecords;
  std::vector<KvParameter*> frequencyRecords;
  std::string programName;
  std::array<KvParameter*, kHostParameters> hostTable{};

  // timing block and its registries
  std::vector<BufferRecord> bufferRegistry;
  std::vector<TempoListener*> tempoListeners;
  KvSystemInfo clock;
  double workingTempo = 120.0;  // of this block, beats per minute

  // host flags
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
  std::array<float, KvMouseAreaChunk::kCount> areaValues{};
  KvMouseAreaChunk mouseArea;
  std::unique_ptr<VstTimeInfo> timeRecord;
};

}  // namespace zum
