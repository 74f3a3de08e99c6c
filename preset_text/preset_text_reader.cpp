// Reading of a preset's text. The library reads the TOML; what it means is checked here, with the
// line of whatever is wrong.
#include <algorithm>
#include <bit>
#include <functional>
#include <limits>
#include <sstream>
#include <toml.hpp>

#include "preset_text/failure.hpp"
#include "preset_text/foreign_bytes.hpp"
#include "preset_text/numbers_in_text.hpp"
#include "preset_text/parameter_names.hpp"
#include "preset_text/preset_text.hpp"

namespace zum {
namespace {

constexpr std::int64_t kMostCells = 65536;

// The library's parser calls itself for every level of brackets, braces and dotted keys, as deep
// as a file wants. A preset has two levels.
class NestingGuard {
 public:
  /// False for a line that goes too deep, and for a text over several lines, which hides the rest.
  bool passes(std::string_view line) {
    constexpr int kMost = 64;
    int dots = 0;  // of one key, or of one number
    for (std::size_t at = 0; at < line.size() && line[at] != '#'; ++at) {
      const char c = line[at];
      if (c == '"' || c == '\'') {
        if (line.substr(at).starts_with(std::string(3, c))) return false;
        at = endOfText(line, at);
        continue;
      }
      if (c == '[' || c == '{') ++level;
      if (c == ']' || c == '}') level = std::max(level - 1, 0);
      if (c == '.') ++dots;
      if (std::string_view("[]{},=").find(c) != std::string_view::npos) dots = 0;
      if (level > kMost || dots > kMost) return false;
    }
    return true;
  }

 private:
  static std::size_t endOfText(std::string_view line, std::size_t start) {
    const char quote = line[start];
    std::size_t at = start + 1;
    while (at < line.size() && line[at] != quote) at += line[at] == '\\' && quote == '"' ? 2 : 1;
    return at;
  }

  int level = 0;
};

std::string readWhole(TextLines& lines) {
  NestingGuard nesting;
  std::string text;
  for (std::string line; lines.next(line);) {
    if (!nesting.passes(line)) {
      lines.fail(
          "brackets or dots go too deep, or a text takes several lines; a preset has [sections] of "
          "plain values, each on its line");
    }
    text += line + '\n';
  }
  return text;
}

/// The values of one text, by what they have to be.
class PresetReader {
 public:
  using Warn = std::function<void(const std::string&)>;

  PresetReader(std::string textName, PresetDocument& filled, const Warn& odd)
      : name(std::move(textName)), document(filled), warn(odd) {}

  void read(const std::string& text) {
    std::istringstream stream(text);
    const toml::value root = toml::parse(stream, name);
    // clang-format off
    forEach(root, {
        {"name",        [this](const toml::value& v) { document.name = nameIn(v); }},
        {"tempo",       [this](const toml::value& v) { document.tempo = numberIn(v); }},
        {"sample-rate", [this](const toml::value& v) { document.sampleRate = numberIn(v); }},
        {"program",     [this](const toml::value& v) { document.program = wholeIn<std::int32_t>(v); }},
        {"folder",      [this](const toml::value& v) { document.folder = wholeIn<std::int32_t>(v); }},
        {"parameters",  [this](const toml::value& v) { readParameters(v); }},
        {"steps",       [this](const toml::value& v) { readSteps(v); }},
        {"binding",     [this](const toml::value& v) { readBindings(v, true); }},
        {"aftertouch",  [this](const toml::value& v) { readBindings(v, false); }},
    });
    // clang-format on
  }

 private:
  using Take = std::function<void(const toml::value&)>;
  using Fields = std::vector<std::pair<std::string, Take>>;

  [[noreturn]] void fail(const toml::value& at, const std::string& why) const {
    throw Failure(name + ", line " + std::to_string(at.location().line()) + ": " + why);
  }

  // Hands each entry of a table to the field of its name.
  void forEach(const toml::value& table, const Fields& fields) const {
    if (!table.is_table()) fail(table, "a section in [brackets] is meant here");
    for (const auto& [key, value] : table.as_table()) {
      const std::string wanted = key;
      const auto field = std::find_if(fields.begin(), fields.end(),
                                      [&](const auto& each) { return each.first == wanted; });
      if (field == fields.end()) {
        std::string why = "there is no \"" + key + "\" here; there may be ";
        for (const auto& each : fields) why += (&each == fields.data() ? "" : ", ") + each.first;
        fail(value, why);
      }
      field->second(value);
    }
  }

  float numberIn(const toml::value& value) const {
    if (value.is_integer()) return static_cast<float>(value.as_integer());
    if (value.is_floating()) return static_cast<float>(value.as_floating());
    if (value.is_string()) {
      const std::string text = value.as_string().str;
      std::uint32_t word = 0;
      if (text.starts_with("0x") && parseWhole(std::string_view(text).substr(2), word, 16)) {
        return std::bit_cast<float>(word);
      }
    }
    fail(value, "a number is meant here");
  }

  template <class Integer>
  Integer wholeIn(const toml::value& value,
                  std::int64_t lowest = std::numeric_limits<Integer>::min(),
                  std::int64_t highest = std::numeric_limits<Integer>::max()) const {
    if (value.is_integer() && value.as_integer() >= lowest && value.as_integer() <= highest) {
      return static_cast<Integer>(value.as_integer());
    }
    fail(value, "a whole number from " + std::to_string(lowest) + " to " + std::to_string(highest) +
                    " is meant here");
  }

  std::string textIn(const toml::value& value) const {
    if (value.is_string()) return withForeignBytes(value.as_string().str);
    fail(value, "a text in quotes is meant here");
  }

  std::string nameOrNothingIn(const toml::value& value) const {
    std::string text = textIn(value);
    if (text.find('\0') != text.npos) fail(value, "a name has no character 0; take it out");
    return text;
  }

  std::string nameIn(const toml::value& value) const {
    std::string text = nameOrNothingIn(value);
    if (text.empty())
      fail(value, "a preset's name cannot be empty; leave it out to use the file's");
    return text;
  }

  const toml::array& listIn(const toml::value& value) const {
    if (value.is_array()) return value.as_array();
    fail(value, "a list in [brackets] is meant here");
  }

  int tagIn(const toml::value& value, const std::string& text) const {
    try {
      return findParameterTag(text);
    } catch (const Failure& failure) {
      fail(value, failure.what());
    }
  }

  void readParameters(const toml::value& section) {
    if (!section.is_table()) fail(section, "[parameters] holds lines of NAME = value");
    for (const auto& [key, value] : section.as_table()) {
      const int tag = tagIn(value, key);
      const int row = rowOfTag(tag);
      if (row >= kPresetRows)
        fail(value, '"' + key + "\" is no parameter that presets hold; take it out");
      auto& held = document.values[static_cast<std::size_t>(row)];
      if (held) fail(value, '"' + key + "\" is given twice under two names; take one out");
      held = numberIn(value);
      if (!(*held >= 0.0F && *held <= 1.0F)) {
        warn(name + ", line " + std::to_string(value.location().line()) + ": " + key +
             " is not within 0 to 1; it is kept as it is");
      }
    }
  }

  void readSteps(const toml::value& section) {
    document.hasSteps = true;
    KvTableXY& table = document.steps;
    std::int32_t columns = KvTableXY::kSteps;
    const toml::value* pages = nullptr;
    forEach(section, {{"name", [&](const toml::value& v) { table.name.set(nameOrNothingIn(v)); }},
                      {"range", [&](const toml::value& v) { readRange(v); }},
                      {"columns",
                       [&](const toml::value& v) { columns = wholeIn<std::int32_t>(v, 0, 1024); }},
                      {"pages", [&](const toml::value& v) { pages = &v; }}});
    if (pages != nullptr) readPages(*pages, columns);
  }

  void readRange(const toml::value& value) {
    const toml::array& range = listIn(value);
    if (range.size() != 3) fail(value, "a range is [extra, highest, lowest]");
    document.steps.rangeExtra = numberIn(range[0]);
    document.steps.maxValue = numberIn(range[1]);
    document.steps.minValue = numberIn(range[2]);
  }

  void readPages(const toml::value& value, std::int32_t columns) {
    const toml::array& pages = listIn(value);
    if (!pages.empty()) columns = static_cast<std::int32_t>(listIn(pages.front()).size());
    const auto count = static_cast<std::int32_t>(pages.size());
    KvTableXY& table = document.steps;
    if (std::int64_t{columns} * count > kMostCells || count > kMostCells ||
        !table.setPageCount(1) || !table.setColumns(columns) || !table.setPageCount(count)) {
      fail(value, "there are more steps than a table holds; leave pages out");
    }
    for (std::int32_t page = 0; page < count; ++page) {
      const toml::value& line = pages[static_cast<std::size_t>(page)];
      const toml::array& cells = listIn(line);
      if (cells.size() != static_cast<std::size_t>(columns)) {
        fail(line, "every page has as many steps as the first one");
      }
      for (std::int32_t column = 0; column < columns; ++column) {
        table.setValue(column, page, numberIn(cells[static_cast<std::size_t>(column)]));
      }
    }
  }

  void readBindings(const toml::value& list, bool ofControllers) {
    for (const toml::value& each : listIn(list)) {
      Binding binding;
      int controller = -1;
      bool bound = false;
      Fields fields = {
          {"parameter",
           [&](const toml::value& v) {
             binding.tag = v.is_string() ? static_cast<std::int16_t>(tagIn(v, textIn(v)))
                                         : wholeIn<std::int16_t>(v);
             bound = true;
           }},
          {"mode", [&](const toml::value& v) { binding.mode = wholeIn<std::int16_t>(v); }}};
      if (ofControllers) {
        fields.emplace_back("controller", [&](const toml::value& v) {
          controller = wholeIn<int>(v, 0, preset::kControllers - 1);
        });
      }
      forEach(each, fields);
      if (!bound) fail(each, "a binding needs parameter = \"NAME\"");
      if (ofControllers && binding.tag == preset::kEndOfController) {
        fail(each, "no controller can move tag -2, which ends the list in a preset; give a NAME");
      }
      if (!ofControllers) {
        document.aftertouch.push_back(binding);
      } else if (controller >= 0) {
        document.controllers[static_cast<std::size_t>(controller)].push_back(binding);
      } else {
        fail(each, "a binding needs controller = 0 to 127");
      }
    }
  }

  const std::string name;
  PresetDocument& document;
  const Warn& warn;
};

// The first line of the library's text, which goes on with a drawing of the place.
std::string firstLine(const std::string& text) {
  const std::size_t start = text.find(": ");
  const std::string why = text.substr(start == std::string::npos ? 0 : start + 2);
  return why.substr(0, why.find('\n'));
}

}  // namespace

void readPresetText(TextLines& lines, PresetDocument& document,
                    const std::function<void(const std::string&)>& warn) {
  const std::string text = readWhole(lines);
  try {
    PresetReader(lines.name(), document, warn).read(text);
  } catch (const toml::exception& error) {
    throw Failure(lines.name() + ", line " + std::to_string(error.location().line()) + ": " +
                  firstLine(error.what()) + "; mend the line");
  }
}

}  // namespace zum
