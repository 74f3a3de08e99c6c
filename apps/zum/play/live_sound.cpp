#include "apps/zum/play/live_sound.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "apps/zum/audio_output.hpp"
#include "apps/zum/failure.hpp"

namespace zum {
namespace {

constexpr int kUsualRate = 44100;  // Hz, until there is another one

std::vector<float> room() { return std::vector<float>(LiveSound::kMostFrames); }

void note(std::atomic<float>& peak, const float* const* channels, int frames) ZUM_REALTIME {
  float highest = peak.load(std::memory_order_relaxed);
  for (int side = 0; side < 2; ++side) {
    for (int i = 0; i < frames; ++i) highest = std::max(highest, std::fabs(channels[side][i]));
  }
  peak.store(highest, std::memory_order_relaxed);
}

}  // namespace

LiveSound::LiveSound(HostSide& played)
    : effect(played), heard{room(), room()}, made{room(), room()} {}

LiveSound::~LiveSound() { endAll(); }

// ---- [main]

bool LiveSound::setRate(int wanted) {
  if (!HostSide::isRate(wanted)) return false;
  if (wanted == rate) return true;
  std::unique_ptr<Take> anew;
  const int before = std::exchange(rate, wanted);
  try {
    if (playing) anew = makeTake(loopPath);
  } catch (...) {
    rate = before;
    throw;
  }
  if (recording != nullptr) {
    endRecord();
    problems.push_back("the recording ended: the device runs at another rate");
  }
  if (effect.isActive()) effect.deactivate();
  effect.activate(rate, kMostFrames);
  if (playing) replaceTake(std::move(anew));
  if (!firstRecording.empty()) {
    try {
      record(std::exchange(firstRecording, {}));
    } catch (const Failure& failure) {
      problems.emplace_back(failure.what());  // which is no reason for silence
    }
  }
  return true;
}

std::unique_ptr<LiveSound::Take> LiveSound::makeTake(const std::filesystem::path& path) const {
  const int hz = rate != 0 ? rate : kUsualRate;
  auto loop = path.empty() ? nullptr : std::make_unique<LoopSource>(path, hz);
  return std::make_unique<Take>(Take{std::move(loop), SongClock(hz, songTempo.load()), false});
}

void LiveSound::replaceTake(std::unique_ptr<Take> next) {
  wantedTake.store(next.get());
  if (taken != nullptr) left.push_back({std::move(taken), nullptr, blocksBegun.load()});
  taken = std::move(next);
}

// A take is made anyway, to find out whether the file is a loop.
void LiveSound::setLoop(const std::filesystem::path& path) {
  std::unique_ptr<Take> next = makeTake(path);
  loopPath = path;
  if (playing && rate != 0) replaceTake(std::move(next));
}

void LiveSound::play() {
  if (rate != 0) replaceTake(makeTake(loopPath));
  playing = true;
}

void LiveSound::stop() {
  replaceTake(nullptr);
  playing = false;
}

void LiveSound::record(const std::filesystem::path& path) {
  if (rate == 0) {
    // made, and gone again, to find out whether it can be
    const AudioOutput trial(path, kUsualRate);
    firstRecording = path;
    return;
  }
  auto next = std::make_unique<Recorder>(path, rate);
  endRecord();
  recording = std::move(next);
  wantedRecorder.store(recording.get());
}

void LiveSound::endRecord() {
  wantedRecorder.store(nullptr);
  if (recording != nullptr) left.push_back({nullptr, std::move(recording), blocksBegun.load()});
}

// A block that began behind a change has seen it; the one before has ended by then.
void LiveSound::sweep(bool runs) {
  if (taken != nullptr && taken->loop != nullptr && !taken->isTold) {
    if (const std::string why = taken->loop->problem(); !why.empty()) {
      taken->isTold = true;
      problems.push_back(why);
    }
  }
  const std::uint64_t ended = blocksEnded.load();
  std::erase_if(left, [&](Left& each) {
    if (runs && ended < each.blocks) return false;
    if (each.recorder != nullptr) finish(*each.recorder);
    return true;
  });
}

void LiveSound::finish(Recorder& recorder) {
  recorder.finish();
  if (const std::string why = recorder.problem(); !why.empty()) problems.push_back(why);
  if (recorder.lostFrames() == 0) return;
  problems.push_back(recorder.file().string() + " lacks " + std::to_string(recorder.lostFrames()) +
                     " frames: the disk was too slow");
}

void LiveSound::endAll() {
  endRecord();
  sweep(false);
}

// ---- [audio]

void LiveSound::process(const float* const* inputs, float* const* outputs, int frames)
    ZUM_REALTIME {
  blocksBegun.fetch_add(1);
  for (MidiLane& lane : lanes) {
    lane.read([this](const MidiLane::Message& message)
                  ZUM_REALTIME { effect.receiveMidi(0, message.data()); });
  }
  for (int done = 0; done < frames; done += kMostFrames) {
    const int count = std::min(kMostFrames, frames - done);
    std::array<float*, 2> out = {outputs[0] + done, outputs[1] + done};
    if (inputs == nullptr) {
      processPart(nullptr, out.data(), count);
    } else {
      const std::array<const float*, 2> in = {inputs[0] + done, inputs[1] + done};
      processPart(in.data(), out.data(), count);
    }
  }
  blocksEnded.fetch_add(1);
}

void LiveSound::processPart(const float* const* inputs, float* const* outputs, int frames)
    ZUM_REALTIME {
  Take* const take = wantedTake.load();
  std::array<float*, 2> in = {heard[0].data(), heard[1].data()};
  LoopSource* const loop = take != nullptr ? take->loop.get() : nullptr;
  const bool hears = hearsInput.load(std::memory_order_relaxed);
  if (loop != nullptr && !hears) {
    const std::int64_t before = loop->lateFrames();
    loop->read(in[0], in[1], frames);
    late.fetch_add(loop->lateFrames() - before, std::memory_order_relaxed);
  } else {
    for (std::size_t side = 0; side < 2; ++side) {
      if (hears && inputs != nullptr) {
        std::copy_n(inputs[side], frames, in[side]);
      } else {
        std::fill_n(in[side], frames, 0.0F);
      }
    }
  }
  note(peakIn, in.data(), frames);

  HostSide::Song song = effect.song();
  song.isPlaying = take != nullptr;
  song.tempo = songTempo.load(std::memory_order_relaxed);
  if (take != nullptr) {
    take->clock.setTempo(song.tempo);
    song.beats = take->clock.beats();
    take->clock.advance(frames);
  }
  // Not in the device's buffers: a server that does not wait clears them for the next block.
  const std::array<float*, 2> out = {made[0].data(), made[1].data()};
  { const HostSide::Block block(effect, {in.data(), nullptr, out.data(), frames}, song); }
  note(peakOut, out.data(), frames);
  if (Recorder* const recorder = wantedRecorder.load()) {
    recorder->write(out[0], out[1], frames);
  }
  for (std::size_t side = 0; side < 2; ++side) std::copy_n(out[side], frames, outputs[side]);
}

}  // namespace zum
