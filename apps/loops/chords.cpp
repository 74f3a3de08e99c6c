// Chords.wav: a synthetic choir that sings slow chords through moving vowels.
#include <array>
#include <cmath>

#include "apps/loops/loop.hpp"
#include "apps/loops/voices.hpp"

namespace zum::loops {
namespace {

struct Chord {
  double beat;
  double length;  // beats
  std::array<int, 5> notes;
};

constexpr std::array kChords = {
    Chord{0.0, 4.0, {45, 60, 64, 67, 71}},  // A minor 9
    Chord{4.0, 2.0, {41, 60, 64, 67, 69}},  // F major 9
    Chord{6.0, 2.0, {43, 59, 62, 64, 69}},  // G 6/9
};

constexpr std::size_t kFormants = 3;

struct Vowel {
  std::array<double, kFormants> hertz;
  std::array<double, kFormants> gain;
};

constexpr Vowel kAh = {{730.0, 1150.0, 2600.0}, {1.0, 0.70, 0.35}};
constexpr Vowel kEh = {{480.0, 1850.0, 2550.0}, {1.0, 0.60, 0.45}};
constexpr Vowel kEe = {{300.0, 2250.0, 3000.0}, {1.0, 0.55, 0.50}};
constexpr Vowel kOh = {{460.0, 830.0, 2700.0}, {1.0, 0.65, 0.25}};
constexpr Vowel kOo = {{330.0, 700.0, 2500.0}, {1.0, 0.45, 0.20}};

// One for each beat; the mouth glides from each to the next, and from the last to the first.
constexpr std::array kWords = {kOo, kAh, kAh, kEe, kOh, kAh, kEh, kEe};

// Formant resonators side by side. `size` scales the mouth, so that two of them differ.
class Mouth {
 public:
  explicit Mouth(double size) : scale(1.0 / size) {}

  double sing(double in, double t) {
    constexpr double kQ = 7.0;
    const double beat = t / kBeat;
    const auto index = static_cast<std::size_t>(beat) % kWords.size();
    const Vowel& from = kWords[index];
    const Vowel& to = kWords[(index + 1) % kWords.size()];
    const double way = rise(beat - std::floor(beat), 0.25, 1.0);
    double out = 0.0;
    for (std::size_t i = 0; i < kFormants; ++i) {
      const double hertz = from.hertz[i] * std::pow(to.hertz[i] / from.hertz[i], way);
      resonators[i].set(hertz * scale, kQ);
      out += std::lerp(from.gain[i], to.gain[i], way) * resonators[i].next(in).band;
    }
    return out;
  }

 private:
  double scale;
  std::array<Filter, kFormants> resonators;
};

// Three singers for each note: left, middle and right, each with a vibrato of their own.
void singers(Loop& loop, const Chord& chord, int note, std::uint32_t seed) {
  constexpr double kAttack = 0.11;   // seconds
  constexpr double kRelease = 0.45;  // seconds
  const double held = chord.length * kBeat - 0.06;
  Noise random(seed);
  for (const double position : {-0.9, 0.1, 0.9}) {
    Oscillator throat(0.5 + 0.5 * random.next()), vibrato(0.5 + 0.5 * random.next());
    const double cents = 9.0 * position + 3.0 * random.next();
    const double speed = 5.3 + 0.5 * random.next();  // Hz
    loop.play(chord.beat * kBeat, held + kRelease, [&](double t) {
      const double level = rise(t, 0.0, kAttack) * (1.0 - rise(t, held, held + kRelease));
      const double wave = vibrato.sine(speed);
      const double hertz = pitch(note, cents + 16.0 * rise(t, 0.2, 0.9) * wave);
      return pan(level * throat.pulse(hertz, 0.2 + 0.05 * wave), position);
    });
  }
}

}  // namespace

Loop chords() {
  Loop loop;
  std::uint32_t seed = 7;
  for (const Chord& chord : kChords) {
    for (const int note : chord.notes) singers(loop, chord, note, seed += 2);
  }
  Mouth left(1.03), right(0.97);
  Filter airLeft(3500.0, 0.7), airRight(3500.0, 0.7);
  loop.process([&](Frame in, double t) {
    const Frame voice = {left.sing(in.left, t), right.sing(in.right, t)};
    const Frame air = {airLeft.next(in.left).high, airRight.next(in.right).high};
    return voice * 0.25 + air * 0.05 + in * 0.03;
  });
  loop.room(0.16, 1.1);
  loop.saturate(1.0);
  loop.finish();
  return loop;
}

}  // namespace zum::loops
