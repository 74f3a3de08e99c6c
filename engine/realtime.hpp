// Marks what the block call may reach: no allocation, lock, system call or exception below it.
//
// Which thread may call an operation, or touch a value, stands in brackets ahead of it:
//
//   [audio]  the thread of the block call. It waits for nobody.
//   [host]   the thread that hands MIDI over, one at a time; it may be the audio thread. Waits for
//            nobody.
//   [main]   the host's other threads: main, window, and the one that asks for states. They may
//            wait for each other and for the end of a block. Windows and dialogs are used by one
//            of them alone.
//   [any]    all of these, at any time
//
// Words behind it narrow it, as in "[audio] between blocks".
#pragma once

#include <utility>

// clang checks the mark at compile time (-Wfunction-effects) and at run time
// (-fsanitize=realtime); other compilers see nothing.
#if defined(__clang__) && defined(__has_cpp_attribute)
#if __has_cpp_attribute(clang::nonblocking)
#define ZUM_CHECKS_REALTIME
#endif
#endif
#ifdef ZUM_CHECKS_REALTIME
#define ZUM_REALTIME noexcept [[clang::nonblocking]]
#else
#define ZUM_REALTIME noexcept
#endif

/// Behind a lambda's parameters: what it captures stays in the registers of the loop around it.
#define ZUM_INLINED __attribute__((always_inline))

namespace zum {

#ifdef ZUM_CHECKS_REALTIME
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wfunction-effects"
#endif
/// Runs `work`, which the compiler cannot check and which is known to keep the promise: a comment
/// at the call says why. The sanitizer still watches it.
template <class Work>
decltype(auto) trusted(Work&& work) ZUM_REALTIME {
  return std::forward<Work>(work)();
}
#ifdef ZUM_CHECKS_REALTIME
#pragma clang diagnostic pop
#endif

}  // namespace zum
