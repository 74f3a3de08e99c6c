// One audio thread against everything that other threads may do meanwhile. Worth most under the
// thread sanitizer, which then also proves that the mute handshake orders plain memory.

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <thread>

#include "core/tags.hpp"
#include "engine/shared_value.hpp"
#include "support/test_host.hpp"

namespace zum::test {
namespace {

using std::chrono::steady_clock;

constexpr std::int32_t kFrames = 33;  // a block ends inside a control block
constexpr std::chrono::seconds kPatience{10};

struct Session {
  TestHost host;
  const Stereo in = noise(kFrames);
  std::atomic<std::uint32_t> mutes{0};  // odd while the engine stands still
  std::atomic<std::uint32_t> blocks{0};
  std::uint32_t step = 0;

  template <class Done>
  static void await(const Done& done) {
    const auto deadline = steady_clock::now() + kPatience;
    while (!done()) {
      ASSERT_LT(steady_clock::now(), deadline);
      std::this_thread::yield();
    }
  }

  /// A thread that does one thing until it is told to stop, or goes.
  std::jthread repeat(void (Session::*work)()) {
    return std::jthread([this, work](const std::stop_token& stop) {
      while (!stop.stop_requested()) (this->*work)();
    });
  }

  void playBlock() {
    host.giveTime(100.0 + (blocks.load() / 8U % 3U), 0.0, kVstTransportPlaying);
    Stereo out(kFrames, 9.0F);
    const std::uint32_t before = mutes.load();
    host.process(in, out, 0, kFrames);
    const bool underMute = before % 2 == 1 && mutes.load() == before;
    EXPECT_TRUE(!underMute || out == Stereo(kFrames));
    for (const float x : out.left) EXPECT_TRUE(std::isfinite(x) && x != 9.0F) << x;
    blocks.fetch_add(1);
  }

  void setEverything() {
    for (std::int32_t tag = -1; tag <= kLastTag + 1; ++tag) {
      host.set(tag, static_cast<float>(step++ % 9) / 8.0F);
      host.set(tag::bypass, static_cast<float>(step % 2));
    }
  }

  void readEverything() {
    for (std::int32_t index = -1; index <= kHostParameters; ++index) {
      const bool known = index < kHostParameters && rowOfTag(index) >= 0;
      EXPECT_EQ(host.text(effGetParamDisplay, index) != "empty", known) << index;
      const float value = host.get(index);
      EXPECT_TRUE(value >= 0.0F && value <= 1.0F) << value << " of " << index;
    }
    for (const float& x : host.client().signal().meters().meter.points)
      EXPECT_LE(loadShared(x), 1.0F);
  }

  /// As a state is loaded: mute, wait, replace what the engine works on, go on.
  void replaceStateUnderMute() {
    KvUniClient& client = host.client();
    client.muteRequest.store(true);
    await([&] { return !client.inProcess.load(); });
    mutes.fetch_add(1);
    host.dispatch(effMainsChanged, 0, 0);  // plain writes to the memory of the filters
    host.dispatch(effMainsChanged, 0, 1);
    const std::int32_t& index = client.signal().meters().meter.writeIndex;
    const std::int32_t before = index;
    const std::uint32_t seen = blocks.load();
    await([&] { return blocks.load() >= seen + 3; });
    EXPECT_EQ(index, before);
    mutes.fetch_add(1);
    client.muteRequest.store(false);
    await([&] { return loadShared(index) != before; });
  }
};

TEST(Threads, DisturbNeitherBlocksNorEachOther) {
  Session session;
  std::vector<std::jthread> threads;
  for (const auto work : {&Session::playBlock, &Session::setEverything, &Session::readEverything}) {
    threads.push_back(session.repeat(work));
  }
  for (int i = 0; i < 25 && !testing::Test::HasFailure(); ++i) session.replaceStateUnderMute();
}

/// Two states that differ in everything; a block must hear the one or the other.
struct TwoStates {
  std::array<std::string, 2> bytes;

  TwoStates() {
    for (std::size_t kind = 0; kind < 2; ++kind) {
      TestHost host;
      KvUniClient& client = host.client();
      for (std::int32_t tag = 0; tag < kHostParameters; ++tag) host.set(tag, value(kind));
      if (kind == 1) client.steps().setColumns(32);
      for (int i = 0; i < client.steps().size(); ++i) client.steps().setValue(i, value(kind));
      for (int i = 0; i < 20; ++i) {
        client.controllers().controllers[kind].append({static_cast<std::int16_t>(i), 0});
      }
      bytes[kind] = host.state();
    }
  }
  static float value(std::size_t kind) { return kind == 0 ? 0.25F : 0.75F; }
};

// Under the mute no value is of another state, and what is read back while blocks play is one
// state.
TEST(Threads, LoadAStateInOnePiece) {
  constexpr int kLoads = 10000;
  const TwoStates states;
  Session session;
  KvUniClient& client = session.host.client();
  std::jthread audio = session.repeat(&Session::playBlock);
  for (int i = 0; i < kLoads && !testing::Test::HasFailure(); ++i) {
    const std::size_t kind = static_cast<std::size_t>(i) % 2;
    KvChunk chunk;
    const std::string& bytes = states.bytes[kind];
    chunk.borrow(bytes.data(), static_cast<std::uint32_t>(bytes.size() / 4));
    ASSERT_TRUE(client.loadPreset(chunk, 0, {.restoreAll = true, .quiet = true}));
    for (const std::int32_t tag : {tag::vowelCutoff, tag::cutoff, tag::masterSeq, tag::vowelB}) {
      ASSERT_EQ(session.host.get(tag), TwoStates::value(kind)) << i;
    }
    ASSERT_EQ(client.steps().size(), kind == 0 ? 8 : 32);
    ASSERT_EQ(client.controllers().controllers[kind].size(), 20U);
    ASSERT_EQ(client.controllers().controllers[1 - kind].size(), 0U);
    if (i % 100 == 0) {
      const std::uint32_t seen = session.blocks.load();
      Session::await([&] { return session.blocks.load() > seen + 1; });
    }
  }
}

// A flood that overflows, again and again: what is taken keeps its order, and the last one comes.
TEST(Threads, EventsKeepTheirOrderThroughAFullInbox) {
  constexpr int kRounds = 50;
  constexpr std::int32_t kEvents = 128 * 128;
  EventInbox inbox;
  EventQueue queue;
  for (int round = 0; round < kRounds && !testing::Test::HasFailure(); ++round) {
    std::thread host([&inbox] {
      for (std::int32_t i = 0; i < kEvents; ++i) {
        inbox.push({0, EngineEvent::kController, static_cast<std::uint8_t>(i / 128),
                    static_cast<std::uint8_t>(i % 128)});
      }
    });
    std::int32_t last = -1;
    Session::await([&] {
      inbox.takeInto(queue);
      for (EngineEvent event{}; queue.next(event);) {
        const std::int32_t number = event.data1 * 128 + event.data2;
        EXPECT_GT(number, last);
        last = number;
      }
      return last == kEvents - 1;
    });
    host.join();
  }
}

// A host's state thread, its main thread and the window at once, while blocks play: each load
// leaves a whole state behind, and none meets a new sample rate half way.
TEST(Threads, RecallRevertAndRetuneAtOnce) {
  constexpr int kTurns = 300;
  const TwoStates states;
  Session session;
  TestHost& host = session.host;
  host.load(states.bytes[0]);
  std::jthread audio = session.repeat(&Session::playBlock);
  std::thread window([&host] {
    for (int i = 0; i < kTurns; ++i) host.client().revertToStored();
  });
  std::thread main([&host] {
    for (int i = 0; i < kTurns; ++i) {
      host.dispatch(effMainsChanged, 0, 0);
      host.dispatch(effSetSampleRate, 0, 0, nullptr, i % 2 == 0 ? 44100.0F : 48000.0F);
      host.dispatch(effMainsChanged, 0, 1);
    }
  });
  for (std::size_t i = 0; i < kTurns; ++i) host.load(states.bytes[i % 2]);
  window.join();
  main.join();
  audio = {};
  EXPECT_FALSE(host.client().muteRequest.load());
  const bool second = host.client().steps().size() != 8;
  EXPECT_EQ(host.get(tag::cutoff), TwoStates::value(second ? 1 : 0));
  EXPECT_EQ(host.client().controllers().controllers[second ? 1 : 0].size(), 20U);
}

// By chance: two writers of one text meet in some of the runs.
TEST(Threads, TwoSetANameAndLeaveNoMixture) {
  SharedName name("start");
  std::atomic<int> begun{0};
  std::atomic<int> ended{0};
  const std::jthread audio([&](const std::stop_token& stop) {
    const std::string text(1000, 'a');
    while (!stop.stop_requested()) {
      const int round = begun.load();
      if (round == ended.load()) continue;
      name.setInBlock(text);
      ended.store(round);
    }
  });
  const std::string text(1000, 'w');
  const auto end = steady_clock::now() + std::chrono::seconds(1);
  for (int i = 1; steady_clock::now() < end && !testing::Test::HasFailure(); ++i) {
    begun.store(i);
    for (std::atomic<int> wait{i % 256}; wait > 0;) --wait;  // now the one is ahead, now the other
    name.set(text);
    while (ended.load() < i) std::this_thread::yield();
    const std::string left = name.get();
    EXPECT_EQ(left, std::string(1000, left.front())) << i;
  }
}

}  // namespace
}  // namespace zum::test
