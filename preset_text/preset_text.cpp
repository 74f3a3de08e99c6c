// Printing of a preset's text.
#include "preset_text/preset_text.hpp"

#include <bit>
#include <charconv>
#include <cmath>
#include <string_view>

#include "platform/printable_text.hpp"
#include "preset_text/foreign_bytes.hpp"
#include "preset_text/parameter_names.hpp"

namespace zum {
namespace {

template <class... Options>
std::string printed(Options... options) {
  std::array<char, 32> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), options...).ptr;
  return {text.data(), end};
}

std::string wordText(float value) {
  return "\"0x" + printed(std::bit_cast<std::uint32_t>(value), 16) + '"';
}

// The shortest decimal that comes back as the same number also by way of a double.
std::string number(float value) {
  if (!std::isfinite(value)) return wordText(value);
  std::string text = printed(value);
  double read = 0.0;
  std::from_chars(text.data(), text.data() + text.size(), read);
  if (static_cast<float>(read) != value) text = printed(static_cast<double>(value));
  const bool isPlain = text.find_first_of(".e") == std::string::npos;
  return isPlain ? text + ".0" : text;  // else it would be an integer, which has no -0
}

std::string quotedText(std::string_view text) {
  std::string all = "\"";
  while (!text.empty()) {
    const auto [code, bytes] = firstCharacter(text);
    const bool isForeign = bytes == 0 || standsForForeignByte(code);
    if (isForeign) {
      all += unicodeEscape(kFirstForeignByte + static_cast<unsigned char>(text.front()) - 0x80);
    } else if (!isPrintable(code)) {
      all += unicodeEscape(code);
    } else {
      if (code == '"' || code == '\\') all += '\\';
      all += text.substr(0, bytes);
    }
    text.remove_prefix(isForeign ? 1 : bytes);
  }
  return all + '"';
}

std::string comment(std::string_view text) { return "# " + std::string(text) + '\n'; }

std::string header(const PresetDocument& document) {
  std::string text;
  for (const std::string& remark : document.remarks) text += comment(remark);
  text += document.name.empty() ? comment("it has no name")
                                : "name = " + quotedText(document.name) + '\n';
  text += "tempo = " + number(document.tempo) + '\n';
  text += "sample-rate = " + number(document.sampleRate) + '\n';
  text += "program = " + printed(document.program) + '\n';
  return text + "folder = " + printed(document.folder) + '\n';
}

std::string parameters(const PresetDocument& document) {
  std::string text = "\n[parameters]\n";
  for (std::size_t row = 0; row < document.values.size(); ++row) {
    const ParameterRow& parameter = parameterRows()[row];
    if (parameter.rule == Rule::table) continue;
    const std::string name = parameterName(parameter);
    const auto& value = document.values[row];
    text += value ? name + " = " + number(*value) + '\n' : comment(name + " is not held");
  }
  return text;
}

std::string list(int count, const auto& item) {
  constexpr int kPerLine = 16;
  std::string text = "[";
  for (int i = 0; i < count; ++i) {
    if (i > 0) text += i % kPerLine == 0 ? ",\n   " : ", ";
    text += item(i);
  }
  text += ']';
  return text;
}

std::string steps(const KvTableXY& table) {
  std::string text = "\n[steps]\nname = " + quotedText(table.name.get()) + '\n';
  const float range[] = {table.rangeExtra, table.maxValue, table.minValue};
  text += "range = " + list(3, [&](int i) { return number(range[i]); }) + '\n';
  if (table.pageCount() == 0) return text + "columns = " + printed(table.size()) + "\npages = []\n";
  text += "pages = [\n";
  for (int page = 0; page < table.pageCount(); ++page) {
    const auto cell = [&](int column) { return number(table.cell(column, page)); };
    text += "  " + list(table.size(), cell) + ",\n";
  }
  return text + "]\n";
}

std::string binding(const std::string& section, Binding binding) {
  std::string text = '\n' + section + "parameter = ";
  const std::string name = parameterName(binding.tag);
  text += name.empty() ? printed(binding.tag) : quotedText(name);
  text += '\n';
  if (binding.mode != 0) text += "mode = " + printed(binding.mode) + '\n';
  return text;
}

}  // namespace

std::string presetText(const PresetDocument& document) {
  std::string text = header(document) + parameters(document);
  if (document.hasSteps) text += steps(document.steps);
  for (std::size_t controller = 0; controller < document.controllers.size(); ++controller) {
    const std::string section = "[[binding]]\ncontroller = " + printed(controller) + '\n';
    for (const Binding each : document.controllers[controller]) text += binding(section, each);
  }
  for (const Binding each : document.aftertouch) text += binding("[[aftertouch]]\n", each);
  return text;
}

}  // namespace zum
