// Proves realtime_check: run by ctest with the library preloaded. Every kind of forbidden call is
// seen inside a window, under its own name, and nothing is seen outside or from another thread.
#define _GNU_SOURCE
#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <semaphore.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

__attribute__((weak)) void realtimeEnter(void), realtimeLeave(void);
__attribute__((weak)) long realtimeCount(const char*);

static pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
static pthread_cond_t never = PTHREAD_COND_INITIALIZER;
static void* volatile kept;
static volatile int file, word;
static const struct timespec kBrief = {0, 1000000};

static struct timespec soon(void) {
  struct timespec t;
  clock_gettime(CLOCK_REALTIME, &t);
  t.tv_nsec = (t.tv_nsec + 2000000) % 1000000000;
  t.tv_sec += t.tv_nsec < 2000000;
  return t;
}

// clang-format off
static void nothing(void) { memset((void*)&word, 0, sizeof word); soon(); }
static void allocate(void) { kept = malloc(8); }
static void resize(void) { kept = realloc(kept, 64); }
static void release(void) { free(kept); kept = NULL; }
static void align(void) { void* p; kept = posix_memalign(&p, 64, 64) ? NULL : p; }
static void lock(void) { pthread_mutex_lock(&mutex); pthread_mutex_unlock(&mutex); }
static void tryLock(void) { if (!pthread_mutex_trylock(&mutex)) pthread_mutex_unlock(&mutex); }
static void await(void) { const struct timespec t = soon(); pthread_mutex_lock(&mutex); pthread_cond_timedwait(&never, &mutex, &t); pthread_mutex_unlock(&mutex); }
static void openFile(void) { file = open("/dev/null", O_RDWR); }
static void writeFile(void) { if (write(file, "x", 1) < 0) abort(); }
static void closeFile(void) { close(file); }
static void print(void) { fprintf(stderr, "%s", ""); }
static void nap(void) { nanosleep(&kBrief, NULL); }
static void look(void) { poll(NULL, 0, 1); }
static void futex(void) { syscall(SYS_futex, &word, 0, 0, &kBrief, NULL, 0); }
static void library(void) { kept = dlopen("libm.so.6", RTLD_NOW); }
// waits inside the C library, past every watched name
static void hidden(void) { static sem_t s; const struct timespec t = soon(); sem_clockwait(&s, CLOCK_REALTIME, &t); }
// clang-format on

static const struct {
  const char* name;  // null: must not be seen
  void (*run)(void);
} kCases[] = {{NULL, nothing},
              {"malloc", allocate},
              {"realloc", resize},
              {"free", release},
              {"posix_memalign", align},
              {"pthread_mutex_lock", lock},
              {"pthread_mutex_trylock", tryLock},
              {"pthread_cond_timedwait", await},
              {"open", openFile},
              {"write", writeFile},
              {"close", closeFile},
              {"fprintf", print},
              {"nanosleep", nap},
              {"poll", look},
              {"futex", futex},
              {"dlopen", library},
              {"wait", hidden}};
enum { kCaseCount = sizeof kCases / sizeof *kCases };

static void* runAll(void* unused) {
  for (int i = 0; i < kCaseCount; ++i) kCases[i].run();
  return unused;
}

int main(int argc, char** argv) {
  int bad = 0;
  (void)argv;
  if (!realtimeEnter || !realtimeLeave || !realtimeCount) return puts("not preloaded"), 2;
  if (argc > 1) {  // one forbidden call, for the test of exit status and backtrace
    realtimeEnter();
    allocate();
    realtimeLeave();
    return 0;
  }
  for (int i = 0; i < kCaseCount; ++i) {
    const char* name = kCases[i].name;
    const long start = realtimeCount(name);
    realtimeEnter();
    kCases[i].run();
    realtimeLeave();
    const long inside = realtimeCount(name) - start, all = realtimeCount(NULL);
    if (name) kCases[i].run();
    const long outside = realtimeCount(NULL) - all;
    if (inside != (name ? 1 : 0) || outside)
      bad = 1, printf("FAIL %s: %ld inside, %ld outside\n", name ? name : "-", inside, outside);
  }

  pthread_t other;
  if (pthread_create(&other, NULL, runAll, NULL)) return 2;
  const long start = realtimeCount(NULL);
  realtimeEnter();
  for (const clock_t end = clock() + CLOCKS_PER_SEC / 20; clock() < end;) nothing();
  realtimeLeave();
  pthread_join(other, NULL);
  if (realtimeCount(NULL) != start) bad = 1, puts("FAIL another thread was counted");
  puts(bad ? "FAIL" : "PASS");
  return bad;
}
