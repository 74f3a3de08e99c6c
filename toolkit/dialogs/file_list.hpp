// The rows of a folder: its folders first, then the files that were asked for.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "platform/file_dialogs.hpp"
#include "platform/files.hpp"
#include "toolkit/base_control.hpp"
#include "toolkit/menu_scroll.hpp"

namespace zum {

/// [main] Reports a row that is selected by the mouse. Its value has no meaning.
class FileList final : public KvControl {
 public:
  using KvControl::KvControl;
  static constexpr int kRowHeight = 18;  // pixels

  /// Reads a folder; the row above all leads out of it. Hidden files are left out, and files with
  /// none of the endings. Without filters only folders are listed. False when it cannot be read.
  bool read(const std::string& folder, const std::vector<FileFilter>& filters);
  /// Null for none.
  const FolderEntry* getSelected() const;
  void select(int row);
  void moveSelection(int count) { select(std::max(selected + count, 0)); }
  int rowsInside() const { return getViewSize().height() / kRowHeight; }
  const std::vector<FolderEntry>& getRows() const { return rows; }
  /// The press that was reported came twice.
  bool wasOpened() const { return opened; }

  void draw(CDrawContext& context) override;
  MouseResult onMouseDown(CPoint& where, int buttons) override;
  MouseResult onMouseMoved(CPoint& where, int buttons) override;
  MouseResult onMouseUp(CPoint& where, int buttons) override;
  bool onWheel(CPoint& where, float distance, int buttons) override;

 private:
  ~FileList() override = default;

  std::vector<FolderEntry> rows;
  int selected = -1;
  bool opened = false;
  MenuScroll scroll;
};

}  // namespace zum
