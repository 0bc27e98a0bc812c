// Modes by name, random pixels, and how much of the long tests a build can afford.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "composite/kernels.h"

namespace drav_test {

#if defined(__SANITIZE_ADDRESS__) || !defined(NDEBUG)
inline constexpr size_t kThinning = 10;  // sanitized and debug builds take one case in so many
#else
inline constexpr size_t kThinning = 1;
#endif

inline constexpr const char *kModeNames[] = {
    "Clear",   "CopySrc", "CopyDest",   "SrcOver",   "DestOver",  "SrcIn",     "DestIn",     "SrcOut",
    "DestOut", "SrcAtop", "DestAtop",   "XOR",       "Plus",      "Multiply",  "Screen",     "Overlay",
    "Darken",  "Lighten", "ColorDodge", "ColorBurn", "HardLight", "SoftLight", "Difference", "Exclusion"};
static_assert(std::size(kModeNames) == drav::kBlendModeCount);

inline constexpr const char *kFormatNames[] = {"S_8", "RGB_888", "ARGB_8888"};

inline std::string blendName(size_t format, size_t mode) {
  return std::string(kFormatNames[format]) + "_" + kModeNames[mode];
}

// A generator that gives the same bytes everywhere.
class Random {
 public:
  explicit Random(uint64_t seed) : state_(seed * 2 + 1) {}
  uint32_t next() {
    state_ = state_ * 6364136223846793005U + 1442695040888963407U;
    return static_cast<uint32_t>(state_ >> 32);
  }
  uint32_t below(uint32_t limit) { return static_cast<uint32_t>((uint64_t{next()} * limit) >> 32); }

 private:
  uint64_t state_;
};

enum class Pixels { valid, any, mixed };

// ARGB pixels; mixed ones are invalid in one case of 64. Alphas of 0 and 255 are frequent, as in pictures.
inline std::vector<uint8_t> randomPixels(size_t count, Pixels kind, uint64_t seed) {
  Random random(seed);
  std::vector<uint8_t> bytes(count * 4);
  for (size_t i = 0; i < bytes.size(); i += 4) {
    const uint32_t dice = random.below(8), alpha = dice == 0 ? 0 : dice == 1 ? 255 : random.below(256);
    const bool any = kind == Pixels::any || (kind == Pixels::mixed && random.below(64) == 0);
    bytes[i] = static_cast<uint8_t>(alpha);
    for (size_t c = 1; c < 4; ++c) bytes[i + c] = static_cast<uint8_t>(random.below(any ? 256 : alpha + 1));
  }
  return bytes;
}

}  // namespace drav_test
