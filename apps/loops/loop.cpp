// The effects every loop may pass through on its way to the file: room, saturation, final level.
#include "apps/loops/loop.hpp"

#include <array>
#include <cmath>

namespace zum::loops {
namespace {

// Eight damped delays that feed each other through a Householder mirror, which loses no energy.
// Even lines hear and make the left side, odd ones the right.
class Room {
 public:
  explicit Room(double decay) {
    for (std::size_t i = 0; i < kLines; ++i) {
      lines[i].resize(kLengths[i]);
      gains[i] = std::pow(10.0, -3.0 * static_cast<double>(kLengths[i]) / (decay * kRate));
    }
  }

  Frame next(Frame in) {
    Frame out;
    double sum = 0.0;
    for (std::size_t i = 0; i < kLines; ++i) {
      damped[i] += kBrightness * (lines[i][cursors[i]] * gains[i] - damped[i]);
      sum += damped[i];
      const double sign = i % 4 < 2 ? 0.5 : -0.5;
      (i % 2 == 0 ? out.left : out.right) += sign * damped[i];
    }
    for (std::size_t i = 0; i < kLines; ++i) {
      lines[i][cursors[i]] = (i % 2 == 0 ? in.left : in.right) + damped[i] - sum * 2.0 / kLines;
      cursors[i] = (cursors[i] + 1) % kLengths[i];
    }
    return out;
  }

 private:
  static constexpr std::size_t kLines = 8;
  // Primes, in frames: 10 to 40 ms without common echoes.
  static constexpr std::array<std::size_t, kLines> kLengths = {443,  571,  739,  877,
                                                               1049, 1259, 1511, 1759};
  static constexpr double kBrightness = 0.62;

  std::array<std::vector<double>, kLines> lines;
  std::array<std::size_t, kLines> cursors{};
  std::array<double, kLines> gains{};
  std::array<double, kLines> damped{};
};

}  // namespace

Frame pan(double sample, double position) {
  const double angle = (position + 1.0) * kTau / 8.0;
  return {sample * std::cos(angle), sample * std::sin(angle)};
}

void Loop::room(double wet, double decay) {
  Room room(decay);
  process([&](Frame in, double) { return in + room.next(in) * wet; });
}

void Loop::saturate(double drive) {
  process([drive](Frame in, double) {
    return Frame{std::tanh(drive * in.left), std::tanh(drive * in.right)};
  });
}

void Loop::finish() {
  constexpr double kCutoff = 22.0;  // Hz
  constexpr double kPeak = 0.7079;  // -3 dBFS
  const double glide = 1.0 - std::exp(-kTau * kCutoff / kRate);
  Frame low;
  process([&](Frame in, double) {
    low = low + (in + low * -1.0) * glide;
    return in + low * -1.0;
  });
  double peak = 0.0;
  for (const Frame& frame : frames) {
    peak = std::max({peak, std::abs(frame.left), std::abs(frame.right)});
  }
  for (Frame& frame : frames) frame = frame * (kPeak / peak);
}

}  // namespace zum::loops
