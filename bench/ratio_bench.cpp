// The block call in numbers that machines can be compared by: ratios to the bare one-stage chain,
// in medians of rounds in which each measurement has its turn; and what the stages of a frame cost
// alone. `ratio_bench [rounds]`.

#include <time.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "bench/bench_host.hpp"

namespace zum::bench {
namespace {

/// Something that plays kFrames frames, and how long it took.
class Measurement {
 public:
  explicit Measurement(std::function<void()> what) : play(std::move(what)) {}

  void takeTurn() {
    play();  // out of the others' shadow
    const double start = now();
    for (int i = 0; i < kPlays; ++i) play();
    perFrame.push_back((now() - start) / (kPlays * static_cast<double>(kFrames)));
  }
  /// Nanoseconds a frame.
  double median() {
    const auto middle = perFrame.begin() + static_cast<std::ptrdiff_t>(perFrame.size() / 2);
    std::nth_element(perFrame.begin(), middle, perFrame.end());
    return *middle;
  }

 private:
  /// Nanoseconds of this thread, whatever else the machine does meanwhile.
  static double now() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
  }

  static constexpr int kPlays = 6;

  std::function<void()> play;
  std::vector<double> perFrame;
};

// ---- the classes of filter types

constexpr struct FilterClass {
  const char* name;
  int bank;
  int type;
} kClasses[] = {{"one-stage", 0, 4},        {"two-stage", 0, 5},         {"comb", 0, 6},
                {"vowel, one stage", 1, 4}, {"vowel, two stages", 1, 5}, {"vowel comb", 1, 6}};

enum How { idle, all, silence, oneSide, blocksOf16, blocksOf512, hows };

Measurement playing(const FilterClass& played, How how) {
  const bool sound = how != silence;
  const auto host = std::make_shared<BenchHost>(played.bank, played.type, sound);
  if (how == all) host->modulateAll();
  if (how == oneSide) host->silenceLeft();
  host->runIn(sound && how != oneSide);
  const std::int32_t block = how == blocksOf16 ? 16 : how == blocksOf512 ? 512 : 64;
  return Measurement([host, block] { host->play(block); });
}

// ---- the stages, each by itself: in the engine a part of it stands in the shadow of others

/// `Stage` has a method for the pairs of a run, from `in` to `out`.
template <class Stage>
Measurement runsOf(Stage made) {
  struct Lines {
    explicit Lines(Stage from) : stage(std::move(from)) {
      const test::Stereo sound = test::noise(kRunFrames);
      for (std::size_t i = 0; i < kRunFrames; i += 2) {
        in[i / 2] = Float4{sound.left[i], sound.right[i], sound.left[i + 1], sound.right[i + 1]};
      }
    }
    Stage stage;
    PairLine in{};
    PairLine out{};
  };
  const auto lines = std::make_shared<Lines>(std::move(made));
  return Measurement([lines] {
    for (std::size_t at = 0; at < kFrames; at += kRunFrames) {
      lines->stage.play(lines->in, lines->out);
      settleMemory();
    }
  });
}

KvSystemInfo& clockOf(std::int32_t controlFrames) {
  static std::vector<BufferRecord> buffers;
  static std::vector<TempoListener*> listeners;
  static std::vector<std::unique_ptr<KvSystemInfo>> clocks;
  KvSystemInfo& clock = *clocks.emplace_back(std::make_unique<KvSystemInfo>(buffers, listeners));
  clock.setControlInterval(controlFrames);
  clock.setSampleRate(44100.0F);
  clock.setTempo(120.0);
  clock.transportRunning = 1.0F;
  return clock;
}

struct Drive {
  Drive() {
    overdrive.recompute(clockOf(16));
    overdrive.controlPass(0.5F);
  }
  void play(const PairLine& in, PairLine& out) {
    Overdrive::State state = overdrive.enter();
    Float4 shaped{};
    for (std::size_t p = 0; p < kRunPairs; ++p) {
      const Float4 clipped = overdrive.clip<2>(state, in[p], splat(0.5F));
      const Overdrive::Lows lows = overdrive.smooth<2>(state, clipped, shaped, true, true);
      out[p] = overdrive.join(shaped, lows.bass, in[p], splat(1.1F));
      shaped = overdrive.shape(lows.clip);
    }
    overdrive.leave(state);
  }
  Overdrive overdrive;
};

/// Any filter structure.
template <class Filter>
struct Structure {
  void play(const PairLine& in, PairLine& out) {
    typename Filter::State state = filter->enter(kRunFrames);
    const typename Filter::Coeffs coeffs = filter->coeffs;
    for (std::size_t p = 0; p < kRunPairs; ++p) {
      const Float4 first = filter->next(state, coeffs, lowTwice(in[p]));
      out[p] = Filter::join(first, filter->next(state, coeffs, highTwice(in[p])));
    }
    filter->leave(state);
  }
  std::unique_ptr<Filter> filter = std::make_unique<Filter>();
};

struct Detectors {
  Detectors() {
    detectors.setFollowerBand({0.3F, 0.4F}, true);
    detectors.setFollowerDecay(1e-4F);
    detectors.setTriggerDecay(1e-4F);
    detectors.setSmoothing(0.01F);
  }
  void play(const PairLine& in, PairLine& out) {
    LevelDetectors::State state = detectors.enter();
    const SvfLanes& lanes = detectors.bandCoeffs();
    for (std::size_t p = 0; p < kRunPairs; ++p) {
      const Float4 first = state.efBand.next(firstLane(in[p]), lanes).band;
      const Float4 bands = interleaveLow(first, state.efBand.next(secondLane(in[p]), lanes).band);
      const Float4 triggers = LevelDetectors::trigger<2>(state, in[p], splat(1e-8F));
      detectors.hold<2>(state, in[p], bands, triggers);
      out[p] = state.smooth;
    }
    detectors.leave(state);
  }
  LevelDetectors detectors;
};

struct Output {
  void play(const PairLine& in, PairLine& out) {
    DcFilter::State dc = dcFilter.enter();
    for (std::size_t p = 0; p < kRunPairs; ++p) {
      const Float4 blended = stage.blend(stage.limit(in[p], splat(1.0F)), in[p], splat(0.8F));
      out[p] = DcFilter::next<2>(dc, blended, false);
    }
    dcFilter.leave(dc);
  }
  OutputStage stage;
  DcFilter dcFilter;
};

/// The engine by itself, with a control pass every `controlFrames`.
class BareEngine : ControlPassOwner {
 public:
  BareEngine(std::int32_t controlFrames, bool modulated) : clock(clockOf(controlFrames)) {
    BenchHost host(0, 4);
    if (modulated) host.modulateAll();
    engine.recompute(clock, false);
    engine.controls = host.client().controls();
    engine.controls.version.bump();
  }
  void play() {
    constexpr std::size_t kBlock = 64;
    for (std::size_t at = 0; at < kFrames; at += kBlock) {
      const float* ins[] = {in.left.data() + at, in.right.data() + at};
      float* outs[] = {out.left.data() + at, out.right.data() + at};
      engine.process(ins, ins, outs, kBlock, clock, *this);
    }
    settleMemory();
  }

 private:
  void beginControlPass() ZUM_REALTIME override {}
  void modPageMoved(float /*position*/) ZUM_REALTIME override {}
  float stepValue(std::int32_t step) ZUM_REALTIME override {
    return static_cast<float>(step) / 8.0F;
  }

  KvSystemInfo& clock;
  Engine engine;
  const test::Stereo in = test::noise(kFrames);
  test::Stereo out{kFrames};
};

Measurement engineWithPassEvery(std::int32_t controlFrames, bool modulated) {
  const auto engine = std::make_shared<BareEngine>(controlFrames, modulated);
  return Measurement([engine] { engine->play(); });
}

constexpr std::int32_t kOften = Engine::kControlFrames;
constexpr std::int32_t kSeldom = 4096;  // frames: so few passes that they cost nothing

void measure(long rounds) {
  const auto chain = std::make_shared<BareChain<1>>();
  Measurement bare([chain] { chain->play(); });
  std::vector<Measurement> classes;
  for (const FilterClass& each : kClasses) {
    for (int how = 0; how < hows; ++how) classes.push_back(playing(each, static_cast<How>(how)));
  }
  struct Stage {
    const char* name;
    Measurement measurement;
  };
  Stage stages[] = {{"drive", runsOf(Drive{})},
                    {"one filter stage", runsOf(Structure<Cascade<1, Tap::low>>{})},
                    {"comb", runsOf(Structure<LeftFedComb>{})},
                    {"detectors", runsOf(Detectors{})},
                    {"output", runsOf(Output{})}};
  Measurement withoutPasses = engineWithPassEvery(kSeldom, false);
  Stage passes[] = {{"idle", engineWithPassEvery(kOften, false)},
                    {"all", engineWithPassEvery(kOften, true)}};
  for (long round = 0; round < rounds; ++round) {
    bare.takeTurn();
    for (Measurement& each : classes) each.takeTurn();
    for (Stage& each : stages) each.measurement.takeTurn();
    withoutPasses.takeTurn();
    for (Stage& each : passes) each.measurement.takeTurn();
  }

  const double unit = bare.median();
  std::printf("bare one-stage chain: %.2f ns a frame; idle, all and stages as ratios to it\n\n",
              unit);
  std::printf("%-18s %6s %6s  %12s %13s %12s %12s\n", "", "idle", "all", "silence/idle",
              "one side/idle", "16/512 idle", "64/512 idle");
  for (std::size_t i = 0; i < std::size(kClasses); ++i) {
    double ns[hows];
    for (std::size_t how = 0; how < hows; ++how) ns[how] = classes[i * hows + how].median();
    std::printf("%-18s %6.2f %6.2f  %12.3f %13.3f %12.3f %12.3f\n", kClasses[i].name,
                ns[idle] / unit, ns[all] / unit, ns[silence] / ns[idle], ns[oneSide] / ns[idle],
                ns[blocksOf16] / ns[blocksOf512], ns[idle] / ns[blocksOf512]);
  }
  std::printf("\n");
  for (Stage& each : stages) {
    std::printf("%-18s %6.2f\n", each.name, each.measurement.median() / unit);
  }
  for (Stage& each : passes) {
    const double more = each.measurement.median() - withoutPasses.median();
    std::printf("control pass, %-4s %6.2f  with its ramps: %.0f ns\n", each.name, more / unit,
                kOften * more);
  }
}

}  // namespace
}  // namespace zum::bench

int main(int count, char** arguments) {
  zum::bench::measure(count > 1 ? std::strtol(arguments[1], nullptr, 10) : 51);
}
