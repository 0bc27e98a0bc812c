// Whole rows in and out of premultiplied form. Every result is that of alpha_math.h.
#pragma once

#include <cstddef>
#include <cstdint>

namespace cg {

// What has to be done to colour, going by how it is stored and how it is wanted.
enum class AlphaStep : uint8_t { keep, multiply, divide };

constexpr AlphaStep alphaStep(bool isPremultiplied, bool wantsPremultiplied) noexcept {
  if (isPremultiplied == wantsPremultiplied) return AlphaStep::keep;
  return wantsPremultiplied ? AlphaStep::multiply : AlphaStep::divide;
}

// Four-byte pixels with alpha as the first or the last byte, in place.
void stepARGB(AlphaStep step, uint8_t *pixels, std::size_t count) noexcept;
void stepRGBA(AlphaStep step, uint8_t *pixels, std::size_t count) noexcept;

// One component and its alpha in rows of their own.
void stepPlane(AlphaStep step, uint8_t *values, const uint8_t *alpha, std::size_t count) noexcept;

}  // namespace cg
