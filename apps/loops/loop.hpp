// Two bars of stereo sound whose end runs on into their beginning; every instrument of zum-loops
// renders into one.
#pragma once

#include <algorithm>
#include <cstddef>
#include <numbers>
#include <vector>

namespace zum::loops {

inline constexpr int kRate = 44100;            // Hz
inline constexpr double kBeat = 0.5;           // seconds, 120 BPM
inline constexpr double kStep = kBeat / 4.0;   // seconds, a sixteenth
inline constexpr double kSeconds = 8 * kBeat;  // two bars of four beats
inline constexpr std::size_t kFrames = static_cast<std::size_t>(kSeconds * kRate);
inline constexpr double kTau = 2.0 * std::numbers::pi;

struct Frame {
  double left = 0.0;
  double right = 0.0;
};

inline Frame operator+(Frame a, Frame b) { return {a.left + b.left, a.right + b.right}; }
inline Frame operator*(Frame a, double gain) { return {a.left * gain, a.right * gain}; }

// Places a mono sample with constant power; position -1 is left, 1 is right.
Frame pan(double sample, double position);

struct Loop {
  std::vector<Frame> frames = std::vector<Frame>(kFrames);

  // Adds `length` seconds of voice(t) from `start` on, both in seconds. What reaches past the end
  // sounds on at the beginning. Short ramps keep voices that start or stop hard from clicking.
  template <typename Voice>
  void play(double start, double length, Voice&& voice) {
    constexpr double kRampIn = 0.0004;
    constexpr double kRampOut = 0.008;
    const auto first = static_cast<std::size_t>(start * kRate);
    const auto count = static_cast<std::size_t>(length * kRate);
    for (std::size_t i = 0; i < count; ++i) {
      const double t = static_cast<double>(i) / kRate;
      const double ramp = std::min({1.0, t / kRampIn, (length - t) / kRampOut});
      Frame& frame = frames[(first + i) % kFrames];
      frame = frame + voice(t) * ramp;
    }
  }

  // Runs effect(frame, t) over the loop twice and keeps the second round: by then filters and
  // delays remember the end of the loop when they meet its start, so the border stays seamless.
  template <typename Effect>
  void process(Effect&& effect) {
    const std::vector<Frame> dry = frames;
    for (int round = 0; round < 2; ++round) {
      for (std::size_t i = 0; i < kFrames; ++i) {
        frames[i] = effect(dry[i], static_cast<double>(i) / kRate);
      }
    }
  }

  // Adds a small room; `decay` is the time to -60 dB in seconds and has to stay well below the
  // length of the loop.
  void room(double wet, double decay);

  // Rounds the peaks off; more drive is louder and richer in overtones.
  void saturate(double drive);

  // Takes out what lies below hearing and brings the peak to -3 dBFS.
  void finish();
};

// The three factory loops, finished for the file.
Loop drums();
Loop bass();
Loop chords();

}  // namespace zum::loops
