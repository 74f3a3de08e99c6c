#include "adaptor/clap/face.hpp"

#include <algorithm>
#include <array>
#include <span>
#include <vector>

#include "core/parameter_text.hpp"
#include "platform/files.hpp"

namespace zum::clap {
namespace {

constexpr std::size_t kMostBytes = std::size_t{1} << 20U;  // no state has more

}  // namespace

Face::Face(const clap_host_t& of, EditorFactory makeEditor)
    : host(of), effect(makeEditor, this), shown(effect, host) {
  toldPresets.store(effect.client().presetCount());
}

// ---- life

bool Face::activate(double rate, std::uint32_t mostFrames) {
  if (!HostSide::isRate(rate) || mostFrames == 0 || mostFrames > INT32_MAX || effect.isActive())
    return false;
  effect.activate(rate, static_cast<std::int32_t>(mostFrames));
  return true;
}

void Face::deactivate() {
  processing.store(false);
  if (effect.isActive()) effect.deactivate();
  if (hasUntold()) host.requestFlush();
}

bool Face::startProcessing() {
  if (!effect.isActive()) return false;
  processing.store(true);
  return true;
}

// What comes in between the last block and here would wait for the next one. A flush may not be
// asked for on this thread.
void Face::stopProcessing() {
  processing.store(false);
  if (!hasUntold()) return;
  flushes.store(true);
  host.requestCallback();
}

void Face::onMainThread() {
  if (flushes.exchange(false)) host.requestFlush();
  const bool isOther = saves.exchange(false);
  const bool hasOtherValues = rescans.exchange(false);
  if (hasOtherValues) host.rescanValues();
  if (hasOtherValues || isOther) host.markDirty();
}

void Face::askForRescan() ZUM_REALTIME {
  rescans.store(true);
  host.requestCallback();
}

// Counted in this order: a load of the host's that the first one holds stands in the second, too.
bool Face::takePresets() ZUM_REALTIME {
  const std::uint32_t all = effect.client().presetCount();
  const std::uint32_t news = all - hostLoads.load();
  std::uint32_t told = toldPresets.load();
  while (static_cast<std::int32_t>(news - told) > 0) {
    if (toldPresets.compare_exchange_weak(told, news)) return true;
  }
  return false;
}

// ---- states

bool Face::save(const clap_ostream_t& stream) {
  const std::vector<std::byte> state = effect.saveState();
  std::span<const std::byte> left = state;
  while (!left.empty()) {
    const std::int64_t taken = stream.write(&stream, left.data(), left.size());
    if (taken <= 0 || static_cast<std::uint64_t>(taken) > left.size()) return false;
    left = left.subspan(static_cast<std::size_t>(taken));
  }
  return !state.empty();
}

bool Face::load(const clap_istream_t& stream) {
  std::vector<std::byte> state;
  std::array<std::byte, 4096> piece{};
  for (;;) {
    const std::int64_t count = stream.read(&stream, piece.data(), piece.size());
    if (count == 0) break;
    if (count < 0 || static_cast<std::uint64_t>(count) > piece.size()) return false;
    if (state.size() + static_cast<std::size_t>(count) > kMostBytes) return false;
    state.insert(state.end(), piece.begin(), piece.begin() + count);
  }
  hostLoads.fetch_add(1);  // ahead of it: a block may count before the load is over
  const bool isTaken = effect.loadState(state);
  if (!isTaken) hostLoads.fetch_sub(1);
  return isTaken;
}

bool Face::loadPreset(const char* file, const char* key) {
  const std::uint32_t before = effect.client().presetCount();
  effect.client().loadPresetFile(toInternalPath(file).c_str(), 0, nullptr, true);
  if (effect.client().presetCount() == before) {
    host.presetFailed(file, key, "the file is missing or no preset");
    return false;
  }
  host.presetLoaded(file, key);
  return true;
}

// ---- what the user does in the window

void Face::gestureBegan(int tag) {
  if (const int position = facePosition(tag); position >= 0) edits.begin(position), askForFlush();
}

void Face::gestureMoved(int tag, float raw) {
  const int position = facePosition(tag);
  if (position < 0) return;
  edits.move(position, plainOfRaw(*findRow(tag), raw));
  askForFlush();
}

void Face::gestureEnded(int tag) {
  if (const int position = facePosition(tag); position >= 0) edits.end(position), askForFlush();
}

// Steps and names are no values: they make the session another one, and no more. What moved by
// itself goes the way of events.
void Face::presetChanged() {
  if (takePresets()) return askForRescan();
  saves.store(true);
  host.requestCallback();
  askForFlush();
}

void Face::askForFlush() const {
  if (!processing.load()) host.requestFlush();
}

}  // namespace zum::clap
