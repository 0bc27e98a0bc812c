// From encoded bytes to an image of the library, and back.
#pragma once

#include <DravKit/DravKit.h>

#include <span>
#include <string>

#include "formats.h"
#include "foundation/ref.h"

using Image = cf::Ref<DRAVCFImageRef>;

std::span<const uint8_t> bytesOf(CFDataRef data) noexcept;

// Why the last decoding failed, as a reason to print.
std::string decodeFault();

// Throws Failure with what the decoder says.
Image decodeImage(CFDataRef file);

// Throws Failure when the format cannot hold the image or memory runs out.
cf::Ref<CFDataRef> encodeImage(DRAVCFImageRef image, const Format &format);
