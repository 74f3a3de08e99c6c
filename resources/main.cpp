// zum-draw-pictures: draws the pictures of the window and of the transport strip, at build time.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <span>
#include <string>

#include "platform/standard_streams.hpp"
#include "resources/bitmap_writer.hpp"
#include "resources/flattened.hpp"
#include "resources/sheet.hpp"

namespace {

constexpr const char* kUsage =
    "usage: zum-draw-pictures FOLDER                          bitmap files 1000.bmp to 1058.bmp\n"
    "       zum-draw-pictures --strip FOLDER                  the strip's, 1100.bmp to 1106.bmp\n"
    "       zum-draw-pictures --sheet FILE.png                all pictures on one sheet\n"
    "       zum-draw-pictures --preview FILE.png PAGE [0..1]  the window; PAGE is filter, vowel,\n"
    "                                                         lfo, sync, sequencer, panels, "
    "about\n";

using namespace zum::pictures;

void writeAll(std::span<const PictureRow> rows, const std::string& folder) {
  for (const PictureRow& row : rows) {
    writeBitmap(makePicture(row), folder + '/' + std::to_string(row.id) + ".bmp");
  }
}

int run(int count, char** words) {
  const std::string first = count > 1 ? words[1] : "";
  if (first == "--sheet" && count == 3) {
    writeSheet(words[2]);
  } else if (first == "--preview" && (count == 4 || count == 5)) {
    writePreview(words[2], words[3], count == 5 ? std::strtod(words[4], nullptr) : 0.6);
  } else if (count == 2 && !first.empty() && first[0] != '-') {
    writeAll(pictureRows(), first);
  } else if (first == "--strip" && count == 3) {
    writeAll(stripPictureRows(), words[2]);
  } else {
    (void)std::fputs(kUsage, stderr);
    return 2;
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  zum::openStandardStreams();
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    (void)std::fprintf(stderr, "zum-draw-pictures: %s\n", error.what());
    return 1;
  }
}
