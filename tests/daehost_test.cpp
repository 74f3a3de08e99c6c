// The second host's plug-in file through daehost, as a user starts it.
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstring>

#include "support/own_display.hpp"
#include "support/settings_user.hpp"

namespace zum::test {
namespace {

std::string word(std::size_t value) {
  const auto bytes = static_cast<std::uint32_t>(value);
  std::string text(4, '\0');
  std::memcpy(text.data(), &bytes, sizeof bytes);
  return text;
}

class DaehostTest : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    fs::copy_file(ZUM_SOURCE_DIR "/content/Samples/Factory/Bass.wav", folder / "in.wav");
    // Controller 74 from the middle down to nothing, at 0 and at two quarters.
    putSong("song.mid", "\0\xB0\x4A\x40\x87\x40\xB0\x4A\0"s);
  }
  /// `events` and the end of their track.
  void putSong(const char* name, const std::string& events) const {
    const std::size_t size = events.size() + 4;
    const char length[] = {0, 0, static_cast<char>(size / 256), static_cast<char>(size % 256)};
    putText(folder / name,
            "MThd\0\0\0\6\0\0\0\1\1\xE0MTrk"s + std::string(length, 4) + events + "\0\xFF\x2F\0"s);
  }
  int zum(const std::string& arguments) const {
    return std::system(
        ("cd '" + folder.string() + "'; " ZUM_COMMAND " " + arguments + " 2>&1 >zum.out").c_str());
  }
  bool sameBytes(const std::string& a, const std::string& b) const {
    const std::string bytes = textIn(folder / a);
    return !bytes.empty() && bytes == textIn(folder / b);
  }
};

// One block of the other host ends where another one of this begins.
TEST_F(DaehostTest, GivesTheSameSoundAsTheOtherPlugInFileWhateverTheBlock) {
  ASSERT_EQ(run("save a.session --set Cutoff=0.7 --set CutoffLFOAmt=0.9 --set CutoffSeqAmt=0.2"
                " --set LFO_Rate=0.7")
                .first,
            0);
  putText(folder / "a.kvz", textIn(folder / "a.session").substr(56));
  ASSERT_EQ(zum("render in.wav wanted.wav --preset a.kvz --play --tempo 120"), 0);
  for (const char* block : {"1", "100", "4096"}) {
    const auto [code, text] = run("render in.wav out.wav --session a.session --block "s + block);
    ASSERT_EQ(code, 0) << text;
    EXPECT_TRUE(sameBytes("out.wav", "wanted.wav")) << block;
  }
  EXPECT_EQ(run("render in.wav slow.wav --session a.session --tempo 70").first, 0);
  EXPECT_FALSE(sameBytes("slow.wav", "wanted.wav"));
  EXPECT_EQ(run("render in.wav mono.wav --session a.session --mono").first, 0);
  EXPECT_FALSE(sameBytes("mono.wav", "wanted.wav"));

  // What a controller was taught travels in the session, and its messages come on another thread.
  ASSERT_EQ(zum("presets show a.kvz"), 0);
  putText(folder / "b.toml", textIn(folder / "zum.out") +
                                 "\n[[binding]]\ncontroller = 74\nparameter = \"Resonance\"\n");
  ASSERT_EQ(zum("presets make b.toml b.kvz"), 0);
  const std::string preset = textIn(folder / "b.kvz");
  putText(folder / "b.session", word(preset.size() + 56) + std::string(52, '\0') + preset);
  for (const char* name : {"played.wav", "again.wav"}) {
    const auto [code, text] =
        run("render in.wav "s + name + " --session b.session --midi song.mid --block 64");
    ASSERT_EQ(code, 0) << text;
  }
  EXPECT_TRUE(sameBytes("played.wav", "again.wav"));
  EXPECT_FALSE(sameBytes("played.wav", "wanted.wav"));
}

// The process itself would answer with success, keep its state, and have that saved.
TEST_F(DaehostTest, DamagedSessionIsRefusedAndStays) {
  ASSERT_EQ(run("save good --set Cutoff=0.7").first, 0);
  const std::string good = textIn(folder / "good");
  std::string otherMagic = good;
  otherMagic[56 + 16] ^= 1;
  const std::pair<const char*, std::string> cases[] = {
      {"shorter than a header", "no record"},
      {"states 2021161080 bytes", std::string(2000, 'x')},
      {"states 56 bytes", word(56) + good.substr(4)},
      {"and there are 900", good.substr(0, 900)},
      {"than there are", word(900) + good.substr(4, 896)},
      {"magic number", otherMagic},
  };
  for (const auto& [words, bytes] : cases) {
    putText(folder / "bad", bytes);
    const auto [code, text] = run("save bad --session bad");
    EXPECT_EQ(code, 1) << words;
    EXPECT_NE(text.find("bad is no session record"), std::string::npos) << text;
    EXPECT_NE(text.find(words), std::string::npos) << text;
    EXPECT_TRUE(textIn(folder / "bad") == bytes) << words;
  }
  putText(folder / "empty", word(56) + std::string(52, '\0'));
  EXPECT_EQ(run("save out --session empty").first, 0);
}

TEST_F(DaehostTest, TellsOfMessagesAndSamplesThatAreLost) {
  std::string events;
  for (int i = 0; i < 256; ++i) events += "\0\xB0\x4A\x40"s;
  putSong("full.mid", events);
  putSong("flood.mid", events + events.substr(0, 44 * 4));
  EXPECT_EQ(run("render in.wav out.wav --midi full.mid").second.find("warning"), std::string::npos);
  const std::string lost = run("render in.wav out.wav --midi flood.mid").second;
  EXPECT_NE(lost.find("44 MIDI messages of one block are lost"), std::string::npos) << lost;
  // 32-bit floats: 2 and no number.
  putText(folder / "loud.wav", "RIFF" + word(44) + "WAVEfmt " + word(16) + "\3\0\1\0"s +
                                   word(44100) + word(176400) + "\4\0\x20\0"s + "data" + word(8) +
                                   word(0x40000000) + word(0x7FC00000));
  const std::string loud = run("render loud.wav out.flac --set 'Master Bypass=1'").second;
  EXPECT_NE(loud.find("warning: out.flac clips in 2 samples"), std::string::npos) << loud;
  EXPECT_NE(loud.find("loud.wav has 1 samples that are no finite"), std::string::npos) << loud;
}

TEST_F(DaehostTest, SaysWhatToDoNext) {
  fs::copy_file(fs::path(ZUM_PROGRAM).parent_path() / "ZUM32.dpm", folder / "file.dpm");
  fs::create_symlink("file.dpm", folder / "link.dpm");
  fs::create_hard_link(folder / "file.dpm", folder / "hard.dpm");
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  const struct {
    const char* arguments;
    int code;
    const char* words;
  } cases[] = {
      {"", 2, "no command is given; run daehost --help"},
      {"render in.wav", 2, "output is required; run daehost render --help"},
      {"render in.wav in.wav", 2, "would overwrite in.wav; give it another name"},
      {"render in.wav song.mid --midi song.mid", 2, "would overwrite song.mid"},
      {"render none.wav out.wav", 1, "none.wav"},
      {"render in.wav out.wav --block 0", 2, "\"0\" is not a number from 1"},
      {"list --help >none; rm -rf config; ulimit -f 1; " ZUM_PROGRAM " save x", 1,
       "cannot write x"},
      {"list --plug-in none.dpm", 1, "build it or name another"},
      {"list --plug-in in.wav", 1, "cannot load in.wav"},
      {"save link.dpm --plug-in ./file.dpm", 2, "would overwrite ./file.dpm"},
      {"render in.wav hard.dpm --plug-in file.dpm", 2, "would overwrite file.dpm"},
      {"list --plug-in pipe", 1, "cannot load pipe (it is no ordinary file)"},
      {"save out.wav --set 'Master Bypass=1'", 2, "does not keep Master Bypass"},
      {"list --set =1", 2, "\"=1\" sets nothing"},
      {"list --set empty=0.5", 2, "(empty) takes no value"},
      {"list --session .", 1, "cannot read ."},
      {"list --set Cutoff=loud", 2, "\"loud\" in \"Cutoff=loud\" is no number"},
      {"list --set Cutof=1", 2, "there is no control \"Cutof\""},
      {"list --set Cutoff", 2, "write it as NAME=VALUE"},
      {"view --seconds 1", 1, "no display"},
  };
  unsetenv("DISPLAY");
  for (const auto& c : cases) {
    const auto [code, text] = run(c.arguments);
    EXPECT_EQ(code, c.code) << c.arguments;
    EXPECT_NE(text.find(c.words), std::string::npos) << text;
  }
  EXPECT_FALSE(fs::exists(folder / "out.wav"));
  const OwnDisplay display;
  EXPECT_EQ(run("view --seconds 1").first, 0);
  EXPECT_EQ(run("save --set Cutoff=0.25 a.session").first, 0);
  EXPECT_EQ(run("save a.session --session a.session --set Master=0.5").first, 0);
  EXPECT_NE(run("list --session a.session").second.find("\tCutoff\t25.00 %\n"), std::string::npos);
  const std::string list = run("list --set Cutoff=0.25").second;
  EXPECT_NE(list.find("5\tCutoff\t25.00 %\n"), std::string::npos) << list;
  EXPECT_NE(list.find("14\tLFO_TrigOnOff\tOff\tswitch\n"), std::string::npos) << list;
}

}  // namespace
}  // namespace zum::test
