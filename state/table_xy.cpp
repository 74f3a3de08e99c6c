#include "state/table_xy.hpp"

#include <algorithm>
#include <bit>
#include <new>

#include "engine/numbers.hpp"
#include "engine/shared_value.hpp"

namespace zum {
namespace {

constexpr std::int32_t kMark = 666555777;
constexpr std::int32_t kVersion = 1002;
constexpr std::int32_t kFirstNamedVersion = 1001;
constexpr std::int32_t kOldestMark = std::bit_cast<std::int32_t>(0.4F);

std::size_t cellsOf(std::int32_t columns, std::int32_t pages) ZUM_REALTIME {
  return static_cast<std::size_t>(columns) * static_cast<std::size_t>(pages);
}

/// A table without cells has no words in its chunk that would bear out its size, so there is a
/// limit.
bool canBe(std::int32_t columns, std::int32_t pages) ZUM_REALTIME {
  constexpr std::int32_t kMostWithoutCells = 1024;
  const bool hasCells = columns > 0 && pages > 0;
  return columns >= 0 && pages >= 0 && (hasCells || columns + pages <= kMostWithoutCells);
}

}  // namespace

// Throws std::bad_alloc: the engine always reads steps.
KvTableXY::KvTableXY() {
  if (!reserve(kSteps)) throw std::bad_alloc();
  init();
}

void KvTableXY::init() {
  takeRange({.extra = 0.0F, .highest = 1.0F, .lowest = 0.0F});
  if (reserve(kSteps) && resize(kSteps)) {
    for (std::int32_t i = 0; i < kSteps; ++i) setValue(i, static_cast<float>(i % 2));
  }
  storeShared(morph, 0.0F);
  storeShared(current, 0);
  name.set("Default");
}

std::size_t KvTableXY::place(std::int32_t column, std::int32_t page) const ZUM_REALTIME {
  return static_cast<std::size_t>(page) * static_cast<std::size_t>(size()) +
         static_cast<std::size_t>(column);
}

float KvTableXY::cell(std::int32_t column, std::int32_t page) const ZUM_REALTIME {
  if (page >= pageCount() || size() <= 0) return 0.0F;
  return cells.load(place(clampIndex(column, size() - 1), page));
}

float KvTableXY::getValue(std::int32_t column, std::int32_t page) ZUM_REALTIME {
  storeShared(playedColumn, static_cast<float>(column));
  return cell(column, page >= 0 && page < pageCount() ? page : 0);
}

float KvTableXY::getValue(std::int32_t column) const ZUM_REALTIME {
  const std::int32_t page = loadShared(current);
  const float position = loadShared(morph);
  const float a = cell(column, page);
  const float b = page + 1 < pageCount() ? cell(column, page + 1) : a;
  return a + (b - a) * (position - static_cast<float>(truncate(position)));
}

void KvTableXY::setValue(std::int32_t column, std::int32_t page, float value) ZUM_REALTIME {
  if (column < 0 || column >= size() || page < 0 || page >= pageCount()) return;
  cells.tryStore(place(column, page), value);
}

void KvTableXY::setValueBetween(std::int32_t column, float page, float value) {
  const std::int32_t first = truncate(page);
  if (column < 0 || column >= size() || first < 0 || first >= pageCount()) return;
  const float toNext = page - static_cast<float>(first);
  const auto approach = [&](std::int32_t at, float part) {
    const float old = cell(column, at);
    setValue(column, at, old + (value - old) * part);
  };
  approach(first, 1.0F - toNext);
  if (first + 1 < pageCount()) approach(first + 1, toNext);
}

void KvTableXY::setPoint(float position, float value) ZUM_REALTIME {
  setValue(truncate(position), 0, value);
}

bool KvTableXY::setSizes(std::int32_t newColumns, std::int32_t newPages) ZUM_REALTIME {
  if (!canBe(newColumns, newPages) || cellsOf(newColumns, newPages) > cells.capacity()) {
    return false;
  }
  storeShared(columns, newColumns);
  storeShared(pages, newPages);
  keepMorphInside();
  return true;
}

bool KvTableXY::resize(std::int32_t count) ZUM_REALTIME { return setSizes(std::max(count, 0), 1); }

bool KvTableXY::setColumns(std::int32_t count) {
  const std::int32_t old = size();
  const std::int32_t wanted = std::max(count, 0);
  if (!reserve(cellsOf(wanted, pageCount())) || !setSizes(wanted, pageCount())) return false;
  // Pages move apart from the last one on, or together from the first one on.
  const auto move = [&](std::int32_t page, std::int32_t column) {
    const std::size_t from = static_cast<std::size_t>(page) * static_cast<std::size_t>(old) +
                             static_cast<std::size_t>(column);
    cells.tryStore(place(column, page), column < old ? cells.load(from) : 0.0F);
  };
  if (wanted > old) {
    for (std::int32_t page = pageCount(); page-- > 0;) {
      for (std::int32_t column = wanted; column-- > 0;) move(page, column);
    }
  } else {
    for (std::int32_t page = 0; page < pageCount(); ++page) {
      for (std::int32_t column = 0; column < wanted; ++column) move(page, column);
    }
  }
  return true;
}

bool KvTableXY::setPageCount(std::int32_t count) {
  const std::int32_t old = pageCount();
  const std::int32_t wanted = std::max(count, 0);
  if (!reserve(cellsOf(size(), wanted)) || !setSizes(size(), wanted)) return false;
  for (std::int32_t page = old; page < pageCount(); ++page) {
    for (std::int32_t column = 0; column < size(); ++column) setValue(column, page, 0.0F);
  }
  return true;
}

void KvTableXY::keepMorphInside() ZUM_REALTIME {
  const auto limit = static_cast<float>(pageCount());
  // In 32 bits this is the limit itself, from a count of 1 on: the position then stays there until
  // a valid one is set.
  if (morphPosition() >= limit) storeShared(morph, limit - 9.99999993922529e-09F);
  if (currentPage() >= pageCount()) storeShared(current, std::max(pageCount() - 1, 0));
}

void KvTableXY::setMorphPosition(float position) {
  if (!(position >= 0.0F && position < static_cast<float>(pageCount()))) return;
  storeShared(morph, position);
  storeShared(current, truncate(position));
}

float KvTableXY::lastColumn() const { return loadShared(playedColumn); }

// The first word tells the form; older ones have no mark and start with what follows it.
std::int32_t KvTableXY::readChunk(KvChunk* chunk, bool discard) ZUM_REALTIME {
  const std::int32_t first = chunk->getInt();
  if (first == kMark) return readPages(*chunk, discard);
  chunk->stepBack();
  return first == kOldestMark ? skipOldestForm(*chunk) : readPlainForm(*chunk, discard);
}

std::int32_t KvTableXY::readPages(KvChunk& chunk, bool discard) ZUM_REALTIME {
  const std::int32_t version = chunk.getInt();
  const Range range = readRange(chunk);
  const std::int32_t newColumns = chunk.getInt();
  const std::int32_t newPages = chunk.getInt();
  // Sizes are only believed as far as the words for them are there.
  const auto left = static_cast<std::int64_t>(chunk.wordsLeft());
  const std::int64_t cellCount = static_cast<std::int64_t>(newColumns) * newPages;
  if (chunk.overrun() || !canBe(newColumns, newPages) || cellCount > left ||
      (version >= kFirstNamedVersion && !chunk.stringFits(static_cast<std::uint32_t>(cellCount)))) {
    chunk.refuse();
    return 0;
  }
  if (!discard) {
    if (!setSizes(newColumns, newPages)) {
      chunk.refuse();
      return 0;
    }
    takeRange(range);
  }
  for (std::int32_t page = 0; page < newPages; ++page) {
    for (std::int32_t column = 0; column < newColumns; ++column) {
      const float value = chunk.getFloat();
      if (!discard) setValue(column, page, value);
    }
  }
  const bool named = version >= kFirstNamedVersion;
  const std::string_view text = named ? chunk.getText() : std::string_view("Default");
  if (discard) return 0;
  name.set(text);
  return 1;
}

// Read and dropped: the table keeps its state.
std::int32_t KvTableXY::skipOldestForm(KvChunk& chunk) ZUM_REALTIME {
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

void KvTableXY::writeChunk(KvChunk* chunk) const {
  chunk->putInt(kMark);
  chunk->putInt(kVersion);
  chunk->putFloat(loadShared(rangeExtra));
  chunk->putFloat(loadShared(maxValue));
  chunk->putFloat(loadShared(minValue));
  const std::int32_t width = size();
  const std::int32_t height = pageCount();
  chunk->putInt(width);
  chunk->putInt(height);
  for (std::int32_t page = 0; page < height; ++page) {
    for (std::int32_t column = 0; column < width; ++column) chunk->putFloat(cell(column, page));
  }
  chunk->putString(name.get().c_str());
}

}  // namespace zum
