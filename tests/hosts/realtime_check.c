// Counts what an audio thread must never do: a library for LD_PRELOAD. The tests' hosts mark their
// block calls with realtimeEnter() and realtimeLeave(); only the thread between the two is watched.
//
//   ZUM_RT_STATUS=99   exit status of a program that made a forbidden call
//
// The first call of each function prints a backtrace. Other waits and sleeps show as "wait": the
// thread gave up the processor by itself. What opens a file as a stream shows as malloc, a wait for
// a condition as pthread_mutex_lock. Not for use together with a sanitizer.
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <execinfo.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <semaphore.h>
#include <stdarg.h>
#include <stdatomic.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#define SHOWN __attribute__((visibility("default")))

typedef struct Function {
  const char* name;
  atomic_long calls;
  struct Function* next;
} Function;

// initial-exec: the other models may allocate at the first access of a thread.
static _Thread_local int depth __attribute__((tls_model("initial-exec")));
static _Thread_local struct rusage entered __attribute__((tls_model("initial-exec")));
static atomic_long total, windows;
static _Atomic(Function*) seen;

static void note(Function* function) {
  const int saved = depth;
  depth = 0;  // the report's own calls do not count
  ++total;
  if (atomic_fetch_add(&function->calls, 1) == 0) {
    function->next = seen;
    while (!atomic_compare_exchange_weak(&seen, &function->next, function)) continue;
    void* frames[48];
    dprintf(2, "realtime_check: %s in the block call\n", function->name);
    backtrace_symbols_fd(frames, backtrace(frames, 48), 2);
  }
  depth = saved;
}

SHOWN void realtimeEnter(void) {
  if (depth == 0) getrusage(RUSAGE_THREAD, &entered);
  if (depth++ == 0) ++windows;
}

SHOWN void realtimeLeave(void) {
  static Function wait = {.name = "wait"};
  struct rusage now;
  if (depth == 0 || --depth != 0 || getrusage(RUSAGE_THREAD, &now)) return;
  // a page of code that comes from disk is the system's wait, not the effect's
  if (now.ru_nvcsw > entered.ru_nvcsw && now.ru_majflt == entered.ru_majflt) note(&wait);
}

// Calls of one function so far, or of all for a null name.
SHOWN long realtimeCount(const char* name) {
  if (!name) return total;
  for (Function* f = seen; f; f = f->next)
    if (!strcmp(f->name, name)) return f->calls;
  return 0;
}

// clang-format off
#define COUNT(text) do { static Function function_ = {.name = text}; if (depth) note(&function_); } while (0)
// Looked up at the start, since a look-up allocates; the second look-up is for callers before that.
#define WATCH(result, name, parameters, arguments) \
  static result(*real_##name) parameters; \
  __attribute__((constructor)) static void find_##name(void) { if (!real_##name) *(void**)&real_##name = dlsym(RTLD_NEXT, #name); } \
  SHOWN result name parameters { COUNT(#name); find_##name(); return real_##name arguments; }

// The allocator by its inner names: looking it up would itself allocate.
void *__libc_malloc(size_t), *__libc_calloc(size_t, size_t), *__libc_realloc(void*, size_t);
void *__libc_memalign(size_t, size_t), __libc_free(void*);
SHOWN void* malloc(size_t n) { COUNT("malloc"); return __libc_malloc(n); }
SHOWN void* calloc(size_t n, size_t m) { COUNT("calloc"); return __libc_calloc(n, m); }
SHOWN void* realloc(void* p, size_t n) { COUNT("realloc"); return __libc_realloc(p, n); }
SHOWN void free(void* p) { if (p) COUNT("free"); __libc_free(p); }
SHOWN void* aligned_alloc(size_t a, size_t n) { COUNT("aligned_alloc"); return __libc_memalign(a, n); }
SHOWN int posix_memalign(void** p, size_t a, size_t n) { COUNT("posix_memalign"); return (*p = __libc_memalign(a, n)) ? 0 : ENOMEM; }

WATCH(int, pthread_mutex_lock, (pthread_mutex_t* m), (m))
WATCH(int, pthread_mutex_trylock, (pthread_mutex_t* m), (m))
WATCH(int, pthread_rwlock_rdlock, (pthread_rwlock_t* l), (l))
WATCH(int, pthread_rwlock_wrlock, (pthread_rwlock_t* l), (l))
WATCH(int, pthread_create, (pthread_t* t, const pthread_attr_t* a, void* (*f)(void*), void* u), (t, a, f, u))
WATCH(int, sem_wait, (sem_t* s), (s))
WATCH(int, nanosleep, (const struct timespec* t, struct timespec* r), (t, r))
WATCH(int, sched_yield, (void), ())
WATCH(int, poll, (struct pollfd* p, nfds_t n, int t), (p, n, t))
WATCH(ssize_t, read, (int f, void* p, size_t n), (f, p, n))
WATCH(ssize_t, write, (int f, const void* p, size_t n), (f, p, n))
WATCH(int, close, (int f), (f))
WATCH(size_t, fread, (void* p, size_t s, size_t n, FILE* f), (p, s, n, f))
WATCH(size_t, fwrite, (const void* p, size_t s, size_t n, FILE* f), (p, s, n, f))
WATCH(int, fputs, (const char* s, FILE* f), (s, f))
WATCH(int, puts, (const char* s), (s))
WATCH(int, vfprintf, (FILE* f, const char* s, va_list a), (f, s, a))
WATCH(void*, mmap, (void* p, size_t n, int pr, int fl, int fd, off_t o), (p, n, pr, fl, fd, o))
WATCH(int, munmap, (void* p, size_t n), (p, n))
WATCH(void*, dlopen, (const char* p, int f), (p, f))

#define PRINT(name, head, stream) SHOWN int name head { COUNT(#name); find_vfprintf(); \
  va_list a; va_start(a, s); const int n = real_vfprintf(stream, s, a); va_end(a); return n; }
PRINT(printf, (const char* s, ...), stdout)
PRINT(fprintf, (FILE* f, const char* s, ...), f)
// What these become in a hardened build.
PRINT(__printf_chk, (int level __attribute__((unused)), const char* s, ...), stdout)
PRINT(__fprintf_chk, (FILE* f, int level __attribute__((unused)), const char* s, ...), f)
WATCH(ssize_t, __read_chk, (int f, void* p, size_t n, size_t room), (f, p, n, room))
#define OPEN(name, head, folder) SHOWN int name head { COUNT(#name); \
  va_list a; va_start(a, flags); const mode_t mode = flags & (O_CREAT | O_TMPFILE) ? va_arg(a, mode_t) : 0; \
  va_end(a); return (int)syscall(SYS_openat, folder, p, flags, mode); }
OPEN(open, (const char* p, int flags, ...), AT_FDCWD)
OPEN(open64, (const char* p, int flags, ...), AT_FDCWD)
OPEN(openat, (int d, const char* p, int flags, ...), d)
// std::atomic::wait and home-made locks come here.
SHOWN long syscall(long number, ...) {
  static long (*real)(long, ...);
  long x[6];
  va_list a; va_start(a, number); for (int i = 0; i < 6; ++i) x[i] = va_arg(a, long); va_end(a);
  if (number == SYS_futex) COUNT("futex");
  if (!real) *(void**)&real = dlsym(RTLD_NEXT, "syscall");
  return real(number, x[0], x[1], x[2], x[3], x[4], x[5]);
}
// clang-format on

__attribute__((constructor)) static void loadUnwinder(void) {  // outside of every window
  void* frame[1];
  backtrace(frame, 1);
}

__attribute__((destructor)) static void finish(void) {
  const char* status = getenv("ZUM_RT_STATUS");
  if (!windows) return;
  dprintf(2, "realtime_check: %ld forbidden calls in %ld blocks", (long)total, (long)windows);
  for (Function* f = seen; f; f = f->next) dprintf(2, ", %s %ld", f->name, (long)f->calls);
  dprintf(2, "\n");
  if (total && status) {
    fflush(NULL);
    _exit(atoi(status));
  }
}
