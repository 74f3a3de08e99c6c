// What views, bitmaps and fonts share: a count of those who hold them.
#pragma once

namespace zum {

/// [main] Made with one holder; goes with the last one. Never on the stack where others hold it.
class CBaseObject {
 public:
  CBaseObject() = default;
  CBaseObject(const CBaseObject&) = delete;
  CBaseObject& operator=(const CBaseObject&) = delete;

  void remember() { ++holders; }
  void forget() {
    if (--holders == 0) delete this;
  }
  int holderCount() const { return holders; }

 protected:
  virtual ~CBaseObject() = default;

 private:
  int holders = 1;
};

/// Holds an object as long as it lives.
template <class Object>
class Held {
 public:
  Held() = default;
  /// Takes over the holder that the object was made with.
  explicit Held(Object* fresh) : object(fresh) {}
  Held(const Held& other) : object(other.object) {
    if (object != nullptr) object->remember();
  }
  Held(Held&& other) noexcept : object(other.object) { other.object = nullptr; }
  Held& operator=(Held other) noexcept {
    Object* const old = object;
    object = other.object;
    other.object = old;
    return *this;
  }
  ~Held() {
    if (object != nullptr) object->forget();
  }

  Object* get() const { return object; }
  Object* operator->() const { return object; }
  explicit operator bool() const { return object != nullptr; }

 private:
  Object* object = nullptr;
};

}  // namespace zum
