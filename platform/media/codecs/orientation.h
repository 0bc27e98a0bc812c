// Turning a decoded picture the way up that its file asks for.
#pragma once

#include "media/codecs/codec.h"

namespace codecs {

// 1 to 8 as TIFF and Exif number them: where row 0 and column 0 of the file are on the picture. 1 (the
// top, the left) and numbers that there are not change nothing; from 5 on, width and height change places.
Fault applyOrientation(DecodedImage &image, unsigned orientation, const CGImageDecodeLimits &limits) noexcept;

}  // namespace codecs
