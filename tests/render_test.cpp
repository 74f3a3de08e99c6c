// End to end checks of the program `zum`: real files through the built command line.
#include <sys/stat.h>

#include <cmath>
#include <csignal>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "support/settings_user.hpp"
#include "support/sound_file.hpp"

namespace zum::test {
namespace {

constexpr const char* kTraceHeader = "time,seq_out,lfo_out,ef_out,cutoff_hz,resonance,meter";
constexpr int kWave = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
constexpr int kFrames = 22050;

class RenderTest : public SettingsTest {
 protected:
  RenderTest() { makeFile("in.wav", kWave); }

  // A sine of peak `level`, the same in all channels.
  void makeFile(const std::string& name, int format, int channels = 2, int rate = 44100,
                int frames = kFrames, float level = 0.25F) const {
    std::vector<float> samples;
    for (int i = 0; i < frames; ++i) {
      const float sample = level * std::sin(0.05F * static_cast<float>(i));
      samples.insert(samples.end(), static_cast<std::size_t>(channels), sample);
    }
    writeSound((folder / name).string(), format, channels, rate, samples);
  }
  std::string bytesOf(const std::string& name) const { return textIn(folder / name); }
  SF_INFO infoOf(const std::string& name) const { return readSound((folder / name).string()).info; }
  // The sound of a render of the same input with `options`.
  std::string sound(const std::string& options) const {
    const auto [exitCode, told] = run("render in.wav sound.wav " + options);
    EXPECT_EQ(exitCode, 0) << told;
    return bytesOf("sound.wav");
  }

  // A column of the trace of a render with `options`.
  std::vector<double> trace(const std::string& options, std::size_t column) const {
    sound("--trace t.csv " + options);
    std::istringstream rows(bytesOf("t.csv"));
    std::string line;
    EXPECT_TRUE(std::getline(rows, line) && line == kTraceHeader);
    std::vector<double> values;
    while (std::getline(rows, line)) {
      std::istringstream cells(line);
      for (std::size_t i = 0; i <= column; ++i) std::getline(cells, line, ',');
      values.push_back(std::stod(line));
    }
    return values;
  }

  bool hasTemporary() const { return shell("ls .zum-*").first == 0; }
};

TEST_F(RenderTest, OutputHasTheFormatOfItsExtensionAndTheDepthOfTheInput) {
  const struct {
    const char* output;
    int input, expected, channels, rate;
  } cases[] = {
      {"a.wav", kWave, kWave, 2, 44100},
      {"b.FLAC", kWave, SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 1, 11050},
      {"c.wav", SF_FORMAT_WAV | SF_FORMAT_FLOAT, SF_FORMAT_WAV | SF_FORMAT_FLOAT, 2, 196000},
      {"d.flac", SF_FORMAT_WAV | SF_FORMAT_DOUBLE, SF_FORMAT_FLAC | SF_FORMAT_PCM_24, 2, 48000},
      {"f.caf", SF_FORMAT_OGG | SF_FORMAT_VORBIS, SF_FORMAT_CAF | SF_FORMAT_PCM_24, 2, 44100},
      {"g.ogg", SF_FORMAT_AIFF | SF_FORMAT_PCM_32, SF_FORMAT_OGG | SF_FORMAT_VORBIS, 2, 44100},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.output);
    makeFile("source", c.input, c.channels, c.rate);
    const auto [exitCode, told] = run("render source "s + c.output + " --tail 0.1 --block 7");
    ASSERT_EQ(exitCode, 0) << told;
    const SF_INFO info = infoOf(c.output);
    EXPECT_EQ(info.format & (SF_FORMAT_TYPEMASK | SF_FORMAT_SUBMASK), c.expected);
    EXPECT_TRUE(info.channels == 2 && info.samplerate == c.rate);
    EXPECT_EQ(info.frames, kFrames + c.rate / 10);
  }
}

TEST_F(RenderTest, RefusesWithAReasonAndLeavesAllFilesAlone) {
  const std::string before = bytesOf("in.wav");
  makeFile("six.wav", kWave, 6);
  makeFile("fast.wav", kWave, 2, 196001);
  makeFile("empty.wav", kWave, 2, 44100, 0);
  makeFile("whole.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16);
  std::string pressures = "\0\xD0\1"s + std::string(6U << 20U, '\1');  // two bytes each
  const std::pair<const char*, std::string> files[] = {
      {"cut.flac", bytesOf("whole.flac").substr(0, 4000)},
      {"text.wav", "no music"},
      {"falling.txt", "1 0\n1 1\n"},
      {"odd.txt", "0 0, 1"},
      {"high.txt", "0 1.5"},
      {"wide.txt", std::string(16385, '0')},
      {"long.mid", midiFile(pressures)},
      {"short.csv", kTraceHeader + "\n0,1\n"s},
  };
  for (const auto& [name, bytes] : files) putText(folder / name, bytes);
  mkfifo((folder / "pipe").c_str(), 0600);
  fs::create_symlink("in.wav", folder / "soft.wav");
  fs::create_hard_link(folder / "in.wav", folder / "hard.wav");
  fs::create_symlink("/dev/full", folder / "full.wav");
  fs::create_directory(folder / "folder.wav");
  expectTold(
      "zum: ",
      {
          {"render six.wav o.wav", 1, "6 channels; mix it down"},
          {"render fast.wav o.wav", 1, "resample it first"},
          {"render empty.wav o.wav", 1, "no sound in it"},
          {"render cut.flac o.wav", 1, "breaks off"},
          {"render text.wav o.wav", 1, "give a music file"},
          {"render folder.wav o.wav", 1, "it is a folder"},
#ifdef ZUM_HAS_MEMORY_LIMIT  // a sanitizer has all of its memory mapped beforehand
          {"render in.wav o.wav --midi long.mid", 1, "takes more than 256 MB of memory; cut it"},
#endif
          {"render pipe o.wav", 1, "cannot read pipe: it is a pipe"},
          {"render in.wav o.wav --midi pipe", 1, "it is a pipe"},
          {"render in.wav o.wav --curve Cutoff=/dev/zero", 1, "save what comes out of it"},
          {"render in.wav o.wav --curve Cutoff=wide.txt", 1, "line 1: the line has more than"},
          {"render $(printf 'x\\033\\302\\233\\342\\200\\256\\377\\303\\251') o.wav", 1,
           "cannot read x\\x1b\\u009b\\u202e\\xff\xC3\xA9: "},
          {"render in.wav ' '", 2, "OUT: \" \" says nothing; run zum render --help"},
          {"render in.wav o.wav --tail ''", 2, "\"\" is not a number from 0"},
          {"render in.wav nowhere/o.wav", 1, "choose a folder"},
          {"render in.wav full.wav", 1, "not an ordinary file"},
          {"render soft.wav hard.wav", 2, "output would overwrite soft.wav"},
          {"render in.wav o.opus", 1, "at 44100 Hz"},
          {"render in.wav o.xyz", 2, ".flac, "},
          {"render in.wav o.wav --tempo nan", 2, "from 45 to 500"},
          {"render in.wav o.wav --set 0=nan", 2, "from 0 to 1"},
          {"render in.wav o.wav --set 68=0.5", 2, "zum parameters"},
          {"render in.wav o.wav --steps 0,1.5", 2, "the step \"1.5\""},
          {"render in.wav o.wav --steps 0,0,0,0,0,0,0,0,0", 2, "there are 9 steps"},
          {"render in.wav o.wav --seq-mode sideways", 2, "ping-pong, inverse"},
          {"render in.wav o.wav --play --stopped", 2, "excludes"},
          {"render in.wav o.wav --curve Cutoff=falling.txt", 1, "falling.txt, line 2: the time 1"},
          {"render in.wav o.wav --curve Cutoff=odd.txt", 1, "odd.txt, line 1: a time or its value"},
          {"render in.wav o.wav --curve Cutoff=high.txt", 1, "line 1: \"1.5\" is not a value"},
          {"render in.wav o.wav --trace ./o.wav", 2, "trace would overwrite o.wav"},
          {"plot odd.txt o.png", 1, "odd.txt, line 1: this is no trace"},
          {"plot short.csv o.png", 1, "short.csv, line 2: there are 2 numbers"},
          {"rendr in.wav o.wav", 2, "zum --help"},
          {"render in.wav o.wav --curve 'Cutoff= '", 2, "curve \"Cutoff= \"; write NAME=FILE"},
          {"", 2, "zum --help"},
          {"parameters >/dev/full", 1, "standard output"},
      });
  EXPECT_FALSE(fs::exists(folder / "o.wav"));
  EXPECT_TRUE(bytesOf("in.wav") == before);
  EXPECT_FALSE(hasTemporary());
}

TEST_F(RenderTest, ASideChainIsHeardInPlaceOfTheInput) {
  makeFile("silent.wav", kWave, 1, 44100, 100, 0.0F);  // and silence behind it
  makeFile("other.wav", kWave, 2, 48000);
  const std::string follows = "--set CutoffEFAmt=1 --set EF_Gain=1 ";
  const std::string plain = sound(follows);
  EXPECT_EQ(sound(follows + "--sidechain in.wav"), plain);
  EXPECT_NE(sound(follows + "--sidechain silent.wav"), plain);
  const auto [exitCode, told] = run("render in.wav sound.wav --sidechain other.wav");
  EXPECT_EQ(exitCode, 1);
  EXPECT_NE(told.find("the side-chain has 48000 Hz and the input 44100 Hz; bring one"),
            std::string::npos)
      << told;
}

TEST_F(RenderTest, AnEarlierFileStaysUntilTheNewOneIsWhole) {
  const auto killedBy = [](int signal) {
    return " --tail 3600 & job=$!; until ls .zum-*; do kill -0 $job || exit 0; done; kill -" +
           std::to_string(signal) + " $job; wait $job";
  };
  for (const std::string link : {"o.wav", "o.flac", "o.ogg"}) {
    SCOPED_TRACE(link);
    putText(folder / "earlier", "earlier");
    fs::create_symlink("earlier", folder / link);
    EXPECT_EQ(shell("ulimit -f 4; " + kProgram + "render in.wav " + link + " --tail 60").first, 1);
    for (const int signal : {SIGTERM, SIGPIPE}) {
      const std::string render = kProgram + "render in.wav " + link + " --trace t.csv";
      EXPECT_EQ(shell(render + killedBy(signal)).first, 128 + signal);
    }
    EXPECT_TRUE(bytesOf("earlier") == "earlier");
    EXPECT_FALSE(hasTemporary());
    EXPECT_EQ(run("render in.wav " + link).first, 0);
    EXPECT_TRUE(fs::is_symlink(folder / link));
    EXPECT_EQ(infoOf("earlier").frames, kFrames);
  }
}

TEST_F(RenderTest, WhatTheStarterClosedOrIgnoredDoesNoHarm) {
  std::string flood = "\0\xC0\5\0\x90\x3C\x40"s;
  for (int i = 0; i < 0x3FFE; ++i) flood += "\0\x3C\x40"s;
  putText(folder / "flood.mid", midiFile(flood));
  const std::string told = run("render in.wav told.wav --midi flood.mid").second;
  EXPECT_NE(told.find(" s one block has 16384 MIDI messages"), std::string::npos) << told;
  EXPECT_EQ(shell(kProgram + "render in.wav o.wav --midi flood.mid <&- 2>&-").first, 0);
  EXPECT_TRUE(bytesOf("o.wav") == bytesOf("told.wav"));
  expectTold("", {{"parameters >&-", 1, "standard output"}, {"parameters", 0, "\n  1  Master "}});
  const auto ignored =
      shell("env --ignore-signal=CHLD " + kProgram + "render in.wav x.wav --midi in.wav");
  EXPECT_NE(ignored.second.find("no standard MIDI file"), std::string::npos) << ignored.second;
  EXPECT_EQ(
      shell("( sleep 0.3; " + kProgram + "parameters; echo $? >code ) | true; exit $(cat code)"),
      std::pair(128 + SIGPIPE, ""s));
}

TEST_F(RenderTest, TellsLengthPeakAndDamage) {
  const struct {
    float level;
    const char *output, *summary, *warning;
  } cases[] = {
      {64.0F, "o.wav", " times faster than real time, peak ", ""},
      {64.0F, "o.flac", "o.flac: 0.50 s, ", "o.flac clips in "},
      {NAN, "o.wav", " real time, silent",
       "float.wav has 22050 samples that are no finite numbers"},
  };
  for (const auto& c : cases) {
    makeFile("float.wav", SF_FORMAT_WAV | SF_FORMAT_FLOAT, 1, 44100, kFrames, c.level);
    const std::string told = run("render float.wav "s + c.output + " 2>warnings").second;
    const std::string warnings = bytesOf("warnings");
    EXPECT_NE(told.find(c.summary), std::string::npos) << told;
    EXPECT_EQ(warnings.empty(), *c.warning == '\0') << warnings;
    EXPECT_NE(warnings.find(c.warning), std::string::npos) << warnings;
  }
  EXPECT_EQ(run("render --quiet in.wav o.wav"), std::pair(0, ""s));
}

TEST_F(RenderTest, ATraceHasARowPerControlPassAndFollowsTheModulators) {
  const std::string moving =
      "--set CutoffSeqAmt=0.8 --set Stepseq_Tempo=0.8 --seq-mode forward --play ";
  EXPECT_EQ(trace("", 0).size(), std::size_t{(kFrames + 15) / 16});
  const auto levels = trace(moving + "--steps 0.25,0.75,0.5", 1);
  const std::set<double> heard(levels.begin() + 32, levels.end());
  EXPECT_EQ(heard, (std::set<double>{0.25, 0.5, 0.75}));
  // Without position in the sound, blocks of any size, and so the trace, change nothing.
  EXPECT_TRUE(sound(moving + "--steps 0,1 --trace t.csv") == sound(moving + "--steps 0,1"));
  EXPECT_FALSE(sound(moving + "--steps 0,1") == sound(moving + "--steps 1,0"));
}

TEST_F(RenderTest, TheTransportMovesASynchronousLfo) {
  const std::string synchronous = "--set LFO_Style=1 --set CutoffLFOAmt=0.9 --set LFO_Rate=0.4 ";
  const std::string moving = sound(synchronous + "--play");
  EXPECT_FALSE(sound(synchronous + "--stopped") == moving);
  EXPECT_FALSE(sound(synchronous + "--play --tempo 90") == moving);
}

TEST_F(RenderTest, ACurveMovesItsParameterAlongLines) {
  putText(folder / "rise.txt", "# up\r\n0.1; 0.2  # from\n\n 0.3,0.6\n");
  const auto resonance = trace("--curve rEsonance=rise.txt", 5);
  const auto near = [&](double seconds, double value) {
    return std::fabs(resonance.at(static_cast<std::size_t>(seconds * 44100.0 / 16.0)) - value) <
           2e-3;
  };
  EXPECT_TRUE(near(0.05, 0.2) && near(0.2, 0.4) && near(0.45, 0.6));
  // Of what is set twice, by tag or by name, the last value counts.
  const std::string low = sound("--set rEsonance=1 --set 4=0.2");
  EXPECT_TRUE(sound("--set 4=1 --set rEsonance=0.2") == low);
  EXPECT_FALSE(sound("--curve 4=rise.txt") == low);
}

TEST_F(RenderTest, APlotIsAPictureOfTheTrace) {
  trace("", 0);
  for (const char* options : {"--from 0.1 --to 0.2 --title Stretch", "--to 0.001"}) {
    EXPECT_EQ(run("plot t.csv o.png "s + options), std::pair(0, ""s));
    // Signature, then width and height of the first chunk.
    EXPECT_EQ(bytesOf("o.png").substr(0, 24),
              "\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\x04\xb0\0\0\x03\x20"s);
    fs::remove(folder / "o.png");
  }
  EXPECT_EQ(shell("ulimit -f 1; " + kProgram + "plot t.csv o.png").first, 1);
  EXPECT_FALSE(fs::exists(folder / "o.png"));
  EXPECT_FALSE(hasTemporary());
}

}  // namespace
}  // namespace zum::test
