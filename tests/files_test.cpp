// Saving of files: through links, under the user's mask, and where little may be written.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <ctime>
#include <optional>
#include <string>
#include <utility>

#include "platform/files.hpp"
#include "state/fileio.hpp"
#include "support/settings_user.hpp"

namespace zum::test {
namespace {

/// A folder that goes with the test.
class FilesTest : public SettingsTest {
 protected:
  bool write(const std::string& name, const std::string& text) const {
    return KvFileio::writeFile(internal(name).c_str(), text.data(), text.size()) != 0;
  }
  std::string text(const std::string& name) const { return textIn(folder / name); }
  std::ptrdiff_t entries() const {
    return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
  }
};

TEST_F(FilesTest, LinksMasksAndModesHold) {
  const mode_t before = umask(027);
  const std::string longName(255, 'n');
  EXPECT_TRUE(write("new", "a") && write(longName, "b"));
  umask(before);
  EXPECT_EQ(fs::status(folder / "new").permissions(), fs::perms(0640));
  EXPECT_EQ(text(longName), "b");
  fs::permissions(folder / "new", fs::perms(0604));
  fs::create_directory(folder / "below");
  fs::create_symlink("../new", folder / "below/link");
  fs::create_symlink("there", folder / "below/dangling");
  fs::create_symlink("below/dangling", folder / "chain");
  fs::create_symlink("loop", folder / "loop");
  EXPECT_TRUE(write("below/link", "c") && write("chain", "d"));
  EXPECT_EQ(text("new") + text("below/there"), "cd");
  EXPECT_EQ(fs::status(folder / "new").permissions(), fs::perms(0604));
  EXPECT_TRUE(fs::is_symlink(folder / "below/link") && fs::is_symlink(folder / "chain"));
  EXPECT_FALSE(write("loop", "e") || write("none/new", "e") || write("below", "e"));
  EXPECT_EQ(entries(), 5);  // no temporary file among them
}

TEST_F(FilesTest, AFileThatMayBeWrittenIsSavedWhateverItsFolder) {
  for (const unsigned folderMode : {0555U, 01777U}) {  // no new file; no file of another's replaced
    putText(folder / "old", "old");
    putText(folder / "shut", "old");
    fs::permissions(folder / "old", fs::perms(0666));
    fs::permissions(folder / "shut", fs::perms(0444));
    fs::permissions(folder, fs::perms(folderMode));
    EXPECT_TRUE(inProcesses(1, [&](int) {
      if (getuid() == 0 && setuid(54321) != 0) return false;  // a number that nobody has
      return write("old", "longer") && text("old") == "longer" && write("old", "new") &&
             !write("shut", "new");
    }));
    EXPECT_EQ(text("old") + text("shut"), "newold");
    EXPECT_EQ(entries(), 2);
    fs::permissions(folder, fs::perms(0755));
  }
}

TEST_F(FilesTest, StampsTellOfMomentsOfAnyYear) {
  constexpr std::time_t kMost = 1LL << 34U;  // 2514: more than some file systems hold
  const std::time_t now = std::time(nullptr);
  putText(folder / "file", "text");
  std::optional<FileStamp> before;
  for (const auto& [time, settled] :
       {std::pair{now - 60, true}, {now, false}, {now + 60, false}, {kMost, false}, {-60L, true}}) {
    const timespec both[] = {{time, 0}, {time, 7}};
    ASSERT_EQ(utimensat(AT_FDCWD, (folder / "file").c_str(), both, 0), 0);
    const auto stamp = fileStamp(internal("file"));
    ASSERT_TRUE(stamp);
    EXPECT_NE(stamp, before) << time;
    EXPECT_EQ(isSettled(*stamp), settled) << time;
    before = stamp;
  }
  EXPECT_FALSE(fileStamp(internal("none")) || fileStamp(internal("")));
}

int openToOthers = 0;  // descriptors that a program started now would get

void countDescriptors(int /*signal*/) {
  const int interrupted = errno;
  for (int file = 3; file < 64; ++file) {
    const int flags = fcntl(file, F_GETFD);
    openToOthers += flags != -1 && (flags & FD_CLOEXEC) == 0 ? 1 : 0;
  }
  errno = interrupted;
}

TEST_F(FilesTest, ProgramsThatAreStartedGetNoneOfThem) {
  putText(folder / "old", "old");
  EXPECT_TRUE(inProcesses(1, [&](int) {
    for (int file = 3; file < 64; ++file) close(file);
    const KvStreamableFile open(internal("old"), "rb");
    (void)std::signal(SIGXFSZ, countDescriptors);  // in the middle of a write
    const rlimit none{0, 0};
    setrlimit(RLIMIT_FSIZE, &none);
    const bool failed = !write("old", "new") && text("old") == "old" && entries() == 1;
    (void)std::raise(SIGXFSZ);
    return open.stream() != nullptr && failed && openToOthers == 0;
  }));
}

}  // namespace
}  // namespace zum::test
