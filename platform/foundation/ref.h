// The one owner of counted objects. Inside the libraries nobody calls CFRetain or CFRelease by hand: a count
// lives in a Ref, and moves with one of three words.
//
//   adopt   takes over a count that is already ours: what a Create or Copy function gave
//   share   adds a count to something borrowed: an argument, or what a Get function gave
//   give    hands the count to the caller, and leaves the Ref empty
//
// T is a handle (Ref<CFDataRef>) or the type behind one (Ref<Image>), whichever is at hand:
//
//   cf::Ref data = cf::adopt(CFDataCreate(allocator, bytes, length));   // a Ref<CFDataRef>
//   if (!data) return nullptr;
//   use(data.get());
//   return data.give();
#pragma once

#include <CoreFoundation/CFBase.h>

#include <type_traits>
#include <utility>

namespace cf {

template <class T>
class Ref {
 public:
  using Handle = std::conditional_t<std::is_pointer_v<T>, T, T *>;

  constexpr Ref() noexcept = default;
  constexpr Ref(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor): "return nullptr" is meant
  Ref(const Ref &other) noexcept : handle_(retained(other.handle_)) {}
  Ref(Ref &&other) noexcept : handle_(other.give()) {}
  Ref &operator=(Ref other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Ref() { reset(); }

  [[nodiscard]] static Ref adopt(Handle owned) noexcept {
    Ref made;
    made.handle_ = owned;
    return made;
  }
  [[nodiscard]] static Ref share(Handle seen) noexcept { return adopt(retained(seen)); }

  [[nodiscard]] Handle give() noexcept { return std::exchange(handle_, nullptr); }
  void reset() noexcept {
    if (Handle last = give()) CFRelease(last);
  }

  [[nodiscard]] Handle get() const noexcept { return handle_; }
  Handle operator->() const noexcept { return handle_; }
  std::add_lvalue_reference_t<std::remove_pointer_t<Handle>> operator*() const noexcept { return *handle_; }
  explicit operator bool() const noexcept { return handle_ != nullptr; }

 private:
  static Handle retained(Handle handle) noexcept {
    if (handle) CFRetain(handle);
    return handle;
  }

  Handle handle_ = nullptr;
};

// The same with the type taken from the handle.
template <class Handle>
[[nodiscard]] Ref<Handle> adopt(Handle owned) noexcept {
  return Ref<Handle>::adopt(owned);
}
template <class Handle>
[[nodiscard]] Ref<Handle> share(Handle seen) noexcept {
  return Ref<Handle>::share(seen);
}

}  // namespace cf
