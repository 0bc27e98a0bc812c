// The memory that decoders write pixels into.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <utility>

namespace codecs {

struct FreeBlock {
  void operator()(void *block) const noexcept { std::free(block); }
};

// A block from malloc, so that it can be handed on to whoever frees with free().
class PixelBuffer {
 public:
  // Zeroed memory: fresh pages cost no more than malloc's, and a decoder that skips pixels shows
  // black ones, never another image's. Empty when memory runs out.
  static PixelBuffer zeroed(size_t bytes) noexcept {
    PixelBuffer buffer;
    buffer.block_.reset(static_cast<uint8_t *>(std::calloc(bytes ? bytes : 1, 1)));
    buffer.size_ = buffer.block_ ? bytes : 0;
    return buffer;
  }

  PixelBuffer() noexcept = default;
  PixelBuffer(PixelBuffer &&other) noexcept
      : block_(std::move(other.block_)), size_(std::exchange(other.size_, 0)) {}
  PixelBuffer &operator=(PixelBuffer &&other) noexcept {
    block_ = std::move(other.block_);
    size_ = std::exchange(other.size_, 0);
    return *this;
  }

  uint8_t *data() noexcept { return block_.get(); }
  const uint8_t *data() const noexcept { return block_.get(); }
  size_t size() const noexcept { return size_; }
  explicit operator bool() const noexcept { return block_ != nullptr; }

  // Hands the block to the caller, who frees it with free().
  [[nodiscard]] uint8_t *give() noexcept {
    size_ = 0;
    return block_.release();
  }

 private:
  std::unique_ptr<uint8_t, FreeBlock> block_;
  size_t size_ = 0;
};

}  // namespace codecs
