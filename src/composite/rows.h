#pragma once
// Whole rows of pixels at a time: the bytes the kernels give, many pixels in one step.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "composite/kernels.h"

namespace drav {

// REQUIRES: source and destination are the same address or do not overlap.
using RowFunction = void (*)(const uint8_t *source, uint8_t *destination, size_t pixels);

// The row forms made for one kind of processor.
struct RowTable {
  const char *name;  // "plain", "AVX2" ...
  ByFormatAndMode<RowFunction> rows;
};

// The best this machine runs; chosen once.
const RowTable &rowTable() noexcept;

// Every table this machine runs, best first, "plain" last: for tests and benchmarks.
std::span<const RowTable *const> rowTables() noexcept;

// Null if there is none of that name, or this machine cannot run it.
const RowTable *rowTableNamed(std::string_view name) noexcept;

// The row form of one of our own kernels; null for a function of the caller's.
RowFunction rowForKernel(DRAVCFCompositeFunction kernel) noexcept;

// Composes `height` rows of `width` pixels, by rows where the kernel is ours and its pixels are `pixelBytes`
// long, otherwise pixel by pixel. Source and destination may overlap: pixels are combined in the order of
// their addresses.
void compositeRows(DRAVCFCompositeFunction kernel, const uint8_t *source, size_t sourceRowBytes,
                   uint8_t *destination, size_t destinationRowBytes, size_t width, size_t height,
                   size_t pixelBytes) noexcept;

}  // namespace drav
