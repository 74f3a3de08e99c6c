// Parameters: the link step of the construction, and what a value does when it is set.

#include <algorithm>
#include <bit>
#include <cmath>

#include "core/group_selector.hpp"
#include "core/uni_client.hpp"
#include "engine/shared_value.hpp"
#include "platform/random_source.hpp"

namespace zum {
namespace {

constexpr float kInitialMark = 0.5F;  // of position 0, so that setting stored values resets nothing

/// Positions of the vowel selectors in Hz. The last entry is never reached.
constexpr std::array<float, 10> formantOne = {320.0F,  500.0F,  700.0F,  1000.0F, 1500.0F,
                                              1650.0F, 1800.0F, 2300.0F, 3200.0F, 3200.0F};
constexpr std::array<float, 10> formantTwo = {800.0F, 1000.0F, 1150.0F, 1400.0F, 500.0F,
                                              320.0F, 700.0F,  500.0F,  320.0F,  320.0F};

constexpr ControlValue kNoValue;

int stepPosition(const ParameterRow& row, float value) ZUM_REALTIME {
  const int last = row.positions - 1;
  const float offset = row.rule == Rule::stepExact ? 0.0F : 0.001F;
  const float scaled = static_cast<float>(row.positions) * value + offset;
  return clampIndex(truncate(std::min(scaled, static_cast<float>(last))), last);
}

int buttonPosition(float value) ZUM_REALTIME {
  return clampIndex(truncate(std::min(2.0F * value, 1.0F)), 1);
}

float decibels(float linear) ZUM_REALTIME { return 20.0F * std::log10(linear + 1e-8F); }

void storePosition(ControlValue& control, int position) ZUM_REALTIME {
  storeShared(control.stepped, static_cast<float>(position));
  storeShared(control.integer, position);
}

}  // namespace

void KvUniClient::buildLinks() {
  const auto rows = parameterRows();
  resetMarks.fill(kInitialMark);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const ParameterRow& row = rows[i];
    KvParameter& record = records[i];
    allRecords.push_back(&record);
    if (row.id >= 0) presetRecords.push_back(&record);
    record.randomRange = isAmount(row.rule) ? 0.25F : 1.0F;
    if (row.rule != Rule::table) {
      ControlValue& control = valueOf(static_cast<int>(i));
      control.raw = row.initial;
      record.value = &control.raw;
      if (row.rule == Rule::button) storePosition(control, buttonPosition(row.initial));
    }
    if (row.rule == Rule::table) record.object = &stepTable;
    if (row.rule == Rule::area) record.object = &mouseArea;
    if (isSwitch(row.rule)) record.flags = KvParameter::kSwitch;
    if (row.tag < kHostParameters) hostTable[static_cast<std::size_t>(row.tag)] = &record;
  }
  for (const std::int32_t tag : {3, 0}) {  // cutoff of either bank
    frequencyRecords.push_back(&records[static_cast<std::size_t>(rowOfTag(tag))]);
  }
}

const ControlValue& KvUniClient::valueOf(int row) const ZUM_REALTIME {
  ControlValue EngineControls::*const member = parameterRows()[static_cast<std::size_t>(row)].value;
  if (member != nullptr) return engine.controls.*member;
  return windowValues[static_cast<std::size_t>(row - kPresetRows)];
}

void KvUniClient::setParameter(std::int32_t tag, float value) ZUM_REALTIME {
  const int at = rowOfTag(tag);
  if (at < 0 || parameterRows()[static_cast<std::size_t>(at)].rule == Rule::table) return;
  storeShared(valueOf(at).raw, value);
  applyValue(at, value);
}

// Another thread may set a new value meanwhile; it stays, and its derived forms win.
void KvUniClient::applyStored(int at) ZUM_REALTIME {
  constexpr int kTries = 4;
  float applied = loadShared(valueOf(at).raw);
  for (int i = 0; i < kTries; ++i) {
    applyValue(at, applied);
    const float now = loadShared(valueOf(at).raw);
    if (std::bit_cast<std::uint32_t>(now) == std::bit_cast<std::uint32_t>(applied)) return;
    applied = now;
  }
}

void KvUniClient::applyValue(int at, float value) ZUM_REALTIME {
  const ParameterRow& row = parameterRows()[static_cast<std::size_t>(at)];
  ControlValue& control = valueOf(at);
  switch (row.rule) {
    case Rule::plain:
    case Rule::area: storeShared(control.integer, truncate(value)); break;
    case Rule::gain:
      storeShared(control.integer, truncate(value));
      storeShared(readout.efGain, 2.0F * value);
      storeShared(readout.efGainDb, decibels(2.0F * value));
      break;
    case Rule::threshold:
      storeShared(control.integer, truncate(value));
      storeShared(readout.lfoThreshold, value * value);
      storeShared(readout.lfoThresholdDb, decibels(value * value));
      break;
    case Rule::percent:
      storeShared(control.integer, truncate(value));
      storeShared(readout.glidePercent, 100.0F * value);
      break;
    case Rule::amount:
    case Rule::sequencedAmount:
      storeShared(control.bipolar, 2.0F * value - 1.0F);
      storeShared(control.integer, truncate(2.0F * value - 1.0F));
      if (row.rule == Rule::sequencedAmount) multiplySequence(control);
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
      setVowel(row.tag == 58 ? engine.controls.formantsA : engine.controls.formantsB, value);
      break;
    case Rule::button: storePosition(control, buttonPosition(value)); break;
    case Rule::resetButton: {
      const int position = buttonPosition(value);
      storePosition(control, position);
      requestFullRedraw();
      pressReset(at, static_cast<float>(position));
      return;
    }
    case Rule::table: break;
  }
  if ((row.flags & kRedraw) != 0) requestFullRedraw();
}

// The audio thread makes the same product whenever the level moves; a level that moved meanwhile is
// taken up here, so that the last product is always of the last amount.
void KvUniClient::multiplySequence(ControlValue& amount) ZUM_REALTIME {
  constexpr int kTries = 4;
  float level = engine.sequenceLevel();
  for (int i = 0; i < kTries; ++i) {
    storeShared(amount.seqProduct, loadShared(amount.bipolar) * level);
    const float now = engine.sequenceLevel();
    if (now == level) return;
    level = now;
  }
}

// Nine steps without a glide between vowels: the morph is what glides.
void KvUniClient::setVowel(VowelFormants& formants, float value) ZUM_REALTIME {
  const float scaled = 8.0F * value;
  const int i = clampIndex(truncate(scaled), static_cast<int>(formantOne.size()) - 1);
  storeShared(formants.vowelPos, scaled);
  storeShared(formants.position, static_cast<float>(i));
  storeShared(formants.formantOneHz, formantOne[static_cast<std::size_t>(i)]);
  storeShared(formants.formantTwoHz, formantTwo[static_cast<std::size_t>(i)]);
}

// A press and a release both centre the amounts; the tiny difference of the mark is what tells
// one from the other, and a repeat of the same one from a change.
void KvUniClient::pressReset(int row, float position) ZUM_REALTIME {
  const float mark = position * 0.00001F + kInitialMark;
  float& last = resetMarks[static_cast<std::size_t>(row)];
  if (loadShared(last) == mark) return;
  storeShared(last, mark);
  for (const std::int16_t tag : parameterRows()[static_cast<std::size_t>(row)].resets) {
    setParameter(tag, mark);
  }
}

const ControlValue& KvUniClient::value(int tag) const ZUM_REALTIME {
  const int row = rowOfTag(tag);
  return row >= 0 && parameterRows()[static_cast<std::size_t>(row)].rule != Rule::table
             ? valueOf(row)
             : kNoValue;
}

void KvUniClient::setMouseArea(const std::array<float, KvMouseAreaChunk::kCount>& words) {
  for (std::size_t i = 0; i < words.size(); ++i) {
    storeShared(engine.controls.mouseArea[i], words[i]);
  }
}

float KvUniClient::getParameter(std::int32_t index) ZUM_REALTIME {
  const KvParameter* record = hostParameter(index);
  return record != nullptr && record->value != nullptr ? loadShared(*record->value) : 0.0F;
}

void KvUniClient::setParameterAutomated(std::int32_t index, float value) {
  if (index >= 0 && index < kHostParameters) KvPluginBase::setParameterAutomated(index, value);
}

void KvUniClient::randomise(SystemRandom& random) {
  for (const KvParameter* record : hostTable) {
    if (record == nullptr) continue;
    const float chance = static_cast<float>(random.next()) * 3.051851e-5F * 2.0F - 1.0F;
    const float moved = loadShared(*record->value) + chance * record->randomRange;
    beginEdit(record->tag);
    setParameterAutomated(record->tag, clampUnit(moved));
    endEdit(record->tag);
  }
}

void KvUniClient::requestFullRedraw() ZUM_REALTIME {
  if (EffectEditor* shown = effectEditor()) shown->requestFullRedraw();
}

void KvUniClient::recomputeEngine(bool keepBuffers) ZUM_REALTIME {
  engine.recompute(clock, keepBuffers);
  for (int row = 0; row < kPresetRows; ++row) {
    if (parameterRows()[static_cast<std::size_t>(row)].rule != Rule::table) applyStored(row);
  }
}

}  // namespace zum
