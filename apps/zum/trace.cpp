// Writing and reading of traces.
#include "apps/zum/trace.hpp"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "apps/zum/text_file.hpp"
#include "preset_text/numbers_in_text.hpp"

namespace zum {
namespace {

constexpr std::string_view kHeader = "time,seq_out,lfo_out,ef_out,cutoff_hz,resonance,meter";
constexpr std::size_t kPendingBytes = 65536;
constexpr std::uint64_t kMostBytes = std::uint64_t{8} << 30U;  // half a day at 44100 Hz
constexpr std::size_t kMostRows = 1U << 24U;                   // 900 MB of memory

// The fewest digits that read back as the same number.
template <typename Number>
void append(std::string& text, Number number) {
  std::array<char, 32> digits{};
  text.append(digits.data(),
              std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
}

TraceRow parseRow(const TextLines& lines, std::string_view line) {
  TraceRow row{};
  const auto numbers = words(line, ",");
  if (numbers.size() != row.size()) {
    lines.fail("there are " + std::to_string(numbers.size()) + " numbers in place of " +
               std::to_string(row.size()) + "; make the trace again with zum render --trace");
  }
  for (std::size_t i = 0; i < row.size(); ++i) {
    if (!parseWhole(numbers[i], row[i]) || !std::isfinite(row[i])) {
      lines.fail("\"" + std::string(numbers[i]) +
                 "\" is not a number; make the trace again with zum render --trace");
    }
  }
  return row;
}

}  // namespace

TraceWriter::TraceWriter(const std::filesystem::path& path)
    : temporary(path), pending(std::string(kHeader) + "\n") {}

void TraceWriter::add(double seconds, const ControlPassResults& results) {
  append(pending, seconds);
  for (const float value : {results.seqOut, results.lfoOut, results.efOut, results.cutoffHz,
                            results.resonance, results.meter}) {
    pending += ',';
    append(pending, value);
  }
  pending += '\n';
  if (pending.size() < kPendingBytes) return;
  temporary.write(pending.data(), pending.size());
  pending.clear();
}

void TraceWriter::finish() {
  temporary.write(pending.data(), pending.size());
  temporary.commit();
}

std::vector<TraceRow> readTrace(const std::filesystem::path& path, double from, double to) {
  TextLines lines = linesOf(path, kMostBytes);
  std::string line;
  if (!lines.next(line) || line != kHeader) {
    lines.fail("this is no trace; make one with zum render --trace");
  }
  std::vector<TraceRow> rows;
  double last = -1.0;
  while (last <= to && lines.next(line)) {
    const TraceRow row = parseRow(lines, line);
    if (row[kTime] <= last) lines.fail("the time does not rise; make the trace again");
    last = row[kTime];
    if (rows.size() == 1 && last <= from) rows.clear();
    if (rows.size() == kMostRows) {
      lines.fail("the stretch is too long to draw; choose one with --from and --to");
    }
    rows.push_back(row);
  }
  if (rows.size() < 2 || rows.back()[kTime] <= from) {
    lines.fail("there is nothing to see in this stretch; the trace ends before, or is too short");
  }
  return rows;
}

}  // namespace zum
