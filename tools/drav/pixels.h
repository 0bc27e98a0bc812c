// The pixels of an image, for what the tool draws and changes itself.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "geometry.h"
#include "image.h"

Area boundsOf(DRAVCFImageRef image) noexcept;

// "300 x 200 pixels", for messages.
std::string sizeText(DRAVCFImageRef image);

// Operations of the library that work in place report nothing. This, before one, makes sure of the memory
// that they would lack. Throws Failure.
void requireBuffer(DRAVCFImageRef image);

// Throws Failure if an image of that size would be larger than the decode limits let one be: what the tool
// makes, it must be able to read.
void checkSize(double width, double height);

// Pixels of four bytes, alpha first, which live as long as the image and as nothing else changes it.
struct Pixels {
  uint8_t *bytes = nullptr;
  size_t width = 0, height = 0, rowBytes = 0;

  uint8_t *row(size_t y) const noexcept { return bytes + y * rowBytes; }
};

// The image's own pixels, made premultiplied ARGB first. Whoever writes calls DRAVCFImageInvalidateImage
// when done. Throws Failure.
Pixels premultipliedPixels(DRAVCFImageRef image);

// The image held as a buffer in the layout that its file was read in, so that what is done to the buffer
// neither multiplies by alpha nor converts colours first. Its rows are packed or padded as they were.
// Throws Failure.
Image asRead(Image image);

// The buffer of such an image as it stands.
Pixels pixelsOf(DRAVCFImageRef image);

// An image of the same four-byte pixels (a copy of them) with another meaning of the first byte. Throws
// Failure.
Image relabelled(DRAVCFImageRef image, CGImageAlphaInfo alpha);
