// What has become of each colour so far.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// Open addressing, as there is one look-up a pixel: a colour is found in its slot or a few after it. The
// memory stays below 32 MiB: a picture with more colours than fit is forgotten and learnt again.
class ColorMemory {
 public:
  ColorMemory() : slots_(kFewest) {}

  // The result for a colour, asked from `compute` if it is not known.
  template <class Compute>
  uint32_t resultFor(uint32_t color, const Compute &compute) {
    // Zero marks an empty slot: it has a place of its own.
    if (color == 0) {
      if (!zeroKnown_) zero_ = compute(color);
      zeroKnown_ = true;
      return zero_;
    }
    Slot *slot = slotFor(color);
    if (slot->color == color) return slot->result;
    const uint32_t result = compute(color);
    if (used_ * 2 >= slots_.size()) {
      makeRoom();
      slot = slotFor(color);
    }
    *slot = {color, result};
    ++used_;
    return result;
  }

 private:
  struct Slot {
    uint32_t color = 0, result = 0;
  };
  static constexpr size_t kFewest = size_t{1} << 12, kMost = size_t{1} << 22;

  // Where the colour is, or the empty slot where it would come.
  Slot *slotFor(uint32_t color) noexcept {
    const size_t mask = slots_.size() - 1;
    size_t at = (color * 0x9E3779B1U) >> 7 & mask;
    while (slots_[at].color != 0 && slots_[at].color != color) at = (at + 1) & mask;
    return &slots_[at];
  }

  void makeRoom() {
    std::vector<Slot> old(slots_.size() < kMost ? slots_.size() * 2 : kMost);
    old.swap(slots_);
    used_ = 0;
    if (old.size() == kMost) return;
    for (const Slot &slot : old) {
      if (slot.color == 0) continue;
      *slotFor(slot.color) = slot;
      ++used_;
    }
  }

  std::vector<Slot> slots_;
  size_t used_ = 0;
  uint32_t zero_ = 0;
  bool zeroKnown_ = false;
};
