// Four floats or two doubles in one register. The arithmetic operators are the compiler's own; this
// file adds what they lack: with intrinsics on x86-64 and on 64-bit ARM, in plain loops elsewhere.
// All forms give the same bits. ZUM_PLAIN_LANES asks for the loops on any processor.
#pragma once

#include <cstdint>
#include <cstring>

#if defined(ZUM_PLAIN_LANES)
#elif defined(__SSE2__)
#include <emmintrin.h>
#define ZUM_SSE2_LANES
#elif defined(__aarch64__)
#include <arm_neon.h>
#define ZUM_NEON_LANES
#endif

namespace zum {

using Float4 = float __attribute__((vector_size(16)));
using Int4 = std::int32_t __attribute__((vector_size(16)));
using Double2 = double __attribute__((vector_size(16)));

inline Float4 splat(float x) { return Float4{x, x, x, x}; }
inline Int4 splat(std::int32_t x) { return Int4{x, x, x, x}; }

/// {low, low, high, high}
inline Float4 halves(float low, float high) { return Float4{low, low, high, high}; }

/// Lanes 0 and 1, twice.
inline Float4 lowTwice(Float4 x) { return __builtin_shufflevector(x, x, 0, 1, 0, 1); }
/// Lanes 2 and 3, twice.
inline Float4 highTwice(Float4 x) { return __builtin_shufflevector(x, x, 2, 3, 2, 3); }
/// Lane 0 in all four.
inline Float4 firstLane(Float4 x) { return __builtin_shufflevector(x, x, 0, 0, 0, 0); }
/// Lane 1 in all four.
inline Float4 secondLane(Float4 x) { return __builtin_shufflevector(x, x, 1, 1, 1, 1); }
/// The last two frames once the pair `now` has followed `before`, or its first frame alone.
inline Float4 lastTwo(Float4 before, Float4 now, int frames) {
  return frames == 2 ? now : __builtin_shufflevector(before, now, 2, 3, 4, 5);
}
/// Lanes 0 and 1 of `low`, then lanes 0 and 1 of `high`.
inline Float4 joinLow(Float4 low, Float4 high) {
  return __builtin_shufflevector(low, high, 0, 1, 4, 5);
}

/// Lanes 2 and 3 of `low`, then lanes 2 and 3 of `high`.
inline Float4 joinHigh(Float4 low, Float4 high) {
  return __builtin_shufflevector(low, high, 2, 3, 6, 7);
}
/// Lanes 0 and 1 of `low`, then lanes 2 and 3 of `high`.
inline Float4 joinEnds(Float4 low, Float4 high) {
  return __builtin_shufflevector(low, high, 0, 1, 6, 7);
}
/// {a[0], b[0], a[1], b[1]}
inline Float4 interleaveLow(Float4 a, Float4 b) {
  return __builtin_shufflevector(a, b, 0, 4, 1, 5);
}

/// Lanes 0 and 2, twice.
inline Float4 evenLanes(Float4 x) { return __builtin_shufflevector(x, x, 0, 2, 0, 2); }
/// Lanes 1 and 3, twice.
inline Float4 oddLanes(Float4 x) { return __builtin_shufflevector(x, x, 1, 3, 1, 3); }

inline Float4 toFloats(Int4 x) { return __builtin_convertvector(x, Float4); }

/// All four lanes. No alignment is asked.
inline void storeAll(float* p, Float4 x) { std::memcpy(p, &x, sizeof x); }
inline void storeAll(std::int32_t* p, Int4 x) { std::memcpy(p, &x, sizeof x); }

/// `mask` lanes are all ones or all zeros.
inline Float4 select(Int4 mask, Float4 whenSet, Float4 whenClear) {
  return reinterpret_cast<Float4>((reinterpret_cast<Int4>(whenSet) & mask) |
                                  (reinterpret_cast<Int4>(whenClear) & ~mask));
}

inline Float4 absolute(Float4 x) {
  return reinterpret_cast<Float4>(reinterpret_cast<Int4>(x) & splat(0x7FFFFFFF));
}

#if defined(ZUM_SSE2_LANES)

/// a < b ? a : b, so a value that is not a number in `b` passes.
inline Float4 smaller(Float4 a, Float4 b) { return _mm_min_ps(a, b); }
/// a > b ? a : b, so a value that is not a number in `b` passes.
inline Float4 larger(Float4 a, Float4 b) { return _mm_max_ps(a, b); }
/// Toward zero; lanes out of the integer's range hold an unspecified integer.
inline Int4 truncateLanes(Float4 x) { return reinterpret_cast<Int4>(_mm_cvttps_epi32(x)); }
inline Double2 widenLow(Float4 x) { return _mm_cvtps_pd(x); }
inline Float4 narrow(Double2 x) { return _mm_cvtpd_ps(x); }
/// One or two floats from `p`, then zeros.
template <int count>
Float4 loadLow(const float* p) {
  if constexpr (count == 1) return _mm_load_ss(p);
  double both = 0.0;
  std::memcpy(&both, p, sizeof both);
  return _mm_castpd_ps(_mm_set_sd(both));
}
inline void storeLowPair(float* p, Float4 x) { _mm_storel_pi(reinterpret_cast<__m64*>(p), x); }
inline void storeHighPair(float* p, Float4 x) { _mm_storeh_pi(reinterpret_cast<__m64*>(p), x); }
/// {a[0], a[1], b[0], b[1]}
inline Float4 loadPairs(const float* a, const float* b) {
  return _mm_loadh_pi(_mm_loadl_pi(_mm_setzero_ps(), reinterpret_cast<const __m64*>(a)),
                      reinterpret_cast<const __m64*>(b));
}
inline bool anyLaneSet(Int4 mask) { return _mm_movemask_ps(reinterpret_cast<Float4>(mask)) != 0; }

#elif defined(ZUM_NEON_LANES)

// By comparison: the processor's own minimum and maximum treat what is not a number otherwise.
inline Float4 smaller(Float4 a, Float4 b) { return vbslq_f32(vcltq_f32(a, b), a, b); }
inline Float4 larger(Float4 a, Float4 b) { return vbslq_f32(vcgtq_f32(a, b), a, b); }
inline Int4 truncateLanes(Float4 x) { return vcvtq_s32_f32(x); }
inline Double2 widenLow(Float4 x) { return vcvt_f64_f32(vget_low_f32(x)); }
inline Float4 narrow(Double2 x) { return vcombine_f32(vcvt_f32_f64(x), vdup_n_f32(0.0F)); }
template <int count>
Float4 loadLow(const float* p) {
  if constexpr (count == 1) return vsetq_lane_f32(*p, vdupq_n_f32(0.0F), 0);
  return vcombine_f32(vld1_f32(p), vdup_n_f32(0.0F));
}
inline void storeLowPair(float* p, Float4 x) { vst1_f32(p, vget_low_f32(x)); }
inline void storeHighPair(float* p, Float4 x) { vst1_f32(p, vget_high_f32(x)); }
inline Float4 loadPairs(const float* a, const float* b) {
  return vcombine_f32(vld1_f32(a), vld1_f32(b));
}
inline bool anyLaneSet(Int4 mask) { return vmaxvq_u32(reinterpret_cast<uint32x4_t>(mask)) != 0; }

#else

inline Float4 smaller(Float4 a, Float4 b) {
  for (int i = 0; i < 4; ++i) a[i] = a[i] < b[i] ? a[i] : b[i];
  return a;
}
inline Float4 larger(Float4 a, Float4 b) {
  for (int i = 0; i < 4; ++i) a[i] = a[i] > b[i] ? a[i] : b[i];
  return a;
}
inline Int4 truncateLanes(Float4 x) {
  Int4 whole{};
  constexpr float kEnd = 2147483648.0F;
  for (int i = 0; i < 4; ++i) {
    if (x[i] >= -kEnd && x[i] < kEnd) whole[i] = static_cast<std::int32_t>(x[i]);
  }
  return whole;
}
// Converted lane by lane, gcc 12 takes the two for one another's inverse, and leaves both out.
using Float2 = float __attribute__((vector_size(8)));
inline Double2 widenLow(Float4 x) {
  return __builtin_convertvector(__builtin_shufflevector(x, x, 0, 1), Double2);
}
inline Float4 narrow(Double2 x) {
  return __builtin_shufflevector(__builtin_convertvector(x, Float2), Float2{}, 0, 1, 2, 3);
}
template <int count>
Float4 loadLow(const float* p) {
  return Float4{p[0], count == 2 ? p[1] : 0.0F, 0.0F, 0.0F};
}
inline void storeLowPair(float* p, Float4 x) {
  p[0] = x[0];
  p[1] = x[1];
}
inline void storeHighPair(float* p, Float4 x) {
  p[0] = x[2];
  p[1] = x[3];
}
inline Float4 loadPairs(const float* a, const float* b) { return Float4{a[0], a[1], b[0], b[1]}; }
inline bool anyLaneSet(Int4 mask) { return (mask[0] | mask[1] | mask[2] | mask[3]) != 0; }

#endif

/// The first one or two lanes.
template <int count>
void storeLow(float* p, Float4 x) {
  if constexpr (count == 1) {
    *p = x[0];
  } else {
    storeLowPair(p, x);
  }
}

/// No lane is infinite or not a number.
inline bool areFinite(Float4 x) { return !anyLaneSet(x * splat(0.0F) != splat(0.0F)); }

}  // namespace zum
