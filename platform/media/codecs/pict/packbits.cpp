#include "media/codecs/pict/packbits.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace codecs::pict {
namespace {

constexpr int8_t kNothing = -128;
constexpr size_t kMostUnits = 128;
constexpr size_t kShortestRun = 3;

void repeatUnit(const uint8_t *unit, size_t unitBytes, uint8_t *out, size_t count) noexcept {
  if (unitBytes == 1) {
    std::memset(out, *unit, count);
    return;
  }
  for (size_t i = 0; i < count; ++i) out[i] = unit[i % 2];
}

template <size_t unitBytes>
void unpack(Bytes packed, std::span<uint8_t> out) noexcept {
  size_t from = 0, to = 0;
  while (from < packed.size() && to < out.size()) {
    const auto flag = static_cast<int8_t>(packed[from++]);
    if (flag == kNothing) continue;
    const size_t stored = flag >= 0 ? (static_cast<size_t>(flag) + 1) * unitBytes : unitBytes;
    const size_t made = flag >= 0 ? stored : static_cast<size_t>(1 - flag) * unitBytes;
    if (stored > packed.size() - from) {
      if (flag < 0) break;
      const size_t there = std::min(packed.size() - from, out.size() - to);
      std::memcpy(out.data() + to, packed.data() + from, there);
      to += there;
      break;
    }
    const size_t taken = std::min(made, out.size() - to);
    if (flag >= 0) {
      std::memcpy(out.data() + to, packed.data() + from, taken);
    } else {
      repeatUnit(packed.data() + from, unitBytes, out.data() + to, taken);
    }
    from += stored;
    to += taken;
  }
  std::ranges::fill(out.subspan(to), uint8_t{0});
}

uint64_t load(const uint8_t *from) noexcept {
  uint64_t word;
  std::memcpy(&word, from, sizeof word);
  return word;
}

// The top bit of every byte that is zero, exact up to the first of them in memory order on machines whose
// low byte comes first.
constexpr uint64_t zeroBytes(uint64_t word) noexcept {
  return (word - 0x0101010101010101u) & ~word & 0x8080808080808080u;
}

// Where the first three equal bytes in [from, end) start; `end` when there are none.
const uint8_t *findRun(const uint8_t *from, const uint8_t *end) noexcept {
  if constexpr (std::endian::native == std::endian::little) {
    for (; end - from >= 10; from += 8) {
      const uint64_t here = load(from);
      const uint64_t runs = zeroBytes((here ^ load(from + 1)) | (here ^ load(from + 2)));
      if (runs) return from + std::countr_zero(runs) / 8;
    }
  }
  for (; end - from >= 3; ++from) {
    if (from[0] == from[1] && from[0] == from[2]) return from;
  }
  return end;
}

const uint8_t *endOfRun(const uint8_t *from, const uint8_t *end) noexcept {
  const uint8_t first = *from;
  const uint8_t *const most = end - from > static_cast<ptrdiff_t>(kMostUnits) ? from + kMostUnits : end;
  for (++from; from < most && *from == first;) ++from;
  return from;
}

}  // namespace

void unpackBytes(Bytes packed, std::span<uint8_t> out) noexcept { unpack<1>(packed, out); }
void unpackWords(Bytes packed, std::span<uint8_t> out) noexcept { unpack<2>(packed, out); }

size_t unpackedBytes(Bytes packed, size_t most) noexcept {
  size_t from = 0, made = 0;
  while (from < packed.size() && made <= most) {
    const auto flag = static_cast<int8_t>(packed[from++]);
    if (flag == kNothing) continue;
    made += static_cast<size_t>(flag >= 0 ? flag + 1 : 1 - flag);
    from += flag >= 0 ? static_cast<size_t>(flag) + 1 : 1;
  }
  return from > packed.size() ? most + 1 : made;
}

size_t packBytes(Bytes bytes, uint8_t *out) noexcept {
  const uint8_t *from = bytes.data();
  const uint8_t *const end = from + bytes.size();
  uint8_t *to = out;
  while (from < end) {
    const uint8_t *const run = findRun(from, end);
    while (from < run) {
      const size_t count = std::min<size_t>(static_cast<size_t>(run - from), kMostUnits);
      *to++ = static_cast<uint8_t>(count - 1);
      std::memcpy(to, from, count);
      to += count;
      from += count;
    }
    while (end - from >= static_cast<ptrdiff_t>(kShortestRun) && from[0] == from[1] && from[0] == from[2]) {
      const uint8_t *const after = endOfRun(from, end);
      *to++ = static_cast<uint8_t>(1 - (after - from));
      *to++ = *from;
      from = after;
    }
  }
  return static_cast<size_t>(to - out);
}

}  // namespace codecs::pict
