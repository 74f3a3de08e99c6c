// Power cuts of programs: whatever is killed while it writes leaves the old file or the new one,
// and no trace in the folder once somebody has written there again. `ZUM_KILLS=N` for more than a
// few.
#include <sys/prctl.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <memory>
#include <random>
#include <set>

#include "core/tags.hpp"
#include "support/child_program.hpp"
#include "support/settings_user.hpp"
#include "support/test_host.hpp"

namespace zum::test {
namespace {

const char* const kAsked = std::getenv("ZUM_KILLS");
const int kKills = kAsked != nullptr ? static_cast<int>(std::strtol(kAsked, nullptr, 10)) : 60;

class KillTest : public SettingsTest {
 protected:
  KillTest() {
    initSettings();
    fs::create_directories(folder / "kept");
    host = std::make_unique<TestHost>();
  }

  /// Kills who writes one version after the other, again and again, within the time of some four
  /// of them. `look` may find these two alone.
  void killWriters(const std::function<void(bool)>& write, const std::function<std::string()>& look,
                   int kills = kKills) {
    using Clock = std::chrono::steady_clock;
    std::set<std::string> versions;
    write(false);  // from the second time on a preset has its file's name
    const Clock::time_point start = Clock::now();
    for (const bool second : {true, false}) {
      write(second);
      versions.insert(look());
    }
    std::chrono::duration<double, std::micro> longest = 2 * (Clock::now() - start);
    ASSERT_EQ(versions.size(), 2U);
    const std::set<fs::path> before = everything();
    std::set<std::string> found;
    for (int kill = 0; kill < kills || found.size() < 2; ++kill) {
      ASSERT_LT(kill, 4 * kills) << "no kill came in between";
      const pid_t child = fork();
      if (child == 0) writeForEver(write);
      usleep(static_cast<useconds_t>(longest.count() * chance(random)));
      ::kill(child, SIGKILL);
      waitpid(child, nullptr, 0);
      const std::string left = look();
      ASSERT_TRUE(versions.contains(left)) << kill << ": a mixture";
      found.insert(left);
      if (kill >= kills) longest *= 1.2;  // writing has become slower than it was at the start
    }
    EXPECT_TRUE(comesTrue([&] {  // programs of a writer that was killed may still be dying
      write(false);
      return everything() == before;
    })) << testing::PrintToString(everything());
  }
  /// Until a signal ends it, which the end of the test is, too.
  [[noreturn]] static void writeForEver(const std::function<void(bool)>& write) noexcept {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    for (bool second = true;; second = !second) write(second);
  }
  std::set<fs::path> everything() const {
    std::set<fs::path> all;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) all.insert(entry.path());
    return all;
  }
  std::function<std::string()> bytesOf(const std::string& name) const {
    return [this, name] { return textIn(folder / name); };
  }

  std::unique_ptr<TestHost> host;
  std::minstd_rand random{std::random_device{}()};
  std::uniform_real_distribution<double> chance{0.0, 1.0};
};

TEST_F(KillTest, Presets) {
  ASSERT_TRUE(host->client().setStepColumns(2000));
  const auto write = [this](bool second) {
    host->set(tag::cutoff, second ? 0.25F : 0.75F);
    host->client().steps().name.set(second ? "" : "Rather long a name for a row of steps");
    host->client().savePreset(internal("kept/a.kvz").c_str(), 0, nullptr, false);
  };
  killWriters(write, bytesOf("kept/a.kvz"));
}

TEST_F(KillTest, ControllerMaps) {
  const auto write = [this](bool second) {
    host->client().clearAllBindings();
    for (int i = 0; second && i < 64; ++i) {
      host->client().controllers().controllers[7].append({tag::cutoff, 0});
    }
    host->client().saveCcMap(internal("kept/a.kvm").c_str());
  };
  killWriters(write, bytesOf("kept/a.kvm"));
}

TEST_F(KillTest, Settings) {
  const auto write = [](bool second) {
    writeSettingString("killed", std::string(second ? 200 : 100, second ? 'b' : 'a'));
  };
  killWriters(write, [] {
    const Values all = allValues();
    EXPECT_TRUE(all.contains(kInitialised));
    return all.contains("killed") ? all.at("killed") : "none";
  });
}

TEST_F(KillTest, Recordings) {
  fs::copy_file(ZUM_SOURCE_DIR "/content/Samples/Factory/Bass.wav", folder / "in.wav");
  const auto write = [this](bool second) {
    const std::string in = (folder / "in.wav").string();
    const std::string out = (folder / "kept/out.wav").string();
    ChildProgram program({ZUM_PROGRAM, "render", in, out, "--tail", second ? "1" : "2"},
                         "/dev/null");
    program.wait();
  };
  killWriters(write, bytesOf("kept/out.wav"), kKills / 4);
}

}  // namespace
}  // namespace zum::test
