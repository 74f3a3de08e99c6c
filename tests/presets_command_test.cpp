// Presets as text and back, end to end through the built program, and renders that start from one.
#include <cmath>
#include <limits>
#include <tuple>

#include "core/parameter_table.hpp"
#include "support/settings_user.hpp"
#include "support/test_host.hpp"

namespace zum::test {
namespace {

class PresetsCommandTest : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    putText(folder / "user/Presets/Bass/Deep.toml", "parameters.Cutoff = 0.25\n");
    putText(folder / "user/Presets/Lead/Bright.toml", "parameters.Cutoff = 0.75\n");
    ASSERT_EQ(run("presets make user/Presets user/Presets").first, 0);
    ASSERT_EQ(run("install-content user --in-place").first, 0);
  }

  void expectRun(const std::string& arguments, int exitCode, const std::string& printed) const {
    SCOPED_TRACE(arguments);
    const auto outcome = run(arguments);
    EXPECT_EQ(outcome.first, exitCode);
    EXPECT_NE(outcome.second.find(printed), std::string::npos) << outcome.second;
  }

  // The state of an effect as a file.
  std::string save(TestHost& host, const std::string& name) const {
    void* data = nullptr;
    const auto bytes = static_cast<std::size_t>(host.dispatch(effGetChunk, 0, 0, &data));
    std::string state(static_cast<char*>(data), bytes);
    putText(folder / name, state);
    return state;
  }
};

TEST_F(PresetsCommandTest, TextComesBackToTheByte) {
  TestHost host(96000.0F);
  float value = -0.0F;
  for (const ParameterRow& row : parameterRows().first(kPresetRows)) {
    host.set(row.tag, value);
    value = std::nextafter(value * 1.37F + 1e-9F, 1.0F);
  }
  host.set(0, std::numeric_limits<float>::quiet_NaN());
  host.set(1, 1.0e-40F);
  host.set(2, 7.038531e-26F);  // by way of a double its shortest decimal is another number
  save(host, "plain.kvz");
  KvTableXY& steps = host.client().steps();
  steps.setColumns(3);
  steps.setPageCount(2);
  steps.setValue(2, 1, -1.5F);
  steps.name.set("say \"\\\" \x01\x7F \xC3\xA9 \xC2\x9B \xE2\x80\xAE \xF3\xA0\x80\x81");
  host.client().controllers().controllers[127].append({18, -3});
  host.client().controllers().controllers[127].append({-300, 0});
  host.client().controllers().aftertouch.append({163, 1});
  save(host, "full.kvz");
  steps.setPageCount(0);
  save(host, "empty.kvz");
  steps.setColumns(70);
  steps.setPageCount(70);
  steps.setValue(69, 69, std::numeric_limits<float>::infinity());
  steps.name.set(
      "[[[[ ..... ''' # \" H\xF6hle \xEF\x9F\xB6");  // foreign bytes, and one as it is written
  save(host, "wide.kvz");
  for (const std::string name : {"plain", "full", "empty", "wide"}) {
    expectRun("presets show " + name + ".kvz > " + name + ".toml; " ZUM_PROGRAM " presets make " +
                  name + ".toml again.kvz",
              0, "");
    EXPECT_EQ(textIn(folder / "again.kvz"), textIn(folder / (name + ".kvz"))) << name;
    EXPECT_EQ(textIn(folder / (name + ".toml")).find('\x9B'), std::string::npos);
  }
}

TEST_F(PresetsCommandTest, WhatATextGetsWrongIsToldWithItsLine) {
  const std::tuple<const char*, const char*> cases[] = {
      {"nam = \"x\"", "line 1: there is no \"nam\" here; there may be name, tempo"},
      {"\nname = \"\"", "line 2: a preset's name cannot be empty"},
      {"tempo = \"fast\"", "line 1: a number is meant here"},
      {"program = 2147483648", "line 1: a whole number from -2147483648"},
      {"[parameters]\nCutof = 0.5",
       "line 2: no parameter is called \"Cutof\"; did you mean Cutoff"},
      {"[parameters]\ntextedit = 0.5", "line 2: \"textedit\" is the name of several"},
      {"[parameters]\nCutoff = 1\n3 = 1", "given twice"},
      {"[parameters]\nCutoff = [1]", "line 2: a number is meant here"},
      {"[steps]\npages = [[1, 2], [3]]", "line 2: every page has as many steps"},
      {"[steps]\nrange = [1]", "line 2: a range is [extra, highest, lowest]"},
      {"[[binding]]\nparameter = \"Cutoff\"", "a binding needs controller"},
      {"[[binding]]\ncontroller = 128", "line 2: a whole number from 0 to 127"},
      {"[[aftertouch]]\ncontroller = 1", "line 2: there is no \"controller\" here"},
      {"name = \"\\u0000\"", "line 1: a name has no character 0"},
      {"[steps]\npages = 3", "line 2: a list in [brackets] is meant here"},
      {"name = ", "line 1: "},
      {"name = \"\"\"\nx\"\"\"", "line 1: brackets or dots go too deep, or a text takes several"},
      {"name = 1\nname = 2", "; mend the line"},
  };
  for (const auto& [text, why] : cases) {
    putText(folder / "bad.toml", text);
    expectRun("presets make bad.toml out.kvz", 1, std::string("zum: bad.toml, line "));
    expectRun("presets make bad.toml out.kvz", 1, why);
  }
  for (const std::string level : {"[", "a.", "{a=", "[ # ]\n", "[\n"}) {
    std::string text = "a = ";
    if (level == "a.") text.clear();
    for (int i = 0; i < 5000; ++i) text += level;
    putText(folder / "deep.toml", text);
    expectRun("presets make deep.toml out.kvz", 1, "too deep");
  }
  EXPECT_FALSE(fs::exists(folder / "out.kvz"));
  expectRun("presets make bad.toml out.wav", 2, "let it end in .kvz");
  expectRun("presets make none.toml out.kvz", 1, "cannot read none.toml");
  putText(folder / "loud.toml", "parameters.Cutoff = 1.5");
  std::string empty = "steps.pages = [";
  for (int i = 0; i < 2000; ++i) empty += "[],";
  putText(folder / "empty.toml", empty + "]");
  expectRun("presets make empty.toml out.kvz", 1, "more steps than a table holds");
  std::string row = "steps.pages = [[";
  for (int i = 0; i < 1025; ++i) row += "0,";
  putText(folder / "row.toml", row + "]]");
  expectRun("presets make row.toml row.kvz", 0, "");
  std::string pressed = "aftertouch = [\n";
  for (int i = 0; i < 140000; ++i) pressed += "{parameter=1},\n";
  putText(folder / "pressed.toml", pressed + "]");
  expectRun("presets make pressed.toml out.kvz", 1, "more than a megabyte, which does not load");
  putText(folder / "wide.toml", "steps.pages = [[" + std::string(16384, '0') + "]]");
  expectRun("presets make wide.toml out.kvz", 1, "wide.toml, line 1: the line has more than 16384");
  expectRun("presets make loud.toml out.kvz", 0, "line 1: Cutoff is not within 0 to 1");
}

TEST_F(PresetsCommandTest, EveryFileIsReportedAndDamagedOnesWithTheirPlace) {
  TestHost host;
  const std::string whole = save(host, "files/whole.kvz");
  putText(folder / "files/long.kvz", whole + "more");
  expectRun("presets check files", 0, "files/long.kvz: ok, \"default\", 4 bytes behind its end");
  putText(folder / "red.toml", "name = \"\\u001b[31m\\n\"");
  expectRun("presets make red.toml red.kvz; " ZUM_PROGRAM " presets check red.kvz", 0,
            "ok, \"\\x1b[31m\\n\"");
  const auto put = [&](const std::string& name, std::size_t word, const std::string& bytes) {
    std::string text = whole;
    putText(folder / "files" / name, text.replace(4 * word, bytes.size(), bytes));
  };
  putText(folder / "files/empty.kvz", "");
  putText(folder / "files/short.kvz", whole.substr(0, whole.size() - 4));
  put("newer.kvz", 1, "\x04");
  put("magic.kvz", 4, "?");
  put("other.kvz", 6, "\x02");
  put("layout.kvz", 8, "\x01");
  put("size.kvz", 10, "\xFF\xFF\xFF\x7F");
  const std::pair<std::string, std::string> cases[] = {
      {"whole", "ok, \"default\""},
      {"empty", "BAD, another magic number (byte"},
      {"short", "BAD, states more words than there are"},
      {"newer", "BAD, it was written with a newer version of ZUM"},
      {"magic", "BAD, another magic number"},
      {"other", "BAD, another product format (byte 24)"},
      {"layout", "BAD, the reserved word is not 0 (byte 32)"},
      {"size", "BAD, a parameter states more words than there are (byte 40)"},
  };
  for (const auto& [name, report] : cases) {
    expectRun("presets check files", 1, "files/" + name + ".kvz: " + report);
  }
  expectRun("presets check files", 1, "7 of 9 files are no presets");
  expectRun("presets check config", 1, "there are no .kvz files");
  expectRun("presets show files/size.kvz", 1, "run zum presets check");
}

TEST_F(PresetsCommandTest, RendersStartFromFilesAndFromPrograms) {
  expectRun("presets list", 0,
            "folder  program  name\n     0        0  Bass/Deep\n     1        0  Lead/Bright\n");
  fs::copy_file(ZUM_SOURCE_DIR "/content/Samples/Factory/Drums.wav", folder / "in.wav");
  const auto rendered = [&](const std::string& options) {
    expectRun("render in.wav out.wav " + options, 0, "out.wav");
    return textIn(folder / "out.wav");
  };
  const std::string deep = rendered("--preset user/Presets/Bass/Deep.kvz");
  EXPECT_EQ(rendered("--program bass/deep"), deep);
  EXPECT_EQ(rendered("--program Lead/Bright --set Cutoff=0.25"), deep);
  EXPECT_NE(rendered("--program Lead/Bright"), deep);
  expectRun("render in.wav out.wav --program Bass", 1, "run zum presets list");
  expectRun("render in.wav out.wav --preset in.wav", 1, "another magic number");
  expectRun(
      "render in.wav out.wav --preset user/Presets/Bass/Deep.kvz --trace "
      "./user/Presets/Bass/Deep.kvz",
      2, "would overwrite user");
  expectRun("render in.wav out.wav --preset ''", 2, "\"\" says nothing");
  expectRun("render in.wav out.wav --preset none.kvz", 1, "there is no such file");
  expectRun("render in.wav out.wav --preset a --program b", 2, "excludes");
}

}  // namespace
}  // namespace zum::test
