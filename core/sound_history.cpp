// What becomes a step, and what ends the history.

#include "core/sound_history.hpp"

#include <algorithm>
#include <new>
#include <utility>

#include "engine/shared_value.hpp"

namespace zum {
namespace {

std::size_t rowIndex(int tag) { return static_cast<std::size_t>(rowOfTag(tag)); }

}  // namespace

// ---- life

void SoundHistory::start() {
  if (isUsable()) return;
  isKept.store(true);
  clear();
}

void SoundHistory::clear() {
  if (!isUsable()) return;
  const StateGate::Turn turn(gate);
  ++clears;
  if (open) open->isVoid = true;
  for (Side& side : sides) {
    forgetSide(side);
    side.sound.reset();
  }
  chosenSound.store(0);
  knownIntakes = gate.intakeCount();
  try {
    sides[1].sound = copies.whole();
  } catch (const std::bad_alloc&) {  // then B is A until it is first chosen
  }
}

void SoundHistory::forgetSide(Side& side) {
  side.done.clear();
  side.undone.clear();
  merging = -1;
}

void SoundHistory::lookForPrograms() {
  const std::uint32_t intakes = gate.intakeCount();
  if (intakes == knownIntakes) return;
  knownIntakes = intakes;
  forgetSide(heard());
}

// ---- steps

SoundHistory::Step::Step(SoundHistory& history, Part part, std::string name) : of(history) {
  if (!of.isUsable()) return;
  const StateGate::Turn turn(of.gate);
  const std::string called = std::move(name);
  of.begin(called, -1);
  of.keep(part);
}

void SoundHistory::Step::rename(std::string name) {
  if (!of.isUsable()) return;
  const StateGate::Turn turn(of.gate);
  if (of.open) of.open->name = std::move(name);
}

void SoundHistory::beginGesture(int tag) {
  const ParameterRow* const row = findRow(tag);
  if (!isUsable() || row == nullptr) return;
  const StateGate::Turn turn(gate);
  if (isBusy || held.test(static_cast<std::size_t>(tag))) return;
  held.set(static_cast<std::size_t>(tag));
  begin(row->title.data(), tag);
  if (row->rule == Rule::table) keep(Part::steps);
  touch(tag);
}

void SoundHistory::endGesture(int tag) {
  if (!isUsable() || findRow(tag) == nullptr) return;
  const StateGate::Turn turn(gate);
  if (!held.test(static_cast<std::size_t>(tag))) return;
  held.reset(static_cast<std::size_t>(tag));
  end();
}

void SoundHistory::begin(std::string_view name, int tag) {
  if (depth++ > 0) return;
  lookForPrograms();
  if (tag != merging) merging = -1;
  open.emplace();
  open->tag = tag;
  open->isVoid = isBusy;
  open->values = copies.values();
  open->parts.page = open->values[rowIndex(tag::modChoice)];
  try {
    open->name = name;
  } catch (const std::bad_alloc&) {  // then it has none
  }
}

void SoundHistory::end() {
  if (!isUsable()) return;
  bool tells = false;
  {
    const StateGate::Turn turn(gate);
    if (depth == 0 || --depth > 0) return;
    tells = close();
    open.reset();
  }
  if (tells) teller.soundMoved();
}

void SoundHistory::keep(Part part) {
  if (!open || open->isVoid) return;
  try {
    SoundParts& parts = open->parts;
    if (parts.whole) return;
    if (part == Part::steps && !parts.steps) parts.steps = copies.steps();
    if (part == Part::map && !parts.map) parts.map = copies.map();
    if (part == Part::whole) parts.whole = copies.whole();
  } catch (const std::bad_alloc&) {  // what is done now cannot be undone, nor what lies before it
    open->isVoid = true;
    forgetSide(heard());
  }
}

void SoundHistory::touch(int tag) {
  const ParameterRow* const row = findRow(tag);
  if (!isUsable() || row == nullptr) return;
  const StateGate::Turn turn(gate);
  if (!open) return;
  touchRow(rowOfTag(tag));
  for (const std::int16_t centred : row->resets) touchRow(rowOfTag(centred));
}

void SoundHistory::touchRow(int row) {
  const bool isSound = row < kPresetRows &&
                       parameterRows()[static_cast<std::size_t>(row)].rule != Rule::table &&
                       parameterRows()[static_cast<std::size_t>(row)].tag != tag::modChoice;
  if (isSound && open) open->touched.set(static_cast<std::size_t>(row));
}

void SoundHistory::merge() {
  if (!isUsable()) return;
  const StateGate::Turn turn(gate);
  if (open) open->merges = true;
}

void SoundHistory::seal() {
  if (!isUsable()) return;
  const StateGate::Turn turn(gate);
  merging = -1;
}

// True where the host has to be told that something moved, which no gesture tells of.
bool SoundHistory::close() {
  if (!open || open->isVoid) return false;
  if (!open->parts.whole && gate.intakeCount() != knownIntakes) {
    lookForPrograms();
    return false;
  }
  try {
    keepMoved(*open);
    return push(*open);
  } catch (const std::bad_alloc&) {
    forgetSide(heard());
    return false;
  }
}

// A state that was refused took nothing in.
void SoundHistory::keepMoved(Open& step) const {
  SoundParts& parts = step.parts;
  if (parts.steps && isSame(*parts.steps, *copies.steps())) parts.steps.reset();
  if (parts.map && isSame(*parts.map, *copies.map())) parts.map.reset();
  if (parts.whole &&
      (gate.intakeCount() == knownIntakes || isSame(parts.whole->state, copies.whole()->state))) {
    parts.whole.reset();
  }
  const auto now = copies.values();
  for (std::size_t row = 0; row < now.size(); ++row) {
    if (!step.touched.test(row)) continue;
    if (!parts.whole && isSameNumber(now[row], step.values[row])) continue;
    parts.values.push_back({static_cast<std::int16_t>(parameterRows()[row].tag), step.values[row]});
  }
}

bool SoundHistory::push(Open& step) {
  Side& side = heard();
  knownIntakes = gate.intakeCount();
  // A whole sound or a map that came within it would be lost in a step that has none.
  const bool isMore = step.parts.whole || step.parts.map;
  const bool goesOn = merging >= 0 && merging == step.tag && !side.done.empty() &&
                      (!isMore || side.done.back().parts.whole);
  if (!goesOn && step.parts.isEmpty()) return false;
  const bool tells = step.parts.steps || step.parts.map;
  if (goesOn) {
    mergeInto(side.done.back(), step);
    if (side.done.back().parts.isEmpty()) {
      side.done.pop_back();
      step.merges = false;
    }
  } else {
    side.done.push_back({std::move(step.name), std::move(step.parts)});
  }
  side.undone.clear();
  merging = step.merges ? step.tag : -1;
  trim(side);
  return tells;
}

// What the last step moved already stays as it was before that.
void SoundHistory::mergeInto(Done& last, Open& step) const {
  SoundParts& parts = last.parts;
  if (!parts.steps) parts.steps = std::move(step.parts.steps);
  for (const SoundParts::Value& value : step.parts.values) {
    const auto isOf = [&](const SoundParts::Value& each) { return each.tag == value.tag; };
    if (std::ranges::none_of(parts.values, isOf)) parts.values.push_back(value);
  }
  if (parts.steps && isSame(*parts.steps, *copies.steps())) parts.steps.reset();
  std::erase_if(parts.values, [this](const SoundParts::Value& value) {
    return isSameNumber(value.raw, loadShared(parameters.value(value.tag).raw));
  });
}

void SoundHistory::trim(Side& side) {
  std::size_t bytes = 0;
  for (const Steps* steps : {&side.undone, &side.done}) {
    for (const Done& step : *steps) bytes += step.parts.bytes() + step.name.size();
  }
  const auto dropOldest = [&](Steps& steps) {
    bytes -= steps.front().parts.bytes() + steps.front().name.size();
    steps.erase(steps.begin());
  };
  while (side.done.size() > kSteps || (bytes > kBytes && !side.done.empty())) dropOldest(side.done);
  while (bytes > kBytes && !side.undone.empty()) dropOldest(side.undone);
}

}  // namespace zum
