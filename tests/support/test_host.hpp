// A host for tests: one effect instance behind its published record, with a time and a process
// level that a test sets.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/linked_effect.hpp"

namespace zum::test {

/// Left and right, the same length.
struct Stereo {
  std::vector<float> left;
  std::vector<float> right;

  explicit Stereo(std::size_t frames = 0, float value = 0.0F)
      : left(frames, value), right(frames, value) {}
  std::size_t frames() const { return left.size(); }
  bool operator==(const Stereo&) const = default;
};

/// Of a host: opcode, index, value.
using HostCalls = std::vector<std::array<std::intptr_t, 3>>;
/// Of parameters that change one after the other, each in an edit of so many moves.
HostCalls edits(const std::vector<int>& tags, int moves = 1);

/// What the host side of an instance answers, and what it was told.
struct HostState {
  bool hasTime = false;
  VstTimeInfo time{};
  bool moves = false;  // the position, block by block, while the transport plays
  std::int32_t level = kVstProcessLevelRealtime;
  bool sizesWindow = false;  // to whatever it is asked for
  std::string vendor = "Test";
  std::string product = "Test Host";
  HostCalls calls;                           // none from the block
  std::function<void(std::int32_t)> onCall;  // hears of each of them, by its opcode
  int levelCalls = 0;                        // from the block
  int timeCalls = 0;
  std::intptr_t timeFilter = 0;
};

/// The callback of a host that answers so. Its next effect's `user` is to point to the state.
audioMasterCallback answering(HostState& host);

struct HostSide {
  HostState host;  // there before the effect is made
};

class TestHost : public HostSide, public LinkedEffect {
 public:
  explicit TestHost(float sampleRate = 44100.0F, HostState state = {},
                    EditorFactory makeEditor = nullptr);
  /// Of a file that is loaded.
  explicit TestHost(const PluginFile& file, float sampleRate = 44100.0F);

  /// Has the host tell the time from here on.
  void giveTime(double tempo, double ppqPos = 0.0, std::int32_t flags = 0);
  /// Selects a filter: bank 0 or 1, type 0 to 9.
  void selectFilter(int bank, int type);
  /// The same, types of both banks counted through: 0 to 19.
  void selectFilter(int type) { selectFilter(type / 10, type % 10); }
  /// All wet at unity gain, both banks at one frequency; the glides are still to run.
  void prepare(int type, float cutoff, float resonance, float drive);
  /// One block call in the middle of larger buffers.
  void process(const Stereo& in, Stereo& out, std::size_t at, std::int32_t frames);
  using LinkedEffect::process;
  /// All of `in`, in blocks of the sizes given, again and again.
  Stereo render(const Stereo& in, const std::vector<std::int32_t>& blocks = {512});

 private:
  void start();

  float rate;
};

/// Seeded noise in -level..level, different on both sides.
Stereo noise(std::size_t frames, float level = 0.5F);
/// Sum of the squares of all samples.
double energy(const Stereo& a);
/// Energy of a - b over the energy of b, in dB.
double errorDb(const Stereo& a, const Stereo& b);

}  // namespace zum::test
