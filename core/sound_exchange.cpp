// Undo and redo, A and B.

#include <algorithm>
#include <new>
#include <utility>

#include "core/sound_history.hpp"
#include "engine/shared_value.hpp"

namespace zum {

// ---- the way back

std::optional<std::string> SoundHistory::nameOf(Steps Side::*steps) {
  if (!isUsable()) return {};
  const StateGate::Turn turn(gate);
  lookForPrograms();
  const Steps& all = heard().*steps;
  if (all.empty()) return {};
  return all.back().name;
}

bool SoundHistory::mayPutBack() {
  lookForPrograms();
  if (open || isBusy) return false;
  merging = -1;
  return true;
}

// The host is told out of turn: it may ask for a state there, or bring one.
bool SoundHistory::exchange(Steps Side::*from, Steps Side::*to) {
  if (!isUsable()) return false;
  Done step;
  std::uint32_t clearsBefore = 0;
  std::optional<Busy> busy;
  {
    const StateGate::Turn turn(gate);
    if (!mayPutBack() || (heard().*from).empty()) return false;
    busy.emplace(*this);
    step = std::move((heard().*from).back());
    (heard().*from).pop_back();  // leaves the room to put it back
    clearsBefore = clears;
  }
  const bool takesWhole = step.parts.whole != nullptr;
  bool isDone = false;
  try {
    isDone = exchange(step.parts, clearsBefore);
  } catch (const std::bad_alloc&) {
  }
  const StateGate::Turn turn(gate);
  if (isDone && takesWhole) busy->ownIntakes = 2;
  busy.reset();
  if (clears != clearsBefore) return isDone;
  try {
    (heard().*(isDone ? to : from)).push_back(std::move(step));
    trim(heard());
  } catch (const std::bad_alloc&) {
    forgetSide(heard());
  }
  return isDone;
}

// All memory is there before anything is put back. A host may bring a state meanwhile, on another
// thread or inside of what it is told: nothing is put over that.
bool SoundHistory::exchange(SoundParts& parts, std::uint32_t clearsBefore) {
  SoundParts now;
  if (parts.whole) now.whole = copies.whole();
  if (parts.steps && !parts.whole) now.steps = copies.steps();
  if (parts.map && !parts.whole) now.map = copies.map();
  now.page = loadShared(parameters.value(tag::modChoice).raw);
  if (!parts.whole) {
    now.values = parts.values;
    for (SoundParts::Value& value : now.values) {
      value.raw = loadShared(parameters.value(value.tag).raw);
    }
  }
  {
    const StateGate::Turn turn(gate);
    if (clears != clearsBefore) return false;
    if (parts.whole && !copies.put(*parts.whole)) return false;
    if (parts.steps) copies.put(*parts.steps);
    if (parts.map) copies.putMap(*parts.map);
  }
  for (const SoundParts::Value& value : parts.values) {
    if (isOvertaken(clearsBefore)) return true;
    if (!isSameNumber(value.raw, loadShared(parameters.value(value.tag).raw))) {
      teller.moveBack(value.tag, value.raw);
    }
  }
  if (!parts.whole && !isSameNumber(parts.page, loadShared(parameters.value(tag::modChoice).raw))) {
    parameters.setParameter(tag::modChoice, parts.page);
  }
  if (parts.whole || parts.steps || parts.map) {
    window.update();
    teller.soundMoved();
  }
  parts = std::move(now);
  return true;
}

// ---- A and B

bool SoundHistory::choose(int sound) {
  if (!isUsable() || sound < 0 || sound >= kSounds) return false;
  {
    const StateGate::Turn turn(gate);
    if (sound == chosen() || !mayPutBack()) return false;
    Busy busy(*this);
    bool isDone = false;
    try {
      Side& other = sides[static_cast<std::size_t>(sound)];
      std::unique_ptr<WholeSound> now = copies.whole();
      const float page = loadShared(parameters.value(tag::modChoice).raw);
      isDone = !other.sound || copies.putSoftly(*other.sound, *now);
      if (!isDone && copies.put(*other.sound)) {
        isDone = true;
        busy.ownIntakes = 2;
        parameters.setParameter(tag::modChoice, page);
      }
      if (isDone) {
        heard().sound = std::move(now);
        other.sound.reset();
        chosenSound.store(sound);
      }
    } catch (const std::bad_alloc&) {
    }
    if (!isDone) return false;
  }
  window.update();
  teller.soundMoved();
  return true;
}

bool SoundHistory::copy() try {
  if (!isUsable()) return false;
  const StateGate::Turn turn(gate);
  if (!mayPutBack()) return false;
  Side& other = sides[static_cast<std::size_t>(1 - chosen())];
  std::unique_ptr<WholeSound> now = copies.whole();
  std::swap(other.sound, now);
  if (now == nullptr || isSame(now->state, other.sound->state)) return true;
  other.undone.clear();
  other.done.push_back({"Copy", {}});
  other.done.back().parts.whole = std::move(now);
  trim(other);
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

}  // namespace zum
