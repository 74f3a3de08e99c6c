// How objects look in this interface: what a host holds is the address of a pointer to a table of
// routines. An object has one such pointer for each of its interfaces.
#pragma once

#include <travesty/base.h>

#include <atomic>
#include <cstdint>
#include <exception>
#include <new>
#include <type_traits>
#include <utility>

namespace zum::vst3 {

/// One interface of an object. The host holds its address.
template <class Object>
struct Interface {
  const void* table;
  Object* object;
};

template <class Object>
Object& objectOf(void* self) noexcept {
  return *static_cast<Interface<Object>*>(self)->object;
}

/// What every table starts with. An object has query(), and references as below.
template <class Object>
constexpr v3_funknown unknownOf() noexcept {
  return {[](void* self, const v3_tuid iid, void** out) -> v3_result {
            if (out == nullptr) return V3_INVALID_ARG;
            *out = iid != nullptr ? objectOf<Object>(self).query(iid) : nullptr;
            if (*out == nullptr) return V3_NO_INTERFACE;
            objectOf<Object>(self).addReference();
            return V3_OK;
          },
          [](void* self) { return objectOf<Object>(self).addReference(); },
          [](void* self) { return objectOf<Object>(self).dropReference(); }};
}

/// [any] An object that goes with the last who holds it. Its maker holds it first.
template <class Object>
class Counted {
 public:
  std::uint32_t addReference() noexcept { return references.fetch_add(1) + 1; }
  std::uint32_t dropReference() noexcept {
    const std::uint32_t left = references.fetch_sub(1) - 1;
    if (left == 0) delete static_cast<Object*>(this);
    return left;
  }

 private:
  friend Object;
  Counted() = default;
  std::atomic<std::uint32_t> references{1};
};

/// Holds an interface of the host's; null for none.
template <class Table>
class Held {
 public:
  Held() = default;
  explicit Held(Table** shared) : face(shared) {
    if (face != nullptr) v3_cpp_obj_ref(face);
  }
  /// Of any object of the host's, if it has this interface.
  static Held of(void* object, const v3_tuid iid) {
    Held held;
    if (object == nullptr) return held;
    void* found = nullptr;
    const v3_result answer =
        (*static_cast<v3_funknown**>(object))->query_interface(object, iid, &found);
    if (answer == V3_OK) held.face = static_cast<Table**>(found);
    return held;
  }
  template <class Other>
  Held<Other> as(const v3_tuid iid) const {
    return Held<Other>::of(face, iid);
  }
  Held(const Held& other) : Held(other.face) {}
  Held(Held&& other) noexcept : face(std::exchange(other.face, nullptr)) {}
  Held& operator=(Held other) noexcept {
    std::swap(face, other.face);
    return *this;
  }
  ~Held() {
    if (face != nullptr) v3_cpp_obj_unref(face);
  }

  explicit operator bool() const { return face != nullptr; }
  /// Calls a routine of its table.
  template <class... Expected, class... Given>
  v3_result call(v3_result (*Table::*routine)(void*, Expected...), Given... given) const {
    return (v3_cpp_obj(face)->*routine)(face, given...);
  }

 private:
  template <class Other>
  friend class Held;

  Table** face = nullptr;
};

/// No exception leaves by a routine of a table.
template <class Work>
std::invoke_result_t<Work> answered(Work&& work, std::invoke_result_t<Work> otherwise = {}) noexcept
    try {
  return std::forward<Work>(work)();
} catch (const std::exception&) {
  return otherwise;
}
/// The same where the answer is a result.
template <class Work>
v3_result tried(Work&& work) noexcept {
  return answered([&]() -> v3_result { return work(); }, V3_INTERNAL_ERR);
}

constexpr v3_result resultOf(bool good) { return good ? V3_OK : V3_FALSE; }

}  // namespace zum::vst3
