// The step table: pages of step values, of which the sequencer plays the first. The window draws
// into it while the audio thread reads.
#pragma once

#include <vector>

#include "state/table.hpp"

namespace zum {

class KvTableXY final : public KvTable, public KvInitInterface {
 public:
  static constexpr std::int32_t kSteps = 8;

  KvTableXY() { init(); }

  /// One page of eight steps, 0 and 1 by turns.
  void init() override;

  /// [audio] Also publishes the column as the running step. A page that is not there reads as
  /// page 0, a column outside as the nearest one, an empty page as 0.
  float getValue(std::int32_t column, std::int32_t page) ZUM_REALTIME;
  /// The value at the morph position, between the current page and the next one.
  float getValue(std::int32_t column) const;
  /// One cell; cells that are not there are ignored.
  void setValue(std::int32_t column, std::int32_t page, float value);
  /// Shares `value` between the two pages round a page position, each taking its part of the way.
  void setValueBetween(std::int32_t column, float page, float value);
  void setValue(std::int32_t index, float value) override { setValue(index, 0, value); }
  void setPoint(float position, float value) override;

  // Sizes move memory: only while neither a block, nor the window, nor a writer of chunks reads.
  std::int32_t size() const override { return columns; }
  /// One page of `count` columns.
  void resize(std::int32_t count) override {
    setPageCount(1);
    setColumns(count);
  }
  void setColumns(std::int32_t count);
  void setPageCount(std::int32_t count);
  std::int32_t pageCount() const { return static_cast<std::int32_t>(pages.size()); }

  /// Taken only inside the pages.
  void setMorphPosition(float position);
  float morphPosition() const { return morph; }
  std::int32_t currentPage() const { return current; }
  /// [any] The column last played, as the window shows it.
  float lastColumn() const;

  std::int32_t readChunk(KvChunk* chunk, bool discard) override;
  void writeChunk(KvChunk* chunk) override;

 private:
  using Page = std::vector<float>;

  std::int32_t readPages(KvChunk& chunk, bool discard);
  std::int32_t skipOldestForm(KvChunk& chunk);
  float cell(std::int32_t column, std::size_t page) const ZUM_REALTIME;

  std::vector<Page> pages;
  std::int32_t columns = 0;
  float morph = 0.0F;
  std::int32_t current = 0;
  float playedColumn = 0.0F;
};

}  // namespace zum
