// Decoded pixels as an image.
#pragma once

#include <CoreGraphics/CoreGraphics.h>

#include "foundation/ref.h"
#include "media/codecs/codec.h"

namespace media {

// What an image's maker says beside the pixels.
struct Presentation {
  const CGFloat *decode = nullptr;
  bool shouldInterpolate = true;
  CGColorRenderingIntent intent = kCGRenderingIntentDefault;
};

// The pixels move out of `image`; nothing is copied. Empty when memory runs out.
cf::Ref<CGImageRef> makeImage(codecs::DecodedImage &image, const Presentation &presentation = {}) noexcept;

}  // namespace media
