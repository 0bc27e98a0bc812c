// Owners of what the media calls hand out.
#pragma once

#include <memory>
#include <utility>

#include "media/components.h"
#include "media/handles.h"
#include "media/offscreen.h"

namespace drav {

class HandleOwner {
 public:
  HandleOwner() = default;
  explicit HandleOwner(Handle handle) noexcept : handle_(handle) {}
  HandleOwner(HandleOwner &&other) noexcept : handle_(other.give()) {}
  HandleOwner &operator=(HandleOwner &&other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~HandleOwner() {
    if (handle_) DisposeHandle(handle_);
  }

  [[nodiscard]] Handle get() const noexcept { return handle_; }
  [[nodiscard]] Handle give() noexcept { return std::exchange(handle_, nullptr); }
  [[nodiscard]] Handle *out() noexcept { return &handle_; }  // for a call that makes a handle
  explicit operator bool() const noexcept { return handle_ != nullptr; }

 private:
  Handle handle_ = nullptr;
};

struct WorldDisposer {
  void operator()(OffscreenWorld *world) const noexcept { DisposeGWorld(world); }
};
using WorldOwner = std::unique_ptr<OffscreenWorld, WorldDisposer>;

struct ComponentCloser {
  void operator()(ComponentInstance instance) const noexcept { CloseComponent(instance); }
};
using ComponentOwner = std::unique_ptr<std::remove_pointer_t<ComponentInstance>, ComponentCloser>;

}  // namespace drav
