// End to end checks of the program `zum`: real files through the built command line.
#include <gtest/gtest.h>
#include <sndfile.h>
#include <sys/wait.h>

#include <cmath>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <tuple>
#include <vector>

namespace {

namespace fs = std::filesystem;

struct Outcome {
  int exitCode;
  std::string out, err;
};

class RenderTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "zum-render-XXXXXX").string();
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    folder = pattern;
    makeFile("in.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16);
  }
  void TearDown() override { fs::remove_all(folder); }

  // Runs in the test's folder. The script may go on after the arguments of the program.
  Outcome zum(const std::string& arguments, const std::string& before = "") const {
    const std::string script = "cd '" + folder.string() + "' && ( " + before +
                               "'" ZUM_PROGRAM "' " + arguments + "\n ) >.out 2>.err";
    const int status = std::system(script.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, bytesOf(".out"), bytesOf(".err")};
  }

  std::string bytesOf(const std::string& name) const {
    std::ifstream file(folder / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  // A sine of peak `level`, the same in all channels.
  void makeFile(const std::string& name, int format, int channels = 2, int rate = 44100,
                int frames = 22050, float level = 0.25F) const {
    SF_INFO info{0, rate, channels, format, 0, 0};
    SNDFILE* file = sf_open((folder / name).c_str(), SFM_WRITE, &info);
    ASSERT_NE(file, nullptr) << name;
    for (int i = 0; i < frames; ++i) {
      const std::vector<float> frame(static_cast<std::size_t>(channels),
                                     level * std::sin(0.05F * static_cast<float>(i)));
      sf_writef_float(file, frame.data(), 1);
    }
    sf_close(file);
  }

  SF_INFO infoOf(const std::string& name) const {
    SF_INFO info{};
    sf_close(sf_open((folder / name).c_str(), SFM_READ, &info));
    return info;
  }

  void expectNoTemporary() const {
    for (const auto& entry : fs::directory_iterator(folder)) {
      EXPECT_NE(entry.path().filename().string().rfind(".zum-", 0), 0U) << entry.path();
    }
  }

  fs::path folder;
};

TEST_F(RenderTest, OutputHasTheFormatOfItsExtensionAndTheDepthOfTheInput) {
  const struct {
    const char* output;
    int input, expected, channels, rate;
  } cases[] = {
      {"a.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, SF_FORMAT_WAV | SF_FORMAT_PCM_16, 2, 44100},
      {"b.FLAC", SF_FORMAT_WAV | SF_FORMAT_PCM_16, SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 1, 11050},
      {"c.wav", SF_FORMAT_WAV | SF_FORMAT_FLOAT, SF_FORMAT_WAV | SF_FORMAT_FLOAT, 2, 196000},
      {"d.flac", SF_FORMAT_WAV | SF_FORMAT_DOUBLE, SF_FORMAT_FLAC | SF_FORMAT_PCM_24, 2, 48000},
      {"e.aif", SF_FORMAT_FLAC | SF_FORMAT_PCM_24, SF_FORMAT_AIFF | SF_FORMAT_PCM_24, 1, 96000},
      {"f.caf", SF_FORMAT_OGG | SF_FORMAT_VORBIS, SF_FORMAT_CAF | SF_FORMAT_PCM_24, 2, 44100},
      {"g.ogg", SF_FORMAT_AIFF | SF_FORMAT_PCM_32, SF_FORMAT_OGG | SF_FORMAT_VORBIS, 2, 44100},
      {"h.w64", SF_FORMAT_WAV | SF_FORMAT_PCM_U8, SF_FORMAT_W64 | SF_FORMAT_PCM_U8, 2, 44100},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.output);
    makeFile("source", c.input, c.channels, c.rate);
    const Outcome outcome = zum(std::string("render source ") + c.output + " --tail 0.1 --block 7");
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const SF_INFO info = infoOf(c.output);
    EXPECT_EQ(info.format & (SF_FORMAT_TYPEMASK | SF_FORMAT_SUBMASK), c.expected);
    EXPECT_TRUE(info.channels == 2 && info.samplerate == c.rate);
    EXPECT_EQ(info.frames, 22050 + c.rate / 10);
  }
}

TEST_F(RenderTest, RefusesWithAReasonAndLeavesAllFilesAlone) {
  const std::string before = bytesOf("in.wav");
  makeFile("six.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 6);
  makeFile("fast.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 2, 196001);
  makeFile("empty.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 2, 44100, 0);
  makeFile("whole.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16);
  std::ofstream(folder / "cut.flac") << bytesOf("whole.flac").substr(0, 4000);
  std::ofstream(folder / "text.wav") << "no music";
  fs::create_symlink("in.wav", folder / "soft.wav");
  fs::create_hard_link(folder / "in.wav", folder / "hard.wav");
  fs::create_symlink("/dev/full", folder / "full.wav");
  fs::create_directory(folder / "folder.wav");
  const std::tuple<const char*, int, const char*> cases[] = {
      {"render six.wav o.wav", 1, "6 channels; mix it down"},
      {"render fast.wav o.wav", 1, "resample it first"},
      {"render empty.wav o.wav", 1, "no sound in it"},
      {"render cut.flac o.wav", 1, "breaks off"},
      {"render text.wav o.wav", 1, "give a music file"},
      {"render folder.wav o.wav", 1, "it is a folder"},
      {"render in.wav nowhere/o.wav", 1, "choose a folder"},
      {"render in.wav full.wav", 1, "not an ordinary file"},
      {"render soft.wav hard.wav", 2, "the input itself"},
      {"render in.wav o.opus", 1, "at 44100 Hz"},
      {"render in.wav o.xyz", 2, ".flac, "},
      {"render in.wav", 2, "zum render --help"},
      {"render in.wav o.wav --tail -1", 2, "from 0 to 3600"},
      {"render in.wav o.wav --tempo nan", 2, "from 45 to 500"},
      {"render in.wav o.wav --set 0=nan", 2, "from 0 to 1"},
      {"render in.wav o.wav --set 68=0.5", 2, "zum parameters"},
      {"render in.wav o.wav --set TextEdit=0.5", 2, "60 or 61"},
      {"rendr in.wav o.wav", 2, "zum --help"},
      {"", 2, "zum --help"},
      {"parameters >/dev/full", 1, "standard output"},
  };
  for (const auto& [arguments, exitCode, reason] : cases) {
    SCOPED_TRACE(arguments);
    const Outcome outcome = zum(arguments);
    EXPECT_EQ(outcome.exitCode, exitCode);
    EXPECT_EQ(outcome.err.rfind("zum: ", 0), 0U) << outcome.err;
    EXPECT_NE(outcome.err.find(reason), std::string::npos) << outcome.err;
    EXPECT_FALSE(fs::exists(folder / "o.wav"));
    expectNoTemporary();
    EXPECT_TRUE(bytesOf("in.wav") == before);
  }
}

TEST_F(RenderTest, AnEarlierFileStaysUntilTheNewOneIsWhole) {
  const std::string killed =
      " --tail 3600 & job=$!; until ls .zum-*; do kill -0 $job || exit 0; done; kill $job; wait "
      "$job";
  for (const char* link : {"o.wav", "o.flac", "o.ogg"}) {
    SCOPED_TRACE(link);
    std::ofstream(folder / "earlier") << "earlier";
    fs::create_symlink("earlier", folder / link);
    const std::string render = std::string("render in.wav ").append(link);
    EXPECT_EQ(zum(render + " --tail 60", "ulimit -f 4; ").exitCode, 1);
    EXPECT_EQ(zum(render + killed).exitCode, 128 + SIGTERM);
    EXPECT_TRUE(bytesOf("earlier") == "earlier");
    expectNoTemporary();
    EXPECT_EQ(zum(render).exitCode, 0);
    EXPECT_TRUE(fs::is_symlink(folder / link));
    EXPECT_EQ(infoOf("earlier").frames, 22050);
  }
}

TEST_F(RenderTest, SettingsReachTheEffectByTagAndByName) {
  EXPECT_NE(zum("parameters").out.find("\n  1  Master "), std::string::npos);
  std::vector<std::string> results;
  for (const char* settings : {"", "--set 1=0.2", "--set mASTER=0.2", "--set 1=1 --set 1=0.6099"}) {
    zum(std::string("render in.wav o.wav ").append(settings));
    results.push_back(bytesOf("o.wav"));
  }
  EXPECT_TRUE(results[1] != results[0] && results[1] == results[2]);
  EXPECT_TRUE(results[3] == results[0]);
}

TEST_F(RenderTest, TellsLengthPeakAndDamage) {
  const struct {
    float level;
    const char *output, *summary, *warning;
  } cases[] = {
      {64.0F, "o.wav", "o.wav: 0.50 s, ", ""},
      {0.5F, "o.flac", "times faster than real time, peak -", ""},
      {64.0F, "o.flac", "o.flac: 0.50 s, ", "o.flac clips in "},
      {NAN, "o.wav", "o.wav: 0.50 s, ", "no finite numbers"},
  };
  for (const auto& c : cases) {
    makeFile("float.wav", SF_FORMAT_WAV | SF_FORMAT_FLOAT, 1, 44100, 22050, c.level);
    const Outcome told = zum(std::string("render float.wav ") + c.output);
    EXPECT_NE(told.out.find(c.summary), std::string::npos) << told.out;
    EXPECT_EQ(zum("render --quiet float.wav o.wav").out, "");
    EXPECT_EQ(told.err.empty(), *c.warning == '\0') << told.err;
    EXPECT_NE(told.err.find(c.warning), std::string::npos) << told.err;
  }
}

}  // namespace
