// The effect in the second host: its process, controls and session records, and the file through
// its exports.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <limits>
#include <optional>
#include <sstream>
#include <thread>
#include <tuple>

#include "adaptor/wrapper_control.hpp"
#include "adaptor/wrapper_group.hpp"
#include "adaptor/wrapper_process.hpp"
#include "core/tags.hpp"
#include "support/own_display.hpp"
#include "support/test_host.hpp"

#ifndef ZUM_THREAD_SECONDS
#define ZUM_THREAD_SECONDS 2
#endif

namespace zum::test {
namespace {

using namespace std::string_literals;

constexpr std::int32_t kLowest = INT32_MIN;
constexpr std::int32_t kHighest = INT32_MAX;
constexpr std::int32_t kBypass = 1;
constexpr std::int32_t controlOf(int tag) { return tag + 2; }
constexpr std::int32_t kCutoff = controlOf(tag::cutoff);
const std::int32_t kRecord = identifier("kvzm");

/// What a host answers and hears; a song at 120 that stands at its second quarter.
struct SecondHost {
  static SecondHost& self(void* context) { return *static_cast<SecondHost*>(context); }
  HostRoutines routines{
      .context = this,
      .tempo = [](void* c) { return self(c).tempo; },
      .isRunning = [](void* c) { return std::int32_t{self(c).running}; },
      .meter = [](void*, std::int32_t* over, std::int32_t* under) { *over = 3, *under = 8; },
      .realTimeSample = [](void*) { return std::int64_t{22050}; },
      .timelineSample = [](void*) { return std::int64_t{44100}; },
      .samplesToTicks = [](void*, std::int64_t samples) { return samples * 960000 / 22050; },
      .controlChanged = [](void* c, std::int32_t i, std::int32_t v) { self(c).hear(i, v); },
      .touched = [](void* c, std::int32_t i) { self(c).hear(i, 1); },
      .released = [](void* c, std::int32_t i) { self(c).hear(i, 0); }};
  void hear(std::int32_t index, std::int32_t value) { heard.emplace_back(index, value); }
  double tempo = 90.0;
  bool running = false;
  std::vector<std::pair<std::int32_t, std::int32_t>> heard;
};

struct Adaptor : SecondHost {
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

/// Room for a record of so many bytes.
struct SessionMemory {
  explicit SessionMemory(std::int32_t bytes) : words(static_cast<std::size_t>(bytes) / 4 + 1) {}
  SessionRecord& record() { return *reinterpret_cast<SessionRecord*>(words.data()); }
  std::vector<std::int32_t> words;
};

TEST(Adaptor, ValuesAndTextsMeetAtBothEnds) {
  const std::pair<std::int32_t, float> values[] = {
      {kLowest, 0.0F}, {kHighest, 1.0F}, {0, 0.5F}, {-1073741824, 0.25F}};
  for (const auto& [value, normalised] : values) {
    EXPECT_EQ(normalisedOf(value), normalised);
    EXPECT_NEAR(static_cast<double>(controlValueOf(normalised)), value, 1.0);
  }
  EXPECT_EQ(controlValueOf(-3.0F), kLowest);
  EXPECT_EQ(controlValueOf(7.0F), kHighest);
  EXPECT_EQ(controlValueOf(std::numeric_limits<float>::quiet_NaN()), kLowest);

  Adaptor adaptor;
  std::string told;
  const auto tell = [&](std::int32_t index, std::int32_t room,
                        std::optional<std::int32_t> value = {}) {
    std::string text(32, '#');
    const CPluginControl& control = *adaptor.process.getControl(index);
    value ? control.valueToText(*value, text.data(), room) : control.getName(text.data(), room);
    EXPECT_EQ(text[static_cast<std::size_t>(room)], '#');
    told += text.c_str() + "|"s;
  };
  for (const std::int32_t room : {8, 7}) tell(kCutoff, room, 0);
  tell(kCutoff, 9, kHighest);
  for (const std::int32_t value : {kLowest, kLowest + 1}) {
    tell(controlOf(tag::lfoTrigOnOff), 8, value);
  }
  for (const std::int32_t room : {14, 9, 5, 4}) tell(kBypass, room);
  tell(kCutoff, 4);
  EXPECT_EQ(told, "50.00 %|50|100.00 %|Off|On|Master Bypass|MastrByp|MByp|Byp|Cut|");
  const std::pair<std::string, std::int32_t> numbers[] = {
      {" 0.25x", controlValueOf(0.25F)},
      {"loud", kLowest},
      {"10.0e999 re-", kHighest},
      {"-1e999", kLowest},
      {"0." + std::string(400, '0') + "1", kLowest}};
  for (const auto& [text, value] : numbers) {
    EXPECT_EQ(adaptor.process.getControl(kCutoff)->textToValue(text.c_str()), value) << text;
  }
  EXPECT_EQ(adaptor.process.getControl(kBypass)->textToValue("1.0"), kHighest);
  EXPECT_EQ(adaptor.process.getControls().size(), 61U);
  for (const std::int32_t index : {kLowest, -1, 0, 62, kHighest}) {
    adaptor.process.SetControl(index, kHighest);
    EXPECT_EQ(adaptor.process.GetControl(index), kLowest);
  }
}

TEST(Adaptor, AnswersTheEffectAsItsHost) {
  Adaptor adaptor;
  for (const bool running : {false, true}) {
    adaptor.running = running;
    // NOLINTNEXTLINE(performance-no-int-to-ptr): as the interface has it
    const auto& t = *reinterpret_cast<const VstTimeInfo*>(adaptor.ask(audioMasterGetTime));
    EXPECT_EQ(std::tuple(t.ppqPos, t.tempo, t.timeSigNumerator, t.timeSigDenominator),
              std::tuple(running ? 1.0 : 2.0, 90.0, 3, 8));
    EXPECT_EQ((t.flags & kVstTransportPlaying) != 0, running);
  }
  EXPECT_EQ(adaptor.ask(audioMasterCanDo, 0, const_cast<char*>("sizeWindow")), 1);
  EXPECT_EQ(adaptor.ask(audioMasterCanDo, 0, const_cast<char*>("fly")), 0);
  EXPECT_EQ(adaptor.ask(audioMasterVersion), 2);
  for (const int opcode : {+audioMasterProcessEvents, +audioMasterUpdateDisplay, 45, -1}) {
    EXPECT_EQ(adaptor.ask(opcode), 0);
  }
  std::array<char, 64> vendor{};
  EXPECT_EQ(adaptor.ask(audioMasterGetVendorString, 0, vendor.data()), 1);
  EXPECT_STREQ(vendor.data(), "KvRTAS");
  adaptor.ask(audioMasterBeginEdit, tag::cutoff);
  adaptor.ask(audioMasterAutomate, tag::cutoff, nullptr, 1.0F);
  adaptor.ask(audioMasterEndEdit, tag::cutoff);
  EXPECT_EQ(adaptor.heard,
            (decltype(adaptor.heard){{kCutoff, 1}, {kCutoff, kHighest}, {kCutoff, 0}}));
}

TEST(Adaptor, RendersAsTheEffectDoesInBlocksOfAnySize) {
  TestHost plain;
  const Stereo in = noise(4096);
  plain.set(tag::cutoff, normalisedOf(123456789));
  plain.set(tag::cutoffEf, 1.0F);
  const Stereo wanted = plain.render(in);
  for (const std::int32_t block : {1, 64, 512}) {
    Adaptor adaptor, mono(false);
    for (Adaptor* each : {&adaptor, &mono}) {
      each->tempo = 120.0;
      each->process.SetControl(kCutoff, 123456789);
      each->process.SetControl(controlOf(tag::cutoffEf), kHighest);
    }
    EXPECT_EQ(adaptor.render(in, block), wanted) << block;
    const Stereo out = mono.render(in, block);
    EXPECT_NE(out.left, in.left);
    EXPECT_EQ(out.right, Stereo(4096).right);  // there is no such side
    adaptor.process.SetControl(kBypass, 1);
    EXPECT_EQ(adaptor.render(in, block), in);
    adaptor.process.SetControl(kBypass, 0);
    EXPECT_NE(adaptor.render(in, block), in);
  }
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
  adaptor.process.SetControl(kBypass, kHighest);  // also while the signal goes round the effect
  adaptor.render(silence, 64);
  EXPECT_EQ(adaptor.process.getEvents().tryTake(), nullptr);  // the effect has them
  adaptor.process.SetControl(kBypass, kLowest);
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
  std::vector<std::jthread> threads;
  const auto repeat = [&threads](auto work) {
    threads.emplace_back([work](const std::stop_token& stop) {
      while (!stop.stop_requested()) work();
    });
  };
  repeat([&] { EXPECT_TRUE(std::isfinite(adaptor.render(noise(256), 64).left.back())); });
  repeat([&] {
    adaptor.process.deliverMidi(0, {0xB0, 20, 90});
    std::this_thread::sleep_for(std::chrono::microseconds(100));
  });
  repeat([] { const Adaptor passing; });
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(ZUM_THREAD_SECONDS);
  std::uint32_t value = 0;
  SessionMemory memory(1U << 18U);
  while (std::chrono::steady_clock::now() < end) {
    for (std::int32_t index = 1; index <= 62; ++index) {
      adaptor.process.SetControl(index, static_cast<std::int32_t>(value += 123456789));
    }
    EXPECT_EQ(adaptor.process.ReadChunk(kRecord, memory.record(), 1 << 18), kNoError);
    EXPECT_EQ(adaptor.process.WriteChunk(kRecord, memory.record(), 1 << 18), kNoError);
    AudioEffectX& effect = *adaptor.process.getEffect();  // as from its window
    effect.beginEdit(tag::cutoff);
    effect.setParameterAutomated(tag::cutoff, 0.5F);
    effect.endEdit(tag::cutoff);
    std::this_thread::sleep_for(std::chrono::milliseconds(2));  // or there would be silence alone
  }
  threads.clear();
  EXPECT_GT(adaptor.process.getEffect()->controllerValue(20), 0.0F);
}

TEST(Adaptor, SessionRecordsHoldAPresetBehindTheirHeader) {
  Adaptor adaptor;
  adaptor.process.SetControl(kCutoff, 0);
  std::int32_t size = 0;
  ASSERT_EQ(adaptor.process.ReportChunkSize(kRecord, size), kNoError);
  SessionMemory memory(size);
  SessionRecord& record = memory.record();
  EXPECT_EQ(adaptor.process.ReadChunk(kRecord, record, size - 1), kBadChunk);
  EXPECT_EQ(adaptor.process.ReadChunk(kRecord + 1, record, size), kUnknownChunk);
  EXPECT_EQ(adaptor.process.WriteChunk(kRecord + 1, record, size), kUnknownChunk);
  EXPECT_EQ(adaptor.process.ReadChunk(kRecord, record, size), kNoError);
  EXPECT_EQ(record.size, size);

  Adaptor other;
  SessionRecord empty{.size = kSessionHeader, .header = {}};
  EXPECT_EQ(other.process.WriteChunk(kRecord, empty, kSessionHeader), kNoError);
  EXPECT_NE(other.process.getEffect()->getParameter(tag::cutoff), 0.5F);
  for (const std::int32_t wrong : {kSessionHeader - 1, size + 1, -1}) {
    SessionRecord bad{.size = wrong, .header = {}};
    EXPECT_EQ(other.process.WriteChunk(kRecord, bad, kSessionHeader), kBadChunk);
  }
  EXPECT_EQ(other.process.WriteChunk(kRecord, record, 0), kBadChunk);
  EXPECT_EQ(other.process.WriteChunk(kRecord, record, size), kNoError);
  EXPECT_EQ(other.process.getEffect()->getParameter(tag::cutoff), 0.5F);
  EXPECT_EQ(other.process.GetControl(kCutoff), 0);
}

// What hosts and their sessions know the plug-in by, written out.
TEST(Adaptor, TellsTheHostItsNamesAndNumbers) {
  std::ostringstream told;
  const auto tell = [&told](std::int32_t id, std::initializer_list<std::int32_t> numbers) {
    told << std::string_view(reinterpret_cast<const char*>(&id), 4);
    for (const std::int32_t number : numbers) told << ' ' << number;
  };
  KvRTASWrapperGroup group;
  group.Initialize();
  const GroupDescription about = group.describe();
  told << about.manufacturer << ' ' << about.product << ' ';
  tell(about.manufacturerId, {about.version, about.category, about.types});
  for (const std::int32_t index : {0, 1}) {
    const TypeDescription t = group.getType(index)->describe();
    told << '\n' << t.name << ' ';
    tell(t.typeId, {});
    tell(t.productId, {t.sizes[0], t.sizes[1], t.inputStem, t.outputStem, t.thirdStem, t.option,
                       t.features[0], t.features[1]});
  }
  const Adaptor adaptor;
  const auto& chunk = adaptor.process.getChunkTypes().at(0);
  told << '\n' << chunk.name << ' ';
  tell(chunk.id, {chunk.size});
  for (const std::int32_t index : {adaptor.process.getMasterBypass(), kCutoff}) {
    const CPluginControl& control = *adaptor.process.getControl(index);
    told << '\n';
    tell(control.getId(),
         {control.getIndex(), control.getSteps(), control.isAutomatable(), control.getPriority(),
          control.getOrientation(), control.getMeterType(), control.isVisible()});
  }
  EXPECT_EQ(told.str(),
            "Zelvane ZUM\nZUM\nZUM Zlvn 66048 14 2\n"
            "ZUM\nZUM\nZUM KvStkvzm 8192 1 1 1 0 6 8 48\n"
            "ZUM\nZUM\nZUM KvMokvzm 8192 1 0 0 0 6 8 48\n"
            "Zelvane Audio Plugin Data kvzm -152\n"
            "bypa 1 2 1 0 0 1 1\n"
            "\0\0\0\0 5 -1 1 0 0 1 1"s);
}

TEST(AdaptorView, LiesWhereThePortSaysAndComesBack) {
  const OwnDisplay server;
  Robot robot;
  Adaptor adaptor;
  KvRTASWrapperProcess& process = adaptor.process;
  ViewRect rect{9, 9, 9, 9};
  process.GetViewRect(rect);
  EXPECT_EQ(std::tie(rect.top, rect.bottom, rect.right), std::tuple(0, 470, 508));
  const auto view = process.MakeCustomView();
  HostWindow host;
  const auto move = [&](int x, int y, int toY) {
    robot.moveTo(host.window, x, y);
    robot.press();
    robot.moveTo(host.window, x, toY);
    robot.release();
    for (int i = 0; i < 3; ++i) {
      process.ViewIdle();
      usleep(20'000);
    }
    return process.getEffect()->getParameter(tag::cutoff);
  };
  // Cutoff stands at 251, 180 of the editor.
  const struct {
    ViewPort port;
    int x, y;
  } ports[] = {{{0, 0, 0}, 0, 0}, {{-20, -30, 0}, 20, 30}, {{5, -30, 0}, 0, 0}};
  for (auto [port, x, y] : ports) {
    port.nativeWindow = host.window;
    process.SetViewPort(&port);
    view->drawContents(nullptr);
    process.ViewIdle();
    process.getEffect()->setParameter(tag::cutoff, 0.2F);
    EXPECT_NEAR(move(x + 251, y + 180, y + 130), 0.4F, 0.001F) << x;
    process.SetViewPort(nullptr);
    process.ViewIdle();
    EXPECT_NEAR(move(x + 251, y + 180, y + 130), 0.4F, 0.001F) << x;
  }
  const ViewPort nowhere{INT32_MIN, INT32_MIN, 12345};
  process.SetViewPort(&nowhere);
  process.ViewIdle();
  const ViewPort port{0, 0, host.window};
  process.SetViewPort(&port);
  {
    Adaptor ending(false);
    ending.process.SetViewPort(&port);
    ending.process.ViewIdle();
  }  // with its view open
  process.ViewIdle();
  host.end();  // before the view
  process.ViewIdle();
  process.SetViewPort(nullptr);
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
  EXPECT_NE(table->describeType(2, &type), 0);
  close(0);
  EXPECT_EQ(types(), 2);
  close(0);
  EXPECT_EQ(types(), 0);
  close(0);  // once too often
  const SecondHost host;
  EXPECT_EQ(table->createProcess(0, &host.routines), nullptr);
  EXPECT_EQ(dlsym(file, "VSTPluginMain"), nullptr);
  EXPECT_NE(dlsym(file, "NewPlugIn"), nullptr);
}

}  // namespace
}  // namespace zum::test
