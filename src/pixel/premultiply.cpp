#include <DravKit/DravKit.h>

#include <cstdio>

#include "pixel/alpha_kernels.h"

namespace {

using drav::pixel::AlphaByte;

void premultiply(uint8_t *buffer, size_t size, AlphaByte alpha) {
  if (buffer) drav::pixel::premultiplyPixels(buffer, size >> 2, alpha);
}

void unpremultiply(uint8_t *buffer, size_t size, AlphaByte alpha, const char *name) {
  if (!buffer || !drav::pixel::unpremultiplyPixels(buffer, size >> 2, alpha)) return;
  std::fprintf(stderr, "%s - invalid unpremultiplication\n", name);
}

}  // namespace

void DRAVCFPremultiplyARGBBuffer(uint8_t *buffer, size_t size) {
  premultiply(buffer, size, AlphaByte::first);
}

void DRAVCFPremultiplyRGBABuffer(uint8_t *buffer, size_t size) { premultiply(buffer, size, AlphaByte::last); }

void DRAVCFUnpremultiplyARGBBuffer(uint8_t *buffer, size_t size) {
  unpremultiply(buffer, size, AlphaByte::first, "DRAVCFUnpremultiplyARGBBuffer");
}

void DRAVCFUnpremultiplyRGBABuffer(uint8_t *buffer, size_t size) {
  unpremultiply(buffer, size, AlphaByte::last, "DRAVCFUnpremultiplyRGBABuffer");
}
