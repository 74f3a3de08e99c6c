// The second host's plug-in file through daehost, as a user starts it.
#include <gtest/gtest.h>

#include <cstring>

#include "support/own_display.hpp"
#include "support/settings_user.hpp"

namespace zum::test {
namespace {

class DaehostTest : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    fs::copy_file(ZUM_SOURCE_DIR "/content/Samples/Factory/Bass.wav", folder / "in.wav");
    // Controller 74 from the middle down to nothing, at 0 and at two quarters.
    const std::string track = "\0\xB0\x4A\x40\x87\x40\xB0\x4A\0\0\xFF\x2F\0"s;
    putText(folder / "song.mid", "MThd\0\0\0\6\0\0\0\1\1\xE0MTrk\0\0\0\x0D"s + track);
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
  const auto size = static_cast<std::uint32_t>(preset.size() + 56);
  std::string header(56, '\0');
  std::memcpy(header.data(), &size, sizeof size);
  putText(folder / "b.session", header + preset);
  for (const char* name : {"played.wav", "again.wav"}) {
    const auto [code, text] =
        run("render in.wav "s + name + " --session b.session --midi song.mid --block 64");
    ASSERT_EQ(code, 0) << text;
  }
  EXPECT_TRUE(sameBytes("played.wav", "again.wav"));
  EXPECT_FALSE(sameBytes("played.wav", "wanted.wav"));
}

TEST_F(DaehostTest, SaysWhatToDoNext) {
  putText(folder / "short", "no record");
  putText(folder / "long", std::string(2000, 'x'));
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
      {"render in.wav out.wav --block 0", 2, "0 is not a number from 1"},
      {"list --plug-in none.dpm", 1, "build it or name another"},
      {"list --plug-in in.wav", 1, "cannot load in.wav"},
      {"list --session short", 1, "that is no session record"},
      {"list --session long", 1, "that is no session record"},
      {"list --session .", 1, "cannot read ."},
      {"list --set Cutoff=loud", 2, "loud is not a number from 0 to 1"},
      {"list --set Cutof=1", 2, "there is no control Cutof"},
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
  EXPECT_NE(run("list --session a.session").second.find("\tCutoff\t25.00 %\n"), std::string::npos);
  const std::string list = run("list --set Cutoff=0.25").second;
  EXPECT_NE(list.find("5\tCutoff\t25.00 %\n"), std::string::npos) << list;
  EXPECT_NE(list.find("14\tLFO_TrigOnOff\tOff\tswitch\n"), std::string::npos) << list;
}

}  // namespace
}  // namespace zum::test
