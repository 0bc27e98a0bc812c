// How decoding or encoding ends: a value, never an exception.
#pragma once

#include <cstdint>
#include <utility>

namespace codecs {

enum class Fault : uint8_t {
  none,
  unknownFormat,  // no codec recognises the first bytes
  truncated,      // the bytes end before the image does
  damaged,        // the bytes contradict the format
  unsupported,    // a sound file in a variant that is not read
  tooLarge,       // above the decode limits
  noMemory,
};

// A phrase for people, without a full stop; null for none. The text is constant.
const char *describe(Fault fault) noexcept;

template <class T>
struct [[nodiscard]] Result {
  T value{};
  Fault fault = Fault::none;

  Result(T &&made) noexcept : value(std::move(made)) {}
  Result(Fault reason) noexcept : fault(reason) {}
  explicit operator bool() const noexcept { return fault == Fault::none; }
};

}  // namespace codecs
