// Proves realtime_check: run by ctest with the library preloaded. Every kind of forbidden call is
// seen inside a window, under its own name, and nothing is seen outside or from another thread.
#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/futex.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <thread>

#include "tests/support/realtime_watch.hpp"

extern "C" [[gnu::weak]] long realtimeCount(const char* name);

namespace zum::test {
namespace {

pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
void* volatile kept;
int file, word;
const sigset_t kNoSignals{};
constexpr timespec kBrief{0, 1000000};

const struct {
  const char* name;
  void (*run)();
} kForbidden[] = {
    {"malloc", [] { kept = std::malloc(8); }},
    {"free",
     [] {
       std::free(kept);
       kept = nullptr;
     }},
    {"aligned_alloc", [] { kept = std::aligned_alloc(64, 64); }},
    {"pthread_mutex_lock", [] { pthread_mutex_lock(&mutex), pthread_mutex_unlock(&mutex); }},
    {"open", [] { file = open("/dev/null", O_RDWR); }},
    {"write", [] { EXPECT_EQ(write(file, "x", 1), 1); }},
    {"fprintf", [] { (void)std::fprintf(stderr, "%s", ""); }},
    {"nanosleep", [] { nanosleep(&kBrief, nullptr); }},
    {"futex", [] { syscall(SYS_futex, &word, FUTEX_WAIT, 0, &kBrief, nullptr, 0); }},
    {"dlopen", [] { kept = dlopen("libm.so.6", RTLD_NOW); }},
    {"wait", [] { sigtimedwait(&kNoSignals, nullptr, &kBrief); }},  // past every watched name
};

TEST(RealtimeCheckDeathTest, EndsAProgramWithTheStatusThatWasAskedFor) {
  ASSERT_NE(realtimeCount, nullptr) << "not preloaded";
  const auto offend = [] {
    setenv("ZUM_RT_STATUS", "99", 1);
    {
      const RealtimeWatch watch;
      kept = std::malloc(8);
    }
    std::exit(0);
  };
  EXPECT_EXIT(offend(), testing::ExitedWithCode(99), "1 forbidden calls in 1 blocks, malloc 1");
}

TEST(RealtimeCheck, SeesEachCallInsideOfAWindowOfItsThreadAlone) {
  std::atomic<bool> begun{false}, ended{false};
  std::thread clean([&] {
    const RealtimeWatch watch;
    begun = true;
    while (!ended) continue;
  });
  while (!begun) std::this_thread::yield();
  for (const auto& [name, run] : kForbidden) {
    const long before = realtimeCount(name);
    {
      const RealtimeWatch watch;
      run();
    }
    EXPECT_EQ(realtimeCount(name), before + 1) << name;
    const long all = realtimeCount(nullptr);
    run();
    EXPECT_EQ(realtimeCount(nullptr), all) << name;
  }
  const long all = realtimeCount(nullptr);
  ended = true;
  clean.join();
  EXPECT_EQ(realtimeCount(nullptr), all);
}

}  // namespace
}  // namespace zum::test
