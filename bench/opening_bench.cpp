// What opening instances costs in one process, by each face of the shipped file: the first, the
// second, and the median of those behind, 101 in all, with the factory presets installed and a rate
// set; and what it costs ahead of them to load the file. Milliseconds of the processor, KB of
// the heap, and KB that the process holds in memory.
// `opening_bench [ROUNDS]`, medians of 9 rounds without it.

#include <fcntl.h>
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <memory>
#include <vector>

#include "bench/players.hpp"
#include "platform/registry_store.hpp"
#include "state/path_text.hpp"
#include "state/settings.hpp"
#include "tests/support/own_home.hpp"

namespace zum::bench {
namespace {

constexpr std::size_t kInstances = 101;

struct Cost {
  double ms;
  double heap;  // KB
  double held;  // KB

  Cost operator-(const Cost& before) const {
    return {ms - before.ms, heap - before.heap, held - before.held};
  }
};
constexpr std::array kParts = {&Cost::ms, &Cost::heap, &Cost::held};

/// KB that are in memory.
double residentSize() {
  std::array<char, 64> text{};
  const int file = open("/proc/self/statm", O_RDONLY | O_CLOEXEC);
  const bool isRead = file >= 0 && read(file, text.data(), text.size() - 1) > 0;
  close(file);
  char* resident = nullptr;
  (void)std::strtol(text.data(), &resident, 10);
  const double pages = isRead ? std::strtod(resident, nullptr) : 0.0;
  return pages * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1024.0;
}

Cost costNow() {
  timespec now{};  // of this process, whatever else the machine does meanwhile
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  const struct mallinfo2 heap = mallinfo2();
  return {static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) * 1e-6,
          static_cast<double>(heap.uordblks + heap.hblkhd) / 1024.0, residentSize()};
}

Cost medianOf(std::vector<Cost> costs) {
  Cost median{};
  for (const auto part : kParts) {
    const auto middle = costs.begin() + static_cast<std::ptrdiff_t>(costs.size() / 2);
    std::ranges::nth_element(costs, middle, {}, part);
    median.*part = (*middle).*part;
  }
  return median;
}

using Row = std::array<Cost, 4>;  // the file; the first instance, the second, later ones

template <class Face>
Row openMany() {
  const Cost start = costNow();
  const test::PluginFile file(ZUM_PLUGIN);
  const Cost load = costNow() - start;
  std::vector<std::unique_ptr<Player>> players;
  players.reserve(kInstances);
  std::vector<Cost> costs;
  costs.reserve(kInstances);
  while (players.size() < kInstances) {
    const Cost before = costNow();
    players.push_back(std::make_unique<Face>());
    costs.push_back(costNow() - before);
  }
  return {load, costs[0], costs[1], medianOf({costs.begin() + 2, costs.end()})};
}

/// In a process of its own, whose first instance it makes.
Row inAProcess(Row (*measure)()) {
  std::array<int, 2> ends{};
  Row row{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) std::abort();
  const pid_t child = fork();
  if (child == 0) {
    row = measure();
    const bool isTold = write(ends[1], &row, sizeof row) == sizeof row;
    _exit(isTold ? 0 : 1);
  }
  close(ends[1]);
  int status = 0;
  const bool isWhole = read(ends[0], &row, sizeof row) == sizeof row;
  close(ends[0]);
  if (waitpid(child, &status, 0) != child || status != 0 || !isWhole) std::abort();
  return row;
}

void measure(long rounds) {
  constexpr struct {
    const char* name;
    Row (*openMany)();
  } kFaces[] = {{"bare", openMany<Bare>}, {"clap", openMany<Clap>}, {"vst3", openMany<Vst3>}};
  const test::OwnHome home;
  initSettings();
  writeSettingString(kContentPath, toInternalPath(ZUM_CONTENT "/"));
  writeSettingString(kPresetPath, toInternalPath(ZUM_CONTENT "/Presets/"));
  // a store that was written just now is not relied on
  const auto longAgo = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
  std::filesystem::last_write_time(RegistryStore::file(), longAgo);
  std::printf("%-6s", "");
  for (const char* column : {"file", "1st", "2nd", "on"}) {
    std::printf(" %5s ms %8s %8s  ", column, "KB heap", "KB held");
  }
  std::printf("\n");
  for (const auto& face : kFaces) {
    std::array<std::vector<Cost>, std::tuple_size_v<Row>> all;
    for (long round = 0; round < rounds; ++round) {
      const Row row = inAProcess(face.openMany);
      for (std::size_t i = 0; i < row.size(); ++i) all[i].push_back(row[i]);
    }
    std::printf("%-6s", face.name);
    for (const std::vector<Cost>& costs : all) {
      const Cost median = medianOf(costs);
      std::printf(" %8.2f %8.0f %8.0f  ", median.ms, median.heap, median.held);
    }
    std::printf("\n");
  }
}

}  // namespace
}  // namespace zum::bench

int main(int count, char** arguments) {
  zum::bench::measure(count > 1 ? std::strtol(arguments[1], nullptr, 10) : 9);
}
