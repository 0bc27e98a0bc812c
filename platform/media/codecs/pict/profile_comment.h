// The colour profile that comments carry in parts.
#pragma once

#include <vector>

#include "media/codecs/codec.h"

namespace codecs::pict {

inline constexpr uint16_t kProfileComment = 224;

class ProfileCollector {
 public:
  explicit ProfileCollector(const CGImageDecodeLimits &limits) noexcept : limits_(limits) {}

  // Takes one comment's data.
  void add(Bytes data);

  // The first whole profile for colours; empty without.
  std::vector<uint8_t> take();

 private:
  void settle();

  const CGImageDecodeLimits &limits_;
  std::vector<uint8_t> parts_;
  std::vector<uint8_t> whole_;
};

}  // namespace codecs::pict
