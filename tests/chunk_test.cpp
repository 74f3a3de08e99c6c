// Catches words in a wrong order or place, older table forms that are read wrongly, and bytes that
// lead outside of a buffer.

#include <gtest/gtest.h>

#include <limits>

#include "state/mouse_area_chunk.hpp"
#include "state/table_xy.hpp"
#include "support/chunk_words.hpp"

namespace zum::test {
namespace {

using namespace std::string_literals;

constexpr std::int32_t kMark = 0x27BAD581;
constexpr std::int32_t kFormMark = -3456378;
constexpr std::int32_t kHuge = 2147483647;

/// What a table makes of words: whether it takes them, what it then holds, the word behind them,
/// and whether they were too few.
std::tuple<bool, Words, int, bool> read(const std::vector<Word>& words, bool discard) {
  KvTableXY table;
  table.name.set("Mine");
  KvChunk chunk;
  fill(chunk, words);
  const bool taken = table.readChunk(&chunk, discard) != 0;
  const bool overrun = chunk.overrun();
  const Words content = written([&](KvChunk& to) { table.writeChunk(&to); });
  return {taken, content, overrun ? 0 : chunk.getInt(), overrun};
}

TEST(Chunk, TwoPassesWriteTheSameWords) {
  const auto write = [](KvChunk& chunk) {
    chunk.writeHeader();
    chunk.putInt(-7);
    chunk.putFloat(0.25F);
    for (const char* text : {static_cast<const char*>(nullptr), "", "abcd", "abcde"}) {
      chunk.putString(text);
    }
    EXPECT_EQ(chunk.putBytes("123456", 6), 1);
    chunk.putInt(9);  // over the bytes behind the first word
    for (const float value : {1.0F, 2.0F, 3.0F, 4.0F}) chunk.putFloat(value);
  };
  KvChunk chunk;
  chunk.tempo = 97.0F;
  chunk.sampleRate = 48000.0F;
  const Words first = written(write, chunk, true);
  EXPECT_EQ(written(write, chunk, true), first);
  const std::vector<Word> expected = {
      20,         3, 97.0F,      48000.0F, 0x18E48D9,  -7, 0.25F, 0,    0,    4,
      0x64636261, 5, 0x64636261, 0x65,     0x34333231, 9,  1.0F,  2.0F, 3.0F, 4.0F};
  ASSERT_EQ(first, Words(expected.begin(), expected.end()));

  KvChunk reader;
  fill(reader, first);
  ASSERT_TRUE(reader.holdsData && reader.readHeader(false));
  EXPECT_EQ(std::tuple(reader.totalWords, reader.tempo, reader.sampleRate),
            std::tuple(20, 97.0F, 48000.0F));
  EXPECT_EQ(reader.getInt(), -7);
  reader.stepBack();
  EXPECT_EQ(reader.getInt(), -7);
  EXPECT_EQ(reader.getFloat(), 0.25F);
  for (const char* text : {static_cast<const char*>(nullptr), "", "abcd", "abcde"}) {
    EXPECT_STREQ(reader.getString().get(), text != nullptr && *text == '\0' ? nullptr : text);
  }
  std::array<char, 5> bytes{};
  reader.getBytes(bytes.data(), 4);
  EXPECT_STREQ(bytes.data(), "1234");
  EXPECT_EQ(reader.getInt(), 9);
  Quad quad{};
  reader.getQuadCleared(quad);
  EXPECT_EQ(quad, (Quad{1.0F, 2.0F, 3.0F, 4.0F}));
  EXPECT_FALSE(reader.overrun() || reader.isNewer());
  reader.version = 4;
  EXPECT_TRUE(reader.isNewer());
}

TEST(Chunk, NothingBehindTheEndIsTouched) {
  KvChunk chunk;
  fill(chunk, {1, 2.0F});
  chunk.cursor = 1;
  Quad quad{9.0F, 9.0F, 9.0F, 9.0F};
  chunk.getQuad(quad);
  EXPECT_EQ(quad, (Quad{2.0F, 0.0F, 0.0F, 0.0F}));
  EXPECT_TRUE(chunk.overrun());

  for (const int length : {1, 5, 1000, kHuge, -1, -3, -kHuge - 1}) {
    KvChunk hostile;
    fill(hostile, {length});
    EXPECT_TRUE(hostile.getString() == nullptr && hostile.overrun()) << length;
  }
  for (const auto& [count, expected] : {std::pair{8, "\0\0\0\0\0\0\0\0"s},
                                        {7, "UUUU\0\0\0#"s},
                                        {4, "UUUU####"s},
                                        {-kHuge, "########"s}}) {
    KvChunk bytes;
    fill(bytes, {0x55555555});
    std::string to(8, '#');
    EXPECT_EQ(bytes.getBytes(to.data(), count), std::max(count, 0) / 4);
    EXPECT_EQ(bytes.overrun(), count >= 8) << count;  // only whole words count
    EXPECT_EQ(to, expected);
  }
  KvChunk full;
  full.countOnly = false;
  full.allocate(1);
  full.putInt(1);
  full.putString("behind");
  full.putBytes("behind", 6);
  EXPECT_TRUE(full.overrun());
  EXPECT_EQ(wordsOf(full)[0], 1U);
  KvChunk none;
  none.stepBack();
  EXPECT_TRUE(none.getInt() == 0 && none.overrun());
}

TEST(Chunk, MouseAreaTakesSixNumbersOfAnyCount) {
  std::array<float, 8> values{};
  KvMouseAreaChunk area({&values[0], &values[1], &values[2], &values[3], &values[4], &values[5]});
  EXPECT_EQ(chunkWordsOf(area), 8U);
  const std::vector<Word> whole = {1, 8, 1.0F, 2.0F, 3.0F, 4.0F, 5.0F, 6.0F, 7.0F, 8.0F};
  const struct {
    std::vector<Word> words;
    bool discard, overrun;
    std::array<float, 4> values;  // the first and the last of the six numbers, and two behind them
  } cases[] = {{whole, true, false, {9, 9, 9, 9}},
               {whole, false, false, {1, 6, 9, 9}},
               {{10, kHuge, 1.0F, 2.0F}, false, true, {9, 9, 9, 9}},  // all of the numbers or none
               {{10, -5}, false, false, {9, 9, 9, 9}}};
  for (const auto& c : cases) {
    values.fill(9.0F);
    KvChunk chunk;
    fill(chunk, c.words);
    EXPECT_EQ(area.readChunk(&chunk, c.discard), 1);
    EXPECT_EQ(chunk.overrun(), c.overrun);
    EXPECT_TRUE(chunk.overrun() || chunk.cursor == c.words.size());
    EXPECT_EQ((std::array{values[0], values[5], values[6], values[7]}), c.values);
  }
}

TEST(StepTable, ReadsEveryForm) {
  const std::vector<Word> cells = {0.3F, 0.4F, 0.5F};
  const std::vector<Word> mine = {4, 0x656E694D};
  const struct {
    std::vector<Word> head;  // in front of as many cells as `columns * pages`
    std::vector<Word> tail;
    int columns, pages;  // no pages: the table keeps its state
    std::vector<Word> name;
  } cases[] = {
      {{kMark, 1002, 0.1F, 2.0F, -1.0F, 1, 2}, {2, 0x6968}, 1, 2, {2, 0x6968}},
      {{kMark, 1001, 0.1F, 2.0F, -1.0F, 3, 1}, {0}, 3, 1, {0}},
      {{kMark, 1000, 0.1F, 2.0F, -1.0F, 2, 1}, {}, 2, 1, {7, 0x61666544, 0x00746C75}},
      {{kMark, 1002, 0.1F, 2.0F, -1.0F, 0, 1}, {0}, 0, 1, {0}},
      {{0.4F, 1.0F, 2.0F, 3}, cells, 0, 0, {}},  // the oldest
      {{0.4F, 1.0F, 2.0F, kFormMark, 5, 3}, cells, 0, 0, {}},
      {{0.1F, 2.0F, -1.0F, 2}, {}, 2, 1, mine},  // plain, then by point and by index
      {{0.1F, 2.0F, -1.0F, kFormMark, 0, 3}, {}, 3, 1, mine},
      {{0.1F, 2.0F, -1.0F, kFormMark, 1, 3}, {}, 3, 1, mine},
  };
  const Words before = std::get<Words>(read({}, true));
  for (const auto& c : cases) {
    const auto withCells = [&](std::vector<Word> words, const std::vector<Word>& end) {
      words.insert(words.end(), cells.begin(), cells.begin() + c.columns * c.pages);
      words.insert(words.end(), end.begin(), end.end());
      return words;
    };
    auto words = withCells(c.head, c.tail);
    words.emplace_back(77);  // of whoever reads on
    const auto due = withCells({kMark, 1002, 0.1F, 2.0F, -1.0F, c.columns, c.pages}, c.name);
    for (const bool discard : {false, true}) {
      const bool taken = c.pages > 0 && !discard;
      const Words held = taken ? Words(due.begin(), due.end()) : before;
      EXPECT_EQ(read(words, discard), std::tuple(taken, held, 77, false)) << &c - cases;
    }
  }
}

TEST(StepTable, SizesThatCannotBeAreRefused) {
  // clang-format off
  std::vector<std::vector<Word>> cases = {
      {}, {kMark}, {kMark, 1002, 0.0F}, {0.4F, 1.0F}, {0.4F, 0.0F, 0.0F, kHuge},
      {0.4F, 0.0F, 0.0F, kFormMark, 1, kHuge}, {0.4F, 0.0F, 0.0F, -2}, {0.0F, 1.0F, 0.0F, kHuge},
      {0.0F, 1.0F, 0.0F, 2, 0.5F}, {0.0F, 1.0F, 0.0F, -1}, {0.0F, 1.0F, 0.0F, kFormMark, 1, kHuge},
      {kMark, 1002, 0.5F, 3.0F, 2.0F, 1, 1, 0.5F, 999, 0x41}};
  const std::pair<int, int> sizes[] = {
      {kHuge, kHuge}, {kHuge, 1}, {0, kHuge}, {kHuge, 0}, {65536, 65536}, {-1, 1}, {1, -1}, {3, 1}};
  // clang-format on
  for (const auto& [columns, pages] : sizes) {
    cases.push_back({kMark, 1000, 0.5F, 3.0F, 2.0F, columns, pages, 0.5F, 0.5F});
  }
  const Words before = std::get<Words>(read({}, true));
  for (const auto& words : cases) {
    for (const bool discard : {false, true}) {
      EXPECT_EQ(read(words, discard), std::tuple(false, before, 0, true)) << &words - cases.data();
    }
  }
  KvTableXY table;
  ASSERT_TRUE(table.setPageCount(1025));
  EXPECT_TRUE(!table.setColumns(0) && table.size() == 8);  // it could not be read back
}

TEST(StepTable, ReadsStayInsideAnySize) {
  KvTableXY table;
  table.setColumns(3);
  for (int i = 0; i < 3; ++i) table.setValue(i, 0.1F * static_cast<float>(i + 1));
  EXPECT_TRUE(table.getValue(7, 0) == 0.3F && table.lastColumn() == 7.0F);
  EXPECT_EQ(table.getValue(-4, 0), 0.1F);
  for (const int page : {1, -1, kHuge}) EXPECT_EQ(table.getValue(1, page), 0.2F) << page;
  for (const int at : {-1, 3, kHuge}) table.setValue(at, 0, 9.0F);
  table.setPoint(1.9F, 0.8F);
  table.setPageCount(2);
  table.setValue(2, 1, 0.7F);
  for (const int columns : {20, 3}) {  // pages keep their columns
    table.setColumns(columns);
    EXPECT_EQ(table.getValue(1, 0), 0.8F);
    EXPECT_EQ(table.getValue(2, 1), 0.7F);
    EXPECT_EQ(table.getValue(columns - 1, 0), columns == 3 ? 0.3F : 0.0F);
  }
  for (const bool columns : {true, false}) {
    KvTableXY empty;
    columns ? empty.setColumns(0) : empty.setPageCount(0);
    EXPECT_EQ(empty.getValue(0, 0) + empty.getValue(0), 0.0F);
    empty.setValue(0, 0, 1.0F);
    empty.init();
    EXPECT_EQ(empty.getValue(7, 0), 1.0F);
  }
}

TEST(StepTable, MorphsBetweenItsPages) {
  KvTableXY table;
  table.setPageCount(3);
  for (int page = 0; page < 3; ++page) table.setValue(2, page, 0.2F * static_cast<float>(page + 1));
  table.setMorphPosition(1.25F);
  EXPECT_EQ(table.currentPage(), 1);
  EXPECT_NEAR(table.getValue(2), 0.45F, 1e-6F);
  for (const float refused : {-0.01F, 3.0F, std::numeric_limits<float>::quiet_NaN()}) {
    table.setMorphPosition(refused);
    EXPECT_EQ(table.morphPosition(), 1.25F) << refused;
  }
  table.setValueBetween(2, 1.25F, 0.8F);  // each page goes its part of the way
  EXPECT_NEAR(table.getValue(2, 1), 0.7F, 1e-6F);
  EXPECT_NEAR(table.getValue(2, 2), 0.65F, 1e-6F);
  table.setMorphPosition(2.5F);
  EXPECT_NEAR(table.getValue(2), 0.65F, 1e-6F);  // there is no next page
  table.setPageCount(2);
  EXPECT_EQ(table.currentPage(), 1);
  EXPECT_NEAR(table.morphPosition(), 2.0F, 1e-6F);
  EXPECT_NEAR(table.getValue(2), 0.7F, 1e-6F);
  table.setMorphPosition(0.5F);
  table.setPageCount(1);
  EXPECT_EQ(table.morphPosition(), 0.5F);  // below the new count: it stays
}

}  // namespace
}  // namespace zum::test
