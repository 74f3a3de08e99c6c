// Runs a fuzz target over every file of a folder, for builds without libFuzzer: `replay FOLDER`.
// The folder's files are played one by one; none to play is a failure.

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int count, char** arguments) {
  if (count != 2) return 2;
  std::error_code failure;
  int played = 0;
  for (const auto& entry : std::filesystem::directory_iterator(arguments[1], failure)) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
    std::cerr << entry.path().string() << '\n';  // the last one shown is what ended the program
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    ++played;
  }
  return played > 0 ? 0 : 1;
}
