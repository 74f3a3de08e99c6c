// [any] What a player can set: the records that hosts and presets know parameters by, and what a
// value becomes when it is set. The forms that the engine reads stand in the engine's controls.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <vector>

#include "core/effect_editor.hpp"
#include "core/parameter.hpp"
#include "core/parameter_table.hpp"
#include "engine/engine.hpp"
#include "state/group_mask.hpp"
#include "state/mouse_area_chunk.hpp"
#include "state/table_xy.hpp"

namespace zum {

class SystemRandom;

/// What a readout shows beside a raw value. [any] aligned words
struct Readouts {
  float efGain = 0.0F;  // linear, 0 to 2
  float efGainDb = 0.0F;
  float lfoThreshold = 0.0F;  // linear
  float lfoThresholdDb = 0.0F;
  float glidePercent = 0.0F;
};

class ParameterStore {
 public:
  /// All that is handed in outlives the store.
  ParameterStore(Engine& engine, KvTableXY& steps, const EditorLink& window);
  ParameterStore(const ParameterStore&) = delete;
  ParameterStore& operator=(const ParameterStore&) = delete;

  /// By control tag; tags without a value are ignored.
  void setParameter(std::int32_t tag, float value) ZUM_REALTIME;
  /// The same for a value that the host knows already.
  void setFromHost(std::int32_t tag, float value) ZUM_REALTIME;
  /// What was set since the last call and is to be told to a host: bits by facePosition().
  std::uint64_t takeChanges() ZUM_REALTIME {
    return changed.load(std::memory_order_relaxed) != 0 ? changed.exchange(0) : 0;
  }
  /// The position of a step value.
  static int stepPosition(const ParameterRow& row, float value) ZUM_REALTIME;
  /// Every stored parameter of a preset set anew: what is derived of them may have moved.
  void applyAllStored() ZUM_REALTIME;
  /// The stored forms of a row's value; of a tag without one, nothing that ever moves.
  const ControlValue& value(int tag) const ZUM_REALTIME;
  /// The tab strip as it is pressed just now: left and right button, x, y, Shift, Control.
  void setMouseArea(const std::array<float, KvMouseAreaChunk::kCount>& words) ZUM_REALTIME;

  // By host index. Null, or 0, where there is no parameter.
  const KvParameter* hostParameter(std::int32_t index) const ZUM_REALTIME;
  float hostValue(std::int32_t index) const ZUM_REALTIME;
  /// Where chance moves the parameter, as far as its range for that goes.
  static float moved(const KvParameter& record, SystemRandom& random);

  /// Null for an identifier that no record has.
  const KvParameter* recordOfId(std::int32_t id) const ZUM_REALTIME;
  /// In the order of a preset.
  const std::vector<const KvParameter*>& presetRecords() const { return inPresets; }

  const Readouts& readouts() const { return readout; }
  GroupMask& groups() { return groupMask; }

 private:
  ControlValue& valueOf(int row) const ZUM_REALTIME {
    return *values[static_cast<std::size_t>(row)];
  }
  /// Derives the forms of a row's value, which stands as it is.
  void applyValue(int row, float value) ZUM_REALTIME;
  /// Derives the forms of the stored value anew.
  void applyStored(int row) ZUM_REALTIME;
  static void setVowel(VowelFormants& formants, float value) ZUM_REALTIME;
  void pressReset(int row, float position) ZUM_REALTIME;

  Engine& engine;
  const EditorLink& window;
  KvMouseAreaChunk mouseArea;
  std::array<KvParameter, kParameterRows> records{};  // in the order of construction
  std::vector<const KvParameter*> inPresets;
  std::array<const KvParameter*, kHostParameters> hostTable{};
  std::array<ControlValue*, kParameterRows> values{};  // of the engine's controls, and of these:
  std::array<ControlValue, kParameterRows - kPresetRows> windowValues{};
  std::array<float, kParameterRows> resetMarks{};
  Readouts readout;
  GroupMask groupMask;
  std::atomic<std::uint64_t> changed{0};
};

}  // namespace zum
