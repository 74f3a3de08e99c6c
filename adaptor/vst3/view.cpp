#include "adaptor/vst3/view.hpp"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <memory>

namespace zum::vst3 {
namespace {

constexpr std::uint64_t kTimerMs = 33;

bool isX11(const char* type) {
  return type != nullptr && std::strcmp(type, V3_VIEW_PLATFORM_TYPE_X11) == 0;
}

/// The host may let go of the view inside of what it hears.
template <class Work>
v3_result kept(View& view, Work&& work) {
  view.addReference();
  const v3_result result = tried([&] { return work(view); });
  view.dropReference();
  return result;
}

/// Whatever a host writes into it; none for nonsense.
HostSide::Size sizeOf(const v3_view_rect& rect) {
  const auto side = [](std::int64_t from, std::int64_t to) {
    constexpr std::int64_t kMost = 1 << 15;
    return static_cast<int>(std::clamp(to - from, std::int64_t{0}, kMost));
  };
  return {side(rect.left, rect.right), side(rect.top, rect.bottom)};
}

/// The sides keep their proportion.
v3_result fit(View& view, v3_view_rect* rect) {
  if (rect == nullptr) return V3_INVALID_ARG;
  const HostSide::Size size = view.host().fittingSize(sizeOf(*rect));
  const auto end = [](std::int32_t from, int length) {
    return static_cast<std::int32_t>(
        std::min<std::int64_t>(std::int64_t{from} + length, std::numeric_limits<int>::max()));
  };
  *rect = {rect->left, rect->top, end(rect->left, size.width), end(rect->top, size.height)};
  return V3_OK;
}

constexpr v3_plugin_view_cpp kView = {
    unknownOf<View>(),
    {
        .is_platform_type_supported = [](void*, const char* type) -> v3_result {
          return resultOf(isX11(type));
        },
        .attached = [](void* self, void* parent, const char* type) -> v3_result {
          if (parent == nullptr || !isX11(type)) return V3_INVALID_ARG;
          return tried([&] {
            return resultOf(objectOf<View>(self).attach(std::bit_cast<std::uintptr_t>(parent)));
          });
        },
        .removed = [](void* self) -> v3_result {
          return tried([&] {
            if (!objectOf<View>(self).isAttached()) return V3_FALSE;
            objectOf<View>(self).detach();
            return V3_OK;
          });
        },
        // the window gets wheel and keys from the system itself
        .on_wheel = [](void*, float) -> v3_result { return V3_FALSE; },
        .on_key_down = [](void*, std::int16_t, std::int16_t, std::int16_t) -> v3_result {
          return V3_FALSE;
        },
        .on_key_up = [](void*, std::int16_t, std::int16_t, std::int16_t) -> v3_result {
          return V3_FALSE;
        },
        .get_size = [](void* self, v3_view_rect* rect) -> v3_result {
          if (rect == nullptr) return V3_INVALID_ARG;
          return tried([&] { return *rect = objectOf<View>(self).size(), V3_OK; });
        },
        .on_size = [](void* self, v3_view_rect* rect) -> v3_result {
          if (rect == nullptr) return V3_INVALID_ARG;
          return kept(objectOf<View>(self), [&](View& view) {
            view.host().resizeWindow(sizeOf(*rect));
            return V3_OK;
          });
        },
        .on_focus = [](void*, v3_bool) -> v3_result { return V3_FALSE; },
        .set_frame = [](void* self, v3_plugin_frame** frame) -> v3_result {
          return objectOf<View>(self).setFrame(frame), V3_OK;
        },
        .can_resize = [](void*) -> v3_result { return V3_OK; },
        .check_size_constraint = [](void* self, v3_view_rect* rect) -> v3_result {
          return tried([&] { return fit(objectOf<View>(self), rect); });
        },
    },
};

constexpr v3_plugin_view_content_scale_cpp kScale = {
    unknownOf<View>(),
    {.set_content_scale_factor = [](void* self, float factor) -> v3_result {
      return kept(objectOf<View>(self), [&](View& view) {
        return resultOf(view.host().setWindowScale(static_cast<double>(factor)));
      });
    }},
};

constexpr v3_timer_handler_cpp kTimer = {
    unknownOf<View>(),
    {.on_timer = [](void* self) { objectOf<View>(self).onTimer(); }},
};

}  // namespace

v3_plugin_view** View::create(Effect& effect) {
  auto made = std::make_unique<View>(effect);
  return reinterpret_cast<v3_plugin_view**>(&made.release()->view);
}

View::View(Effect& shown)
    : effect(shown), view{&kView, this}, scale{&kScale, this}, timer{&kTimer, this} {
  effect.addReference();
}

View::~View() {
  answered([&] { return detach(), true; });
  effect.dropReference();
}

void* View::query(const v3_tuid iid) {
  if (v3_tuid_match(iid, v3_funknown_iid) || v3_tuid_match(iid, v3_plugin_view_iid)) return &view;
  if (v3_tuid_match(iid, v3_plugin_view_content_scale_iid)) return &scale;
  return v3_tuid_match(iid, v3_timer_handler_iid) ? &timer : nullptr;
}

bool View::attach(std::uintptr_t parent) {
  if (effect.hasView() || !effect.host.openWindow(parent, this)) return false;
  effect.setView(this);
  attached = true;
  startTimer();
  return true;
}

// The host may call back with the new size, or let go of the view.
bool View::resize(const HostSide::Size& wanted) {
  if (frame == nullptr) return false;
  v3_view_rect rect{0, 0, wanted.width, wanted.height};
  auto** const self = reinterpret_cast<v3_plugin_view**>(&view);
  return v3_cpp_obj(frame)->resize_view(frame, self, &rect) == V3_OK;
}

void View::startTimer() {
  loop = Held<v3_run_loop>::of(frame, v3_run_loop_iid);
  auto** const handler = reinterpret_cast<v3_timer_handler**>(&timer);
  if (loop && loop.call(&v3_run_loop::register_timer, handler, kTimerMs) == V3_OK) return;
  loop = {};
  effect.host.idleByOwnThread();
}

void View::detach() {
  if (!attached) return;
  attached = false;
  effect.setView(nullptr);
  if (loop) {
    auto** const handler = reinterpret_cast<v3_timer_handler**>(&timer);
    loop.call(&v3_run_loop::unregister_timer, handler);
    loop = {};
  }
  effect.host.closeWindow();
}

// It may let go of this view.
void View::onTimer() {
  if (!attached) return;
  addReference();
  tried([&] { return effect.host.idleWindow(), effect.attend(), V3_OK; });
  dropReference();
}

v3_view_rect View::size() {
  const HostSide::Size size = effect.host.windowSize();
  return {0, 0, size.width, size.height};
}

}  // namespace zum::vst3
