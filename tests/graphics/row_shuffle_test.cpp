#include "graphics/row_shuffle.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;

Bytes counting(size_t count) {
  Bytes bytes(count);
  for (size_t i = 0; i < count; ++i) bytes[i] = static_cast<uint8_t>(i * 37 + 11);
  return bytes;
}

TEST(RowShuffle, EveryOrderOfFourBytesAndOpaqueComesOut) {
  const Bytes in = counting(4 * 67);
  for (uint8_t a = 0; a <= cg::kOpaque; ++a)
    for (uint8_t b = 0; b <= cg::kOpaque; ++b)
      for (uint8_t c = 0; c <= cg::kOpaque; ++c)
        for (uint8_t d = 0; d <= cg::kOpaque; ++d) {
          const std::array<uint8_t, 4> from = {a, b, c, d};
          Bytes out(in.size());
          cg::shufflePixels(in.data(), out.data(), 67, from);
          for (size_t i = 0; i < out.size(); ++i) {
            const uint8_t source = from[i % 4];
            ASSERT_EQ(out[i], source == cg::kOpaque ? 255 : in[i / 4 * 4 + source]);
          }
        }
}

TEST(RowShuffle, ThreeBytesBecomeFourWithFullAlpha) {
  for (const bool alphaFirst : {true, false})
    for (size_t count = 0; count < 40; ++count) {
      // Exactly as long as the pixels, for a sanitizer to see a byte too many.
      const Bytes in = counting(3 * count);
      const std::unique_ptr<uint8_t[]> exact(new uint8_t[3 * count]);
      std::copy(in.begin(), in.end(), exact.get());
      Bytes out(4 * count);
      cg::widenPixels(exact.get(), out.data(), count, alphaFirst);
      for (size_t i = 0; i < count; ++i) {
        ASSERT_EQ(out[4 * i + (alphaFirst ? 0 : 3)], 255);
        for (size_t c = 0; c < 3; ++c) ASSERT_EQ(out[4 * i + c + (alphaFirst ? 1 : 0)], in[3 * i + c]);
      }
    }
}

}  // namespace
