// Colour spaces and profiles for tests, made with numbers of the test's own.
#pragma once

#include <CoreGraphics/CGColorSpace.h>

#include "foundation/ref.h"
#include "graphics/color_engine.h"

namespace testing_support {

class Space {
 public:
  explicit Space(CGColorSpaceRef owned) noexcept : space_(cf::adopt(owned)) {}
  [[nodiscard]] CGColorSpaceRef get() const noexcept { return space_.get(); }
  explicit operator bool() const noexcept { return static_cast<bool>(space_); }

 private:
  cf::Ref<CGColorSpaceRef> space_;
};

inline constexpr CGFloat kDaylight[3] = {0.9505F, 1, 1.089F};

cf::Ref<CFDataRef> gammaProfile(double gamma);  // RGB, primaries those of sRGB
cf::Ref<CFDataRef> grayProfile(double gamma);
cf::Ref<CFDataRef> inkProfile();  // CMYK with a small table: (1 - c)(1 - k) and so on, as Lab
cf::Ref<CFDataRef> labProfile();  // valid, but of no colours that an image can have

}  // namespace testing_support
