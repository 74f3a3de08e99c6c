// Files that another program drags onto a window of ours: sources as they should be, and sources
// that lie, break off and end.
#include <gtest/gtest.h>
#include <unistd.h>

#include <functional>

#include "platform/native_window.hpp"
#include "platform/uri_list.hpp"
#include "support/drag_source.hpp"
#include "support/own_display.hpp"

namespace zum::test {
namespace {

using Lines = std::vector<std::string>;
const Lines kFiles = {"text/uri-list"};

std::string thisHost() {
  std::array<char, 256> name{};
  gethostname(name.data(), name.size() - 1);
  return name.data();
}

TEST(UriList, NamesTheFilesOfThisMachine) {
  const std::pair<std::string, Lines> cases[] = {
      {"file:///a/b.wav\r\n", {"/a/b.wav"}},
      {"file:///a%20b/%C3%A4%23%25.kvz", {"/a b/\xC3\xA4#%.kvz"}},
      {"file://localhost/a\nfile:/b\r\nfile://" + thisHost() + "/c", {"/a", "/b", "/c"}},
      {"# a comment\r\nhttp://x/y.wav\r\nfile:///a\r\n\r\n", {"/a"}},
      {"file:///%FF\r\n", {"/\xFF"}},  // no UTF-8, and yet a file
      {"file:///a%\r\nfile:///a%z9\r\nfile:///a%00b\r\nfile:///a%2Fb", {}},
      {"file://elsewhere/a\r\nfile://\r\nfile:\r\na\r\n/a/b", {}},
      {std::string("file:///a\r\n\0file:///b", 22), {"/a"}},
      {"", {}},
  };
  for (const auto& [list, files] : cases) EXPECT_EQ(filesOfUriList(list), files) << list;
}

struct Drops final : PassiveWindowEvents {
  void windowDropped(int x, int y, const Lines& files) override {
    told += std::to_string(x) + ' ' + std::to_string(y);
    for (const std::string& file : files) told += ' ' + file;
  }
  std::string told;
};

class DropTest : public testing::Test {
 protected:
  std::unique_ptr<NativeWindow> open(std::uintptr_t parent, bool takesFiles) {
    return openNativeWindow({.parent = parent,
                             .width = 200,
                             .height = 100,
                             .title = "T",
                             .place = ScreenPlace{300, 200},
                             .takesFiles = takesFiles},
                            drops);
  }
  void poll() {
    ours->currentButtons();  // what was said has come
    ours->poll();
    ours->currentButtons();  // and the answer has left
  }
  /// What the window says to the source, until it falls silent.
  std::string answers(DragSource& source) {
    std::string all;
    for (int i = 0; i < 4; ++i) {
      poll();
      const std::string more = source.heard();
      all += (all.empty() || more.empty() ? "" : " ") + more;
    }
    return all;
  }
  std::string takeTold() { return std::exchange(drops.told, {}); }

  OwnDisplay server;
  Drops drops;
  std::unique_ptr<NativeWindow> ours = open(0, true);
};

TEST_F(DropTest, FilesComeToTheirPlaceFromEverySourceWithManners) {
  const struct {
    Lines types;
    long version;
    bool accepted;
  } cases[] = {
      {kFiles, 5, true},
      {{"text/plain", "x-a", "text/uri-list"}, 3, true},
      {{"a", "b", "c", "d", "text/uri-list"}, 4, true},
      {kFiles, 9, true},  // newer ones speak the older language, too
      {{"text/plain"}, 5, false},
      {{"a", "b", "c", "d"}, 5, false},
  };
  for (const auto& each : cases) {
    DragSource source(ours->handle());
    EXPECT_EQ(source.targetVersion(), 5);
    source.data = "file:///one.wav\r\nfile:///two.kvz\r\n";
    source.enter(each.types, each.version);
    source.moveTo(1, 1), source.moveTo(30, 40);
    EXPECT_EQ(answers(source), each.accepted ? "Status 1 Status 1" : "Status 0 Status 0");
    source.drop();
    EXPECT_EQ(answers(source), each.accepted ? "Finished 1" : "Finished 0");
    EXPECT_EQ(takeTold(), each.accepted ? "30 40 /one.wav /two.kvz" : "") << each.types.back();
  }
}

TEST_F(DropTest, WhatIsNoFileIsRefused) {
  const std::function<void(DragSource&)> kinds[] = {
      [](DragSource& s) { s.data = ""; },
      [](DragSource& s) { s.data = std::string(300, '\xFE'); },
      [](DragSource& s) { s.data = "http://a/b.wav"; },
      [](DragSource& s) { s.dataType = ""; },
      [](DragSource& s) { s.dataType = "INCR"; },
      [](DragSource& s) { s.data.append(1 << 20, '\n'); },  // goes on behind what is read
  };
  int number = 0;
  for (const auto& make : kinds) {
    DragSource source(ours->handle());
    source.data = "file:///a\n";
    make(source);
    source.enter(kFiles), source.moveTo(1, 1), source.drop();
    EXPECT_EQ(answers(source), "Status 1 Finished 0") << number++;
    EXPECT_EQ(takeTold(), "");
  }
}

TEST_F(DropTest, SourcesWithoutMannersDoNoHarm) {
  constexpr std::uintptr_t kNoWindow = 0x1FFFFFFF;
  const std::pair<std::function<void(DragSource&)>, std::string> sources[] = {
      {[](DragSource& s) { s.moveTo(1, 1), s.drop(), s.leave(); }, ""},  // never entered
      {[](DragSource& s) { s.enter(kFiles, 2), s.moveTo(1, 1), s.drop(); }, ""},
      {[](DragSource& s) { s.enter(kFiles), s.leave(), s.moveTo(1, 1), s.drop(); }, ""},
      {[](DragSource& s) { s.enter(kFiles), s.pushSelection("file:///pushed"); }, ""},
      // a list that is none, or is not there
      {[](DragSource& s) {
         s.listType = "STRING", s.enter({"a", "b", "c", "text/uri-list"}), s.moveTo(1, 1);
       },
       "Status 0"},
      {[](DragSource& s) { s.send("XdndEnter", {5L << 24 | 1}), s.moveTo(1, 1); }, "Status 0"},
      // atoms, places and windows that do not exist
      {[](DragSource& s) {
         s.send("XdndEnter", {5L << 24, -1, 0x7FFFFFFF, 0}), s.moveTo(9999, -9999);
       },
       "Status 0"},
      {[](DragSource& s) {
         for (const std::uintptr_t from : {kNoWindow, std::uintptr_t{0xFFFFFFFF}}) {
           s.send("XdndEnter", {5L << 24 | 1}, from);
           s.send("XdndPosition", {0, -1, -1, -1}, from);
           s.send("XdndDrop", {-1, -1, -1, -1}, from);
         }
       },
       ""},
      // in the name of the one that is there
      {[](DragSource& s) {
         s.enter(kFiles), s.send("XdndPosition", {}, kNoWindow), s.send("XdndDrop", {}, kNoWindow);
       },
       ""},
  };
  int number = 0;
  for (const auto& [act, answer] : sources) {
    DragSource source(ours->handle());
    source.data = "file:///a";
    act(source);
    EXPECT_EQ(answers(source), answer) << number++;
    EXPECT_EQ(takeTold(), "");
  }
  for (const bool dropped : {false, true}) {  // it dies on the way
    DragSource source(ours->handle());
    source.enter(kFiles), source.moveTo(5, 5);
    if (dropped) source.drop();
    source.end();
    poll(), poll();
  }
  DragSource next(ours->handle());  // and another one is none the worse for it all
  next.data = "file:///b";
  next.enter(kFiles), next.moveTo(7, 8), next.drop();
  EXPECT_EQ(answers(next), "Status 1 Finished 1");
  EXPECT_EQ(takeTold(), "7 8 /b");
}

TEST_F(DropTest, OtherWindowsTakeNothing) {
  const HostWindow host;
  for (const std::uintptr_t parent : {std::uintptr_t{0}, host.window}) {
    ours = open(parent, parent != 0);
    DragSource source(ours->handle());
    EXPECT_EQ(source.targetVersion(), 0);
    source.data = "file:///a";
    source.enter(kFiles), source.moveTo(1, 1), source.drop();
    EXPECT_EQ(answers(source), "");
    EXPECT_EQ(takeTold(), "");
  }
}

}  // namespace
}  // namespace zum::test
