#include "state/table_xy.hpp"

#include <algorithm>
#include <bit>

#include "engine/numbers.hpp"
#include "engine/shared_value.hpp"

namespace zum {
namespace {

constexpr std::int32_t kMark = 666555777;
constexpr std::int32_t kVersion = 1002;
constexpr std::int32_t kFirstNamedVersion = 1001;
constexpr std::int64_t kMostWithoutCells = 1024;  // columns without pages, or the reverse
constexpr std::int32_t kOldestMark = std::bit_cast<std::int32_t>(0.4F);

}  // namespace

void KvTableXY::init() {
  rangeExtra = 0.0F;
  minValue = 0.0F;
  maxValue = 1.0F;
  pages.assign(1, Page(kSteps));
  columns = kSteps;
  for (std::size_t i = 0; i < kSteps; ++i) pages[0][i] = static_cast<float>(i % 2);
  morph = 0.0F;
  current = 0;
  name = "Default";
}

float KvTableXY::cell(std::int32_t column, std::size_t page) const ZUM_REALTIME {
  if (page >= pages.size() || columns <= 0) return 0.0F;
  return loadShared(pages[page][static_cast<std::size_t>(clampIndex(column, columns - 1))]);
}

float KvTableXY::getValue(std::int32_t column, std::int32_t page) ZUM_REALTIME {
  storeShared(playedColumn, static_cast<float>(column));
  return cell(column, page >= 0 && page < pageCount() ? static_cast<std::size_t>(page) : 0);
}

float KvTableXY::getValue(std::int32_t column) const {
  const auto page = static_cast<std::size_t>(current);
  const float a = cell(column, page);
  const float b = page + 1 < pages.size() ? cell(column, page + 1) : a;
  return a + (b - a) * (morph - static_cast<float>(truncate(morph)));
}

void KvTableXY::setValue(std::int32_t column, std::int32_t page, float value) {
  if (column < 0 || column >= columns || page < 0 || page >= pageCount()) return;
  storeShared(pages[static_cast<std::size_t>(page)][static_cast<std::size_t>(column)], value);
}

void KvTableXY::setValueBetween(std::int32_t column, float page, float value) {
  const std::int32_t first = truncate(page);
  if (column < 0 || column >= columns || first < 0 || first >= pageCount()) return;
  const float toNext = page - static_cast<float>(first);
  const auto approach = [&](std::int32_t at, float part) {
    const float old = cell(column, static_cast<std::size_t>(at));
    setValue(column, at, old + (value - old) * part);
  };
  approach(first, 1.0F - toNext);
  if (first + 1 < pageCount()) approach(first + 1, toNext);
}

void KvTableXY::setPoint(float position, float value) { setValue(truncate(position), 0, value); }

void KvTableXY::setColumns(std::int32_t count) {
  columns = std::max(count, 0);
  for (Page& page : pages) page.resize(static_cast<std::size_t>(columns));
}

void KvTableXY::setPageCount(std::int32_t count) {
  count = std::max(count, 0);
  pages.resize(static_cast<std::size_t>(count), Page(static_cast<std::size_t>(columns)));
  const auto limit = static_cast<float>(count);
  // In 32 bit the limit itself from a count of 1 on: the position then waits for the next valid
  // one.
  if (morph >= limit) morph = limit - 9.99999993922529e-09F;
  if (current >= count) current = std::max(count - 1, 0);
}

void KvTableXY::setMorphPosition(float position) {
  if (!(position >= 0.0F && position < static_cast<float>(pageCount()))) return;
  morph = position;
  current = truncate(position);
}

float KvTableXY::lastColumn() const { return loadShared(playedColumn); }

// The first word tells the form; older ones have no mark and start with what follows it.
std::int32_t KvTableXY::readChunk(KvChunk* chunk, bool discard) {
  const std::int32_t first = chunk->getInt();
  if (first == kMark) return readPages(*chunk, discard);
  chunk->stepBack();
  return first == kOldestMark ? skipOldestForm(*chunk) : readPlainForm(*chunk, discard);
}

std::int32_t KvTableXY::readPages(KvChunk& chunk, bool discard) {
  const std::int32_t version = chunk.getInt();
  const Range range = readRange(chunk);
  const std::int32_t newColumns = chunk.getInt();
  const std::int32_t newPages = chunk.getInt();
  // Sizes are only believed as far as the words for them are there, or as they are small.
  const auto left = static_cast<std::int64_t>(chunk.wordsLeft());
  const std::int64_t cells = static_cast<std::int64_t>(newColumns) * newPages;
  const std::int64_t most = std::max<std::int64_t>(left, kMostWithoutCells);
  if (chunk.overrun() || newColumns < 0 || newPages < 0 || newColumns > most || newPages > most ||
      cells > left ||
      (version >= kFirstNamedVersion && !chunk.stringFits(static_cast<std::uint32_t>(cells)))) {
    chunk.refuse();
    return 0;
  }
  if (!discard) {
    takeRange(range);
    pages.clear();  // so that no old page grows to new columns; the morph position stays
    setColumns(newColumns);
    setPageCount(newPages);
  }
  for (std::int32_t page = 0; page < newPages; ++page) {
    for (std::int32_t column = 0; column < newColumns; ++column) {
      const float value = chunk.getFloat();
      if (!discard) setValue(column, page, value);
    }
  }
  const ChunkString text = version >= kFirstNamedVersion ? chunk.getString() : nullptr;
  if (discard) return 0;
  name = text != nullptr ? text.get() : version >= kFirstNamedVersion ? "" : "Default";
  return 1;
}

// Read and dropped: the table keeps its state.
std::int32_t KvTableXY::skipOldestForm(KvChunk& chunk) {
  readRange(chunk);
  std::int32_t count = chunk.getInt();
  if (count == kFormMark) {
    chunk.getInt();
    count = chunk.getInt();
  }
  if (count < 0 || static_cast<std::uint32_t>(count) > chunk.wordsLeft()) {
    chunk.refuse();
    return 0;
  }
  for (std::int32_t i = 0; i < count; ++i) chunk.getFloat();
  return 0;
}

void KvTableXY::writeChunk(KvChunk* chunk) {
  chunk->putInt(kMark);
  chunk->putInt(kVersion);
  chunk->putFloat(rangeExtra);
  chunk->putFloat(maxValue);
  chunk->putFloat(minValue);
  chunk->putInt(columns);
  chunk->putInt(pageCount());
  for (std::size_t page = 0; page < pages.size(); ++page) {
    for (std::int32_t column = 0; column < columns; ++column) chunk->putFloat(cell(column, page));
  }
  chunk->putString(name.c_str());
}

}  // namespace zum
