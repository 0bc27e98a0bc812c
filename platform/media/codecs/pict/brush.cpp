#include "media/codecs/pict/brush.h"

#include <algorithm>

namespace codecs::pict {
namespace {

constexpr size_t kPeriod = 8;  // of a bit pattern, either way

}  // namespace

Brush::Brush(const Pattern &pattern, Transfer mode, const Ink &ink, std::vector<Pixel> &scratch)
    : pattern_(pattern), ink_(ink), scratch_(scratch) {
  if (mode == Transfer::none) return;
  if (mode == Transfer::dimmedOr) mode = Transfer::paintOr;
  if (!pattern.isTile() && isBoolean(mode)) {
    prepareBits(mode);
    return;
  }
  if (pattern.isTile()) {  // which has its own colours
    ink_.fore = kBlack;
    if (isBoolean(mode)) ink_.back = kWhite;
  }
  style_ = Style::colours;
  mode_ = mode;
  transfer_ = transferRow(mode, ink_);
}

uint64_t Brush::weight() const noexcept {
  constexpr uint64_t kLaying = 4;
  return style_ == Style::colours ? kLaying + paintWeight(mode_) : 1;
}

void Brush::prepareBits(Transfer mode) noexcept {
  on_ = bitEffect(mode, true, ink_);
  off_ = bitEffect(mode, false, ink_);
  style_ = pattern_.isSolid() && on_.keep == 0 ? Style::fill : Style::bits;
}

void Brush::paint(Pixel *row, int32_t left, int32_t v, size_t count) const noexcept {
  switch (style_) {
    case Style::nothing:
      return;
    case Style::fill:
      std::fill_n(row + left, count, on_.flip | on_.cover);
      return;
    case Style::bits:
      paintBits(row + left, left, v, count);
      return;
    case Style::colours:
      paintColours(row + left, left, v, count);
      return;
  }
}

void Brush::paintBits(Pixel *to, int32_t left, int32_t v, size_t count) const noexcept {
  Pixel keep[kPeriod], flip[kPeriod], cover[kPeriod];
  const unsigned bits = pattern_.bits[static_cast<size_t>(v) % kPeriod];
  for (size_t i = 0; i < kPeriod; ++i) {
    const BitEffect &effect = bits >> (7 - (static_cast<size_t>(left) + i) % kPeriod) & 1 ? on_ : off_;
    keep[i] = effect.keep;
    flip[i] = effect.flip;
    cover[i] = effect.cover;
  }
  size_t i = 0;
  for (; i + kPeriod <= count; i += kPeriod) {
    for (size_t k = 0; k < kPeriod; ++k) to[i + k] = ((to[i + k] & keep[k]) ^ flip[k]) | cover[k];
  }
  for (size_t k = 0; i < count; ++i, ++k) to[i] = ((to[i] & keep[k]) ^ flip[k]) | cover[k];
}

void Brush::layPattern(int32_t left, int32_t v, size_t count) const noexcept {
  const auto h = static_cast<size_t>(left);
  if (!pattern_.isTile()) {
    const unsigned bits = pattern_.bits[static_cast<size_t>(v) % kPeriod];
    for (size_t i = 0; i < count; ++i)
      scratch_[i] = bits >> (7 - (h + i) % kPeriod) & 1 ? ink_.fore : ink_.back;
    return;
  }
  const Pixel *const row =
      pattern_.tile.data() + static_cast<size_t>(v) % pattern_.tileHeight * pattern_.tileWidth;
  for (size_t i = 0, at = h % pattern_.tileWidth; i < count; ++i) {
    scratch_[i] = row[at];
    if (++at == pattern_.tileWidth) at = 0;
  }
}

void Brush::paintColours(Pixel *to, int32_t left, int32_t v, size_t count) const noexcept {
  layPattern(left, v, count);
  transfer_(to, scratch_.data(), count, ink_);
}

}  // namespace codecs::pict
