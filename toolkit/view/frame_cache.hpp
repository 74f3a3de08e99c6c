// Frames of pictures as they go onto the screen, made when they are first shown and shared by all
// windows of a process.
#pragma once

#include <cairo.h>

#include <cstddef>
#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <unordered_map>

namespace zum {

class CBitmap;

struct DestroySurface {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using Surface = std::unique_ptr<cairo_surface_t, DestroySurface>;

/// [main] Frames that were not shown for the longest time go when there are too many.
class FrameCache {
 public:
  static FrameCache& get();

  struct Key {
    const CBitmap* picture;
    int frame;
    bool isCut;  // without the picture's key colour
    double factor;
    std::int32_t phaseX;  // how far behind its first pixel it begins
    std::int32_t phaseY;
    bool operator==(const Key&) const = default;
  };

  /// Null where it has to be made.
  cairo_surface_t* find(const Key& key);
  /// Stays until another one is kept at least.
  cairo_surface_t* keep(const Key& key, Surface made);
  void drop(const CBitmap* picture);
  std::size_t bytes() const { return held; }

  /// A window is there, at this factor; what only it needed goes with it.
  void enter(double factor) { ++windows[factor]; }
  void leave(double factor);

  /// For each factor of the largest window.
  static constexpr std::size_t kMostBytes = std::size_t{12} << 20U;

 private:
  struct Kept {
    Key key;
    Surface surface;
    std::size_t bytes;
  };
  struct Hash {
    std::size_t operator()(const Key& key) const;
  };
  using Place = std::list<Kept>::iterator;

  std::size_t budget() const;
  void erase(Place place);
  template <class Wanted>
  void eraseAll(const Wanted& wanted);

  std::list<Kept> kept;  // the last one that was shown first
  std::unordered_map<Key, Place, Hash> places;
  std::map<double, int> windows;  // by factor
  std::size_t held = 0;           // bytes
};

/// A window's share in the cache.
class CacheUser {
 public:
  explicit CacheUser(double atFactor) : factor(atFactor) { FrameCache::get().enter(factor); }
  ~CacheUser() { FrameCache::get().leave(factor); }
  CacheUser(const CacheUser&) = delete;
  CacheUser& operator=(const CacheUser&) = delete;
  void move(double toFactor) {
    FrameCache::get().enter(toFactor);
    FrameCache::get().leave(factor);
    factor = toFactor;
  }

 private:
  double factor;
};

}  // namespace zum
