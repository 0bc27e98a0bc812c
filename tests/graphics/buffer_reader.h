// A reader of rows that lie in a buffer, for what works on rows alone.
#pragma once

#include <cstring>
#include <random>
#include <utility>
#include <vector>

#include "graphics/image_rows.h"

namespace cg::test {

using Bytes = std::vector<uint8_t>;

// Random pixels whose colours stay within the alpha that leads them; of one component: any bytes.
inline Bytes randomPixels(std::mt19937 &random, size_t pixels, size_t components) {
  Bytes bytes(pixels * components);
  for (size_t i = 0; i < bytes.size(); ++i) {
    const size_t c = i % components;
    const unsigned alpha = c == 0 ? 255u : bytes[i - c];
    bytes[i] = static_cast<uint8_t>(random() % (alpha + 1));
  }
  return bytes;
}

class BufferReader final : public RowReader {
 public:
  BufferReader(Bytes bytes, size_t width, size_t components, bool inPlace)
      : bytes_(std::move(bytes)), width_(width), components_(components), inPlace_(inPlace) {}

  const uint8_t *rowInPlace(size_t row) const noexcept override {
    return inPlace_ ? bytes_.data() + row * width_ * components_ : nullptr;
  }
  void read(size_t row, size_t first, size_t count, uint8_t *out) noexcept override {
    std::memcpy(out, bytes_.data() + (row * width_ + first) * components_, count * components_);
  }

 private:
  Bytes bytes_;
  size_t width_, components_;
  bool inPlace_;
};

}  // namespace cg::test
