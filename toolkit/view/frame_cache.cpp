#include "toolkit/view/frame_cache.hpp"

#include <functional>
#include <utility>

namespace zum {
namespace {

std::size_t bytesOf(cairo_surface_t* surface) {
  return static_cast<std::size_t>(cairo_image_surface_get_stride(surface)) *
         static_cast<std::size_t>(cairo_image_surface_get_height(surface));
}

}  // namespace

FrameCache& FrameCache::get() {
  static FrameCache cache;
  return cache;
}

std::size_t FrameCache::Hash::operator()(const Key& key) const {
  std::size_t mixed = std::hash<const void*>{}(key.picture);
  const auto add = [&mixed](std::size_t more) { mixed = (mixed ^ more) * 0x9E3779B97F4A7C15U; };
  add(static_cast<std::size_t>(key.frame) * 2 + (key.isCut ? 1 : 0));
  add(std::hash<double>{}(key.factor));
  add(static_cast<std::size_t>(static_cast<std::uint32_t>(key.phaseX)) << 32U |
      static_cast<std::uint32_t>(key.phaseY));
  return mixed ^ mixed >> 32U;
}

cairo_surface_t* FrameCache::find(const Key& key) {
  const auto found = places.find(key);
  if (found == places.end()) return nullptr;
  kept.splice(kept.begin(), kept, found->second);
  return kept.front().surface.get();
}

cairo_surface_t* FrameCache::keep(const Key& key, Surface made) {
  const std::size_t bytes = bytesOf(made.get());
  kept.push_front({key, std::move(made), bytes});
  try {
    places.emplace(key, kept.begin());
  } catch (...) {
    kept.pop_front();
    throw;
  }
  held += bytes;
  while (held > budget() && kept.size() > 1) erase(std::prev(kept.end()));
  return kept.front().surface.get();
}

std::size_t FrameCache::budget() const {
  const double largest = windows.empty() ? 1.0 : windows.rbegin()->first;
  return static_cast<std::size_t>(static_cast<double>(kMostBytes) * largest);
}

void FrameCache::erase(Place place) {
  held -= place->bytes;
  places.erase(place->key);
  kept.erase(place);
}

template <class Wanted>
void FrameCache::eraseAll(const Wanted& wanted) {
  for (auto next = kept.begin(); next != kept.end();) {
    const auto place = next++;
    if (wanted(place->key)) erase(place);
  }
}

void FrameCache::drop(const CBitmap* picture) {
  eraseAll([picture](const Key& key) { return key.picture == picture; });
}

void FrameCache::leave(double factor) {
  const auto users = windows.find(factor);
  if (users == windows.end() || --users->second > 0) return;
  windows.erase(users);
  eraseAll([factor](const Key& key) { return key.factor == factor; });
}

}  // namespace zum
