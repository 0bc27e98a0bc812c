// Decoded pixels, brought into the format of an offscreen world.
#pragma once

#include "media/codecs/codec.h"
#include "media/offscreen.h"

namespace media {

// What happens to the alpha of an image that has one, in a 32-bit world.
enum class AlphaStyle : uint8_t {
  premultiplied,  // colour * alpha / 255, rounded to nearest
  straight,       // as decoded
  skipped,        // dropped: the byte is 255, the colours stay
};

// Draws with the top left corners together; what does not fit is cut off, and pixels of the world
// that the image does not reach stay. Into an 8-bit world colours go as 0.30 R + 0.59 G + 0.11 B.
void drawInto(const OffscreenWorld &world, const codecs::DecodedImage &image, AlphaStyle style) noexcept;

}  // namespace media
