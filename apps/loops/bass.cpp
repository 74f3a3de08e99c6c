// Bass.wav: a plucked riff in A minor, mono at the bottom and wide above.
#include <array>

#include "apps/loops/loop.hpp"
#include "apps/loops/voices.hpp"

namespace zum::loops {
namespace {

struct Note {
  int step;       // sixteenths from the start
  double length;  // sixteenths
  int midi;
  double accent;
};

// A minor for a bar, then F and G with a run back up to the A.
constexpr std::array kRiff = {
    Note{0, 2.0, 33, 1.00},  Note{3, 0.7, 33, 0.65},  Note{4, 0.8, 45, 0.85},
    Note{6, 1.6, 36, 0.90},  Note{8, 1.0, 38, 0.80},  Note{10, 0.7, 33, 0.65},
    Note{11, 0.7, 43, 0.80}, Note{12, 1.7, 45, 1.00}, Note{14, 0.8, 40, 0.75},
    Note{15, 0.8, 36, 0.70}, Note{16, 2.0, 29, 1.00}, Note{19, 0.7, 29, 0.65},
    Note{20, 0.8, 41, 0.85}, Note{22, 1.6, 36, 0.90}, Note{24, 1.5, 31, 1.00},
    Note{26, 0.7, 31, 0.65}, Note{27, 0.8, 43, 0.85}, Note{28, 1.7, 38, 0.90},
    Note{30, 0.8, 35, 0.80}, Note{31, 0.9, 32, 0.75},
};

void pluck(Loop& loop, const Note& note) {
  constexpr double kCents = 7.0;
  constexpr double kRelease = 0.05;  // seconds
  const double held = note.length * kStep;
  Oscillator square, left(0.31), right(0.81), topLeft(0.1), topRight(0.6);
  Filter bodyFilter, leftFilter, rightFilter;
  loop.play(note.step * kStep, held + 4.0 * kRelease, [&](double t) {
    const double swell = (0.35 + 0.65 * decay(t, 0.16)) * note.accent;
    const double level = t < held ? swell : swell * decay(t - held, kRelease);
    const double cutoff =
        2600.0 + note.accent * (6000.0 * decay(t, 0.14) + 9000.0 * decay(t, 0.04));
    const double width = 0.5 - 0.18 * decay(t, 0.2);
    const double body = square.pulse(pitch(note.midi), width);
    const double sideLeft = left.saw(pitch(note.midi, -kCents)) +
                            0.45 * topLeft.saw(pitch(note.midi + 12, 1.3 * kCents));
    const double sideRight = right.saw(pitch(note.midi, kCents)) +
                             0.45 * topRight.saw(pitch(note.midi + 12, -1.3 * kCents));
    bodyFilter.set(0.6 * cutoff, 0.8);
    leftFilter.set(cutoff, 1.6);
    rightFilter.set(1.08 * cutoff, 1.6);
    const double middle = 0.5 * bodyFilter.next(body).low;
    return Frame{middle + 0.42 * leftFilter.next(sideLeft).low,
                 middle + 0.42 * rightFilter.next(sideRight).low} *
           level;
  });
}

}  // namespace

Loop bass() {
  Loop loop;
  for (const Note& note : kRiff) pluck(loop, note);
  loop.saturate(1.3);
  loop.room(0.05, 0.35);
  loop.finish();
  return loop;
}

}  // namespace zum::loops
