// The boxes and dialogs that the program draws itself, off the screen, opened and polled by an
// editor as in a host.
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "platform/file_dialogs.hpp"
#include "support/editor_desk.hpp"
#include "support/settings_user.hpp"
#include "toolkit/dialogs/own_file_dialogs.hpp"
#include "toolkit/dialogs/wrapped_text.hpp"

namespace zum::test {
namespace {

TEST(MessageWindow, IsAnsweredInItsOwnWindowAndBlocksTheOthers) {
  EditorDesk desk;
  std::string answers;
  const auto ask = [&] {
    askMessage(&desk, "Title", "Really?", [&](bool yes) { answers += yes ? 'y' : 'n'; });
    desk.tick();
    return desk.boxes.at("Title");
  };
  const auto type = [&](OffscreenWindow& window, std::uint8_t key) {
    window.keyDown({0, key, 0});
    desk.tick();
  };
  OffscreenWindow* box = ask();
  type(*desk.window, keys::kF1 + 1);  // the editor's, which does not hear it now
  desk.window->keyUp({0, keys::kF1 + 1, 0});
  desk.tick();
  EXPECT_EQ(desk.window->hostKeys().size(), 2U);
  type(*box, keys::kReturn);
  type(*ask(), keys::kEscape);
  desk.tick(60);
  type(*desk.window, keys::kF1 + 1);  // which takes keys again
  EXPECT_EQ(desk.window->hostKeys().size(), 2U);
  // OK stands left of Cancel, and is pressed by a release on it.
  for (const int x : {400 - 24 - 135, 400 - 12 - 45}) {
    box = ask();
    const int y = 18 + 16 + 54 - 24;
    for (const CPoint& end : {CPoint{0, 0}, {x, y}}) {
      box->press(x, y);
      box->release(end.x, end.y);
      desk.tick();
    }
  }
  ask()->vanish();
  desk.tick();
  EXPECT_EQ(answers, "ynynn");
  showMessage("Title", "Only told.");
  desk.tick();
  type(*desk.boxes.at("Title"), keys::kEscape);
  ask();
  desk.editor().close();
  EXPECT_EQ(answers, "ynynnn");
  EXPECT_FALSE(WindowServices::get().isMessageOpen());
}

TEST(WrappedText, BreaksBetweenWordsAndInsideOfLongOnes) {
  const Held<CFontDesc> font(new CFontDesc("Arial", 12));
  const auto lines =
      wrapText("one two\n\nthree " + std::string(60, 'x') + "\xC3\xA9", *font.get(), 120);
  ASSERT_GT(lines.size(), 5U);
  EXPECT_EQ(std::vector(lines.begin(), lines.begin() + 3),
            (std::vector<std::string>{"one two", "", "three"}));
  std::string word;
  for (std::size_t i = 3; i < lines.size(); ++i) word += lines[i];
  EXPECT_EQ(word, std::string(60, 'x') + "\xC3\xA9");
  std::string many;
  for (std::size_t i = 0; i < kMostLines; ++i) many += "x\n";
  EXPECT_EQ(wrapText(many + "\xFFy", *font.get(), 120).back(), "x\xE2\x80\xA6");
}

class FileWindowTest : public SettingsTest {
 protected:
  FileWindowTest() {
    for (const char* file : {"b.kvz", "a.kvz", "note.txt", ".c.kvz", "inner/d.kvz"}) {
      putText(folder / file, file);
    }
  }
  FileAnswer answer() {
    return [this](const std::optional<std::string>& path) {
      answers += (path ? fs::relative(toSystemPath(*path), folder).string() : "none") + " ";
    };
  }
  void load() { dialogs.load(question, answer()); }
  void save() { dialogs.save(question, answer()); }
  void type(const std::string& text) {
    for (const char letter : text) window->keyDown({letter, 0, 0});
    dialogs.poll();
  }
  void press(std::initializer_list<std::uint8_t> keys) {
    for (const std::uint8_t key : keys) {
      window->keyDown({0, key, 0});
      window->keyUp({0, key, 0});
      for (int i = 0; i < 3; ++i) dialogs.poll();
    }
  }
  const FileList& list() const { return dialogs.getWindow()->getList(); }
  void click(int row, int word = buttons::kLeft) {
    const CRect& area = list().getViewSize();
    const int y = area.top + 1 + row * FileList::kRowHeight + 9;
    window->press(area.left + 20, y, word);
    window->release(area.left + 20, y);
    dialogs.poll();
  }
  std::string rows() const {
    std::string names;
    for (const FolderEntry& row : list().getRows()) names += row.name + " ";
    return names;
  }

  FileQuestion question{"Title", {{"Preset file", "kvz"}}, internal(""), this};
  std::string answers;
  OffscreenWindow* window = nullptr;
  OwnFileDialogs dialogs{[this] {
    return DialogPlace{0, [this](const WindowRequest& request, WindowEvents& events) {
                         EXPECT_EQ(request.title, "Title");
                         auto opened = std::make_unique<OffscreenWindow>(request, events);
                         window = opened.get();
                         return opened;
                       }};
  }};
};

TEST_F(FileWindowTest, ServesAnEditorWhereThereIsNoZenity) {
  const std::string path = std::getenv("PATH");
  putText(folder / "bin/zenity", "#!/bin/sh\necho " + (folder / "a.kvz").string() + "\n");
  fs::permissions(folder / "bin/zenity", fs::perms::owner_all);
  for (const bool isInstalled : {true, false}) {
    setenv("PATH", isInstalled ? (folder / "bin").c_str() : "/none", 1);
    EditorDesk desk;
    fileDialogs()->load(question, answer());
    EXPECT_EQ(desk.boxes.contains("Title"), !isInstalled);
    if (!isInstalled) desk.boxes["Title"]->keyDown({0, keys::kEscape, 0});
    const std::string before = answers;
    for (int i = 0; answers == before && i < 20000; ++i) {
      desk.tick();
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  }
  EXPECT_EQ(answers, "a.kvz none ");
  setenv("PATH", path.c_str(), 1);
}

TEST_F(FileWindowTest, LoadsByDoubleClicksAndByKeys) {
  load();
  EXPECT_EQ(rows(), ".. inner a.kvz b.kvz ");
  click(3);
  click(1);
  click(1, buttons::kLeft | buttons::kDoubleClick);
  EXPECT_EQ(rows(), ".. d.kvz ");
  load();                               // one at a time
  press({keys::kDown, keys::kReturn});  // out again
  EXPECT_EQ(rows(), ".. inner a.kvz b.kvz ");
  press({keys::kPageDown, keys::kUp, keys::kReturn});
  EXPECT_EQ(answers, "none a.kvz ");
  load();
  press({keys::kEscape});
  load();
  window->vanish();
  dialogs.poll();
  load();
  dialogs.cancel(&dialogs);
  dialogs.cancel(this);  // never answered
  dialogs.poll();
  EXPECT_EQ(answers, "none a.kvz none none ");
}

TEST_F(FileWindowTest, SelectsOnlyRowsThatAreSeenAndScrolls) {
  for (int i = 100; i < 140; ++i) putText(folder / (std::to_string(i) + ".kvz"), "");
  load();
  const auto selects = [&](int place) {
    click(place);
    return list().getSelected() != nullptr ? list().getSelected()->name : "";
  };
  const int seen = list().rowsInside();
  EXPECT_EQ(selects(seen), "");  // the strip below the last row
  EXPECT_EQ(selects(seen - 1), list().getRows()[static_cast<std::size_t>(seen - 1)].name);
  const CRect& area = list().getViewSize();
  window->wheel(area.left + 20, area.top + 20, -1.0F);
  EXPECT_EQ(selects(0), "101.kvz");
  window->press(area.right - 5, area.bottom - 5);  // the bar
  window->release(area.right - 5, area.bottom - 5);
  EXPECT_EQ(selects(seen - 1), "b.kvz");
}

TEST_F(FileWindowTest, SavesUnderANameAndAsksBeforeItReplaces) {
  save();
  press({keys::kReturn});  // no name yet
  type("x/\\y");
  press({keys::kBack});
  window->keyDown({0xE9, 0, 0});  // e with an accent
  press({keys::kReturn});
  save();
  click(2);
  window->keyDown({0, keys::kReturn, 0});
  press({keys::kReturn});  // held: no answer to what it asks
  EXPECT_EQ(answers, "x\xC3\xA9 ");
  press({keys::kReturn});
  save();
  type("inner");
  press({keys::kReturn});  // into it
  EXPECT_EQ(rows(), ".. d.kvz ");
  type("n.kvz");
  press({keys::kReturn});
  EXPECT_EQ(answers, "x\xC3\xA9 a.kvz inner/n.kvz ");
}

TEST_F(FileWindowTest, ChoosesTheFolderItIsInOrOneOfItsRows) {
  question.filters.clear();
  dialogs.folder(question, answer());
  EXPECT_EQ(rows(), ".. inner ");
  press({keys::kReturn});
  dialogs.folder(question, answer());
  click(1);
  press({keys::kReturn});
  EXPECT_EQ(answers, ". inner ");
  question.startFolder = "\\no\\such\\folder";
  dialogs.folder(question, answer());
  EXPECT_NE(rows(), "");  // somewhere that there is
}

}  // namespace
}  // namespace zum::test
