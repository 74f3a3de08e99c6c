// Presets as text and back, end to end through the built program, and renders that start from one.
#include <cmath>
#include <limits>

#include "core/parameter_table.hpp"
#include "core/tags.hpp"
#include "support/settings_user.hpp"
#include "support/test_host.hpp"

namespace zum::test {
namespace {

using PresetsCommandTest = SettingsTest;

TEST_F(PresetsCommandTest, TextComesBackToTheByte) {
  TestHost host(96000.0F);
  float value = -0.0F;
  for (const ParameterRow& row : parameterRows().first(kPresetRows)) {
    host.set(row.tag, value);
    value = std::nextafter(value * 1.37F + 1e-9F, 1.0F);
  }
  host.set(tag::vowelCutoff, std::numeric_limits<float>::quiet_NaN());
  host.set(tag::master, 1.0e-40F);
  // by way of a double its shortest decimal is another number
  host.set(tag::mixDryWet, 7.038531e-26F);
  std::vector<std::string> states = {host.state()};
  const auto keep = [&] { states.push_back(host.state()); };
  KvTableXY& steps = host.client().steps();
  steps.setColumns(3);
  steps.setPageCount(2);
  steps.setValue(2, 1, -1.5F);
  steps.name.set("say \"\\\" \x01\x7F \xC3\xA9 \xC2\x9B \xE2\x80\xAE \xF3\xA0\x80\x81");
  auto& maps = host.client().controllers();
  maps.controllers[127].append({tag::cutoffLfo, -3});
  maps.controllers[127].append({-300, 0});
  maps.aftertouch.append({tag::mouseArea, 1});
  keep();
  steps.setPageCount(0);
  keep();
  steps.setColumns(70);
  steps.setPageCount(70);
  steps.setValue(69, 69, std::numeric_limits<float>::infinity());
  steps.name.set(
      "[[[[ ..... ''' # \" H\xF6hle \xEF\x9F\xB6");  // foreign bytes, and one as it is written
  keep();
  for (const std::string& state : states) {
    putText(folder / "a.kvz", state);
    const std::string show = "presets show a.kvz >a.toml; ";
    expectTold("", {{show + kProgram + "presets make a.toml again.kvz", 0, ""}});
    EXPECT_EQ(textIn(folder / "again.kvz"), state);
    EXPECT_EQ(textIn(folder / "a.toml").find('\x9B'), std::string::npos);
  }
}

std::string repeated(int times, const std::string& text) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

TEST_F(PresetsCommandTest, WhatATextGetsWrongIsToldWithItsLine) {
  const char* const deep = "too deep";
  const std::pair<std::string, const char*> cases[] = {
      {"nam = \"x\"", "line 1: there is no \"nam\" here; there may be name, tempo"},
      {"\nname = \"\"", "line 2: a preset's name cannot be empty"},
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
      {"name = \"\\u0000\"", "line 1: a name has no character 0"},
      {"[steps]\npages = 3", "line 2: a list in [brackets] is meant here"},
      {"name = \"\"\"\nx\"\"\"", "line 1: brackets or dots go too deep, or a text takes several"},
      {"name = 1\nname = 2", "; mend the line"},
      {repeated(5000, "a.") + "b = 1", deep},
      {"a = " + repeated(5000, "{a="), deep},
      {"a = " + repeated(5000, "[ # ]\n"), deep},
      {"steps.pages = [" + repeated(2000, "[],") + "]", "more steps than a table holds"},
      {"steps.pages = [[" + std::string(16384, '0') + "]]", "line 1: the line has more than 16384"},
  };
  for (const auto& [text, why] : cases) {
    putText(folder / "bad.toml", text);
    expectTold("zum: bad.toml, line ", {{"presets make bad.toml out.kvz", 1, why}});
  }
  putText(folder / "long.toml", "aftertouch = [\n" + repeated(140000, "{parameter=1},\n") + "]");
  expectTold("zum: ", {{"presets make long.toml out.kvz", 1, "a megabyte, which does not load"},
                       {"presets make bad.toml out.wav", 2, "let it end in .kvz"},
                       {"presets make none.toml out.kvz", 1, "cannot read none.toml"}});
  EXPECT_FALSE(fs::exists(folder / "out.kvz"));
  putText(folder / "row.toml", "steps.pages = [[" + repeated(1025, "0,") + "]]");
  putText(folder / "loud.toml", "parameters.Cutoff = 1.5");
  expectTold("", {{"presets make row.toml out.kvz", 0, ""},
                  {"presets make loud.toml out.kvz", 0, "line 1: Cutoff is not within 0 to 1"}});
}

TEST_F(PresetsCommandTest, EveryFileIsReportedAndDamagedOnesWithTheirPlace) {
  const std::string whole = TestHost().state();
  const auto with = [&](std::size_t word, const std::string& bytes) {
    return std::string(whole).replace(4 * word, bytes.size(), bytes);
  };
  const std::pair<std::string, std::string> files[] = {{"empty", ""},
                                                       {"layout", with(8, "\x01")},
                                                       {"long", whole + "more"},
                                                       {"newer", with(1, "\x04")},
                                                       {"other", with(6, "\x02")},
                                                       {"short", whole.substr(0, 500)},
                                                       {"size", with(10, "\xFF\xFF\xFF\x7F")},
                                                       {"whole", whole}};
  for (const auto& [name, bytes] : files) putText(folder / "files" / (name + ".kvz"), bytes);
  const char* const reports =
      "files/empty.kvz: BAD, another magic number (byte 0)\n"
      "files/layout.kvz: BAD, the reserved word is not 0 (byte 32)\n"
      "files/long.kvz: ok, \"default\", 4 bytes behind its end dropped\n"
      "files/newer.kvz: BAD, it was written with a newer version of ZUM\n"
      "files/other.kvz: BAD, another product format (byte 24)\n"
      "files/short.kvz: BAD, states more words than there are (byte 0)\n"
      "files/size.kvz: BAD, a parameter states more words than there are (byte 40)\n"
      "files/whole.kvz: ok, \"default\"\n"
      "zum: 6 of 8 files are no presets; replace them or take them out of the folder\n";
  EXPECT_EQ(run("presets check files"), std::pair(1, std::string(reports)));
  fs::create_directory(folder / "none");
  putText(folder / "red.toml", "name = \"\\u001b[31m\\n\"");
  expectTold("", {{"presets check none", 1, "there are no .kvz files"},
                  {"presets show files/size.kvz", 1, "run zum presets check"},
                  {"presets make red.toml red.kvz", 0, ""},
                  {"presets check red.kvz", 0, "ok, \"\\x1b[31m\\n\""}});
}

TEST_F(PresetsCommandTest, RendersStartFromFilesAndFromPrograms) {
  putText(folder / "user/Presets/Bass/Deep.toml", "parameters.Cutoff = 0.25\n");
  putText(folder / "user/Presets/Lead/Bright.toml", "parameters.Cutoff = 0.75\n");
  expectTold(
      "", {{"presets make user/Presets user/Presets", 0, ""},
           {"install-content user --in-place", 0, ""},
           {"presets list", 0,
            "folder  program  name\n     0        0  Bass/Deep\n     1        0  Lead/Bright\n"}});
  fs::copy_file(ZUM_SOURCE_DIR "/content/Samples/Factory/Drums.wav", folder / "in.wav");
  const auto rendered = [&](const std::string& options) {
    expectTold("", {{"render in.wav out.wav " + options, 0, "out.wav"}});
    return textIn(folder / "out.wav");
  };
  const std::string file = "user/Presets/Bass/Deep.kvz";
  const std::string deep = rendered("--preset " + file);
  EXPECT_TRUE(rendered("--program bass/deep") == deep);
  EXPECT_TRUE(rendered("--program Lead/Bright --set Cutoff=0.25") == deep);
  EXPECT_FALSE(rendered("--program Lead/Bright") == deep);
  const std::string render = "render in.wav out.wav ";
  expectTold("zum: ",
             {{render + "--program Bass", 1, "run zum presets list"},
              {render + "--preset in.wav", 1, "another magic number"},
              {render + "--preset " + file + " --trace ./" + file, 2, "would overwrite user"},
              {render + "--preset a --program b", 2, "excludes"}});
}

}  // namespace
}  // namespace zum::test
