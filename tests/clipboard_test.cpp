// The clipboard beside other programs on a real X server, some of which lie, stop or never answer.
#include "platform/clipboard.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "support/own_display.hpp"
#include "support/selection_peer.hpp"

namespace zum::test {
namespace {

using Clock = std::chrono::steady_clock;
using Text = std::optional<std::string>;

OwnDisplay& ownDisplay() {
  static OwnDisplay server;
  return server;
}

/// What is answered, while both are polled; seconds in `took`.
Text asked(Clipboard& clipboard, SelectionPeer* peer = nullptr, double* took = nullptr) {
  bool isAnswered = false;
  Text heard;
  const auto start = Clock::now();
  clipboard.ask(&heard, [&](const Text& text) {
    isAnswered = true;
    heard = text;
  });
  EXPECT_FALSE(isAnswered);
  while (!isAnswered && Clock::now() < start + std::chrono::seconds(15)) {
    if (peer != nullptr) peer->poll();
    clipboard.poll();
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  EXPECT_TRUE(isAnswered);
  if (took != nullptr) *took = std::chrono::duration<double>(Clock::now() - start).count();
  return heard;
}

TEST(Clipboard, TakesATextOfEveryFormAndNothingElse) {
  ownDisplay();
  const auto clipboard = openClipboard();
  EXPECT_EQ(asked(*clipboard), Text()) << "nobody has one";
  const std::string most(Clipboard::kMostBytes, 'x');
  const std::vector<std::string> many(16, std::string(65536, 'y'));
  const struct {
    const char* what;
    std::vector<std::string> pieces;
    Text expected;
    int format = 8;
    bool refuses = false;
  } rows[] = {
      {"a text", {"a\xC3\xA4\n"}, "a\xC3\xA4\n"},
      {"an empty one", {}, ""},
      {"the longest", {most}, most},
      {"a longer one", {most + "x"}, {}},
      {"words in place of bytes", {"abcd"}, {}, 16},
      {"a refusal", {"a"}, {}, 8, true},
      {"pieces", {"ab", "cd", "e"}, "abcde"},
      {"the most pieces", many, std::string(Clipboard::kMostBytes, 'y')},
      {"more", std::vector<std::string>(18, many[0]), {}},
      {"pieces of words", {"abcd", "efgh"}, {}, 16},
  };
  for (const auto& row : rows) {
    SelectionPeer peer;
    peer.pieces = row.pieces;
    peer.format = row.format;
    peer.refuses = row.refuses;
    peer.own();
    double took = 0.0;
    EXPECT_TRUE(asked(*clipboard, &peer, &took) == row.expected) << row.what;
    EXPECT_LT(took, 1.5) << row.what;
  }
}

TEST(Clipboard, GivesUpWhoDoesNotAnswerAndAsksOthersAgain) {
  ownDisplay();
  const auto clipboard = openClipboard();
  for (const bool breaksOff : {false, true}) {
    SelectionPeer peer;
    peer.pieces = {"a", "b"};
    peer.isSilent = !breaksOff;
    peer.breaksOff = breaksOff;
    peer.own();
    double took = 0.0;
    EXPECT_EQ(asked(*clipboard, &peer, &took), Text());
    EXPECT_NEAR(took, 2.0, 0.9);
    peer.isSilent = peer.breaksOff = false;
    EXPECT_EQ(asked(*clipboard, &peer), "ab");
  }
}

// Of three that ask, the earlier ones hear at once that there is nothing.
TEST(Clipboard, TakesBackTheQuestionsOfOneOwnerAlone) {
  ownDisplay();
  const std::unique_ptr<Clipboard> clipboards[] = {openClipboard(),
                                                   std::make_unique<OwnClipboard>()};
  for (const auto& clipboard : clipboards) {
    ASSERT_TRUE(clipboard->give("text"));
    const int owners[4] = {};
    const std::string expected[] = {"2 nothing 3 text", "1 nothing 3 text", "1 nothing 2 nothing",
                                    "1 nothing 2 nothing 3 text"};
    for (std::size_t leaves = 0; leaves < std::size(owners); ++leaves) {
      std::string heard;
      for (std::size_t owner = 0; owner < 3; ++owner) {
        clipboard->ask(&owners[owner], [&heard, owner](const Text& text) {
          heard += (heard.empty() ? "" : " ") + std::to_string(owner + 1) + " " +
                   text.value_or("nothing");
        });
      }
      clipboard->cancel(&owners[leaves]);
      for (int i = 0; i < 5; ++i) clipboard->poll();
      EXPECT_EQ(heard, expected[leaves]);
    }
  }
}

TEST(Clipboard, HandsItsTextToOthersUntilTheyHaveOne) {
  ownDisplay();
  const auto clipboard = openClipboard();
  SelectionPeer peer;
  Clipboard* owner = clipboard.get();
  const auto heard = [&](const std::string& type) {
    peer.ask(type);
    for (int i = 0; i < 2000 && !peer.isAnswered; ++i) {
      owner->poll();
      peer.poll();
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return peer.answer;
  };
  ASSERT_TRUE(clipboard->give("one"));
  EXPECT_EQ(heard("UTF8_STRING"), "one");
  EXPECT_EQ(heard("text/plain;charset=utf-8"), "one");
  EXPECT_NE(heard("TARGETS"), "refused");
  EXPECT_EQ(heard("image/png"), "refused");
  EXPECT_EQ(asked(*clipboard), "one");
  EXPECT_FALSE(clipboard->give(std::string(Clipboard::kMostBytes + 1, 'x')));
  const std::string most(Clipboard::kMostBytes, 'x');
  ASSERT_TRUE(clipboard->give(most));
  EXPECT_TRUE(heard("UTF8_STRING") == most);
  {
    SelectionPeer gone;  // ahead of the answer
    gone.ask("UTF8_STRING");
  }
  clipboard->poll();
  const auto other = openClipboard();
  EXPECT_TRUE(other->give("two"));
  other->poll();
  owner = other.get();
  EXPECT_EQ(heard("UTF8_STRING"), "two");
  owner = clipboard.get();
  EXPECT_EQ(asked(*other), "two");
  ASSERT_TRUE(clipboard->give("three"));
  peer.own();
  ASSERT_TRUE(clipboard->give("four"));  // what tells of the loss of "three" is still on its way
  EXPECT_EQ(heard("UTF8_STRING"), "four");
}

TEST(Clipboard, OutlivesItsServer) {
  ownDisplay();
  const auto clipboard = openClipboard();
  ASSERT_TRUE(clipboard->give("one"));
  ownDisplay().stop();
  clipboard->poll();
  EXPECT_FALSE(clipboard->give("two"));
  (void)asked(*clipboard);
  const auto none = openClipboard();
  EXPECT_TRUE(none->give("mine"));
  EXPECT_EQ(asked(*none), "mine");
}

}  // namespace
}  // namespace zum::test
