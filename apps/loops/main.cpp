// zum-loops FOLDER: synthesises the three factory loops. Run by hand when a loop is to change.
#include <array>
#include <cstdio>
#include <filesystem>
#include <string>

#include "apps/loops/instruments.hpp"
#include "apps/loops/wav.hpp"

namespace {

struct Product {
  const char* name;
  zum::loops::Loop (*make)();
};

constexpr std::array kProducts = {
    Product{"Drums.wav", zum::loops::drums},
    Product{"Bass.wav", zum::loops::bass},
    Product{"Chords.wav", zum::loops::chords},
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2 || argv[1][0] == '-' || argv[1][0] == '\0') {
    std::fputs(
        "usage: zum-loops FOLDER\n"
        "Writes Drums.wav, Bass.wav and Chords.wav into FOLDER, which has to exist.\n",
        stderr);
    return 2;
  }
  const std::filesystem::path folder = argv[1];
  std::error_code code;
  if (!std::filesystem::is_directory(folder, code)) {
    std::fprintf(stderr, "zum-loops: '%s' is not a folder. Create it first (mkdir -p '%s').\n",
                 folder.c_str(), folder.c_str());
    return 1;
  }
  for (const Product& product : kProducts) {
    const std::filesystem::path path = folder / product.name;
    if (const std::string error = zum::loops::writeWav(path, product.make()); !error.empty()) {
      std::fprintf(stderr,
                   "zum-loops: cannot write '%s': %s\n"
                   "Check that the folder may be written and that its disk has a megabyte free.\n",
                   path.c_str(), error.c_str());
      return 1;
    }
  }
  return 0;
}
