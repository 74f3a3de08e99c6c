// What the instruments of zum-loops are made of: noise, oscillators, a filter and an envelope.
#pragma once

#include <cstdint>

namespace zum::loops {

// White noise in -1..1, the same on every machine.
class Noise {
 public:
  explicit Noise(std::uint32_t seed) : state(seed * 2654435761U | 1U) {}
  double next();

 private:
  std::uint32_t state;
};

// One phase, read as the wave that is asked for; each call moves it on by one frame. Steps are
// rounded off (polynomial band-limiting), since aliases would be heard as mistakes of the filter.
class Oscillator {
 public:
  explicit Oscillator(double startPhase = 0.0) : phase(startPhase) {}
  double sine(double hertz);
  double saw(double hertz);
  double pulse(double hertz, double width);  // width in 0..1, mean taken out

 private:
  double advance(double hertz);
  double phase;
};

// State-variable filter of second order that takes changes of its cutoff at every frame. Hold a
// sample in with set() and next(), then read the output that is wanted.
class Filter {
 public:
  Filter() = default;
  Filter(double hertz, double q) { set(hertz, q); }
  void set(double hertz, double q);
  Filter& next(double in);

  double low = 0.0;
  double band = 0.0;  // 0 dB at the centre
  double high = 0.0;

 private:
  double g = 0.0;
  double damping = 1.0;
  double state1 = 0.0;
  double state2 = 0.0;
};

// Falls from 1 to 1/e within `time` seconds, and so on.
double decay(double t, double time);

// Rises smoothly from 0 to 1 between `from` and `to` (seconds, or any other unit).
double rise(double t, double from, double to);

// Pitch of a MIDI note in Hz, `cents` off.
double pitch(int note, double cents = 0.0);

}  // namespace zum::loops
