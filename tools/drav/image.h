// From encoded bytes to an image of the library, and back.
#pragma once

#include <DravKit/DravKit.h>

#include <span>
#include <string>

#include "formats.h"
#include "foundation/ref.h"

using Image = cf::Ref<DRAVCFImageRef>;

std::span<const uint8_t> bytesOf(CFDataRef data) noexcept;

// Why the last decoding failed, as a reason to print, and what can be done about it.
std::string decodeFault();

// An image whose colours stand beside its alpha, if it has one, with its profile and its resolution. The
// content decides, not the name: a JPEG that is called .png is read as what it is. Throws Failure with what
// the decoder says.
Image decodeImage(CFDataRef file);

// The whole file in that format. Throws Failure when the format cannot hold the image or memory runs out.
cf::Ref<CFDataRef> encodeImage(DRAVCFImageRef image, const Format &format);
