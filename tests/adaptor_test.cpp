// The effect in the second host: its process, controls and session records, and the file through
// its exports.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <filesystem>
#include <functional>
#include <optional>
#include <sstream>
#include <thread>
#include <tuple>

#include "adaptor/dae/wrapper_control.hpp"
#include "adaptor/dae/wrapper_group.hpp"
#include "adaptor/dae/wrapper_process.hpp"
#include "core/tags.hpp"
#include "platform/files.hpp"
#include "state/settings.hpp"
#include "support/child_program.hpp"
#include "support/own_display.hpp"
#include "support/own_home.hpp"
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

TEST(Adaptor, ValuesAndTextsMeetAtBothEnds) {
  const std::pair<std::int32_t, float> values[] = {
      {kLowest, 0.0F}, {kHighest, 1.0F}, {0, 0.5F}, {-1073741824, 0.25F}};
  for (const auto& [value, normalised] : values) {
    EXPECT_EQ(normalisedOf(value), normalised);
    EXPECT_NEAR(static_cast<double>(controlValueOf(normalised)), value, 1.0);
  }
  for (const float low : {-3.0F, NAN}) EXPECT_EQ(controlValueOf(low), kLowest);
  EXPECT_EQ(controlValueOf(7.0F), kHighest);

  Adaptor adaptor;
  const int onOff = controlOf(tag::lfoTrigOnOff);
  using Question = std::tuple<std::int32_t, std::int32_t, std::optional<std::int32_t>>;
  const Question questions[] = {
      {kCutoff, 8, 0},         {kCutoff, 7, 0},   {kCutoff, 9, kHighest}, {onOff, 8, kLowest},
      {onOff, 8, kLowest + 1}, {kBypass, 14, {}}, {kBypass, 9, {}},       {kBypass, 5, {}},
      {kBypass, 4, {}},        {kCutoff, 4, {}}};
  std::string told;
  for (const auto& [index, room, value] : questions) {  // without a value: the name
    std::string text(32, '#');
    const CPluginControl& control = *adaptor.process.getControl(index);
    value ? control.valueToText(*value, text.data(), room) : control.getName(text.data(), room);
    EXPECT_EQ(text[static_cast<std::size_t>(room)], '#');
    told += text.c_str() + "|"s;
  }
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

TEST(Adaptor, RendersOneSideOrTwoAndGoesRoundTheEffect) {
  const Stereo in = noise(4096);
  Adaptor adaptor, mono(false);
  const Stereo out = mono.render(in, 64);
  EXPECT_NE(out.left, in.left);
  EXPECT_EQ(out.right, Stereo(4096).right);  // there is no such side
  for (const bool bypass : {true, false}) {
    adaptor.process.SetControl(kBypass, bypass);
    EXPECT_EQ(adaptor.render(in, 64) == in, bypass);
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

TEST(Adaptor, MidiPlaysProgramsWhereTheUserAllowsIt) {
  const OtherHome home;
  {
    const TestHost writer;  // the first start sets the switches
    std::filesystem::create_directories(home.folder / "tree/Midi Programs");
    writeSettingString(kPresetPath, toInternalPath((home.folder / "tree/").string()));
    writeSettingInt(kIgnoreProgramChange, 0);
    writer.set(tag::cutoff, 0.125F);
    const std::string file = (home.folder / "tree/Midi Programs/One.kvz").string();
    writer.client().savePreset(toInternalPath(file).c_str(), 0, nullptr, false);
  }
  Adaptor adaptor;
  adaptor.process.deliverMidi(0, {0xC0, 0, 0});
  adaptor.render(Stereo(64), 64);
  EXPECT_EQ(adaptor.process.getEffect()->getParameter(tag::cutoff), 0.125F);
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
  std::vector<std::int32_t> memory(1U << 16U);
  auto& record = *reinterpret_cast<SessionRecord*>(memory.data());
  while (std::chrono::steady_clock::now() < end) {
    for (std::int32_t index = 1; index <= 62; ++index) {
      adaptor.process.SetControl(index, static_cast<std::int32_t>(value += 123456789));
    }
    EXPECT_EQ(adaptor.process.ReadChunk(kRecord, record, 1 << 18), kNoError);
    EXPECT_EQ(adaptor.process.WriteChunk(kRecord, record, 1 << 18), kNoError);
    adaptor.process.getEffect()->setParameterAutomated(tag::cutoff, 0.5F);  // as from its window
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
  std::vector<std::int32_t> memory(static_cast<std::size_t>(size) / 4 + 1);
  auto& record = *reinterpret_cast<SessionRecord*>(memory.data());
  EXPECT_EQ(adaptor.process.ReadChunk(kRecord, record, size - 1), kBadChunk);
  EXPECT_EQ(adaptor.process.ReadChunk(kRecord + 1, record, size), kUnknownChunk);
  EXPECT_EQ(adaptor.process.WriteChunk(kRecord + 1, record, size), kUnknownChunk);
  EXPECT_EQ(adaptor.process.ReadChunk(kRecord, record, size), kNoError);
  EXPECT_EQ(record.size, size);

  Adaptor other;
  EXPECT_NE(other.process.GetControl(kCutoff), 0);
  for (const std::int32_t wrong : {kSessionHeader - 1, size + 1, -1}) {
    SessionRecord bad{.size = wrong, .header = {}};
    EXPECT_EQ(other.process.WriteChunk(kRecord, bad, kSessionHeader), kBadChunk);
  }
  EXPECT_EQ(other.process.WriteChunk(kRecord, record, 0), kBadChunk);
  for (const std::int32_t stated : {kSessionHeader, kSessionHeader + 100, size - 4}) {
    record.size = stated;  // nothing was saved, or nothing that loads: as if it had been taken
    EXPECT_EQ(other.process.WriteChunk(kRecord, record, size), kNoError);
    EXPECT_NE(other.process.GetControl(kCutoff), 0);
  }
  record.size = size;
  EXPECT_EQ(other.process.WriteChunk(kRecord, record, size), kNoError);
  EXPECT_EQ(other.process.getEffect()->getParameter(tag::cutoff), 0.5F);
  EXPECT_EQ(other.process.GetControl(kCutoff), 0);
}

// What hosts and their sessions know the plug-in by, written out.
TEST(Adaptor, TellsTheHostItsNamesAndNumbers) {
  std::ostringstream told;
  const auto tell = [&told](const auto&... values) {
    ((told << values << ' '), ..., (told << '\n'));
  };
  const auto code = [](std::int32_t id) {
    return std::string(reinterpret_cast<const char*>(&id), sizeof id);
  };
  KvRTASWrapperGroup group;
  group.Initialize();
  const GroupDescription about = group.describe();
  tell(about.manufacturer, about.product, code(about.manufacturerId), about.version, about.category,
       about.types);
  for (const std::int32_t index : {0, 1}) {
    const TypeDescription t = group.getType(index)->describe();
    tell(t.name, code(t.typeId), code(t.productId), t.sizes[0], t.sizes[1], t.inputStem,
         t.outputStem, t.thirdStem, t.option, t.features[0], t.features[1]);
  }
  const Adaptor adaptor;
  const auto& chunk = adaptor.process.getChunkTypes().at(0);
  tell(chunk.name, code(chunk.id), chunk.size);
  for (const std::int32_t index : {adaptor.process.getMasterBypass(), kCutoff}) {
    const CPluginControl& c = *adaptor.process.getControl(index);
    tell(code(c.getId()), c.getIndex(), c.getSteps(), c.isAutomatable(), c.getPriority(),
         c.getOrientation(), c.getMeterType(), c.isVisible());
  }
  EXPECT_EQ(told.str(),
            "Zelvane ZUM\nZUM\nZUM Zlvn 66048 14 2 \n"
            "ZUM\nZUM\nZUM KvSt kvzm 8192 1 1 1 0 6 8 48 \n"
            "ZUM\nZUM\nZUM KvMo kvzm 8192 1 0 0 0 6 8 48 \n"
            "Zelvane Audio Plugin Data kvzm -152 \n"
            "bypa 1 2 1 0 0 1 1 \n"
            "\0\0\0\0 5 -1 1 0 0 1 1 \n"s);
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
  const auto cutoff = [&] { return process.getEffect()->getParameter(tag::cutoff); };
  const auto move = [&](int x, int y, int toY) {
    robot.moveTo(host.window, x, y);
    robot.press();
    robot.moveTo(host.window, x, toY);
    robot.release();
  };
  const auto idlesUntil = [&](const std::function<bool()>& isTrue, int ms) {
    return comesTrue(
        [&] {
          process.ViewIdle();
          return isTrue();
        },
        std::chrono::milliseconds(ms));
  };
  // Cutoff stands at 251, 180 of the editor.
  const std::tuple<ViewPort, int, int> ports[] = {
      {{0, 0, 0}, 0, 0}, {{-20, -30, 0}, 20, 30}, {{5, -30, 0}, 0, 0}};
  for (auto [port, x, y] : ports) {
    port.nativeWindow = host.window;
    process.SetViewPort(&port);
    view->drawContents(nullptr);
    process.ViewIdle();
    process.getEffect()->setParameter(tag::cutoff, 0.2F);
    move(x + 251, y + 180, y + 130);
    EXPECT_TRUE(idlesUntil([&] { return std::fabs(cutoff() - 0.4F) < 0.001F; }, 20'000)) << x;
    process.SetViewPort(nullptr);
    process.ViewIdle();
    move(x + 251, y + 180, y + 130);
    EXPECT_FALSE(idlesUntil([&] { return std::fabs(cutoff() - 0.4F) > 0.001F; }, 60)) << x;
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
  using Entry = int (*)(int);
  const auto open = reinterpret_cast<Entry>(dlsym(file, "WinPlugInOpen"));
  const auto close = reinterpret_cast<Entry>(dlsym(file, "WinPlugInClose"));
  const auto table =
      reinterpret_cast<const PlugInRoutines* (*)()>(dlsym(file, "_PI_GetRoutineDescriptor"))();
  const std::tuple<Entry, int, int, int> calls[] = {
      {open, 72, -1, 0}, {open, 73, 0, 2}, {open, 73, 0, 2},
      {close, 0, 0, 2},  {close, 0, 0, 0}, {close, 0, 0, 0}};  // once too often
  for (const auto& [call, argument, answer, types] : calls) {
    EXPECT_EQ(call(argument), answer);
    GroupDescription group{};
    table->describeGroup(&group);
    EXPECT_EQ(group.types, types);
    TypeDescription type{};
    EXPECT_NE(table->describeType(2, &type), 0);
  }
  const SecondHost host;
  EXPECT_EQ(table->createProcess(0, &host.routines), nullptr);
  EXPECT_EQ(dlsym(file, "VSTPluginMain"), nullptr);
  EXPECT_NE(dlsym(file, "NewPlugIn"), nullptr);
}

}  // namespace
}  // namespace zum::test
