// What a sound device plays: a loop, or what comes in, through the effect. The user's side sets
// what is to be heard, the device's callback takes it at the start of its next block.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "adaptor/host_side.hpp"
#include "apps/zum/play/loop_source.hpp"
#include "apps/zum/play/midi_lanes.hpp"
#include "apps/zum/play/recorder.hpp"
#include "apps/zum/play/song_clock.hpp"

namespace zum {

class LiveSound {
 public:
  static constexpr int kMostFrames = 8192;  // in one part; longer blocks come in several

  /// The effect outlives it, and nobody else processes.
  explicit LiveSound(HostSide& played);
  ~LiveSound();
  LiveSound(const LiveSound&) = delete;
  LiveSound& operator=(const LiveSound&) = delete;

  // ---- [main] while no callback runs
  /// Switches the effect on at that rate, Hz. Where it is another one than before, what plays
  /// starts over and a recording ends. False for a rate that the effect does not have, and then
  /// nothing changes; throws Failure when the loop cannot be read any more.
  bool setRate(int rate);
  int sampleRate() const { return rate; }

  // ---- [main]
  /// Empty for none. What plays starts over with it. Throws Failure, and then nothing changes.
  void setLoop(const std::filesystem::path& path);
  const std::filesystem::path& loop() const { return loopPath; }
  /// From the loop's begin and the song's first beat.
  void play();
  void stop();
  bool isPlaying() const { return playing; }
  /// What comes in is heard in place of the loop.
  void hearInput(bool wanted) { hearsInput.store(wanted); }
  bool isInputHeard() const { return hearsInput.load(); }
  /// Quarter notes per minute.
  void setTempo(double tempo) { songTempo.store(tempo); }
  double tempo() const { return songTempo.load(); }

  /// A running one ends. Ahead of the first setRate(), it begins with that. Throws Failure when the
  /// new one cannot be made, and then nothing changes.
  void record(const std::filesystem::path& path);
  void endRecord();
  /// Null for none; one that stopped by itself stays until endRecord().
  const Recorder* recorder() const { return recording.get(); }

  /// Since the last call, 0 for silence; above 1 it clips.
  struct Peaks {
    float in;
    float out;
  };
  Peaks takePeaks() { return {peakIn.exchange(0.0F), peakOut.exchange(0.0F)}; }
  /// Frames of the loop that were not there in time.
  std::int64_t lateFrames() const { return late.load(); }
  MidiLanes& midi() { return lanes; }
  /// Now and then: lets go of what the callback has left. `runs` says whether one may run.
  void sweep(bool runs);
  /// While no callback runs: a recording is complete behind it.
  void endAll();
  /// What went wrong since the last call.
  std::vector<std::string> takeProblems() { return std::exchange(problems, {}); }

  // ---- [audio]
  /// Two channels each; null inputs are silence.
  void process(const float* const* inputs, float* const* outputs, int frames) ZUM_REALTIME;

 private:
  /// From one press on play to the next, or to stop.
  struct Take {
    std::unique_ptr<LoopSource> loop;  // null for silence
    SongClock clock;
    bool isTold;  // [main] what became of the loop
  };
  /// What the callback may still use, until it has begun `blocks` of them.
  struct Left {
    std::unique_ptr<Take> take;
    std::unique_ptr<Recorder> recorder;
    std::uint64_t blocks;
  };

  std::unique_ptr<Take> makeTake(const std::filesystem::path& path) const;
  void replaceTake(std::unique_ptr<Take> next);
  void finish(Recorder& recorder);
  void processPart(const float* const* inputs, float* const* outputs, int frames) ZUM_REALTIME;

  HostSide& effect;
  MidiLanes lanes;
  int rate = 0;  // Hz, 0 as long as there was none
  bool playing = false;
  std::filesystem::path loopPath;
  std::unique_ptr<Take> taken;
  std::unique_ptr<Recorder> recording;
  std::filesystem::path firstRecording;  // until there is a rate
  std::vector<Left> left;
  std::vector<std::string> problems;

  // from main to the callback
  std::atomic<Take*> wantedTake{nullptr};
  std::atomic<Recorder*> wantedRecorder{nullptr};
  std::atomic<bool> hearsInput{false};
  std::atomic<double> songTempo{120.0};
  // and back
  std::atomic<std::uint64_t> blocksBegun{0};
  std::atomic<std::uint64_t> blocksEnded{0};
  std::atomic<std::int64_t> late{0};
  std::atomic<float> peakIn{0.0F};
  std::atomic<float> peakOut{0.0F};

  // [audio]
  std::array<std::vector<float>, 2> heard;  // what goes into the effect
  std::array<std::vector<float>, 2> made;   // and what comes out
};

}  // namespace zum
