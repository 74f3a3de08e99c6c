// Noise, oscillators, filter and envelopes of the instruments.
#include "apps/loops/voices.hpp"

#include <algorithm>
#include <cmath>

#include "apps/loops/loop.hpp"

namespace zum::loops {
namespace {

// What to add around a step upwards by 2 at phase 0; `reach` is the phase covered by one frame.
double roundedStep(double phase, double reach) {
  if (phase < reach) {
    const double x = phase / reach - 1.0;
    return -x * x;
  }
  if (phase > 1.0 - reach) {
    const double x = (phase - 1.0) / reach + 1.0;
    return x * x;
  }
  return 0.0;
}

}  // namespace

double Noise::next() {
  state ^= state << 13;
  state ^= state >> 17;
  state ^= state << 5;
  return static_cast<double>(state) / 2147483648.0 - 1.0;
}

double Oscillator::advance(double hertz) {
  const double now = phase;
  phase += hertz / kRate;
  phase -= std::floor(phase);
  return now;
}

double Oscillator::sine(double hertz) { return std::sin(kTau * advance(hertz)); }

double Oscillator::saw(double hertz) {
  const double now = advance(hertz);
  return 2.0 * now - 1.0 - roundedStep(now, hertz / kRate);
}

double Oscillator::pulse(double hertz, double width) {
  const double now = advance(hertz);
  const double sinceFall = now < width ? now - width + 1.0 : now - width;
  const double square = now < width ? 1.0 : -1.0;
  const double reach = hertz / kRate;
  return square + roundedStep(now, reach) - roundedStep(sinceFall, reach) - (2.0 * width - 1.0);
}

void Filter::set(double hertz, double q) {
  g = std::tan(kTau / 2.0 * std::min(hertz, 0.45 * kRate) / kRate);
  damping = 1.0 / q;
}

Filter& Filter::next(double in) {
  high = (in - (g + damping) * state1 - state2) / (1.0 + g * (g + damping));
  const double middle = g * high + state1;
  low = g * middle + state2;
  state1 = g * high + middle;
  state2 = g * middle + low;
  band = damping * middle;
  return *this;
}

double decay(double t, double time) { return std::exp(-t / time); }

double rise(double t, double from, double to) {
  const double x = std::clamp((t - from) / (to - from), 0.0, 1.0);
  return x * x * (3.0 - 2.0 * x);
}

double pitch(int note, double cents) {
  return 440.0 * std::exp2((note - 69 + cents / 100.0) / 12.0);
}

}  // namespace zum::loops
