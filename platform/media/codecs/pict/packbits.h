// Run-length coding of rows: a flag byte, then literal units or one unit to repeat.
#pragma once

#include <vector>

#include "media/codecs/codec.h"

namespace codecs::pict {

// Fills `out` from packed bytes; what they lack is zero, what they have too much is left. Units are one or
// two bytes.
void unpackBytes(Bytes packed, std::span<uint8_t> out) noexcept;
void unpackWords(Bytes packed, std::span<uint8_t> out) noexcept;

// How many bytes packed rows of one-byte units unpack to; stops counting above `most`.
size_t unpackedBytes(Bytes packed, size_t most) noexcept;

// The most that a row can take when packed.
constexpr size_t mostPackedBytes(size_t bytes) noexcept { return bytes + (bytes + 127) / 128; }

// Packs one-byte units into `out`, which has room for mostPackedBytes(bytes.size()); gives how many it took.
size_t packBytes(Bytes bytes, uint8_t *out) noexcept;

}  // namespace codecs::pict
