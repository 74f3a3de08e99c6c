#include "toolkit/dialogs/file_list.hpp"

#include <algorithm>

#include "toolkit/dialogs/dialog_look.hpp"

namespace zum {
namespace {

constexpr int kIndent = 6;        // pixels
constexpr int kRowsPerNotch = 3;  // of the wheel

bool isWanted(const FolderEntry& entry, const std::vector<FileFilter>& filters) {
  if (entry.name.starts_with('.')) return false;
  return entry.isFolder || std::any_of(filters.begin(), filters.end(), [&](const auto& filter) {
           return entry.name.ends_with("." + filter.extension);
         });
}

}  // namespace

bool FileList::read(const std::string& folder, const std::vector<FileFilter>& filters) {
  const auto entries = listFolder(folder);
  if (!entries) return false;
  rows.clear();
  if (folder != "\\") rows.push_back({"..", true});
  for (const bool folders : {true, false}) {
    for (const FolderEntry& entry : *entries) {
      if (entry.isFolder == folders && isWanted(entry, filters)) rows.push_back(entry);
    }
  }
  selected = -1;
  const CRect& size = getViewSize();
  scroll = {};
  scroll.setRows(static_cast<int>(rows.size()), rowsInside());
  scroll.setBar(
      {size.right - 1 - MenuScroll::kWidth, size.top + 1, size.right - 1, size.bottom - 1});
  setDirty(true);
  return true;
}

const FolderEntry* FileList::getSelected() const {
  return selected >= 0 ? &rows[static_cast<std::size_t>(selected)] : nullptr;
}

void FileList::select(int row) {
  selected = std::clamp(row, -1, static_cast<int>(rows.size()) - 1);
  if (selected >= 0) scroll.show(selected, rowsInside());
  setDirty(true);
}

void FileList::draw(CDrawContext& context) {
  const CRect& size = getViewSize();
  context.setFillColor(dialog_look::kField);
  context.setFrameColor(dialog_look::kEdge);
  context.drawRect(size, DrawStyle::filledAndStroked);
  context.setFont(font);
  const int right = size.right - (scroll.isNeeded() ? MenuScroll::kWidth : 0) - 1;
  const int first = scroll.firstRow();
  const int end = std::min(static_cast<int>(rows.size()), first + rowsInside());
  for (int row = first; row < end; ++row) {
    const int top = size.top + 1 + (row - first) * kRowHeight;
    const CRect place{size.left + 1, top, right, top + kRowHeight};
    if (row == selected) {
      context.setFillColor(dialog_look::kButton);
      context.drawRect(place, DrawStyle::filled);
    }
    const FolderEntry& entry = rows[static_cast<std::size_t>(row)];
    context.setFontColor(dialog_look::kText);
    context.drawString(entry.isFolder ? entry.name + "/" : entry.name,
                       {place.left + kIndent, place.top, place.right, place.bottom}, false,
                       TextAlign::left);
  }
  scroll.draw(context, dialog_look::kPanel, dialog_look::kEdge);
}

MouseResult FileList::onMouseDown(CPoint& where, int buttons) {
  if (KvControl::onMouseDown(where, buttons) != MouseResult::handled) {
    return MouseResult::notHandled;
  }
  scroll.dragged = scroll.isOn(where);
  if (scroll.dragged) return onMouseMoved(where, buttons);
  const int place = (where.y - getViewSize().top - 1) / kRowHeight;
  const int row = scroll.firstRow() + place;
  if (place >= rowsInside() || row >= static_cast<int>(rows.size())) return MouseResult::done;
  opened = (buttons & buttons::kDoubleClick) != 0 && row == selected;
  select(row);
  report();
  return MouseResult::done;
}

MouseResult FileList::onMouseMoved(CPoint& where, int /*buttons*/) {
  if (!scroll.dragged) return MouseResult::notHandled;
  scroll.drag(where);
  setDirty(true);
  return MouseResult::handled;
}

MouseResult FileList::onMouseUp(CPoint& /*where*/, int /*buttons*/) {
  scroll.dragged = false;
  return MouseResult::handled;
}

bool FileList::onWheel(CPoint& /*where*/, float distance, int /*buttons*/) {
  scroll.moveRows(static_cast<int>(-distance * kRowsPerNotch));
  setDirty(true);
  return true;
}

}  // namespace zum
