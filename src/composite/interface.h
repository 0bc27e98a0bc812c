#pragma once
// The names of the public interface that the kernels are made of.

#if __has_include(<CoreGraphics/CoreGraphics.h>)
#include <DravKit/DravKit.h>
#else
#include <cstddef>
#include <cstdint>
using DRAVCFBlendMode = uint32_t;
enum {
  kDRAVCFBlendModeClear = 0,
  kDRAVCFBlendModeCopySrc = 1,
  kDRAVCFBlendModeCopyDest = 2,
  kDRAVCFBlendModeSrcOver = 3,
  kDRAVCFBlendModeDestOver = 4,
  kDRAVCFBlendModeSrcIn = 5,
  kDRAVCFBlendModeDestIn = 6,
  kDRAVCFBlendModeSrcOut = 7,
  kDRAVCFBlendModeDestOut = 8,
  kDRAVCFBlendModeSrcAtop = 9,
  kDRAVCFBlendModeDestAtop = 10,
  kDRAVCFBlendModeXOR = 11,
  kDRAVCFBlendModePlus = 12,
  kDRAVCFBlendModeMultiply = 13,
  kDRAVCFBlendModeScreen = 14,
  kDRAVCFBlendModeOverlay = 15,
  kDRAVCFBlendModeDarken = 16,
  kDRAVCFBlendModeLighten = 17,
  kDRAVCFBlendModeColorDodge = 18,
  kDRAVCFBlendModeColorBurn = 19,
  kDRAVCFBlendModeHardLight = 20,
  kDRAVCFBlendModeSoftLight = 21,
  kDRAVCFBlendModeDifference = 22,
  kDRAVCFBlendModeExclusion = 23
};
typedef void (*DRAVCFCompositeFunction)(const uint8_t *source, uint8_t *destination);
enum { kCGImageAlphaNone = 0, kCGImageAlphaPremultipliedFirst = 2, kCGImageAlphaNoneSkipFirst = 6 };
extern "C" __attribute__((visibility("default"))) DRAVCFCompositeFunction DRAVCFImageCompositorForParameters(
    uint32_t componentCount, uint32_t alphaInfo, uint32_t mode);
#endif
