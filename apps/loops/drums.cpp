// Drums.wav: a tight funk groove in a small room.
#include <array>
#include <cmath>
#include <string_view>

#include "apps/loops/loop.hpp"
#include "apps/loops/voices.hpp"

namespace zum::loops {
namespace {

struct Hit {
  Loop& loop;
  double start;  // seconds
  double level;
  double position;     // -1 left .. 1 right
  std::uint32_t seed;  // no two hits share their noise
};

void kick(const Hit& hit) {
  Oscillator body;
  Noise noise(hit.seed);
  Filter beater(2600.0, 0.8);
  hit.loop.play(hit.start, 0.42, [&](double t) {
    const double hertz = 47.0 + 120.0 * decay(t, 0.028) + 700.0 * decay(t, 0.004);
    const double thump = std::tanh(2.4 * body.sine(hertz) * decay(t, 0.13));
    const double click = beater.next(noise.next()).band * decay(t, 0.005);
    return pan(hit.level * (0.95 * thump + 0.6 * click), hit.position);
  });
}

void snare(const Hit& hit) {
  Oscillator shell, head;
  Noise left(hit.seed), right(hit.seed + 1);
  Filter wireLeft(3400.0, 0.35), wireRight(3700.0, 0.35);
  hit.loop.play(hit.start, 0.5, [&](double t) {
    const double bend = 1.0 + 0.5 * decay(t, 0.01);
    const double tone = (shell.sine(187.0 * bend) + 0.6 * head.sine(332.0 * bend)) * decay(t, 0.06);
    const double rattle = 0.75 * decay(t, 0.085) + 0.5 * decay(t, 0.012);
    const Frame wires = {wireLeft.next(left.next()).band, wireRight.next(right.next()).band};
    return (pan(0.75 * tone, hit.position) + wires * rattle) * hit.level;
  });
}

void clap(const Hit& hit) {
  Noise left(hit.seed), right(hit.seed + 1);
  Filter palmLeft(1150.0, 1.3), palmRight(1350.0, 1.3);
  hit.loop.play(hit.start, 0.45, [&](double t) {
    double hands = 0.0;  // three people who clap not quite together, and their echo
    for (const double late : {0.0, 0.0105, 0.0215}) {
      if (t >= late) hands += decay(t - late, 0.0035);
    }
    if (t > 0.03) hands += 0.6 * decay(t - 0.03, 0.07);
    return Frame{palmLeft.next(left.next()).band, palmRight.next(right.next()).band} *
           (1.5 * hands * hit.level);
  });
}

void cymbal(const Hit& hit, double ring) {
  constexpr std::array kPartials = {317.0, 465.0, 569.0, 811.0, 837.0, 1241.0};  // Hz, inharmonic
  std::array<Oscillator, kPartials.size()> plates;
  Noise noise(hit.seed);
  Filter thin(7200.0, 0.9), thinner(5200.0, 0.7);
  hit.loop.play(hit.start, 5.0 * ring, [&](double t) {
    double metal = 0.0;
    for (std::size_t i = 0; i < kPartials.size(); ++i) {
      metal += 0.3 * plates[i].pulse(kPartials[i] * 1.7, 0.5);
    }
    const double bright = thinner.next(thin.next(metal + 0.5 * noise.next()).high).high;
    return pan(1.1 * hit.level * bright * decay(t, ring), hit.position);
  });
}

void closedHat(const Hit& hit) { cymbal(hit, 0.028); }
void openHat(const Hit& hit) { cymbal(hit, 0.11); }

void shaker(const Hit& hit) {
  Noise noise(hit.seed);
  Filter beads(6300.0, 1.1);
  hit.loop.play(hit.start, 0.14, [&](double t) {
    const double swell = rise(t, 0.0, 0.022) * decay(t, 0.03);
    return pan(1.3 * hit.level * beads.next(noise.next()).band * swell, hit.position);
  });
}

void woodblock(const Hit& hit) {
  Oscillator low, high;
  hit.loop.play(hit.start, 0.15, [&](double t) {
    const double wood = std::tanh(1.8 * (low.sine(1046.0) + 0.7 * high.sine(1683.0)));
    return pan(0.5 * hit.level * wood * decay(t, 0.018), hit.position);
  });
}

void conga(const Hit& hit, double hertz) {
  Oscillator skin, edge;
  Noise noise(hit.seed);
  Filter slap(hertz * 7.0, 1.5);
  hit.loop.play(hit.start, 0.45, [&](double t) {
    const double bent = hertz * (1.0 + 0.18 * decay(t, 0.02));
    const double tone =
        skin.sine(bent) * decay(t, 0.09) + 0.35 * edge.sine(bent * 1.593) * decay(t, 0.04);
    const double hand = slap.next(noise.next()).band * decay(t, 0.008);
    return pan(hit.level * (0.6 * tone + 0.9 * hand), hit.position);
  });
}

void lowConga(const Hit& hit) { conga(hit, 172.0); }
void highConga(const Hit& hit) { conga(hit, 258.0); }

struct Row {
  void (*voice)(const Hit&);
  double level;
  double position;
  std::string_view steps;  // 32 sixteenths: X accent, x normal, o ghost
};

constexpr std::array kGroove = {
    Row{kick, 0.80, 0.00,
        "X.....x...X....."
        "X..x..x...X...o."},
    Row{snare, 0.62, 0.05,
        "....X..o.o..X..."
        "....X..o.o..X.ox"},
    Row{clap, 0.50, 0.00,
        "............X..."
        "....x.......X..."},
    Row{closedHat, 0.46, 0.35,
        "X.xoX.xoX.xoX..o"
        "X.xoX..oX.xoX.xo"},
    Row{openHat, 0.38, 0.35,
        "..............X."
        "......X........."},
    Row{shaker, 0.38, -0.55,
        "oxXooxXooxXooxXo"
        "oxXooxXooxXooxXo"},
    Row{woodblock, 0.52, 0.75,
        "...x..x....x.o.."
        "...x..x....o.x.o"},
    Row{lowConga, 0.62, -0.60,
        "..x.......o.x..."
        "..x.......o...x."},
    Row{highConga, 0.58, -0.35,
        ".......x.x......"
        ".......x.x...x.x"},
};

double strength(char step) {
  switch (step) {
    case 'X': return 1.0;
    case 'x': return 0.7;
    case 'o': return 0.32;
    default: return 0.0;
  }
}

}  // namespace

Loop drums() {
  constexpr double kSwing = 0.14;  // of a sixteenth, for every second one
  Loop loop;
  std::uint32_t seed = 1;
  for (const Row& row : kGroove) {
    for (std::size_t step = 0; step < row.steps.size(); ++step) {
      const double level = row.level * strength(row.steps[step]);
      const double start = (static_cast<double>(step) + (step % 2 == 1 ? kSwing : 0.0)) * kStep;
      if (level > 0.0) row.voice({loop, start, level, row.position, seed += 2});
    }
  }
  loop.room(0.17, 0.55);
  loop.saturate(1.25);
  loop.finish();
  return loop;
}

}  // namespace zum::loops
