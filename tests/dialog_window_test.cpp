// The boxes and dialogs that the program draws itself, off the screen, opened and polled by an
// editor as in a host.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>

#include "platform/file_dialogs.hpp"
#include "platform/offscreen_window.hpp"
#include "toolkit/dialogs/own_file_dialogs.hpp"
#include "toolkit/dialogs/wrapped_text.hpp"
#include "toolkit/editor_base.hpp"

namespace zum::test {
namespace {

namespace fs = std::filesystem;

constexpr int kEditorWidth = 50;

/// Windows by their titles; the editor's by none.
class Screen {
 public:
  CFrame::WindowOpener opener() {
    return [this](const WindowRequest& request, WindowEvents& events) {
      auto opened = std::make_unique<OffscreenWindow>(request, events);
      windows[request.width == kEditorWidth ? "" : request.title] = opened.get();
      belongsTo = request.inFrontOf;
      return opened;
    };
  }
  OffscreenWindow& operator[](const std::string& title) { return *windows.at(title); }

  std::map<std::string, OffscreenWindow*> windows;
  std::uintptr_t belongsTo = 0;
};

class Editor final : public KvEditorBase {
 public:
  Editor(GroupMask& mask, Screen& screen)
      : KvEditorBase({0, 0, kEditorWidth, 40}, mask,
                     [](int) { return std::span<const std::byte>(); }),
        opener(screen.opener()) {}
  bool open(void* /*parent*/) override { return KvEditorBase::open(nullptr, nullptr, opener); }
  bool keyPressed(const WindowKey& /*key*/) override { return true; }

 private:
  CFrame::WindowOpener opener;
};

WindowKey keyOf(std::uint8_t virt) { return {0, virt, 0}; }

TEST(MessageWindow, IsAnsweredInItsOwnWindowAndBlocksTheOthers) {
  GroupMask mask;
  Screen screen;
  Editor editor(mask, screen);
  editor.open(nullptr);
  std::string answers;
  const auto ask = [&] {
    askMessage(&editor, "ZUM", "Really?", [&](bool yes) { answers += yes ? 'y' : 'n'; });
    editor.idle();
    return &screen["ZUM"];
  };
  const auto type = [&](OffscreenWindow& window, std::uint8_t key) {
    window.keyDown(keyOf(key));
    editor.idle();
  };

  OffscreenWindow* box = ask();
  EXPECT_EQ(screen.belongsTo, 1U);
  type(screen[""], keys::kReturn);  // neither an answer, nor for the editor
  EXPECT_EQ(answers, "");
  EXPECT_EQ(screen[""].hostKeys().size(), 1U);
  type(*box, keys::kReturn);
  type(*ask(), keys::kEscape);
  type(screen[""], keys::kHome);  // which takes keys again
  EXPECT_EQ(screen[""].hostKeys().size(), 1U);
  EXPECT_EQ(answers, "yn");

  // OK stands left of Cancel, and is pressed by a release on it.
  for (const int x : {400 - 24 - 135, 400 - 12 - 45}) {
    box = ask();
    const int y = 18 + 16 + 54 - 24;
    box->press(x, y);
    box->release(0, 0);
    editor.idle();
    box->press(x, y);
    box->release(x, y);
    editor.idle();
  }
  EXPECT_EQ(answers, "ynyn");
  ask()->vanish();
  editor.idle();
  EXPECT_EQ(answers, "ynynn");
  showMessage("ZUM", "Only told.");
  editor.idle();
  type(screen["ZUM"], keys::kEscape);
  ask();
  editor.close();
  EXPECT_EQ(answers, "ynynnn");
  EXPECT_FALSE(WindowServices::get().isMessageOpen());
}

TEST(WrappedText, BreaksBetweenWordsAndInsideOfLongOnes) {
  const Held<CFontDesc> font(new CFontDesc("Arial", 12));
  const auto lines =
      wrapText("one two\n\nthree " + std::string(60, 'x') + "\xC3\xA9", *font.get(), 120);
  ASSERT_GT(lines.size(), 5U);
  EXPECT_EQ(lines[0], "one two");
  EXPECT_EQ(lines[1], "");
  EXPECT_EQ(lines[2], "three");
  std::string word;
  for (std::size_t i = 3; i < lines.size(); ++i) word += lines[i];
  EXPECT_EQ(word, std::string(60, 'x') + "\xC3\xA9");
  std::string many;
  for (std::size_t i = 0; i < kMostLines; ++i) many += "x\n";
  EXPECT_EQ(wrapText(many + "\xFFy", *font.get(), 120).back(), "x\xE2\x80\xA6");
}

class FileWindowTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = (fs::temp_directory_path() / "zum-files-XXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    folder = name;
    fs::create_directories(folder / "inner");
    for (const char* file : {"b.kvz", "a.kvz", "note.txt", ".c.kvz", "inner/d.kvz"}) {
      std::ofstream(folder / file) << file;
    }
    question = {"Title", {{"Preset file", "kvz"}}, toInternalPath(folder.string()), this};
  }
  void TearDown() override { fs::remove_all(folder); }

  FileAnswer answer() {
    return [this](const std::optional<std::string>& path) {
      answers.push_back(path ? fs::relative(toSystemPath(*path), folder).string() : "none");
    };
  }
  void type(const std::string& text) {
    for (const char letter : text) screen["Title"].keyDown({letter, 0, 0});
    dialogs.poll();
  }
  void press(std::uint8_t key) {
    screen["Title"].keyDown(keyOf(key));
    screen["Title"].keyUp(keyOf(key));
    for (int i = 0; i < 3; ++i) dialogs.poll();
  }
  void click(int row, int word = buttons::kLeft) {
    const CRect& list = dialogs.getWindow()->getList().getViewSize();
    const int y = list.top + 1 + row * FileList::kRowHeight + 9;
    screen["Title"].press(list.left + 20, y, word);
    screen["Title"].release(list.left + 20, y);
    dialogs.poll();
  }
  std::string rows() {
    std::string names;
    for (const FolderEntry& row : dialogs.getWindow()->getList().getRows()) names += row.name + " ";
    return names;
  }

  Screen screen;
  fs::path folder;
  FileQuestion question;
  std::vector<std::string> answers;
  OwnFileDialogs dialogs{[this] { return DialogPlace{0, screen.opener()}; }};
};

TEST_F(FileWindowTest, LoadsByDoubleClicksAndByKeys) {
  dialogs.load(question, answer());
  EXPECT_EQ(rows(), ".. inner a.kvz b.kvz ");
  click(3);
  click(1);
  click(1, buttons::kLeft | buttons::kDoubleClick);
  EXPECT_EQ(rows(), ".. d.kvz ");
  dialogs.load(question, answer());  // one at a time
  press(keys::kDown);
  press(keys::kReturn);  // out again
  EXPECT_EQ(rows(), ".. inner a.kvz b.kvz ");
  press(keys::kPageDown);
  press(keys::kUp);
  press(keys::kReturn);
  EXPECT_EQ(answers, (std::vector<std::string>{"none", "a.kvz"}));

  dialogs.load(question, answer());
  press(keys::kEscape);
  dialogs.load(question, answer());
  screen["Title"].vanish();
  dialogs.poll();
  dialogs.load(question, answer());
  dialogs.cancel(&dialogs);
  dialogs.cancel(this);  // never answered
  dialogs.poll();
  EXPECT_EQ(answers.size(), 4U);
  EXPECT_EQ(answers.back(), "none");
}

TEST_F(FileWindowTest, SelectsOnlyRowsThatAreSeen) {
  for (int i = 0; i < 40; ++i) std::ofstream(folder / (std::to_string(i) + ".kvz")) << i;
  dialogs.load(question, answer());
  const FileList& list = dialogs.getWindow()->getList();
  const CRect& area = list.getViewSize();
  for (const bool seen : {false, true}) {  // the strip below the last row, and that
    const int row = list.rowsInside() - (seen ? 1 : 0);
    screen["Title"].press(area.left + 20, area.top + 1 + row * FileList::kRowHeight);
    dialogs.poll();
    EXPECT_EQ(list.getSelected() != nullptr, seen);
  }
}

TEST_F(FileWindowTest, SavesUnderANameAndAsksBeforeItReplaces) {
  dialogs.save(question, answer());
  press(keys::kReturn);  // no name yet
  type("x/\\y");
  press(keys::kBack);
  screen["Title"].keyDown({0xE9, 0, 0});  // e with an accent
  press(keys::kReturn);
  EXPECT_EQ(answers.back(), "x\xC3\xA9");

  dialogs.save(question, answer());
  click(2);
  screen["Title"].keyDown(keyOf(keys::kReturn));
  press(keys::kReturn);  // held: no answer to what it asks
  EXPECT_EQ(answers.size(), 1U);
  press(keys::kReturn);
  EXPECT_EQ(answers.back(), "a.kvz");

  dialogs.save(question, answer());
  type("inner");
  press(keys::kReturn);  // into it
  EXPECT_EQ(rows(), ".. d.kvz ");
  type("n.kvz");
  press(keys::kReturn);
  EXPECT_EQ(answers.back(), "inner/n.kvz");
}

TEST_F(FileWindowTest, ChoosesTheFolderItIsInOrOneOfItsRows) {
  question.filters.clear();
  dialogs.folder(question, answer());
  EXPECT_EQ(rows(), ".. inner ");
  press(keys::kReturn);
  EXPECT_EQ(answers.back(), ".");
  dialogs.folder(question, answer());
  click(1);
  press(keys::kReturn);
  EXPECT_EQ(answers.back(), "inner");
  question.startFolder = "\\no\\such\\folder";
  dialogs.folder(question, answer());
  EXPECT_NE(rows(), "");  // somewhere that there is
}

}  // namespace
}  // namespace zum::test
