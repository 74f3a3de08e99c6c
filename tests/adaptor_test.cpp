// The effect in the second host: its process, controls and session records, and the file through
// its exports.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <cstring>
#include <limits>
#include <thread>

#include "adaptor/process_table.hpp"
#include "adaptor/wrapper_control.hpp"
#include "adaptor/wrapper_group.hpp"
#include "adaptor/wrapper_process.hpp"
#include "platform/random_source.hpp"
#include "support/settings_user.hpp"
#include "support/test_host.hpp"

#ifndef ZUM_THREAD_SECONDS
#define ZUM_THREAD_SECONDS 2
#endif

namespace zum::test {
namespace {

constexpr std::int32_t kLowest = INT32_MIN;
constexpr std::int32_t kHighest = INT32_MAX;

/// What a host answers and hears; a song at 120 that stands at its second quarter.
struct Host {
  HostRoutines routines{
      .context = this,
      .tempo = [](void* c) { return static_cast<Host*>(c)->tempo; },
      .isRunning = [](void* c) { return std::int32_t{static_cast<Host*>(c)->running}; },
      .meter = [](void*, std::int32_t* over, std::int32_t* under) { *over = 3, *under = 8; },
      .realTimeSample = [](void*) { return std::int64_t{22050}; },
      .timelineSample = [](void*) { return std::int64_t{44100}; },
      .samplesToTicks = [](void*, std::int64_t samples) { return samples * 960000 / 22050; },
      .controlChanged =
          [](void* c, std::int32_t index, std::int32_t value) {
            static_cast<Host*>(c)->heard.push_back({index, value});
          },
      .touched =
          [](void* c, std::int32_t i) {
            static_cast<Host*>(c)->heard.push_back({i, 1});
          },
      .released =
          [](void* c, std::int32_t i) {
            static_cast<Host*>(c)->heard.push_back({i, 0});
          }};
  double tempo = 90.0;
  bool running = false;
  std::vector<std::pair<std::int32_t, std::int32_t>> heard;
};

struct Adaptor : Host {
  explicit Adaptor(bool stereo = true) : process(routines, 44100.0F, stereo) {
    EXPECT_EQ(process.EffectInit(), kNoError);
  }
  std::intptr_t ask(std::int32_t opcode, std::int32_t index = 0, void* ptr = nullptr,
                    float opt = 0.0F) {
    return KvRTASWrapperProcess::audioMaster(process.getEffect()->getAeffect(), opcode, index, 0,
                                             ptr, opt);
  }
  Stereo render(const Stereo& in, std::int32_t block) {
    Stereo out(in.frames());
    Stereo copy = in;
    for (std::size_t at = 0; at < in.frames(); at += static_cast<std::size_t>(block)) {
      float* inputs[] = {copy.left.data() + at, copy.right.data() + at};
      float* outputs[] = {out.left.data() + at, out.right.data() + at};
      process.RenderAudio(inputs, outputs, block);
    }
    return out;
  }
  KvRTASWrapperProcess process;
};

TEST(Adaptor, ValuesAndTextsMeetAtBothEnds) {
  const struct {
    std::int32_t value;
    float normalised;
  } cases[] = {{kLowest, 0.0F}, {kHighest, 1.0F}, {0, 0.5F}, {-1073741824, 0.25F}};
  for (const auto& [value, normalised] : cases) {
    EXPECT_EQ(normalisedOf(value), normalised);
    EXPECT_NEAR(static_cast<double>(controlValueOf(normalised)), value, 1.0);
  }
  EXPECT_EQ(controlValueOf(-3.0F), kLowest);
  EXPECT_EQ(controlValueOf(7.0F), kHighest);
  EXPECT_EQ(controlValueOf(std::numeric_limits<float>::quiet_NaN()), kLowest);

  Adaptor adaptor;
  EXPECT_EQ(adaptor.process.getControls().size(), 61U);
  EXPECT_EQ(adaptor.process.getControl(0), nullptr);
  const auto text = [&](std::int32_t index, std::int32_t value, std::int32_t room) {
    std::array<char, 32> shown{};
    shown.fill('#');
    adaptor.process.getControl(index)->valueToText(value, shown.data(), room);
    EXPECT_EQ(shown[static_cast<std::size_t>(room)], '#');
    return std::string(shown.data());
  };
  EXPECT_EQ(text(5, 0, 8), "50.00 %");
  EXPECT_EQ(text(5, 0, 7), "50");
  EXPECT_EQ(text(5, kHighest, 9), "100.00 %");
  EXPECT_EQ(text(14, kLowest, 8), "Off");
  EXPECT_EQ(text(14, kLowest + 1, 8), "On");
  EXPECT_EQ(adaptor.process.getControl(14)->getSteps(), 2);
  EXPECT_EQ(adaptor.process.getControl(5)->getSteps(), -1);
  const struct {
    std::string text;
    std::int32_t value;
  } numbers[] = {{" 0.25x", controlValueOf(0.25F)},
                 {"loud", kLowest},
                 {"+1e99", kHighest},
                 {"10.0e999 re-", kHighest},
                 {"-1e999", kLowest},
                 {"2e-999", kLowest},
                 {"0." + std::string(400, '0') + "1", kLowest}};
  for (const auto& [written, value] : numbers) {
    EXPECT_EQ(adaptor.process.getControl(5)->textToValue(written.c_str()), value) << written;
  }
  EXPECT_EQ(adaptor.process.getControl(1)->textToValue("1.0"), kHighest);
  for (const std::int32_t index : {kLowest, kLowest + 1, -1, 0, 62, kHighest}) {
    adaptor.process.SetControl(index, kHighest);
    EXPECT_EQ(adaptor.process.GetControl(index), kLowest);
  }
  std::array<char, 8> name{};
  adaptor.process.getControl(1)->getName(name.data(), 5);
  EXPECT_STREQ(name.data(), "MByp");
  adaptor.process.getControl(5)->getName(name.data(), 4);
  EXPECT_STREQ(name.data(), "Cut");
}

TEST(Adaptor, AnswersTheEffectAsItsHost) {
  Adaptor adaptor;
  const auto time = [&] {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): as the interface has it
    return *reinterpret_cast<const VstTimeInfo*>(adaptor.ask(audioMasterGetTime));
  };
  EXPECT_EQ(time().ppqPos, 2.0);
  EXPECT_EQ(time().flags & kVstTransportPlaying, 0);
  adaptor.running = true;
  EXPECT_EQ(time().ppqPos, 1.0);
  EXPECT_EQ(time().flags & kVstTransportPlaying, kVstTransportPlaying);
  EXPECT_EQ(time().tempo, 90.0);
  EXPECT_EQ(time().timeSigNumerator * 10 + time().timeSigDenominator, 38);
  char known[] = "sizeWindow";
  char unknown[] = "fly";
  EXPECT_EQ(adaptor.ask(audioMasterCanDo, 0, known), 1);
  EXPECT_EQ(adaptor.ask(audioMasterCanDo, 0, unknown), 0);
  EXPECT_EQ(adaptor.ask(audioMasterVersion), 2);
  for (const int opcode : {+audioMasterProcessEvents, +audioMasterUpdateDisplay, 45, 50, -1}) {
    EXPECT_EQ(adaptor.ask(opcode), 0);
  }
  std::array<char, 64> vendor{};
  EXPECT_EQ(adaptor.ask(audioMasterGetVendorString, 0, vendor.data()), 1);
  EXPECT_STREQ(vendor.data(), "KvRTAS");
  adaptor.ask(audioMasterBeginEdit, 3);
  adaptor.ask(audioMasterAutomate, 3, nullptr, 1.0F);
  adaptor.ask(audioMasterEndEdit, 3);
  EXPECT_EQ(adaptor.heard, (decltype(adaptor.heard){{5, 1}, {5, kHighest}, {5, 0}}));
  AEffect stranger{};
  EXPECT_EQ(findProcess(&stranger), nullptr);
}

TEST(Adaptor, RendersAsTheEffectDoesInBlocksOfAnySize) {
  TestHost plain;
  const Stereo in = noise(4096);
  plain.set(3, normalisedOf(123456789));
  plain.set(17, 1.0F);
  const Stereo wanted = plain.render(in);
  for (const std::int32_t block : {1, 64, 512}) {
    Adaptor adaptor;
    adaptor.tempo = 120.0;
    adaptor.process.SetControl(5, 123456789);
    adaptor.process.SetControl(19, kHighest);
    EXPECT_EQ(adaptor.render(in, block), wanted) << block;
  }
  Adaptor mono(false);
  Stereo out(in.frames());
  Stereo copy = in;
  float* inputs[] = {copy.left.data()};
  float* outputs[] = {out.left.data()};
  mono.process.RenderAudio(inputs, outputs, static_cast<std::int32_t>(in.frames()));
  EXPECT_NE(out.left, in.left);

  Adaptor bypassed;
  bypassed.process.SetControl(1, 1);
  EXPECT_EQ(bypassed.render(in, 512), in);
  bypassed.process.SetControl(1, 0);
  EXPECT_NE(bypassed.render(in, 512), in);
}

TEST(Adaptor, MidiWaitsForTheNextBlockAndNoLonger) {
  Adaptor adaptor;
  KvUniClient& effect = *adaptor.process.getEffect();
  const auto send = [&](int number, int value) {
    adaptor.process.deliverMidi(
        0, {0xB0, static_cast<unsigned char>(number), static_cast<unsigned char>(value)});
  };
  const Stereo silence(64);
  send(20, 127);
  adaptor.process.deliverMidi(1, {0xB0, 20, 0});  // not now
  EXPECT_EQ(effect.controllerValue(20), 0.0F);
  adaptor.process.getEvents().midiBusy = true;
  adaptor.render(silence, 64);
  EXPECT_EQ(effect.controllerValue(20), 0.0F);
  adaptor.process.getEvents().midiBusy = false;
  adaptor.process.SetControl(1, kHighest);  // also while the signal goes round the effect
  adaptor.render(silence, 64);
  EXPECT_EQ(adaptor.process.getEvents().tryTake(), nullptr);  // the effect has them
  adaptor.process.SetControl(1, kLowest);
  adaptor.render(silence, 64);
  EXPECT_EQ(effect.controllerValue(20), 1.0F);
  for (int i = 0; i < 257; ++i) send(i < 256 ? 30 : 31, 64);
  adaptor.render(silence, 64);
  EXPECT_GT(effect.controllerValue(30), 0.5F);
  EXPECT_EQ(effect.controllerValue(31), 0.0F);
}

// The host's audio, MIDI and main threads, and one that makes and ends other processes: the
// callback finds its process among those that come and go. Longer where races are looked for.
TEST(Adaptor, ThreadsOfAHostDoNotDisturbEachOther) {
  Adaptor adaptor;
  std::atomic<bool> ending{false};
  std::vector<std::thread> threads;
  const auto run = [&](auto work) {
    threads.emplace_back([&ending, work] {
      while (!ending.load()) work();
    });
  };
  run([&] {
    const Stereo out = adaptor.render(noise(256), 64);
    EXPECT_TRUE(std::isfinite(out.left.back()));
  });
  run([&] {
    adaptor.process.deliverMidi(0, {0xB0, 20, 90});
    std::this_thread::sleep_for(std::chrono::microseconds(100));
  });
  run([] { const Adaptor passing; });
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(ZUM_THREAD_SECONDS);
  std::int32_t id = 0;
  std::memcpy(&id, "kvzm", 4);
  SystemRandom random(1);
  std::vector<std::int32_t> words(1U << 16U);
  auto& record = *reinterpret_cast<SessionRecord*>(words.data());
  const auto room = static_cast<std::int32_t>(4 * words.size());
  while (std::chrono::steady_clock::now() < end) {
    for (std::int32_t index = 1; index <= 62; ++index) {
      const auto wide = static_cast<std::uint32_t>(random.next()) << 17U;
      adaptor.process.SetControl(index, static_cast<std::int32_t>(wide));
    }
    EXPECT_EQ(adaptor.process.ReadChunk(id, record, room), kNoError);
    EXPECT_EQ(adaptor.process.WriteChunk(id, record, room), kNoError);
    AudioEffectX& effect = *adaptor.process.getEffect();  // as from its window
    effect.beginEdit(3);
    effect.setParameterAutomated(3, 0.5F);
    effect.endEdit(3);
    std::this_thread::sleep_for(std::chrono::milliseconds(2));  // or there would be silence alone
  }
  ending.store(true);
  for (std::thread& thread : threads) thread.join();
  EXPECT_GT(adaptor.process.getEffect()->controllerValue(20), 0.0F);
}

class AdaptorFiles : public SettingsTest {};

TEST_F(AdaptorFiles, SessionRecordsHoldAPresetBehindTheirHeader) {
  Adaptor adaptor;
  adaptor.process.SetControl(5, 0);
  std::int32_t id = 0;
  std::memcpy(&id, "kvzm", 4);
  std::int32_t size = 0;
  ASSERT_EQ(adaptor.process.ReportChunkSize(id, size), kNoError);
  std::vector<std::int32_t> words(static_cast<std::size_t>(size) / 4 + 1);
  auto& record = *reinterpret_cast<SessionRecord*>(words.data());
  EXPECT_EQ(adaptor.process.ReadChunk(id, record, size - 1), kBadChunk);
  EXPECT_EQ(adaptor.process.ReadChunk(id + 1, record, size), kUnknownChunk);
  EXPECT_EQ(adaptor.process.WriteChunk(id + 1, record, size), kUnknownChunk);
  EXPECT_EQ(adaptor.process.ReadChunk(id, record, size), kNoError);
  EXPECT_EQ(record.size, size);

  Adaptor other;
  SessionRecord empty{.size = kSessionHeader, .header = {}};
  EXPECT_EQ(other.process.WriteChunk(id, empty, kSessionHeader), kNoError);
  EXPECT_NE(other.process.getEffect()->getParameter(3), 0.5F);
  for (const std::int32_t wrong : {kSessionHeader - 1, size + 1, -1}) {
    SessionRecord bad{.size = wrong, .header = {}};
    EXPECT_EQ(other.process.WriteChunk(id, bad, kSessionHeader), kBadChunk);
  }
  EXPECT_EQ(other.process.WriteChunk(id, record, size), kNoError);
  EXPECT_EQ(other.process.getEffect()->getParameter(3), 0.5F);
  EXPECT_EQ(other.process.GetControl(5), 0);
  EXPECT_EQ(other.process.WriteChunk(id, record, 0), kBadChunk);

  putText(folder / "s.kvz",
          std::string(reinterpret_cast<const char*>(words.data()) + kSessionHeader,
                      static_cast<std::size_t>(size - kSessionHeader)));
  TestHost plain;
  plain.client().loadPresetFile(internal("s.kvz").c_str(), 0, nullptr, false);
  EXPECT_EQ(plain.get(3), 0.5F);
}

// What hosts and their sessions know the plug-in by, written out.
TEST(Adaptor, TellsTheHostItsNamesAndNumbers) {
  const auto told = [](std::int32_t id, std::initializer_list<std::int32_t> numbers) {
    std::string text(4, '\0');
    std::memcpy(text.data(), &id, 4);
    for (const std::int32_t number : numbers) text += ' ' + std::to_string(number);
    return text;
  };
  KvRTASWrapperGroup group;
  ASSERT_EQ(group.Initialize(), 0);
  const GroupDescription about = group.describe();
  const auto type = [&](std::int32_t index) {
    const TypeDescription t = group.getType(index)->describe();
    return told(t.typeId, {}) +
           told(t.productId, {t.sizes[0], t.sizes[1], t.inputStem, t.outputStem, t.thirdStem,
                              t.option, t.features[0], t.features[1]}) +
           ' ' + t.name;
  };
  const Adaptor adaptor;
  const auto& chunk = adaptor.process.getChunkTypes().at(0);
  const CPluginControl& bypass = *adaptor.process.getControl(adaptor.process.getMasterBypass());
  const CPluginControl& cutoff = *adaptor.process.getControl(5);
  std::string forms;
  for (const std::int32_t room : {14, 9, 5, 4}) {
    std::array<char, 14> name{};
    bypass.getName(name.data(), room);
    forms += ' ' + std::string(name.data());
  }
  const std::pair<std::string, std::string> rows[] = {
      {about.manufacturer, "Zelvane"},
      {about.product, "ZUM\nZUM\nZUM"},
      {told(about.manufacturerId, {about.version, about.category, about.types}), "Zlvn 66048 14 2"},
      {type(0), "KvStkvzm 8192 1 1 1 0 6 8 48 ZUM\nZUM\nZUM"},
      {type(1), "KvMokvzm 8192 1 0 0 0 6 8 48 ZUM\nZUM\nZUM"},
      {told(chunk.id, {chunk.size}) + chunk.name, "kvzm -152Zelvane Audio Plugin Data"},
      {told(bypass.getId(), {bypass.getIndex(), bypass.getSteps()}) + forms,
       "bypa 1 2 Master Bypass MastrByp MByp Byp"},
      {told(cutoff.getId(), {cutoff.getIndex(), cutoff.isAutomatable(), cutoff.getPriority(),
                             cutoff.getOrientation(), cutoff.getMeterType(), cutoff.isVisible()}),
       "\0\0\0\0 5 1 0 0 1 1"s},
  };
  for (const auto& [given, expected] : rows) EXPECT_EQ(given, expected);
}

TEST(AdaptorFile, CountsItsOpeningsAndRefusesOtherVersions) {
  void* const file = dlopen(ZUM_DPM, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(file, nullptr) << dlerror();
  const auto open = reinterpret_cast<int (*)(int)>(dlsym(file, "WinPlugInOpen"));
  const auto close = reinterpret_cast<int (*)(int)>(dlsym(file, "WinPlugInClose"));
  const auto table =
      reinterpret_cast<const PlugInRoutines* (*)()>(dlsym(file, "_PI_GetRoutineDescriptor"))();
  const auto types = [&] {
    GroupDescription group{};
    table->describeGroup(&group);
    return group.types;
  };
  EXPECT_EQ(open(72), -1);
  EXPECT_EQ(types(), 0);
  EXPECT_EQ(open(73), 0);
  EXPECT_EQ(open(73), 0);
  EXPECT_EQ(types(), 2);
  TypeDescription type{};
  EXPECT_EQ(table->describeType(1, &type), 0);
  EXPECT_EQ(std::memcmp(&type.typeId, "KvMo", 4), 0);
  EXPECT_NE(table->describeType(2, &type), 0);
  close(0);
  EXPECT_EQ(types(), 2);
  close(0);
  EXPECT_EQ(types(), 0);
  close(0);  // once too often
  Host host;
  EXPECT_EQ(table->createProcess(0, &host.routines), nullptr);
  EXPECT_EQ(dlsym(file, "VSTPluginMain"), nullptr);
  EXPECT_NE(dlsym(file, "NewPlugIn"), nullptr);
}

}  // namespace
}  // namespace zum::test
