#include "engine/wave_tables.hpp"

#include <cmath>
#include <span>

namespace zum {
namespace {

struct Point {
  int entry;
  double value;
};

// Telling entries of two waves that were drawn by hand; between them the curves are smooth and
// never overshoot.
constexpr Point kFalling[] = {
    {0, 0.981445},  {1, 0.999969},   {128, 0.7135},   {256, 0.4334},    {512, -0.0558},
    {768, -0.4634}, {1022, -0.8007}, {1023, -0.4876}, {1024, 0.981445},
};
constexpr Point kTriangle[] = {
    {0, 0.003143},   {1, 0.006775},   {128, 0.4477},    {244, 0.9194},
    {256, 0.8534},   {512, -0.0022},  {756, -0.9194},   {768, -0.8525},
    {1022, -0.0060}, {1023, -0.0024}, {1024, 0.003143},
};

double secant(std::span<const Point> points, std::size_t i) {
  return (points[i + 1].value - points[i].value) / (points[i + 1].entry - points[i].entry);
}

/// Slope at a point: the harmonic mean of its neighbours' secants, 0 at a turn.
double slope(std::span<const Point> points, std::size_t i) {
  if (i == 0) return secant(points, 0);
  if (i + 1 == points.size()) return secant(points, i - 1);
  const double before = secant(points, i - 1);
  const double after = secant(points, i);
  return before * after > 0.0 ? 2.0 * before * after / (before + after) : 0.0;
}

/// Monotone cubic through `points` (F. N. Fritsch and J. Butland, "A method for constructing local
/// monotone piecewise cubic interpolants", SIAM J. Sci. Stat. Comput. 5, 1984).
void drawThrough(std::span<const Point> points, WaveTable& table) {
  for (std::size_t i = 0; i + 1 < points.size(); ++i) {
    const Point& from = points[i];
    const Point& to = points[i + 1];
    const double h = to.entry - from.entry;
    for (int entry = from.entry; entry <= to.entry; ++entry) {
      const double t = (entry - from.entry) / h;
      const double u = 1.0 - t;
      const double value = (1.0 + 2.0 * t) * u * u * from.value + t * u * u * h * slope(points, i) +
                           t * t * (3.0 - 2.0 * t) * to.value -
                           t * t * u * h * slope(points, i + 1);
      table.entries[static_cast<std::size_t>(entry)] = static_cast<float>(value);
    }
  }
}

void close(WaveTable& table) {
  table.entries.back() = table.entries.front();
  for (std::size_t i = 0; i + 1 < table.entries.size(); ++i) {
    table.differences[i] = table.entries[i + 1] - table.entries[i];
  }
}

WaveTables make() {
  constexpr double kTwoPi = 6.283185307179586;
  WaveTables made;
  for (std::size_t i = 0; i < WaveTable::kCycle; ++i) {
    const double angle = kTwoPi * static_cast<double>(i) / WaveTable::kCycle;
    // No entry lies nearer to the middle of two of these steps than 4e-9, and no library is as
    // far from the sine: all of them give the same table.
    made.sine.entries[i] = static_cast<float>(std::round(std::sin(angle) * 1e6) * 1e-6);
    made.square.entries[i] = i < WaveTable::kCycle / 2 ? 1.0F : -1.0F;
  }
  drawThrough(kFalling, made.falling);
  drawThrough(kTriangle, made.triangle);
  for (WaveTable* table : {&made.sine, &made.square, &made.falling, &made.triangle}) close(*table);
  return made;
}

}  // namespace

const WaveTables& waveTables() {
  static const WaveTables tables = make();
  return tables;
}

}  // namespace zum
