#include "tests/support/failing_memory.hpp"

#include <cstddef>
#include <cstdlib>

namespace zum::test {
namespace {

thread_local int untilFailure = 0;
thread_local bool failed = false;

void* allocate(std::size_t bytes, std::align_val_t alignment) noexcept {
  if (untilFailure > 0 && --untilFailure == 0) {
    failed = true;
    return nullptr;
  }
  const auto unit = static_cast<std::size_t>(alignment);
  return std::aligned_alloc(unit, (bytes / unit + 1) * unit);
}

void* allocateOrThrow(std::size_t bytes, std::align_val_t alignment) {
  void* const memory = allocate(bytes, alignment);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

void failAllocation(int number) noexcept {
  untilFailure = number;
  failed = false;
}

bool hasFailed() noexcept {
  untilFailure = 0;
  return failed;
}

}  // namespace zum::test

// Every form that the product uses, since checkers of memory bring forms of their own.
using std::align_val_t;
using std::nothrow_t;
using std::size_t;
using zum::test::allocate;
using zum::test::allocateOrThrow;

constexpr align_val_t kPlain{alignof(std::max_align_t)};

void* operator new(size_t n) { return allocateOrThrow(n, kPlain); }
void* operator new[](size_t n) { return allocateOrThrow(n, kPlain); }
void* operator new(size_t n, align_val_t a) { return allocateOrThrow(n, a); }
void* operator new[](size_t n, align_val_t a) { return allocateOrThrow(n, a); }
void* operator new(size_t n, const nothrow_t& /*none*/) noexcept { return allocate(n, kPlain); }
void* operator new[](size_t n, const nothrow_t& /*none*/) noexcept { return allocate(n, kPlain); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, size_t /*n*/) noexcept { std::free(p); }
void operator delete[](void* p, size_t /*n*/) noexcept { std::free(p); }
void operator delete(void* p, align_val_t /*a*/) noexcept { std::free(p); }
void operator delete[](void* p, align_val_t /*a*/) noexcept { std::free(p); }
void operator delete(void* p, size_t /*n*/, align_val_t /*a*/) noexcept { std::free(p); }
void operator delete[](void* p, size_t /*n*/, align_val_t /*a*/) noexcept { std::free(p); }
void operator delete(void* p, const nothrow_t& /*none*/) noexcept { std::free(p); }
void operator delete[](void* p, const nothrow_t& /*none*/) noexcept { std::free(p); }
