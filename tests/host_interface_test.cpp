// Catches an answer that a host does not expect: a wrong fixed fact, a text longer than its room,
// a crash on a null pointer, a notification too many or too few.

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <memory>

#include "core/create_effect.hpp"
#include "support/test_host.hpp"

namespace zum::test {
namespace {

using Calls = std::vector<std::array<std::intptr_t, 3>>;

TEST(HostInterface, TheRecordHoldsTheFixedFacts) {
  TestHost host;
  const AEffect& record = *host.effect;
  EXPECT_EQ(std::memcmp(&record.uniqueID, "kvzm", 4), 0);
  EXPECT_EQ(record.magic, 0x56737450);
  EXPECT_EQ(record.numPrograms, 128);
  EXPECT_EQ(record.numParams, 60);
  EXPECT_EQ(record.numInputs, 2);
  EXPECT_EQ(record.numOutputs, 2);
  EXPECT_EQ(record.initialDelay, 0);
  EXPECT_EQ(record.ioRatio, 1.0F);
  constexpr int kSettled = effFlagsCanReplacing | effFlagsNoSoundInStop;
  constexpr int kRefused = effFlagsIsSynth | effFlagsCanDoubleReplacing;
  EXPECT_EQ(record.flags & (kSettled | kRefused), kSettled);
}

struct Answer {
  std::int32_t opcode;
  std::intptr_t answer;
  const char* text;  // null for none
};
// clang-format off
const Answer kAnswers[] = {
    {effGetProgram, 0, nullptr}, {effGetProgramName, 0, "default"},
    {effGetPlugCategory, kPlugCategEffect, nullptr}, {effGetEffectName, 1, "ZUM"},
    {effGetVendorString, 1, "Zelvane"}, {effGetProductString, 1, "ZUM"},
    {effGetVendorVersion, 1020, nullptr}, {effGetTailSize, 0, nullptr},
    {effGetVstVersion, 2400, nullptr}, {effGetNumMidiInputChannels, 1, nullptr},
    {effGetNumMidiOutputChannels, 0, nullptr}, {effCanBeAutomated, 1, nullptr},
    {effString2Parameter, 0, nullptr}, {effOpen, 0, nullptr}, {effSetBlockSize, 0, nullptr},
    {effGetInputProperties, 0, nullptr},
};
// clang-format on

struct CloseRecord {
  void operator()(AEffect* record) const { record->dispatcher(record, effClose, 0, 0, nullptr, 0); }
};

using Alone = std::unique_ptr<AEffect, CloseRecord>;  // an instance without a callback

/// One block through either audio call of a record.
void play(AEffect* record, AEffectProcessProc AEffect::*call, Stereo in, Stereo& out) {
  std::array<float*, 2> from = {in.left.data(), in.right.data()};
  std::array<float*, 2> to = {out.left.data(), out.right.data()};
  (record->*call)(record, from.data(), to.data(), static_cast<std::int32_t>(in.frames()));
}

TEST(HostInterface, OpcodesAnswerWithAndWithoutACallback) {
  TestHost host;
  const Alone alone(createEffect(nullptr));
  for (AEffect* record : {host.effect, alone.get()}) {
    for (const Answer& expected : kAnswers) {
      char room[256] = "";
      EXPECT_EQ(record->dispatcher(record, expected.opcode, 0, 0, room, 0.0F), expected.answer)
          << expected.opcode;
      EXPECT_STREQ(room, expected.text != nullptr ? expected.text : "") << expected.opcode;
    }
    VstPinProperties pin{};
    EXPECT_EQ(record->dispatcher(record, effGetOutputProperties, 0, 0, &pin, 0.0F), 0);
    EXPECT_EQ(pin.flags, kVstPinIsActive | kVstPinIsStereo);
  }
}

TEST(HostInterface, CanDoComparesWholeTextsAndLetterCase) {
  TestHost host;
  const std::pair<const char*, int> cases[] = {{"receiveVstEvents", 1},
                                               {"receiveVstMidiEvent", 1},
                                               {"sendVstMidiEvent", 0},
                                               {"sendVstEvent", 0},
                                               {"receiveVstTimeInfo", 1},
                                               {"hasAboutScreen", 0},
                                               {"ReceiveVstEvents", -1},
                                               {"sendVstEVENT", -1},
                                               {"receiveVstEvent", -1},
                                               {"receiveVstEventsX", -1},
                                               {"bypass", -1},
                                               {"", -1}};
  for (const auto& [text, answer] : cases) {
    EXPECT_EQ(host.dispatch(effCanDo, 0, 0, const_cast<char*>(text)), answer) << text;
  }
}

TEST(HostInterface, TextsStayInsideTheirRoom) {
  TestHost host;
  host.set(3, -3.0e38F);  // the longest value that a display can show
  const struct {
    std::int32_t opcode, index;
    std::size_t room;
  } cases[] = {
      {effGetProgramName, 0, 24},   {effGetProgramNameIndexed, -1, 24}, {effGetEffectName, 0, 32},
      {effGetVendorString, 0, 64},  {effGetProductString, 0, 64},       {effGetParamName, 49, 64},
      {effGetParamLabel, 49, 64},   {effGetParamDisplay, 3, 64},        {effGetParamName, -7, 64},
      {effGetParamDisplay, 57, 64},
  };
  for (const auto& c : cases) {
    std::array<char, 512> room;
    room.fill('\x7E');
    host.dispatch(c.opcode, c.index, 0, room.data());
    const std::size_t length = strnlen(room.data(), room.size());
    EXPECT_LT(length, c.room) << c.opcode;
    EXPECT_GT(length, 0U) << c.opcode;
    for (std::size_t i = length + 1; i < room.size(); ++i) {
      ASSERT_EQ(room[i], '\x7E') << "opcode " << c.opcode << " wrote byte " << i;
    }
  }
}

TEST(HostInterface, NullPointersAndUnknownOpcodesAreHarmless) {
  TestHost host;
  const Alone alone(createEffect(nullptr));
  for (AEffect* record : {host.effect, alone.get()}) {
    for (std::int32_t opcode = -5; opcode <= 400; ++opcode) {
      if (opcode == effClose) continue;
      const auto answer = record->dispatcher(record, opcode, -1, 0, nullptr, 0.0F);
      for (const auto& [first, last] : {std::pair{-5, -1},
                                        {9, 9},
                                        {20, 22},
                                        {28, 28},
                                        {30, 32},
                                        {36, 44},
                                        {46, 46},
                                        {50, 50},
                                        {53, 55},
                                        {57, 57},
                                        {61, 77},
                                        {79, 400}}) {
        EXPECT_TRUE(answer == 0 || opcode < first || opcode > last) << opcode;
      }
    }
    std::array<float, 600> samples{};
    std::array<float*, 2> some = {samples.data(), samples.data()};
    std::array<float*, 2> half = {samples.data(), nullptr};
    for (float** in : {static_cast<float**>(nullptr), some.data(), half.data()}) {
      for (float** out : {static_cast<float**>(nullptr), half.data()}) {
        record->processReplacing(record, in, out, 600);
        record->processDoubleReplacing(record, nullptr, nullptr, 600);
      }
    }
  }
}

TEST(HostInterface, TheAccumulatingCallBearsNullPointersToo) {
  TestHost host;
  std::array<float, 600> samples{};
  std::array<float*, 2> half = {samples.data(), nullptr};
  for (float** in : {static_cast<float**>(nullptr), half.data()}) {
    for (float** out : {static_cast<float**>(nullptr), half.data()}) {
      host.effect->process(host.effect, in, out, 600);
    }
  }
}

TEST(HostInterface, TheAccumulatingCallAdds) {
  TestHost host;
  const Stereo in = noise(1001);
  const Stereo alone = TestHost().render(in);
  Stereo sum(in.frames(), 0.25F);
  play(host.effect, &AEffect::process, in, sum);
  for (std::size_t i = 0; i < in.frames(); ++i) {
    ASSERT_EQ(sum.left[i], 0.25F + alone.left[i]) << i;
    ASSERT_EQ(sum.right[i], 0.25F + alone.right[i]) << i;
  }
}

TEST(HostInterface, AnInstanceWithoutACallbackRendersTheSame) {
  const Alone alone(createEffect(nullptr));
  Stereo out(3000);
  play(alone.get(), &AEffect::processReplacing, noise(3000), out);
  EXPECT_GT(energy(out), 1.0);
  EXPECT_EQ(out, TestHost().render(noise(3000)));
}

TEST(HostInterface, OnlyTheProductNameOfOneHostChangesAnything) {
  const Stereo in = noise(1500);
  const Stereo expected = TestHost().render(in);
  const struct {
    const char *vendor, *product;
    int outputAnswer;
  } cases[] = {{"FXpansion", "Test Host", 0},  {"Zelvane", "ZUM", 0},
               {"Sony", "Sony ACID Pro", 1},   {"Sony ACID Pro", "Test Host", 0},
               {"Sony", "Sony ACID Pro 2", 0}, {"", "", 0}};
  for (const auto& c : cases) {
    HostState state;
    state.vendor = c.vendor;
    state.product = c.product;
    TestHost host(44100.0F, state);
    VstPinProperties pin{};
    EXPECT_EQ(host.dispatch(effGetOutputProperties, 0, 0, &pin), c.outputAnswer) << c.product;
    EXPECT_EQ(pin.flags, kVstPinIsActive | kVstPinIsStereo);
    EXPECT_EQ(host.render(in), expected) << c.vendor;
  }
}

TEST(HostInterface, OnlyAutomatedChangesBelowSixtyReachTheHost) {
  TestHost host;
  KvUniClient& client = host.client();
  for (const std::int32_t index : {-1, 0, 52, 53, 59, 60, 61, 222, 400}) {
    SCOPED_TRACE(index);
    host.host.calls.clear();
    host.set(index, 0.3F);
    EXPECT_TRUE(host.host.calls.empty());
    client.setParameterAutomated(index, 0.8F);
    const bool inside = index >= 0 && index < 60;
    EXPECT_EQ(host.host.calls, inside ? Calls({{audioMasterAutomate, index, 0}}) : Calls());
    host.host.calls.clear();
    EXPECT_EQ(client.beginEdit(index), inside);
    EXPECT_EQ(client.endEdit(index), inside);
    EXPECT_EQ(host.host.calls,
              inside ? Calls({{audioMasterBeginEdit, index, 0}, {audioMasterEndEdit, index, 0}})
                     : Calls());
  }
  EXPECT_EQ(host.get(52), 0.8F);
  EXPECT_EQ(client.controls().vowelType.integer, 3);  // 60 is set by the plain call alone
  const Alone alone(createEffect(nullptr));
  auto& silent = *static_cast<AudioEffectX*>(static_cast<AudioEffect*>(alone->object));
  silent.setParameterAutomated(3, 0.8F);
  EXPECT_EQ(silent.getParameter(3), 0.8F);
  EXPECT_FALSE(silent.beginEdit(3));
}

TEST(HostInterface, ProgramsPastTheLastAreNotPassedOn) {
  TestHost host;
  for (const std::intptr_t program : {128, 129, 100000, 1 << 30}) {
    host.dispatch(effSetProgram, 0, program);
    EXPECT_EQ(host.dispatch(effGetProgram), 0) << program;
  }
  host.dispatch(effSetProgramName, 0, 0, const_cast<char*>("renamed"));
  EXPECT_EQ(host.text(effGetProgramName), "default");
}

TEST(HostInterface, SuspendingClearsTheCombRingsAlone) {
  const Stereo in = noise(4000);
  const Stereo silence(4000);
  for (int type = 0; type < 20; ++type) {
    TestHost host;
    TestHost twin;
    for (TestHost* each : {&host, &twin}) {
      each->selectFilter(type);
      each->set(4, 0.9F);
      each->set(2, 1.0F);
      each->set(5, 0.6F);
      each->render(in);
    }
    host.dispatch(effMainsChanged, 0, 0);
    const double left = energy(host.render(silence));
    const double kept = energy(twin.render(silence));
    if (type % 10 == 6) {
      EXPECT_LT(left, 0.5 * kept) << type;
    } else {
      EXPECT_EQ(left, kept) << type;
    }
  }
}

TEST(HostInterface, ResumingAsksForMidiAndForgetsWhatTheOutputFilterHasHeard) {
  TestHost host;
  host.set(222, 1.0F);
  const Stereo one(10, 1.0F);
  host.render(one);
  host.host.calls.clear();
  host.dispatch(effMainsChanged, 0, 0);
  EXPECT_TRUE(host.host.calls.empty());
  EXPECT_NEAR(host.render(one).right[9], std::pow(0.998F, 19.0F), 1e-6F);
  host.dispatch(effMainsChanged, 0, 1);
  ASSERT_EQ(host.host.calls.size(), 1U);
  EXPECT_EQ(host.host.calls[0][0], audioMasterWantMidi);
  EXPECT_EQ(host.render(one).left[0], 1.0F);
}

}  // namespace
}  // namespace zum::test
