#include "apps/zum/midi_file.hpp"

#include <fcntl.h>
#include <smf.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <fstream>
#include <new>
#include <string>

#include "apps/zum/failure.hpp"
#include "apps/zum/input_file.hpp"

namespace zum {
namespace {

constexpr std::size_t kMostBytes = 64U << 20U;
// What the child may have; it needs up to 60 bytes for each byte of the file.
constexpr rlim_t kMostMemory = 256U << 20U;

[[noreturn]] void failAsTooLong(const std::filesystem::path& path) {
  throw Failure(path.string() + " is too long: as MIDI it takes more than " +
                std::to_string(kMostMemory >> 20U) + " MB of memory; cut it into shorter pieces");
}

// The limit counts from what is mapped by now, which is terabytes under a sanitizer. Without /proc
// there is none.
void limitMemory() {
  rlim_t pages = 0;
  if (!(std::ifstream("/proc/self/statm") >> pages)) return;
  const rlim_t most = pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + kMostMemory;
  struct rlimit limit {};
  if (getrlimit(RLIMIT_AS, &limit) != 0) return;
  limit.rlim_cur = std::min(limit.rlim_cur, most);
  setrlimit(RLIMIT_AS, &limit);
}

bool isChannelMessage(const smf_event_t& event) {
  return event.midi_buffer_length >= 2 && event.midi_buffer_length <= 3 &&
         event.midi_buffer[0] >= 0x80 && event.midi_buffer[0] < 0xF0;
}

// Writes all messages of the song into the pipe. False for what is no song. Runs in the child.
bool parse(const std::vector<char>& bytes, double sampleRate, int pipe) {
  smf_t* song = smf_load_from_memory(bytes.data(), static_cast<int>(bytes.size()));
  if (song == nullptr) return false;
  std::vector<MidiMessage> messages;
  while (const smf_event_t* event = smf_get_next_event(song)) {
    if (!isChannelMessage(*event) || !(event->time_seconds >= 0.0)) continue;
    MidiMessage& message = messages.emplace_back();
    message.frame = std::llround(std::min(event->time_seconds, 1e9) * sampleRate);
    std::copy_n(event->midi_buffer, event->midi_buffer_length, message.bytes.begin());
  }
  const auto* at = reinterpret_cast<const char*>(messages.data());
  for (std::size_t left = messages.size() * sizeof(MidiMessage); left > 0;) {
    const ssize_t put = write(pipe, at, left);
    if (put <= 0) return false;
    at += put;
    left -= static_cast<std::size_t>(put);
  }
  return true;
}

// The library ends the program over a damaged file, and tells standard error why: it reads in a
// process of its own, and silently.
[[noreturn]] void runChild(const std::vector<char>& bytes, double sampleRate, int pipe) {
  constexpr unsigned kLongestRead = 60;  // seconds
  alarm(kLongestRead);
  limitMemory();
  const int silence = open("/dev/null", O_WRONLY);
  if (silence >= 0) {
    dup2(silence, STDERR_FILENO);
    dup2(silence, STDOUT_FILENO);
  }
  bool whole = false;
  try {
    whole = parse(bytes, sampleRate, pipe);
  } catch (const std::bad_alloc&) {
  }
  _exit(whole ? 0 : 1);
}

std::string readAll(int pipe) {
  std::string all;
  std::array<char, 65536> part{};
  for (ssize_t got = 0; (got = read(pipe, part.data(), part.size())) > 0;) {
    all.append(part.data(), static_cast<std::size_t>(got));
  }
  return all;
}

}  // namespace

MidiFile::MidiFile(const std::filesystem::path& path, double sampleRate) {
  const auto bytes = InputFile(path, "MIDI file").readAll(kMostBytes);
  if (!bytes) failAsTooLong(path);
  int ends[2];
  const pid_t child = pipe(ends) == 0 ? fork() : -1;
  if (child < 0) throw Failure("no process is left to read " + path.string() + "; close programs");
  if (child == 0) runChild(*bytes, sampleRate, ends[1]);
  close(ends[1]);
  const std::string parsed = readAll(ends[0]);
  close(ends[0]);
  int status = 0;
  struct rusage usage {};
  pid_t waited = 0;
  while ((waited = wait4(child, &status, 0, &usage)) < 0 && errno == EINTR) {
  }
  if (waited != child || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
    // The library does not tell why it ended.
    if (static_cast<rlim_t>(usage.ru_maxrss) * 1024 > kMostMemory / 2) failAsTooLong(path);
    throw Failure(path.string() + " is no standard MIDI file that can be read; export it again");
  }
  messages.resize(parsed.size() / sizeof(MidiMessage));
  std::memcpy(messages.data(), parsed.data(), messages.size() * sizeof(MidiMessage));
}

std::span<const MidiMessage> MidiFile::takeUntil(std::int64_t frame) {
  const std::size_t start = next;
  while (next < messages.size() && messages[next].frame < frame) ++next;
  return {messages.data() + start, next - start};
}

}  // namespace zum
