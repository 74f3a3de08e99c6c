// What all faces share: values as texts and plain numbers, blocks cut at events, states, bypass
// that fades, a side-chain, and what moves by itself.
#include "adaptor/host_side.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <new>
#include <thread>
#include <utility>

#include "core/effect_editor.hpp"
#include "core/parameter_text.hpp"
#include "support/own_home.hpp"
#include "support/test_host.hpp"

namespace zum::test {
namespace {

const NoHome home;

/// Keeps what it is told.
struct Ear final : zum::HostSide::Listener {
  void gestureBegan(int tag) override { told.push_back("begin " + std::to_string(tag)); }
  void gestureMoved(int tag, float raw) override {
    told.push_back(std::to_string(tag) + " = " + std::to_string(raw));
  }
  void gestureEnded(int tag) override { told.push_back("end " + std::to_string(tag)); }
  void presetChanged() override { told.push_back("preset"); }
  std::vector<std::string> told;
};

/// An effect with a face, switched on.
struct Faced {
  explicit Faced(double rate = 44100.0) { host.activate(rate, 8192); }

  zum::HostSide::Buffers buffers(const Stereo& in, Stereo& out, const Stereo* sideChain = nullptr) {
    from = {in.left.data(), in.right.data()};
    to = {out.left.data(), out.right.data()};
    if (sideChain != nullptr) heard = {sideChain->left.data(), sideChain->right.data()};
    return {.inputs = from.data(),
            .sideChain = sideChain != nullptr ? heard.data() : nullptr,
            .outputs = to.data(),
            .frames = static_cast<std::int32_t>(in.frames())};
  }
  Stereo play(const Stereo& in, const Stereo* sideChain = nullptr) {
    Stereo out(in.frames());
    { const zum::HostSide::Block block(host, buffers(in, out, sideChain), {}); }
    return out;
  }

  Ear ear;
  zum::HostSide host{nullptr, &ear};
  std::array<const float*, 2> from{};
  std::array<const float*, 2> heard{};
  std::array<float*, 2> to{};
};

// ---- values

TEST(ParameterText, ReadsAsAPlayerSaysIt) {
  struct Row {
    int tag;
    float raw;
    const char* text;
  };
  const Row rows[] = {
      {tag::cutoff, 0.0F, "23.2 Hz"},      {tag::cutoff, 0.5F, "2636 Hz"},
      {tag::master, 0.5F, "0.0 dB"},       {tag::master, 0.25F, "-6.0 dB"},
      {tag::master, 0.0F, "-inf dB"},      {tag::efFreqRange, 0.1F, "Off"},
      {tag::efAttack, 0.5F, "22 ms"},      {tag::efRelease, 0.5F, "1/32"},
      {tag::lfoRate, 15 / 26.0F, "1/8 T"}, {tag::lfoWave, 0.5F, "Saw"},
      {tag::cutoffLfo, 0.7F, "+40 %"},     {tag::cutoffLfo, 0.5F, "0 %"},
      {tag::cutoffLfo, 0.0F, "-100 %"},    {tag::mixDryWet, 0.405F, "40.5 %"},
      {tag::seqMode, 0.8F, "RND"},         {tag::vowelA, 0.25F, "\u00C5"},
      {tag::multiType, 0.6F, "COMB"},      {tag::bank, 0.5F, "Vowel"},
      {tag::bypass, 1.0F, "On"},           {tag::lfoTrigSens, 0.5F, "-12.0 dB"},
      {tag::resonance, NAN, "0 %"},        {tag::resonance, 7.0F, "100 %"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(parameterText(*findRow(row.tag), row.raw), row.text) << row.tag;
  }
}

// A text that is typed again shows as it did, so no value walks away by being looked at.
TEST(ParameterText, ComesBackFromEveryText) {
  for (const int tag : faceTags()) {
    const ParameterRow& row = *findRow(tag);
    for (int i = 0; i <= 100; ++i) {
      const float raw = static_cast<float>(i) / 100.0F;
      const std::string text = parameterText(row, raw);
      const auto read = parameterValue(row, text);
      ASSERT_TRUE(read.has_value()) << tag << ' ' << text;
      EXPECT_EQ(parameterText(row, *read), text) << tag;
      const std::string bare = text.substr(0, text.rfind(' '));
      if (row.unit <= Unit::attack || row.unit == Unit::gain) {
        EXPECT_EQ(parameterValue(row, bare), read) << bare;
      }
    }
  }
}

TEST(ParameterText, TakesWhatIsTypedInOtherWays) {
  struct Row {
    int tag;
    const char* typed;
    const char* shown;  // null where it is none
  };
  const Row rows[] = {
      {tag::cutoff, " 2.636 KHZ ", "2636 Hz"}, {tag::cutoff, "440hz", "440 Hz"},
      {tag::cutoff, "99999", "15213 Hz"},      {tag::master, "-6,0", "-6.0 dB"},
      {tag::master, "-inf", "-inf dB"},        {tag::efAttack, "0.3 s", "300 ms"},
      {tag::cutoffLfo, "+40", "+40 %"},        {tag::efFreqRange, "OFF", "Off"},
      {tag::multiType, "comb", "COMB"},        {tag::lfoRate, "1/8 t", "1/8 T"},
      {tag::cutoff, "440 dB", nullptr},        {tag::cutoff, "", nullptr},
      {tag::cutoff, "nan", nullptr},           {tag::cutoff, "Hz", nullptr},
      {tag::multiType, "combs", nullptr},      {tag::lfoRate, "0.5", nullptr},
  };
  for (const Row& row : rows) {
    const auto raw = parameterValue(*findRow(row.tag), row.typed);
    ASSERT_EQ(raw.has_value(), row.shown != nullptr) << row.typed;
    if (raw) {
      EXPECT_EQ(parameterText(*findRow(row.tag), *raw), row.shown) << row.typed;
    }
  }
}

TEST(ParameterText, StepsAreWholeNumbersBothWays) {
  for (const int tag : faceTags()) {
    const ParameterRow& row = *findRow(tag);
    if (!isStepped(row)) continue;
    for (int place = 0; place < row.positions; ++place) {
      const auto plain = static_cast<float>(place);
      EXPECT_EQ(plainOfRaw(row, rawOfPlain(row, plain)), plain) << tag;
    }
    EXPECT_EQ(plainOfRaw(row, rawOfPlain(row, 99.0F)), plainEnd(row)) << tag;
  }
}

// ---- blocks

TEST(Face, BlocksCutAtEventsSoundLikeBlocksOfThatLength) {
  const Stereo in = noise(3000);
  struct Event {
    std::int32_t frame;
    int tag;
    float plain;
  };
  const Event events[] = {{0, tag::bank, 1.0F},      {5, tag::cutoff, 0.9F},
                          {5, tag::cutoffLfo, 0.9F}, {777, tag::multiType, 6.0F},
                          {778, tag::bank, 0.0F},    {2999, tag::resonance, 0.1F},
                          {9999, tag::master, 0.0F}};
  const std::array<std::uint8_t, 3> program = {0xB0, 7, 99};

  Faced cut;
  Stereo expected(in.frames());
  std::size_t done = 0;
  const auto playTo = [&](std::size_t end) {
    end = std::min(end, in.frames());
    if (end <= done) return;
    const float* const from[] = {in.left.data() + done, in.right.data() + done};
    float* const to[] = {expected.left.data() + done, expected.right.data() + done};
    cut.host.client().process(from, nullptr, to, static_cast<std::int32_t>(end - done));
    done = end;
  };
  cut.host.client().controllers().controllers[7].append({tag::overdrive, 0});
  for (const Event& event : events) {
    playTo(static_cast<std::size_t>(event.frame));
    cut.host.setPlain(event.tag, event.plain);
  }
  playTo(in.frames());

  Faced whole;
  whole.host.client().controllers().controllers[7].append({tag::overdrive, 0});
  Stereo out(in.frames());
  {
    zum::HostSide::Block block(whole.host, whole.buffers(in, out), {});
    for (const Event& event : events) block.setPlain(event.frame, event.tag, event.plain);
    block.setPlain(3, tag::master, NAN);
  }
  EXPECT_EQ(out, expected);
  EXPECT_NE(out, Faced().play(in));

  // A controller acts in the pass behind its frame, and is told as what moved by itself.
  EXPECT_EQ(whole.host.takeChanges(), 0U) << "the host knows what it sent";
  {
    zum::HostSide::Block block(whole.host, whole.buffers(in, out), {});
    block.midi(100, program.data());
  }
  EXPECT_EQ(whole.host.takeChanges(), std::uint64_t{1} << facePosition(tag::overdrive));
  EXPECT_FLOAT_EQ(whole.host.plainValue(tag::overdrive), 99.0F / 127.0F);
}

// Hosts hand in silence for what nobody has connected.
TEST(Face, SideChainCountsFromItsFirstSoundOn) {
  Faced faced;
  const Stereo silence(64);
  Stereo sound(64);
  sound.right[63] = 1e-30F;
  Stereo minus(64);
  minus.left[0] = -0.0F;
  const Stereo* const given[] = {&silence, &minus, &sound, &silence, nullptr, &silence};
  std::string heard;
  for (const Stereo* each : given) {
    const float* const channels[] = {each != nullptr ? each->left.data() : nullptr,
                                     each != nullptr ? each->right.data() : nullptr};
    const float* const* const asked = each != nullptr ? channels : nullptr;
    const float* const* const answer = faced.host.heardSideChain(asked, 64);
    ASSERT_TRUE(answer == nullptr || answer == asked);
    heard += answer != nullptr ? '1' : '0';
  }
  EXPECT_EQ(heard, "001100");
}

// ---- gestures and states

TEST(Face, WindowTellsOfAllItsParameters) {
  Faced faced;
  for (const int tag : {tag::cutoff, tag::multiType, tag::bypass, tag::modChoice}) {
    faced.host.client().beginEdit(tag);
    faced.host.client().setParameterAutomated(tag, 0.5F);
    faced.host.client().endEdit(tag);
  }
  const std::vector<std::string> expected = {"begin 3",   "3 = 0.500000",   "end 3",
                                             "begin 61",  "61 = 0.500000",  "end 61",
                                             "begin 222", "222 = 0.500000", "end 222"};
  EXPECT_EQ(faced.ear.told, expected);
  EXPECT_EQ(faced.host.takeChanges(), 0U) << "nothing is told twice";
}

/// Turns a knob each time it works, but for the first one.
class BusyEditor final : public EffectEditor {
 public:
  explicit BusyEditor(KvUniClient& of) : effect(of) {}
  bool getRect(ERect** /*rect*/) override { return false; }
  bool open(void* /*parent*/) override { return opened = true; }
  void close() override { opened = false; }
  bool isOpen() override { return opened; }
  void idle() override {
    if (std::exchange(lacksMemory, false)) throw std::bad_alloc();
    effect.beginEdit(tag::cutoff);
    effect.setParameterAutomated(tag::cutoff, 0.25F);
    effect.endEdit(tag::cutoff);
  }
  bool onKeyDown(VstKeyCode& /*key*/) override { return false; }
  bool onKeyUp(VstKeyCode& /*key*/) override { return false; }
  void requestFullRedraw() ZUM_REALTIME override {}
  void update() ZUM_REALTIME override {}
  void raiseAbout() override {}
  void openManual() override {}
  bool aboutIsOpen() const override { return false; }
  bool setHostScale(double /*scale*/) override { return false; }
  WindowSize fitting(const WindowSize& offered) override { return offered; }
  void limitFirstSize(const WindowSize& /*most*/) override {}
  void takeSize(const WindowSize& /*given*/) override {}

 private:
  KvUniClient& effect;
  bool opened = false;
  bool lacksMemory = true;
};

// A host that waits in closeWindow() while the thread waits in the host would wait for ever.
TEST(Face, AWindowOfItsOwnThreadNeverCallsTheHost) {
  Ear ear;
  zum::HostSide host([](KvUniClient& effect) -> EffectEditor* { return new BusyEditor(effect); },
                     &ear);
  ASSERT_TRUE(host.openWindow(1));
  host.idleByOwnThread();
  const std::uint64_t cutoff = std::uint64_t{1} << facePosition(tag::cutoff);
  std::uint64_t changes = 0;
  for (int i = 0; i < 500 && changes == 0; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    changes = host.takeChanges();
  }
  EXPECT_EQ(changes, cutoff) << "what moved there counts as moved by itself";
  {
    const std::lock_guard turn(windowTurn());
    host.closeWindow();  // from inside of what another window does
  }
  EXPECT_FALSE(host.isWindowOpen());
  EXPECT_EQ(ear.told, std::vector<std::string>());
}

TEST(Face, StatesComeBackWholeOrAreRefused) {
  Faced first;
  first.host.setPlain(tag::cutoff, 0.77F);
  first.host.setPlain(tag::multiType, 7.0F);
  const std::vector<std::byte> state = first.host.saveState();
  ASSERT_FALSE(state.empty());

  Faced second;
  const std::vector<std::byte> before = second.host.saveState();
  for (std::size_t size = 0; size < state.size(); ++size) {
    ASSERT_FALSE(second.host.loadState(std::span(state).first(size))) << size;
  }
  EXPECT_EQ(second.host.saveState(), before);
  const std::uint32_t presets = second.host.client().presetCount();

  ASSERT_TRUE(second.host.loadState(state));
  EXPECT_EQ(second.host.saveState(), state);
  EXPECT_EQ(second.host.plainValue(tag::multiType), 7.0F);
  EXPECT_EQ(second.host.takeChanges(), 0U) << "the host asks for all values behind a state";
  EXPECT_EQ(second.host.client().presetCount(), presets + 1);
}

}  // namespace
}  // namespace zum::test
