// What the system asks a user: the box of messages, file dialogs by a child process, and what
// presets, maps and missing files make of the answers.
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "core/effect_editor.hpp"
#include "platform/message_box.hpp"
#include "platform/zenity_dialogs.hpp"
#include "state/file_chooser.hpp"
#include "state/missing_files.hpp"
#include "support/chooser.hpp"
#include "support/settings_user.hpp"
#include "support/test_host.hpp"
#include "support/told.hpp"

namespace zum::test {
namespace {

using Path = std::optional<std::string>;

/// As a window polls: "caption: text", and a question mark behind a question.
std::string shown(std::optional<Message>& message) {
  message = nextMessage();
  if (!message) return "";
  return message->caption + ": " + message->text + (message->answer ? "?" : "");
}

/// Questions whose answers come into a text, "1" for yes.
struct Asker {
  std::string answers;
  void ask(const char* text) {
    askMessage(this, "Q", text, [this](bool yes) { answers += yes ? '1' : '0'; });
  }
};

TEST(Messages, WithoutAWindowTheyAreTextAndTheLastOneWaits) {
  Asker asker;
  EXPECT_EQ(toldBy([&] {
              showMessage("A", "first");
              showMessage("A", "last");
              asker.ask("sure");
            }),
            "A: first\nA: last\nQ: sure\n");
  EXPECT_EQ(asker.answers, "0");
  attachMessages();
  std::optional<Message> message;
  EXPECT_EQ(shown(message), "A: last");
  messageClosed();
  EXPECT_EQ(shown(message), "");
  detachMessages();
}

TEST(Messages, ASecondBoxIsNeverOpenedWhileOneShows) {
  Asker asker;
  std::optional<Message> message;
  attachMessages();
  attachMessages();  // two windows: either takes it
  EXPECT_EQ(toldBy([&] {
              showMessage("A", "seen");
              asker.ask("while one waits");
              EXPECT_EQ(shown(message), "A: seen");
              showMessage("A", "while one shows");
            }),
            "Q: while one waits\nA: while one shows\n");
  EXPECT_EQ(shown(message), "");
  messageClosed();
  // What an asker says to the answer is seen, whichever the window does first.
  for (const bool closesFirst : {true, false}) {
    askMessage(&asker, "Q", "sure", [](bool yes) { showMessage("A", yes ? "yes" : "no"); });
    EXPECT_EQ(shown(message), "Q: sure?");
    const MessageAnswer answer = message->answer;
    if (closesFirst) messageClosed();
    answer(true);
    if (!closesFirst) messageClosed();
    answer(true);  // once
    EXPECT_EQ(shown(message), "A: yes");
    messageClosed();
  }
  asker.ask("still there");
  detachMessages();
  EXPECT_EQ(toldBy([] { detachMessages(); }), "Q: still there\n");
  EXPECT_EQ(asker.answers, "00");
}

TEST(Messages, AnOwnerThatGoesHearsNothing) {
  Asker asker;
  std::optional<Message> message;
  attachMessages();
  asker.ask("waits");
  cancelMessages(&message);
  EXPECT_EQ(shown(message), "Q: waits?");
  cancelMessages(&asker);
  message->answer(true);
  asker.ask("next");  // the box was closed
  cancelMessages(&asker);
  EXPECT_EQ(shown(message), "");
  detachMessages();
  EXPECT_EQ(asker.answers, "");
}

/// A script in place of the real program.
class ZenityTest : public SettingsTest {
 protected:
  ZenityTest() {
    setenv("PATH", ((folder / "bin").string() + ":" + oldPath).c_str(), 1);
    setenv("FOLDER", folder.string().c_str(), 1);
  }
  ~ZenityTest() override { setenv("PATH", oldPath.c_str(), 1); }
  void putProgram(const std::string& lines) const {
    const fs::path file = folder / "bin/zenity";
    putText(file, "#!/bin/sh\nprintf '%s\\n' \"$@\" >$FOLDER/arguments\n" + lines + "\n");
    fs::permissions(file, fs::perms::owner_all);
  }
  void ask(ZenityDialogs& dialogs) {
    dialogs.load({"", {}, "", this}, [this](Path path) { answers.push_back(std::move(path)); });
  }
  static void settle(ZenityDialogs& dialogs) {
    for (int i = 0; dialogs.isOpen() && i < 20000; ++i) dialogs.poll(), usleep(1000);
  }
  /// The script that wrote its number is gone, and so is its memory in this process.
  bool isGone() const {
    return kill(std::stoi(textIn(folder / "number")), 0) != 0 && waitpid(-1, nullptr, WNOHANG) < 0;
  }

  std::vector<Path> answers;
  const std::string oldPath = std::getenv("PATH");
};

TEST_F(ZenityTest, ItsEndAndItsOutputAreTheAnswer) {
  const struct {
    const char* lines;
    Path answer;
    Path unseen;  // where the host ignores its children, so that no status is left
  } cases[] = {
      {"printf '/a b/\\303\\274.kvz\\n'", "\\a b\\\xC3\xBC.kvz", "\\a b\\\xC3\xBC.kvz"},
      {"sleep 0.3; printf /a; sleep 0.1; echo /b", "\\a\\b", "\\a\\b"},
      {"sleep 4 & echo /a", "\\a", "\\a"},  // what it started holds the pipe open
      {"echo /a; exit 1", {}, "\\a"},
      {"echo /a; kill -9 $$", {}, "\\a"},
      {"echo a", {}, {}},
      {"printf '/a\\\\b'", {}, {}},
      {"printf '/a\\000b'", {}, {}},
      {"while :; do echo /aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa; done", {}, {}},
  };
  for (const bool ignores : {false, true}) {
    (void)std::signal(SIGCHLD, ignores ? SIG_IGN : SIG_DFL);
    for (const auto& c : cases) {
      SCOPED_TRACE(c.lines);
      putProgram("until [ -e $FOLDER/go ]; do sleep 0.01; done\n"s + c.lines);
      answers.clear();
      ZenityDialogs dialogs;
      ask(dialogs);
      for (int i = 0; i < 20; ++i) dialogs.poll();  // which waits for nothing
      EXPECT_TRUE(dialogs.isOpen() && answers.empty());
      putText(folder / "go", "");
      settle(dialogs);
      fs::remove(folder / "go");
      EXPECT_EQ(answers, std::vector<Path>{ignores ? c.unseen : c.answer});
      EXPECT_LT(waitpid(-1, nullptr, WNOHANG), 0);
    }
  }
  (void)std::signal(SIGCHLD, SIG_DFL);
}

TEST_F(ZenityTest, AsksByArgumentsOfAnyBytes) {
  putProgram("exit 1");
  ZenityDialogs dialogs;
  const auto asked = [&](FileOperation operation, const FileQuestion& question) {
    (dialogs.*operation)(question, [](const Path&) {});
    settle(dialogs);
    return textIn(folder / "arguments");
  };
  EXPECT_EQ(asked(&FileDialogs::load,
                  {"-t $(exit) `x` \"'\n\xFF", {{"A", "kvz"}, {"B c", "wav"}}, "\\a $b\\", this}),
            "--file-selection\n--title=-t $(exit) `x` \"'\n\xFF\n--filename=/a $b/\n"
            "--file-filter=A (*.kvz) | *.kvz\n--file-filter=B c (*.wav) | *.wav\n"
            "--file-filter=All files | *\n");
  EXPECT_EQ(asked(&FileDialogs::save, {"t", {}, "\\a", this}),
            "--file-selection\n--save\n--confirm-overwrite\n--title=t\n--filename=/a/\n");
  EXPECT_EQ(asked(&FileDialogs::folder, {"t", {}, "c:\\x", this}),
            "--file-selection\n--directory\n--title=t\n");
}

TEST_F(ZenityTest, TheChildGetsNothingThatIsTheHostsAlone) {
  putProgram(
      "[ -e /proc/$$/fd/77 ] || [ -n \"$LD_PRELOAD\" ] ||\n"
      "grep -q '^SigIgn:.*[1-9a-f].\\{0,6\\}$' /proc/$$/status || echo /clean");
  const int file = dup2(STDERR_FILENO, 77);
  setenv("LD_PRELOAD", "/none.so", 1);
  (void)std::signal(SIGPIPE, SIG_IGN);
  sigset_t term;
  sigemptyset(&term);
  sigaddset(&term, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &term, nullptr);
  ZenityDialogs dialogs;
  ask(dialogs);
  ChildProgram plain;  // a shell sets its mask anew
  EXPECT_TRUE(plain.start("/bin/grep", {"grep", "^SigBlk", "/proc/self/status"}));
  unsetenv("LD_PRELOAD");
  pthread_sigmask(SIG_UNBLOCK, &term, nullptr);
  (void)std::signal(SIGPIPE, SIG_DFL);
  settle(dialogs);
  std::optional<std::string> said;
  while (plain.isRunning() && !said) said = plain.poll();
  EXPECT_EQ(said, "SigBlk:\t0000000000000000\n");
  close(file);
  EXPECT_EQ(answers, std::vector<Path>{"\\clean"});
}

TEST_F(ZenityTest, OneDialogAtATimeThatItsOwnerCloses) {
  for (const char* manners : {"", "trap '' TERM; "}) {
    SCOPED_TRACE(manners);
    putProgram(manners + "echo /a; echo $$ >$FOLDER/number; while :; do sleep 0.05; done"s);
    answers.clear();
    auto dialogs = std::make_unique<ZenityDialogs>();
    const auto start = [&] {
      fs::remove(folder / "number");
      ask(*dialogs);
      for (int i = 0; i < 5000 && textIn(folder / "number").empty(); ++i) usleep(1000);
    };
    start();
    ask(*dialogs);
    dialogs->cancel(nullptr);
    dialogs->poll();
    EXPECT_TRUE(dialogs->isOpen() && answers.size() == 1);  // of the second
    dialogs->cancel(this);
    EXPECT_TRUE(isGone() && !dialogs->isOpen() && answers.size() == 1);
    start();
    dialogs.reset();
    EXPECT_TRUE(isGone());
    EXPECT_EQ(answers, std::vector<Path>(2));
  }
}

TEST_F(ZenityTest, IsFoundOnThePathAlone) {
  setenv("PATH", (":bin:" + (folder / "bin").string()).c_str(), 1);
  const fs::path before = fs::current_path();
  fs::current_path(folder);
  putText(folder / "bin/zenity", "");
  fs::copy_file("/bin/sh", folder / "zenity");  // where the host happens to run
  EXPECT_FALSE(ZenityDialogs::isInstalled());
  ZenityDialogs dialogs;
  ask(dialogs);
  EXPECT_EQ(answers, std::vector<Path>{std::nullopt});
  fs::permissions(folder / "bin/zenity", fs::perms::owner_all);
  EXPECT_TRUE(ZenityDialogs::isInstalled());
  fs::current_path(before);
}

/// Dialogs of this process that a test answers, and a window that shows messages.
class AnswersTest : public SettingsTest {
 protected:
  AnswersTest() {
    initSettings();
    dialogs.waits = true;
    attachMessages();
  }
  ~AnswersTest() override { detachMessages(); }
  void choose(const Path& path) { dialogs.choose(path); }
  /// The box whose text holds this is seen and closed: a message, or a question with its answer.
  static void expectBox(const std::string& part, std::optional<bool> answer = {}) {
    const Message message = nextMessage().value_or(Message{});
    EXPECT_TRUE(has(message.text, part)) << part << ": " << message.text;
    ASSERT_EQ(message.answer != nullptr, answer.has_value()) << part;
    if (answer) message.answer(*answer);
    messageClosed();
  }
  Chooser dialogs;
  const FileQuestion& asked = dialogs.asked;
};

// Else the window of another effect, on a thread of its own, might answer one that goes.
TEST_F(AnswersTest, AnEffectGoesWhileNoWindowIsAtWork) {
  auto host = std::make_unique<TestHost>();
  std::atomic<bool> isGone{false};
  std::unique_lock turn(windowTurn());
  std::jthread main([&] { host.reset(), isGone = true; });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_FALSE(isGone);
  turn.unlock();
  main.join();
  EXPECT_TRUE(isGone);
}

TEST_F(AnswersTest, PresetsGoOnWhereTheUserAnswersUntilTheirEffectGoes) {
  auto host = std::make_unique<TestHost>();
  KvUniClient& client = host->client();
  int saves = 0;
  const auto save = [&](const Path& path) {
    client.savePreset(nullptr, 0, nullptr, false, [&] { ++saves; });
    choose(path);
  };
  writeSettingString(kPresetSavePath, internal("start"));
  host->set(tag::cutoff, 0.875F);
  save(std::nullopt);
  EXPECT_EQ(asked.title + asked.filters[0].extension, "Choose a file to savekvz");
  EXPECT_EQ(asked.startFolder, internal("start"));
  save(std::string(KvFileChooser::kPathBytes, 'x'));
  expectBox("x is too long");
  EXPECT_EQ(saves, 0);
  save(internal("new"));
  EXPECT_TRUE(fs::exists(folder / "new.kvz") && saves == 1);
  EXPECT_EQ(client.slot().name.get(), "new");

  // The ending makes it the name of a file that is there.
  putText(folder / "old.kvz", "old");
  for (const bool yes : {false, true}) {
    save(internal("old"));
    expectBox(internal("old.kvz"), yes);
    EXPECT_EQ(textIn(folder / "old.kvz") == "old", !yes);
  }
  save(internal("old.kvz"));  // the dialog itself has asked
  EXPECT_EQ(saves, 3);

  host->set(tag::cutoff, 0.0F);
  client.loadPresetFile(nullptr, 0, nullptr, false);
  choose(internal("new.kvz"));
  EXPECT_EQ(host->get(tag::cutoff), 0.875F);

  client.saveCcMap(nullptr);
  choose(internal("maps/a.kvm"));  // no such folder: the failure is seen
  EXPECT_EQ(readSettingString(kControllerMapPath), internal("maps/"));
  expectBox("saving cc map to ");
  client.loadCcMap(nullptr);
  EXPECT_EQ(asked.startFolder, internal("maps/"));
  choose(std::nullopt);

  save(internal("old"));
  client.loadPresetFile(nullptr, 0, nullptr, false);
  EXPECT_TRUE(dialogs.pending);
  host.reset();
  EXPECT_FALSE(dialogs.pending || nextMessage());
}

/// An object whose file is not where its chunk says.
struct LostFile final : KvFileObject {
  std::int32_t readChunk(KvChunk* /*chunk*/, bool /*discard*/) ZUM_REALTIME override { return 0; }
  void writeChunk(KvChunk* /*chunk*/) const override {}
  std::string path() const override { return named; }
  bool takeFile(const std::string& path) override {
    taken = path;
    return true;
  }
  std::string named, taken;
};

TEST_F(AnswersTest, OneFoundFolderServesForTheOtherFiles) {
  LostFile files[5];
  for (int i = 0; i < 5; ++i) files[i].named = "\\lost\\"s + "abcde"[i] + ".wav";
  putText(folder / "found/c.wav", "");
  {
    MissingFiles load(this, false);
    for (LostFile& file : files) load.search(file);
  }
  expectBox("a.wav", false);
  expectBox("b.wav", true);
  EXPECT_EQ(asked.filters.size(), 3U);  // of sounds
  files[3].named = "of another preset";
  choose(internal("found/b.wav"));
  expectBox("e.wav", true);
  choose(std::nullopt);
  std::vector<std::string> taken;
  for (const LostFile& file : files) taken.push_back(file.taken);
  EXPECT_EQ(taken, (std::vector{""s, internal("found/b.wav"), internal("found/c.wav"), ""s, ""s}));
  MissingFiles(this, true).search(files[0]);  // in silence
  EXPECT_FALSE(nextMessage());
}

}  // namespace
}  // namespace zum::test
