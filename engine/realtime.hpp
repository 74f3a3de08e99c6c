// Marks what the block call may reach: no allocation, lock, system call or exception below it.
#pragma once

// clang checks the mark at compile time (-Wfunction-effects) and at run time
// (-fsanitize=realtime); other compilers see nothing.
#if defined(__clang__) && defined(__has_cpp_attribute)
#if __has_cpp_attribute(clang::nonblocking)
#define ZUM_REALTIME noexcept [[clang::nonblocking]]
#endif
#endif
#ifndef ZUM_REALTIME
#define ZUM_REALTIME noexcept
#endif

/// Behind a lambda's parameters: what it captures stays in the registers of the loop around it.
#define ZUM_INLINED __attribute__((always_inline))

// Round a call that cannot be checked and is known to keep the promise.
#if defined(__clang__)
#define ZUM_TRUSTED_BEGIN                                              \
  _Pragma("clang diagnostic push")                                     \
      _Pragma("clang diagnostic ignored \"-Wunknown-warning-option\"") \
          _Pragma("clang diagnostic ignored \"-Wfunction-effects\"")
#define ZUM_TRUSTED_END _Pragma("clang diagnostic pop")
#else
#define ZUM_TRUSTED_BEGIN
#define ZUM_TRUSTED_END
#endif
