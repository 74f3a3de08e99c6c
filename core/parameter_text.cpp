#include "core/parameter_text.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <span>

#include "core/decibels.hpp"
#include "core/parameter_store.hpp"
#include "core/value_names.hpp"
#include "engine/attack_table.hpp"
#include "engine/envelope_follower.hpp"
#include "engine/filter_frequency.hpp"
#include "engine/note_table.hpp"
#include "platform/ascii_case.hpp"

namespace zum {
namespace {

constexpr float kLowestDecibels = -120.0F;  // what is below is shown as silence

/// A unit that counts: rises with raw.
struct Scale {
  const char* unit;
  float (*of)(float raw);
  int decimals;  // at most, and fewer for numbers of three digits
  bool isSigned = false;
};

Scale scaleOf(Unit unit) {
  switch (unit) {
    case Unit::amount: return {"%", [](float raw) { return 200.0F * raw - 100.0F; }, 1, true};
    case Unit::cutoff:
      return {"Hz",
              [](float raw) { return FilterFrequency::hertzOf(FilterFrequency::curved(raw)); }, 1};
    case Unit::range: return {"Hz", [](float raw) { return EnvelopeFollower::bandHz(raw); }, 1};
    case Unit::attack: return {"ms", [](float raw) { return attackOf(raw).ms; }, 1};
    case Unit::gain: return {"dB", [](float raw) { return decibelsOf(2.0F * raw); }, 1};
    case Unit::threshold: return {"dB", [](float raw) { return decibelsOf(raw * raw); }, 1};
    default: return {"%", [](float raw) { return 100.0F * raw; }, 1};
  }
}

std::span<const char* const> namesOf(const ParameterRow& row) {
  switch (row.unit) {
    case Unit::note: return names::kNotes;
    case Unit::release: return names::kReleases;
    default: return row.names;
  }
}

/// The place among its names.
int nameIndex(const ParameterRow& row, float raw) {
  const int last = static_cast<int>(namesOf(row).size()) - 1;
  switch (row.unit) {
    case Unit::note: return noteIndexOf(raw);
    case Unit::release: return noteIndexOf(1.0F - raw);
    case Unit::steps: return truncate(plainOfRaw(row, raw));
    default: {
      const float half = row.rule == Rule::vowel ? 0.0F : 0.5F;
      return clampIndex(truncate(raw * static_cast<float>(last) + half), last);
    }
  }
}

float rawOfName(const ParameterRow& row, std::size_t index) {
  const auto place = static_cast<float>(index);
  const float part = place / static_cast<float>(namesOf(row).size() - 1);
  switch (row.unit) {
    case Unit::steps: return rawOfPlain(row, place);
    case Unit::release: return 1.0F - part;
    default: return part;
  }
}

/// Without digits that say nothing: "12", "4.5".
std::string numberText(const Scale& scale, float value) {
  const bool isDecibels = std::string_view(scale.unit) == "dB";
  const int decimals = std::fabs(value) < 100.0F || isDecibels ? scale.decimals : 0;
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.begin(), digits.end(), static_cast<double>(value),
                                 std::chars_format::fixed, decimals);
  std::string text(digits.data(), end.ptr);
  if (!isDecibels && text.ends_with(".0")) text.resize(text.size() - 2);
  if (text == "-0" || text == "-0.0") text.erase(0, 1);
  if (scale.isSigned && text.front() != '-' && text != "0") text.insert(text.begin(), '+');
  return text;
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlank = " \t\r\n";
  const std::size_t first = text.find_first_not_of(kBlank);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlank) - first + 1);
}

/// By halves, as every scale rises.
float rawOfNumber(const Scale& scale, float wanted) {
  float low = 0.0F;
  float high = 1.0F;
  if (wanted <= scale.of(low)) return low;
  if (wanted >= scale.of(high)) return high;
  for (int i = 0; i < 40; ++i) {
    const float middle = 0.5F * (low + high);
    (scale.of(middle) < wanted ? low : high) = middle;
  }
  return std::fabs(scale.of(low) - wanted) < std::fabs(scale.of(high) - wanted) ? low : high;
}

/// What a prefix of the unit multiplies by; nothing for a unit of something else.
std::optional<float> factorOf(std::string_view typed, const Scale& scale) {
  const std::string unit = lowerCase(scale.unit);
  if (typed.empty() || typed == unit) return 1.0F;
  if (unit == "hz" && (typed == "khz" || typed == "k")) return 1000.0F;
  if (unit == "ms" && typed == "s") return 1000.0F;
  return std::nullopt;
}

std::optional<float> readNumber(const Scale& scale, std::string text) {
  std::replace(text.begin(), text.end(), ',', '.');
  std::string_view rest = text;
  if (rest.starts_with('+')) rest.remove_prefix(1);
  float number = 0.0F;
  const auto read = std::from_chars(rest.data(), rest.data() + rest.size(), number);
  if (read.ec != std::errc() || std::isnan(number)) return std::nullopt;
  const auto used = static_cast<std::size_t>(read.ptr - rest.data());
  const std::optional<float> factor = factorOf(trimmed(rest.substr(used)), scale);
  if (!factor) return std::nullopt;
  return rawOfNumber(scale, number * *factor);
}

}  // namespace

std::string parameterText(const ParameterRow& row, float raw) {
  raw = clampUnit(raw);
  if (const auto names = namesOf(row); !names.empty()) {
    return names[static_cast<std::size_t>(nameIndex(row, raw))];
  }
  if (row.unit == Unit::range && !EnvelopeFollower::hearsBand(raw)) return "Off";
  const Scale scale = scaleOf(row.unit);
  const float value = scale.of(raw);
  const bool isSilent = std::string_view(scale.unit) == "dB" && value < kLowestDecibels;
  return (isSilent ? "-inf" : numberText(scale, value)) + ' ' + scale.unit;
}

std::optional<float> parameterValue(const ParameterRow& row, std::string_view text) {
  const std::string typed = lowerCase(trimmed(text));
  if (typed.empty()) return std::nullopt;
  if (const auto names = namesOf(row); !names.empty()) {
    for (std::size_t i = 0; i < names.size(); ++i) {
      if (lowerCase(names[i]) == typed) return rawOfName(row, i);
    }
    return std::nullopt;
  }
  if (row.unit == Unit::range && typed == "off") return 0.0F;
  return readNumber(scaleOf(row.unit), typed);
}

int namedValues(const ParameterRow& row) { return static_cast<int>(namesOf(row).size()); }

float plainOfRaw(const ParameterRow& row, float raw) ZUM_REALTIME {
  return isStepped(row) ? static_cast<float>(ParameterStore::stepPosition(row, raw))
                        : clampUnit(raw);
}

float rawOfPlain(const ParameterRow& row, float plain) ZUM_REALTIME {
  if (!isStepped(row)) return clampUnit(plain);
  const float place = clampTo(plain, 0.0F, plainEnd(row));
  return static_cast<float>(truncate(place + 0.5F)) * row.perCount;
}

}  // namespace zum
