// Catches a power or a sine that has one bit unlike the others', on any compiler and processor: a
// sweep, hashed and compared with what was recorded. ZUM_EVERY_FLOAT=1 looks at all floats from 0
// to 1, and asks for the very bits of the library's functions, which glibc's have on x86-64.

#include "engine/powers.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>

#include "engine/sine.hpp"

namespace zum::test {
namespace {

constexpr float kWholeTurn = 6.283185958862305F;
constexpr auto kBitsOf1 = std::bit_cast<std::uint32_t>(1.0F);

const struct Row {
  const char* name;
  float (*of)(float);
  float (*library)(float);
  std::uint64_t hash;  // of every 10007th float
} kRows[] = {
    {"resonance", resonancePower, [](float x) { return std::pow(x, 0.8399999737739563F); },
     0x52CED9FCCE16AE3CU},
    {"trigger", triggerPower, [](float x) { return std::pow(x, 0.800000011920929F); },
     0x48C0172DD0E686D8U},
    {"sine", [](float x) { return sineOf(x * kWholeTurn); },
     [](float x) { return std::sin(x * kWholeTurn); }, 0x65A6340DD4B3CBC5U},
    {"sine below 0", [](float x) { return sineOf(-x * kWholeTurn); },
     [](float x) { return std::sin(-x * kWholeTurn); }, 0x4D3D6137D4B3CBC5U},
    {"pitch", [](float x) { return powerOfTwo(x * 16.0F - 8.0F); },
     [](float x) { return std::exp2(x * 16.0F - 8.0F); }, 0x4A1840544EA7E0A3U},
};

std::uint64_t hashOf(float (*function)(float)) {
  std::uint64_t hash = 0xCBF29CE484222325U;
  for (std::uint32_t bits = 0; bits <= kBitsOf1; bits += 10007) {
    const float value = function(std::bit_cast<float>(bits));
    hash = (hash ^ std::bit_cast<std::uint32_t>(value)) * 0x100000001B3U;
  }
  return hash;
}

TEST(Powers, HaveTheBitsThatWereRecorded) {
  for (const Row& row : kRows) EXPECT_EQ(hashOf(row.of), row.hash) << row.name;
}

TEST(Powers, AgreeWithTheLibrary) {
  const bool every = std::getenv("ZUM_EVERY_FLOAT") != nullptr;
  for (const Row& row : kRows) {
    std::uint32_t unlike = 0;
    for (std::uint32_t bits = 0; bits <= kBitsOf1; bits += every ? 1 : 10007) {
      const auto x = std::bit_cast<float>(bits);
      const float expected = row.library(x);
      const float most = every ? 0.0F : 2.5e-7F * std::fabs(expected);
      if (!(std::fabs(row.of(x) - expected) <= most)) ++unlike;
    }
    EXPECT_EQ(unlike, 0U) << row.name;
  }
}

TEST(Powers, KeepTheirEnds) {
  constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  for (const float below : {0.0F, -0.0F, -1.0F, -kInfinity, kNaN}) {
    EXPECT_EQ(resonancePower(below), 0.0F);
  }
  EXPECT_EQ(resonancePower(1.0F), 1.0F);
  for (const float outside : {0.0F, kInfinity, kNaN, 120.0F}) {  // 32 bits count no further
    EXPECT_EQ(sineOf(outside), 0.0F);
    EXPECT_EQ(sineOf(-outside), 0.0F);
  }
  EXPECT_NEAR(sineOf(std::nextafter(120.0F, 0.0F)), std::sin(120.0), 1e-4);
}

}  // namespace
}  // namespace zum::test
