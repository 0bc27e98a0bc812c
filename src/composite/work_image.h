// The image that compositing reads from and may change: a copy of the source, or the source's own pixels for
// as long as nobody changes them.
#pragma once

#include <DravKit/DravKit.h>

#include "foundation/ref.h"

namespace drav {

class WorkImage {
 public:
  WorkImage() = default;
  WorkImage(WorkImage &&other) noexcept;
  WorkImage &operator=(WorkImage &&other) noexcept;
  ~WorkImage();

  // For compositing source into destination. A source that must be promoted for that, or that is the
  // destination itself, is copied; else its own pixels will do.
  // Gives  an image that ends before the source changes; empty if memory runs out.
  static WorkImage forReading(DRAVCFImageRef source, DRAVCFImageRef destination) noexcept;

  // Gives it pixels of its own, so that it may be cropped and scaled. False if memory runs out.
  bool own() noexcept;

  [[nodiscard]] DRAVCFImageRef get() const noexcept { return image_.get(); }
  explicit operator bool() const noexcept { return static_cast<bool>(image_); }

 private:
  static WorkImage copyOf(DRAVCFImageRef source) noexcept;
  static WorkImage borrow(DRAVCFImageRef source) noexcept;

  cf::Ref<DRAVCFImageRef> image_;
  bool isBorrowed_ = false;
};

}  // namespace drav
