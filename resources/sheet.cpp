#include "resources/sheet.hpp"

#include <algorithm>
#include <vector>

#include "resources/flattened.hpp"
#include "resources/lettering.hpp"
#include "resources/shapes.hpp"

namespace zum::pictures {
namespace {

constexpr int kWidth = 1180;
constexpr int kGap = 14;
constexpr int kCaption = 14;
constexpr int kCaptionWidth = 34;
constexpr int kFrameGap = 4;
constexpr int kMostFrames = 6;  // of a long strip

struct Cell {
  const PictureRow* row;
  std::vector<int> frames;
  bool stacked = false;  // frames one below the other
  int width, height;     // without the caption
  int x = 0, y = 0;
};

Cell cellOf(const PictureRow& row) {
  Cell cell{&row, {}, false, 0, 0};
  const int shown = row.frames <= 10 ? row.frames : std::min(row.frames, kMostFrames);
  for (int i = 0; i < shown; ++i) {
    cell.frames.push_back(shown > 1 ? i * (row.frames - 1) / (shown - 1) : 0);
  }
  cell.stacked = row.width > 3 * row.frameHeight;
  const int across = cell.stacked ? 1 : shown;
  const int down = cell.stacked ? shown : 1;
  cell.width = across * row.width + (across - 1) * kFrameGap;
  cell.height = down * row.frameHeight + (down - 1) * kFrameGap;
  return cell;
}

int widthOf(const Cell& cell) { return std::max(cell.width, kCaptionWidth) + kGap; }
int heightOf(const Cell& cell) { return cell.height + kCaption + kGap; }

// Tall ones first, in shelves. Beside the first picture of a shelf lower shelves are stacked up to
// its height. Gives the height of all.
int arrange(std::vector<Cell>& cells) {
  std::sort(cells.begin(), cells.end(), [](const Cell& a, const Cell& b) {
    return a.height != b.height ? a.height > b.height : a.row->id < b.row->id;
  });
  int top = kGap;
  for (std::size_t i = 0; i < cells.size();) {
    const int bottom = top + heightOf(cells[i]);
    const int left = kGap + widthOf(cells[i]);
    cells[i].x = kGap;
    cells[i].y = top + kCaption;
    ++i;
    for (int y = top; i < cells.size() && y + heightOf(cells[i]) <= bottom;) {
      if (left + widthOf(cells[i]) > kWidth) break;
      const int shelf = heightOf(cells[i]);
      for (int x = left; i < cells.size() && x + widthOf(cells[i]) <= kWidth; ++i) {
        cells[i].x = x;
        cells[i].y = y + kCaption;
        x += widthOf(cells[i]);
      }
      y += shelf;
    }
    top = bottom;
  }
  return top;
}

void drawCell(cairo_t* cr, const Cell& cell) {
  const PictureRow& row = *cell.row;
  const Image strip = makePicture(row);
  text(cr, cell.x, cell.y - 4, Align::left, std::to_string(row.id), {10.0, true, 0.0}, kPaper);
  int x = cell.x;
  int y = cell.y;
  for (const int frame : cell.frames) {
    const int height = std::min(row.frameHeight, row.height - frame * row.frameHeight);
    cairo_set_source_surface(cr, strip.picture(), x, y - frame * row.frameHeight);
    cairo_rectangle(cr, x, y, row.width, height);
    cairo_fill(cr);
    (cell.stacked ? y : x) += (cell.stacked ? row.frameHeight : row.width) + kFrameGap;
  }
}

}  // namespace

void writeSheet(const std::string& path) {
  std::vector<Cell> cells;
  for (const auto& rows : {pictureRows(), stripPictureRows()}) {
    for (const PictureRow& row : rows) cells.push_back(cellOf(row));
  }
  const int height = arrange(cells);
  const Image image(kWidth, height);
  fill(image.context(), {0, 0, kWidth, height}, rgb(70, 68, 68));
  for (const Cell& cell : cells) drawCell(image.context(), cell);
  image.writePng(path);
}

}  // namespace zum::pictures
