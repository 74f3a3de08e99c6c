// Catches an answer that a host does not expect: a wrong fixed fact, a text longer than its room,
// a crash on a null pointer, a notification too many or too few.

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "core/tags.hpp"
#include "support/test_host.hpp"

namespace zum::test {
namespace {

TEST(HostInterface, TheRecordHoldsTheFixedFacts) {
  TestHost host;
  const AEffect& record = *host.effect;
  EXPECT_EQ(std::memcmp(&record.uniqueID, "kvzm", 4), 0);
  EXPECT_EQ(record.magic, 0x56737450);
  EXPECT_EQ(std::tuple(record.numPrograms, record.numParams, record.numInputs, record.numOutputs,
                       record.initialDelay, record.ioRatio),
            std::tuple(128, 60, 2, 2, 0, 1.0F));
  constexpr int kSettled = effFlagsCanReplacing | effFlagsNoSoundInStop;
  constexpr int kRefused = effFlagsIsSynth | effFlagsCanDoubleReplacing;
  EXPECT_EQ(record.flags & (kSettled | kRefused), kSettled);
}

struct Answer {
  std::int32_t opcode;
  std::intptr_t answer;
  const char* text = "";
};
constexpr Answer kAnswers[] = {{effGetProgram, 0},
                               {effGetProgramName, 0, "default"},
                               {effGetPlugCategory, kPlugCategEffect},
                               {effGetEffectName, 1, "ZUM"},
                               {effGetVendorString, 1, "Zelvane"},
                               {effGetProductString, 1, "ZUM"},
                               {effGetVendorVersion, 1020},
                               {effGetTailSize, 0},
                               {effGetVstVersion, 2400},
                               {effGetNumMidiInputChannels, 1},
                               {effGetNumMidiOutputChannels, 0},
                               {effCanBeAutomated, 1}};

/// Opcodes that no host expects an answer to, from first to last.
constexpr std::pair<int, int> kUnanswered[] = {{-5, 0},  {9, 9},   {11, 11}, {20, 22}, {27, 28},
                                               {30, 33}, {36, 44}, {46, 46}, {50, 50}, {53, 55},
                                               {57, 57}, {61, 77}, {79, 400}};

TEST(HostInterface, OpcodesAnswerWithAndWithoutACallback) {
  const TestHost host;
  const LinkedEffect alone;
  for (const LinkedEffect* each : {static_cast<const LinkedEffect*>(&host), &alone}) {
    for (const Answer& expected : kAnswers) {
      char room[256] = "";
      EXPECT_EQ(each->dispatch(expected.opcode, 0, 0, room), expected.answer) << expected.opcode;
      EXPECT_STREQ(room, expected.text) << expected.opcode;
    }
    VstPinProperties pin{};
    EXPECT_EQ(each->dispatch(effGetOutputProperties, 0, 0, &pin), 0);
    EXPECT_EQ(pin.flags, kVstPinIsActive | kVstPinIsStereo);
    for (const auto& [first, last] : kUnanswered) {
      for (int opcode = first; opcode <= last; ++opcode) {
        EXPECT_EQ(each->dispatch(opcode, -1), 0) << opcode;
      }
    }
    for (int opcode = -5; opcode <= 400; ++opcode) {
      if (opcode != effClose) each->dispatch(opcode, -1);  // null pointers do no harm
    }
  }
}

TEST(HostInterface, CanDoComparesWholeTextsAndLetterCase) {
  const TestHost host;
  const std::pair<int, std::vector<const char*>> cases[] = {
      {1, {"receiveVstEvents", "receiveVstMidiEvent", "receiveVstTimeInfo"}},
      {0, {"sendVstMidiEvent", "sendVstEvent", "hasAboutScreen"}},
      {-1,
       {"ReceiveVstEvents", "sendVstEVENT", "receiveVstEvent", "receiveVstEventsX", "bypass", ""}}};
  for (const auto& [answer, texts] : cases) {
    for (const char* text : texts) {
      EXPECT_EQ(host.dispatch(effCanDo, 0, 0, const_cast<char*>(text)), answer) << text;
    }
  }
}

TEST(HostInterface, NullBuffersAreHarmless) {
  const TestHost host;
  const LinkedEffect alone;
  std::array<float, 600> samples{};
  std::array<float*, 2> half = {samples.data(), nullptr};
  for (AEffect* record : {host.effect, alone.effect}) {
    for (float** in : {static_cast<float**>(nullptr), half.data()}) {
      for (float** out : {static_cast<float**>(nullptr), half.data()}) {
        record->processReplacing(record, in, out, 600);
        record->process(record, in, out, 600);
        record->processDoubleReplacing(record, nullptr, nullptr, 600);
      }
    }
  }
}

TEST(HostInterface, TheAccumulatingCallAddsWhatTheOtherRenders) {
  const Stereo in = noise(1001);
  const Stereo rendered = TestHost().render(in);
  std::array<float*, 2> from = {const_cast<float*>(in.left.data()),
                                const_cast<float*>(in.right.data())};
  Stereo out(1001, 0.25F);
  std::array<float*, 2> to = {out.left.data(), out.right.data()};
  const LinkedEffect adding;  // without a callback it renders as in a host
  adding.effect->process(adding.effect, from.data(), to.data(), 1001);
  for (std::size_t i = 0; i < in.frames(); ++i) {
    ASSERT_EQ(out.left[i], 0.25F + rendered.left[i]) << i;
    ASSERT_EQ(out.right[i], 0.25F + rendered.right[i]) << i;
  }
}

TEST(HostInterface, OnlyTheProductNameOfOneHostChangesAnything) {
  const Stereo in = noise(1500);
  const Stereo expected = TestHost().render(in);
  const struct {
    const char *vendor, *product;
    int outputAnswer;
  } cases[] = {{"FXpansion", "", 0},
               {"Zelvane", "ZUM", 0},
               {"Sony", "Sony ACID Pro", 1},
               {"Sony ACID Pro", "Sony ACID Pro 2", 0}};
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
  for (const std::int32_t index : {-1, tag::vowelCutoff, tag::masterSeq, 53, tag::vowelB,
                                   tag::vowelType, tag::multiType, tag::bypass, 400}) {
    host.host.calls.clear();
    host.set(index, 0.3F);
    const bool begun = client.beginEdit(index);
    client.setParameterAutomated(index, 0.8F);
    const bool inside = index >= 0 && index < 60;
    EXPECT_TRUE(begun == inside && client.endEdit(index) == inside) << index;
    EXPECT_EQ(host.host.calls, inside ? edits({index}) : HostCalls());
  }
  EXPECT_EQ(host.get(tag::masterSeq), 0.8F);
  EXPECT_EQ(client.controls().vowelType.integer, 3);  // is set by the plain call alone
  const LinkedEffect alone;
  alone.client().setParameterAutomated(tag::cutoff, 0.8F);
  EXPECT_EQ(alone.get(tag::cutoff), 0.8F);
  EXPECT_FALSE(alone.client().beginEdit(tag::cutoff));
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
      each->prepare(type, 0.3F, 0.9F, 0.6F);
      each->render(in);
    }
    host.dispatch(effMainsChanged, 0, 0);
    const double left = energy(host.render(silence));
    const double kept = energy(twin.render(silence));
    const bool isComb = type % 10 == 6;
    EXPECT_TRUE(isComb ? left < 0.5 * kept : left == kept) << type;
  }
}

TEST(HostInterface, ResumingAsksForMidiAndForgetsWhatTheOutputFilterHasHeard) {
  TestHost host;
  host.set(tag::bypass, 1.0F);
  const Stereo one(10, 1.0F);
  host.render(one);
  host.host.calls.clear();
  host.dispatch(effMainsChanged, 0, 0);
  EXPECT_TRUE(host.host.calls.empty());
  EXPECT_NEAR(host.render(one).right[9], std::pow(0.998F, 19.0F), 1e-6F);
  host.dispatch(effMainsChanged, 0, 1);
  EXPECT_TRUE(host.host.calls.size() == 1 && host.host.calls[0][0] == audioMasterWantMidi);
  EXPECT_EQ(host.render(one).left[0], 1.0F);
}

}  // namespace
}  // namespace zum::test
