// States and presets through the effect object: what is written, what is refused, and how blocks
// and loaders meet. Every version that is read has a file in formats/.
#include <chrono>

#include "core/parameter_table.hpp"
#include "core/tags.hpp"
#include "support/chunk_words.hpp"
#include "support/test_host.hpp"
#include "support/told.hpp"

namespace zum::test {
namespace {

std::uint32_t bits(Word word) { return word; }

/// The state as a host gets it.
Words stateOf(const TestHost& host) {
  const std::string bytes = host.state();
  KvChunk chunk;
  chunk.borrow(bytes.data(), static_cast<std::uint32_t>(bytes.size() / 4));
  return wordsOf(chunk);
}

bool load(const TestHost& host, const Words& words, LoadFlags flags = {.quiet = true}) {
  KvChunk chunk;
  chunk.borrow(words.data(), static_cast<std::uint32_t>(words.size()));
  return host.client().loadPreset(chunk, 0, flags);
}

/// A preset in words.
struct Draft {
  std::vector<Words> records = {{46, 1, bits(0.75F)}};
  Words map = {};  // of controllers, without its end
  std::string name = "Draft";
  int program = 5;
  int folder = 2;
  Words aftertouch = {};

  Words words() const {
    Words all = {0, 3, bits(120.0F), bits(44100.0F), 26101977, 5, 1, 3, 0};
    const auto add = [&all](const Words& list) { all.insert(all.end(), list.begin(), list.end()); };
    for (const Words& record : records) add(record);
    add({bits(-1)});
    add(map);
    add({bits(-3), 1, static_cast<std::uint32_t>(name.size())});
    Words text((name.size() + 3) / 4);
    name.copy(reinterpret_cast<char*>(text.data()), name.size());
    add(text);
    add({16, bits(program), bits(folder), static_cast<std::uint32_t>(aftertouch.size() / 2)});
    add(aftertouch);
    add({bits(-4), 1, 2, 7, 7, 4, 0x74736F48});
    all[0] = static_cast<std::uint32_t>(all.size());
    return all;
  }
};

/// What a new instance saves when it has loaded this.
Words stateAfter(const Draft& draft, bool restoreAll) {
  const TestHost host;
  EXPECT_TRUE(load(host, draft.words(), {.restoreAll = restoreAll, .quiet = true}));
  return stateOf(host);
}

/// Every kind of thing that a state holds, away from its start.
void moveAll(TestHost& host) {
  for (const ParameterRow& row : parameterRows().first(kPresetRows)) {
    host.set(row.tag, 0.01F + 0.0131F * static_cast<float>(row.id));
  }
  host.client().steps().setPageCount(2);
  host.client().steps().setValue(3, 1, 0.625F);
  host.client().steps().name.set("Stairs");
  ControllerMap& map = host.client().controllers();
  for (int i = 0; i < 2; ++i) map.controllers[7].append({tag::cutoff, 0});
  map.controllers[127].append({-300, -2});
  map.aftertouch.append({tag::resonance, 1});
}

// Sessions and preset files of every year hold this: no word of it may change.
TEST(State, IsWordForWordWhatAPresetHolds) {
  TestHost host(48000.0F);
  for (const std::uint32_t expected : {2854965420U, 4051785035U}) {
    const Words words = stateOf(host);
    std::uint32_t sum = 0;
    for (const std::uint32_t word : words) sum = (sum ^ word) * 16777619U;
    EXPECT_EQ(sum, expected) << testing::PrintToString(words);
    moveAll(host);
  }
}

TEST(State, ComesBackInANewInstance) {
  TestHost one;
  moveAll(one);
  const std::string state = one.state();
  TestHost other;
  other.load(state);
  EXPECT_TRUE(other.state() == state);
  other.set(tag::cutoff, 0.9F);
  other.client().revertToStored();  // a recall is a point to come back to
  EXPECT_TRUE(other.state() == state);
}

TEST(State, WhatIsRefusedIsToldAndChangesNothing) {
  const Words good = Draft().words();
  const auto with = [&good](std::size_t at, int word) {
    Words words = good;
    words[at] = bits(word);
    return words;
  };
  const char* const invalid = "\t This is no valid ZUM format!";
  const std::pair<Words, const char*> cases[] = {
      {with(4, 26101976), invalid},
      {with(6, 2), "wrong plugin version"},
      {with(7, 0), "This is not a ZUM file"},
      {with(8, 1), "This is not a ZUM file"},
      {with(0, 1000), invalid},
      {with(0, 12), invalid},                                  // its own length cuts it
      {with(10, 0), invalid},                                  // a parameter without a value
      {Draft{.records = {{5, 3, 1, 2, 3}}}.words(), invalid},  // no table
      {Draft{.records = {{5, 6, 0, 0, 0, 0, 777, 0}}}.words(), invalid},  // a table of 4 words
      {Draft{.map = {128, bits(-2)}}.words(), invalid},                   // no such controller
      {Draft{.map = {5, 1}}.words(), invalid},                            // no end
      {Draft{.map = {5, 0xFFFE, 0, bits(-2)}}.words(), invalid},          // cut to 16 bits an end
      {Draft{.aftertouch = {1, 2, 3, 4, 5}}.words(), invalid},            // half a binding
      {with(good.size() - 7, -5), invalid},                               // pressure without an end
      {with(good.size() - 2, 5), invalid},  // a last text beyond the end
      {{}, invalid},
  };
  for (const auto& c : cases) {
    TestHost host;
    moveAll(host);
    const Words before = stateOf(host);
    const std::string told = toldBy([&] { EXPECT_FALSE(load(host, c.first, {})); });
    EXPECT_TRUE(has(told, c.second)) << told;
    EXPECT_EQ(toldBy([&] { EXPECT_FALSE(load(host, c.first)); }), "");
    EXPECT_EQ(stateOf(host), before);
    EXPECT_FALSE(host.client().muteRequest.load());
  }
}

TEST(State, BrokenAnywhereItIsRefusedOrReadWhole) {
  TestHost source;
  moveAll(source);
  const Words good = stateOf(source);
  std::string memory = '#' + source.state();  // a host aligns nothing
  TestHost host;
  const Words before = stateOf(host);
  toldBy([&] {
    for (std::intptr_t bytes = 0; bytes < std::ssize(memory) - 1; ++bytes) {
      EXPECT_EQ(host.dispatch(effSetChunk, 0, bytes, memory.data() + 1), 1);
    }
  });
  EXPECT_EQ(stateOf(host), before);
  for (std::size_t at = 0; at < good.size(); ++at) {
    for (const int word : {0, -1, -2, 1 << 20, 2147483647, -2147483647 - 1}) {
      Words words = good;
      words[at] = bits(word);
      if (load(host, words)) {
        ASSERT_TRUE(!host.state().empty() && load(host, before));
      }
    }
  }
  EXPECT_EQ(stateOf(host), before);
}

TEST(State, IsolatedMapsStayAndAreEmptiedByARecall) {
  const Words words =
      Draft{.map = {9, tag::cutoff, 0, bits(-2)}, .aftertouch = {tag::cutoff, 0}}.words();
  using Left = std::array<std::vector<Binding>, 3>;  // of controllers 9 and 20, and aftertouch
  const Left taken = {{{{tag::cutoff, 0}}, {}, {{tag::cutoff, 0}}}};
  const Left kept = {{{}, {{tag::overdrive, 0}}, {{tag::overdrive, 0}}}};
  for (const auto& [isolated, recall, left] :
       {std::tuple{0, false, taken}, {0, true, taken}, {1, false, kept}, {1, true, Left()}}) {
    TestHost host;
    ControllerMap& map = host.client().controllers();
    for (BindingList* list : {&map.controllers[20], &map.aftertouch}) list->append(kept[1][0]);
    host.client().setOption(1, isolated, false);
    ASSERT_TRUE(load(host, words, {.restoreAll = recall, .quiet = true}));
    EXPECT_EQ((Left{map.controllers[9].all(), map.controllers[20].all(), map.aftertouch.all()}),
              left);
    EXPECT_FALSE(map.learning.load());
  }
}

TEST(State, ALoadSilencesTheCombAndANewTempoDoesNot) {
  const auto ringing = [](const auto& meanwhile) {
    TestHost host;
    host.giveTime(120.0);
    host.prepare(6, 0.3F, 0.9F, 0.0F);
    host.render(noise(8192));
    meanwhile(host);
    return energy(host.render(Stereo(8192)));
  };
  const double plain = ringing([](TestHost& /*host*/) {});
  EXPECT_NEAR(ringing([](TestHost& host) { host.giveTime(90.0); }) / plain, 1.0, 0.1);
  EXPECT_LT(ringing([](TestHost& host) { load(host, stateOf(host)); }), 0.01 * plain);
}

TEST(State, TheBlockBehindALoadStartsWithAControlPass) {
  TestHost host;
  host.render(Stereo(1));
  ASSERT_TRUE(load(host, Draft().words()));
  host.render(Stereo(1));
  EXPECT_EQ(host.client().signal().display().cutoff, 0.75F);
}

TEST(State, APositionOutsideOfAnyBankAndAnEmptyNameLeaveTheOldOnes) {
  const Words start = stateAfter({.name = "default", .program = 0, .folder = 0}, true);
  for (const auto& [name, outside] : {std::pair{std::string(), -1}, {{"\0abc", 4}, 128}}) {
    const Draft draft{.name = name, .program = outside, .folder = outside};
    EXPECT_EQ(stateAfter(draft, true), start) << outside;
  }
}

// An offline block never says that it ended: a load goes on without it, an edit of the table's size
// gives up and leaves silence, which the next load ends.
TEST(State, OfflineBlocksHoldNobodyUpForLong) {
  TestHost host;
  host.host.level = kVstProcessLevelOffline;
  host.render(noise(64));
  ASSERT_TRUE(host.client().inProcess.load());
  host.host.level = kVstProcessLevelRealtime;
  EXPECT_TRUE(!host.client().setStepColumns(12) && host.client().muteRequest.load());
  EXPECT_EQ(host.client().steps().size(), 8);
  const auto begin = std::chrono::steady_clock::now();
  ASSERT_TRUE(load(host, Draft().words()));
  const auto took = std::chrono::steady_clock::now() - begin;
  EXPECT_TRUE(took > std::chrono::milliseconds(400) && took < std::chrono::milliseconds(1500));
  host.render(noise(64));
  EXPECT_FALSE(host.client().inProcess.load());
  EXPECT_TRUE(host.client().setStepColumns(12) && host.client().setStepPages(2));
  EXPECT_EQ(host.client().steps().size(), 12);
}

}  // namespace
}  // namespace zum::test
