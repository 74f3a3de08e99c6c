// The step table: pages of step values, of which the sequencer plays the first. The window draws
// into it while the audio thread reads.
#pragma once

#include "state/growing_array.hpp"
#include "state/table.hpp"

namespace zum {

class KvTableXY final : public KvTable, public KvInitInterface {
 public:
  static constexpr std::int32_t kSteps = 8;

  KvTableXY();

  /// One page of eight steps, 0 and 1 by turns.
  void init() override;

  /// [audio] Also publishes the column as the running step. A page that is not there reads as
  /// page 0, a column outside as the nearest one, an empty page as 0.
  float getValue(std::int32_t column, std::int32_t page) ZUM_REALTIME;
  /// [any] One cell, of the nearest column; 0 for a page that is not there.
  float cell(std::int32_t column, std::int32_t page) const ZUM_REALTIME;
  /// [any] The value at the morph position, between the current page and the next one.
  float getValue(std::int32_t column) const ZUM_REALTIME;
  /// [any] One cell; cells that are not there are ignored.
  void setValue(std::int32_t column, std::int32_t page, float value) ZUM_REALTIME;
  /// Moves a cell towards `value` on both pages round a page position, further on the nearer one.
  void setValueBetween(std::int32_t column, float page, float value);
  void setValue(std::int32_t index, float value) ZUM_REALTIME override {
    setValue(index, 0, value);
  }
  void setPoint(float position, float value) ZUM_REALTIME override;

  // A new size moves cells. One thread at a time; while a block runs, a step may be heard out of
  // place, but readers always stay inside the memory. False when the memory does not suffice, for
  // more than 1024 columns without pages, and for as many pages without columns.
  std::int32_t size() const ZUM_REALTIME override { return loadShared(columns); }
  /// One page of `count` columns, as far as there is room.
  bool resize(std::int32_t count) ZUM_REALTIME override;
  bool setColumns(std::int32_t count);
  bool setPageCount(std::int32_t count);
  std::int32_t pageCount() const ZUM_REALTIME { return loadShared(pages); }
  /// [main] Makes room for so many cells ahead of a read, which does not allocate. As many as a
  /// chunk has words are always enough.
  bool reserve(std::size_t count) noexcept { return cells.reserve(count); }
  /// [any] Cells that a read may have without an allocation.
  std::size_t capacity() const ZUM_REALTIME { return cells.capacity(); }

  /// Positions outside of the pages are ignored.
  void setMorphPosition(float position);
  float morphPosition() const { return loadShared(morph); }
  std::int32_t currentPage() const { return loadShared(current); }
  /// [any] The column last played, as the window shows it.
  float lastColumn() const;

  std::int32_t readChunk(KvChunk* chunk, bool discard) ZUM_REALTIME override;
  void writeChunk(KvChunk* chunk) const override;

 private:
  std::int32_t readPages(KvChunk& chunk, bool discard) ZUM_REALTIME;
  std::int32_t skipOldestForm(KvChunk& chunk) ZUM_REALTIME;
  std::size_t place(std::int32_t column, std::int32_t page) const ZUM_REALTIME;
  /// False when there is no room, and for sizes that no chunk may have.
  bool setSizes(std::int32_t newColumns, std::int32_t newPages) ZUM_REALTIME;
  void keepMorphInside() ZUM_REALTIME;

  GrowingArray<float> cells;  // page by page
  std::int32_t columns = 0;
  std::int32_t pages = 0;
  float morph = 0.0F;
  std::int32_t current = 0;
  float playedColumn = 0.0F;
};

}  // namespace zum
