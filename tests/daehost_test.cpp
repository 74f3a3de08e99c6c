// The second host's plug-in file through daehost, as a user starts it.
#include <sys/stat.h>

#include "support/own_display.hpp"
#include "support/settings_user.hpp"

namespace zum::test {
namespace {

/// A number of up to 16 bits as a session record has it.
std::string word(std::size_t value) {
  return {static_cast<char>(value), static_cast<char>(value >> 8U), 0, 0};
}

const std::string kNoHeader(52, '\0');  // what of a session record's header is for the host alone

class DaehostTest : public SettingsTest {
 protected:
  DaehostTest() {
    fs::copy_file(ZUM_SOURCE_DIR "/content/Samples/Factory/Bass.wav", folder / "in.wav");
  }
  /// What a command line wrote into out.wav.
  std::string sound(const std::string& commandLine) const {
    EXPECT_EQ(shell("rm -f out.wav; " + commandLine).first, 0) << commandLine;
    return textIn(folder / "out.wav");
  }
};

// One block of the other host ends where another one of this begins.
TEST_F(DaehostTest, GivesTheSameSoundAsTheOtherPlugInFileWhateverTheBlock) {
  expectTold("", {{"save a.session --set Cutoff=0.7 --set CutoffLFOAmt=0.9 --set CutoffSeqAmt=0.2"
                   " --set LFO_Rate=0.7",
                   0, ""}});
  putText(folder / "a.kvz", textIn(folder / "a.session").substr(56));
  const std::string wanted =
      sound(ZUM_COMMAND " render in.wav out.wav --preset a.kvz --play --tempo 120");
  EXPECT_GT(wanted.size(), 10000U);
  const std::string render = ZUM_PROGRAM " render in.wav out.wav --session ";
  for (const char* block : {"1", "100", "4096"}) {
    EXPECT_TRUE(sound(render + "a.session --block " + block) == wanted) << block;
  }
  for (const char* other : {"--tempo 70", "--mono"}) {
    EXPECT_FALSE(sound(render + "a.session " + other) == wanted) << other;
  }

  // What a controller was taught travels in the session, and its messages come on another thread:
  // from the middle down to nothing, at 0 and at two quarters.
  putText(folder / "song.mid", midiFile("\0\xB0\x4A\x40\x87\x40\xB0\x4A\0"s));
  putText(folder / "binding", "\n[[binding]]\ncontroller = 74\nparameter = \"Resonance\"\n");
  ASSERT_EQ(shell(ZUM_COMMAND " presets show a.kvz | cat - binding >b.toml; " ZUM_COMMAND
                              " presets make b.toml b.kvz"),
            std::pair(0, ""s));
  const std::string preset = textIn(folder / "b.kvz");
  putText(folder / "b.session", word(preset.size() + 56) + kNoHeader + preset);
  const std::string play = render + "b.session --midi song.mid --block 64";
  const std::string played = sound(play);
  EXPECT_TRUE(sound(play) == played && played != wanted);
}

// The process itself would answer with success, keep its state, and have that saved.
TEST_F(DaehostTest, DamagedSessionIsRefusedAndStays) {
  ASSERT_EQ(run("save good --set Cutoff=0.7").first, 0);
  const std::string good = textIn(folder / "good");
  std::string otherMagic = good;
  otherMagic[56 + 16] ^= 1;
  const std::pair<const char*, std::string> cases[] = {
      {"shorter than a header", "no record"},
      {"states 56 bytes", word(56) + good.substr(4)},
      {"and there are 900", good.substr(0, 900)},
      {"than there are", word(900) + good.substr(4, 896)},
      {"magic number", otherMagic},
  };
  for (const auto& [words, bytes] : cases) {
    putText(folder / "bad", bytes);
    expectTold("daehost: bad is no session record", {{"save bad --session bad", 1, words}});
    EXPECT_TRUE(textIn(folder / "bad") == bytes) << words;
  }
  putText(folder / "empty", word(56) + kNoHeader);
  EXPECT_EQ(run("save out --session empty").first, 0);
}

TEST_F(DaehostTest, TellsOfMessagesAndSamplesThatAreLost) {
  std::string events;
  for (int i = 0; i < 256; ++i) events += "\0\xB0\x4A\x40"s;
  putText(folder / "full.mid", midiFile(events));
  putText(folder / "flood.mid", midiFile(events + events.substr(0, 44 * 4)));
  EXPECT_EQ(run("render in.wav out.wav --midi full.mid").second.find("warning"), std::string::npos);
  putText(folder / "nan.wav",  // four frames of floats
          "RIFF\x44\0\0\0WAVEfmt \x10\0\0\0\3\0\2\0\x44\xAC\0\0\x20\x62\5\0\x08\0\x20\0"s +
              "data\x20\0\0\0"s + std::string(32, '\xFF'));
  expectTold(
      "", {{"render in.wav out.wav --midi flood.mid", 0, "44 MIDI messages of one block are lost"},
           {"render nan.wav out.wav", 0, "nan.wav has 8 samples that are no finite numbers"},
           {"render in.wav out.wav --set Mix_Dry_Wet=1 --set Cutoff=0.3 --set Master=1", 0,
            "warning: out.wav clips in "}});
}

TEST_F(DaehostTest, SaysWhatToDoNext) {
  putText(folder / "song.mid", midiFile(""));
  fs::copy_file(fs::path(ZUM_PROGRAM).parent_path() / "ZUM32.dpm", folder / "file.dpm");
  fs::create_symlink("file.dpm", folder / "link.dpm");
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  unsetenv("DISPLAY");
  expectTold("daehost: ",
             {
                 {"render in.wav", 2, "output is required; run daehost render --help"},
                 {"render in.wav in.wav", 2, "would overwrite in.wav; give it another name"},
                 {"render in.wav song.mid --midi song.mid", 2, "would overwrite song.mid"},
                 {"render in.wav out.wav --block 0", 2, "\"0\" is not a number from 1"},
                 {"list --help >none; rm -rf config; ulimit -f 1; " ZUM_PROGRAM " save x", 1,
                  "cannot write x"},
                 {"list --plug-in none.dpm", 1, "build it or name another"},
                 {"list --plug-in in.wav", 1, "cannot load in.wav"},
                 {"save link.dpm --plug-in ./file.dpm", 2, "would overwrite ./file.dpm"},
                 {"list --plug-in pipe", 1, "cannot load pipe (it is no ordinary file)"},
                 {"save out.wav --set 'Master Bypass=1'", 2, "does not keep Master Bypass"},
                 {"list --set empty=0.5", 2, "(empty) takes no value"},
                 {"list --session .", 1, "cannot read ."},
                 {"list --set Cutoff=loud", 2, "\"loud\" in \"Cutoff=loud\" is no number"},
                 {"list --set Cutof=1", 2, "there is no control \"Cutof\""},
                 {"list --set Cutoff", 2, "write it as NAME=VALUE"},
                 {"list --set =1", 2, "\"=1\" sets nothing"},
                 {"list --set ' =1'", 2, "there is no control \" \""},
                 {"view --seconds 1", 1, "no display"},
             });
  EXPECT_FALSE(fs::exists(folder / "out.wav"));
  const OwnDisplay display;
  expectTold("", {{"view --seconds 1", 0, ""},
                  {"save --set Cutoff=0.25 a.session", 0, ""},
                  {"save a.session --session a.session --set Master=0.5", 0, ""},
                  {"list --session a.session", 0, "\n5\tCutoff\t25.00 %\n"},
                  {"list", 0, "\n14\tLFO_TrigOnOff\tOff\tswitch\n"}});
}

}  // namespace
}  // namespace zum::test
