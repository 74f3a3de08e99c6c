#include "core/parameter_store.hpp"

#include <algorithm>
#include <bit>

#include "core/decibels.hpp"
#include "core/group_selector.hpp"
#include "core/tags.hpp"
#include "engine/formant_table.hpp"
#include "engine/shared_value.hpp"
#include "platform/random_source.hpp"

namespace zum {
namespace {

constexpr float kInitialMark = 0.5F;  // of position 0, so that setting stored values resets nothing

constexpr ControlValue kNoValue;

const ParameterRow& rowAt(int row) ZUM_REALTIME {
  return parameterRows()[static_cast<std::size_t>(row)];
}

int buttonPosition(float value) ZUM_REALTIME {
  return clampIndex(truncate(std::min(2.0F * value, 1.0F)), 1);
}

void storePosition(ControlValue& control, int position) ZUM_REALTIME {
  storeShared(control.stepped, static_cast<float>(position));
  storeShared(control.integer, position);
}

}  // namespace

int ParameterStore::stepPosition(const ParameterRow& row, float value) ZUM_REALTIME {
  const int last = row.positions - 1;
  const float offset = row.rule == Rule::stepExact ? 0.0F : 0.001F;
  const float scaled = static_cast<float>(row.positions) * value + offset;
  return clampIndex(truncate(std::min(scaled, static_cast<float>(last))), last);
}

ParameterStore::ParameterStore(Engine& signal, KvTableXY& steps, const EditorLink& shown)
    : engine(signal), window(shown), mouseArea([&signal] {
        std::array<float*, KvMouseAreaChunk::kCount> words{};
        std::transform(signal.controls.mouseArea.begin(), signal.controls.mouseArea.end(),
                       words.begin(), [](float& word) { return &word; });
        return words;
      }()) {
  resetMarks.fill(kInitialMark);
  const auto rows = parameterRows();
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const ParameterRow& row = rows[i];
    KvParameter& record = records[i];
    record.id = row.id;
    record.tag = row.tag;
    record.name = row.name;
    record.randomRange = isAmount(row.rule) ? 0.25F : 1.0F;
    if (isSwitch(row.rule)) record.flags = KvParameter::kSwitch;
    if (row.rule == Rule::table) {
      record.object = &steps;
    } else {
      ControlValue& control =
          row.value != nullptr ? engine.controls.*row.value : windowValues[i - kPresetRows];
      values[i] = &control;
      control.raw = row.initial;
      record.value = &control.raw;
      if (row.rule == Rule::button) storePosition(control, buttonPosition(row.initial));
    }
    if (row.rule == Rule::area) record.object = &mouseArea;
    if (row.id >= 0) inPresets.push_back(&record);
    if (row.tag < kHostParameters) hostTable[static_cast<std::size_t>(row.tag)] = &record;
  }
}

void ParameterStore::setParameter(std::int32_t tag, float value) ZUM_REALTIME {
  setFromHost(tag, value);
  if (const int bit = facePosition(tag); bit >= 0) changed.fetch_or(std::uint64_t{1} << bit);
}

void ParameterStore::setFromHost(std::int32_t tag, float value) ZUM_REALTIME {
  const int at = rowOfTag(tag);
  if (at < 0 || rowAt(at).rule == Rule::table) return;
  storeShared(valueOf(at).raw, value);
  applyValue(at, value);
}

// Another thread may set a new value meanwhile; it stays, and its derived forms win.
void ParameterStore::applyStored(int at) ZUM_REALTIME {
  constexpr int kTries = 4;
  float applied = loadShared(valueOf(at).raw);
  for (int i = 0; i < kTries; ++i) {
    applyValue(at, applied);
    const float now = loadShared(valueOf(at).raw);
    if (std::bit_cast<std::uint32_t>(now) == std::bit_cast<std::uint32_t>(applied)) return;
    applied = now;
  }
}

void ParameterStore::applyValue(int at, float value) ZUM_REALTIME {
  const ParameterRow& row = rowAt(at);
  ControlValue& control = valueOf(at);
  switch (row.rule) {
    case Rule::plain:
    case Rule::area: storeShared(control.integer, truncate(value)); break;
    case Rule::gain:
      storeShared(control.integer, truncate(value));
      storeShared(readout.efGain, 2.0F * value);
      storeShared(readout.efGainDb, decibelsOf(2.0F * value));
      break;
    case Rule::threshold:
      storeShared(control.integer, truncate(value));
      storeShared(readout.lfoThreshold, value * value);
      storeShared(readout.lfoThresholdDb, decibelsOf(value * value));
      break;
    case Rule::percent:
      storeShared(control.integer, truncate(value));
      storeShared(readout.glidePercent, 100.0F * value);
      break;
    case Rule::amount:
      storeShared(control.bipolar, 2.0F * value - 1.0F);
      storeShared(control.integer, truncate(2.0F * value - 1.0F));
      break;
    case Rule::step:
    case Rule::stepExact: storePosition(control, stepPosition(row, value)); break;
    case Rule::selector: {
      const int position = stepPosition(row, value);
      storePosition(control, position);
      applySelector(row.tag, position, groupMask,
                    [this](int dependent) ZUM_REALTIME { applyStored(rowOfTag(dependent)); });
      break;
    }
    case Rule::vowel:
      storeShared(control.integer, truncate(value));
      setVowel(row.tag == tag::vowelA ? engine.controls.formantsA : engine.controls.formantsB,
               value);
      break;
    case Rule::button: storePosition(control, buttonPosition(value)); break;
    case Rule::resetButton: {
      const int position = buttonPosition(value);
      storePosition(control, position);
      window.requestFullRedraw();
      pressReset(at, static_cast<float>(position));
      return;
    }
    case Rule::table: break;
  }
  engine.controls.version.bump();
  if ((row.flags & kRedraw) != 0) window.requestFullRedraw();
}

// Nine steps without a glide between vowels: the morph is what glides.
void ParameterStore::setVowel(VowelFormants& formants, float value) ZUM_REALTIME {
  const float scaled = 8.0F * value;
  const int i = clampIndex(truncate(scaled), static_cast<int>(kFormantTable.size()) - 1);
  const FormantRow& row = kFormantTable[static_cast<std::size_t>(i)];
  storeShared(formants.vowelPos, scaled);
  storeShared(formants.position, static_cast<float>(i));
  storeShared(formants.formantOneHz, row.oneHz);
  storeShared(formants.formantTwoHz, row.twoHz);
}

// A press and a release both centre the amounts; the tiny difference of the mark is what tells
// one from the other, and a repeat of the same one from a change.
void ParameterStore::pressReset(int row, float position) ZUM_REALTIME {
  const float mark = position * 0.00001F + kInitialMark;
  float& last = resetMarks[static_cast<std::size_t>(row)];
  if (loadShared(last) == mark) return;
  storeShared(last, mark);
  for (const std::int16_t tag : rowAt(row).resets) {
    setParameter(tag, mark);
  }
}

const ControlValue& ParameterStore::value(int tag) const ZUM_REALTIME {
  const int row = rowOfTag(tag);
  return row >= 0 && rowAt(row).rule != Rule::table ? valueOf(row) : kNoValue;
}

void ParameterStore::setMouseArea(const std::array<float, KvMouseAreaChunk::kCount>& words)
    ZUM_REALTIME {
  for (std::size_t i = 0; i < words.size(); ++i) {
    storeShared(engine.controls.mouseArea[i], words[i]);
  }
}

const KvParameter* ParameterStore::hostParameter(std::int32_t index) const ZUM_REALTIME {
  return index >= 0 && index < kHostParameters ? hostTable[static_cast<std::size_t>(index)]
                                               : nullptr;
}

float ParameterStore::hostValue(std::int32_t index) const ZUM_REALTIME {
  const KvParameter* record = hostParameter(index);
  return record != nullptr && record->value != nullptr ? loadShared(*record->value) : 0.0F;
}

float ParameterStore::moved(const KvParameter& record, SystemRandom& random) {
  const float chance = static_cast<float>(random.next()) * 3.051851e-5F * 2.0F - 1.0F;
  return clampUnit(loadShared(*record.value) + chance * record.randomRange);
}

const KvParameter* ParameterStore::recordOfId(std::int32_t id) const ZUM_REALTIME {
  const int row = rowOfId(id);
  return row >= 0 ? &records[static_cast<std::size_t>(row)] : nullptr;
}

void ParameterStore::applyAllStored() ZUM_REALTIME {
  for (int row = 0; row < kPresetRows; ++row) {
    if (rowAt(row).rule != Rule::table) applyStored(row);
  }
}

}  // namespace zum
