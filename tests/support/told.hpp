// What a piece of a test makes the program tell on standard error.
#pragma once

#include <gtest/gtest.h>

#include <string>

namespace zum::test {

/// `toldBy([&] { ... })`
template <class Work>
std::string toldBy(const Work& work) {
  testing::internal::CaptureStderr();
  work();
  return testing::internal::GetCapturedStderr();
}

inline bool has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

}  // namespace zum::test
