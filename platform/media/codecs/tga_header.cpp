#include "media/codecs/tga_header.h"

#include <algorithm>
#include <string_view>

#include "media/codecs/little_endian.h"

namespace codecs {
namespace {

constexpr size_t kHeaderBytes = 18;
constexpr size_t kFooterBytes = 26;
constexpr std::string_view kFooterMark{"TRUEVISION-XFILE.\0", 18};
constexpr size_t kExtensionBytes = 495;
constexpr size_t kAlphaKindAt = 494;  // in the extension

enum AlphaKind : uint8_t { kUsefulAlpha = 3, kPremultipliedAlpha = 4 };

bool isColourDepth(unsigned bits) noexcept { return bits == 15 || bits == 16 || bits == 24 || bits == 32; }

bool isDepthOf(const TgaHeader &header) noexcept {
  switch (header.kind) {
    case TgaKind::indexed:
      return (header.bits == 8 || header.bits == 16) && header.entryBits != 0;
    case TgaKind::colour:
      return isColourDepth(header.bits);
    case TgaKind::grey:
      return header.bits == 8 || header.bits == 16;
  }
  return false;
}

// How many bits can be left for alpha.
unsigned mostAlphaBits(const TgaHeader &header) noexcept {
  if (header.kind == TgaKind::grey) return header.bits == 16 ? 8 : 0;
  switch (header.kind == TgaKind::indexed ? header.entryBits : header.bits) {
    case 16:
      return 1;
    case 32:
      return 8;
    default:
      return 0;
  }
}

}  // namespace

Result<TgaHeader> readTgaHeader(Bytes file) noexcept {
  if (file.size() < kHeaderBytes) return Fault::truncated;
  TgaHeader header;
  const unsigned type = file[2], descriptor = file[17];
  if (file[1] > 1 || type % 8 < 1 || type % 8 > 3 || type > 11 || descriptor >> 6 != 0)
    return Fault::unsupported;
  header.kind = static_cast<TgaKind>(type % 8);
  header.runs = type > 8;
  header.width = readLittle16(file, 12);
  header.height = readLittle16(file, 14);
  header.bits = file[16];
  header.alphaBits = descriptor & 15;
  header.rightToLeft = (descriptor & 16) != 0;
  header.topDown = (descriptor & 32) != 0;
  header.paletteAt = kHeaderBytes + file[0];
  if (file[1] == 1) {
    header.firstEntry = readLittle16(file, 3);
    header.entries = readLittle16(file, 5);
    header.entryBits = file[7];
    if (!isColourDepth(header.entryBits)) return Fault::unsupported;
  }
  header.pixelsAt = header.paletteAt + header.entries * header.entryBytes();
  if (!isDepthOf(header)) return Fault::unsupported;
  header.alphaBits = std::min(header.alphaBits, mostAlphaBits(header));
  return header;
}

bool isStrictTgaHeader(Bytes file) noexcept {
  const auto header = readTgaHeader(file);
  if (!header || header.value.width == 0 || header.value.height == 0) return false;
  const bool paletteFieldsAreEmpty =
      std::all_of(file.begin() + 3, file.begin() + 8, [](uint8_t b) { return b == 0; });
  const unsigned alphaBits = file[17] & 15;
  if (file[1] == 0 && !paletteFieldsAreEmpty) return false;
  if (file[1] == 1 && header.value.entries == 0) return false;
  return alphaBits == 0 || alphaBits == mostAlphaBits(header.value);
}

bool hasTgaFooter(Bytes file) noexcept {
  if (file.size() < kHeaderBytes + kFooterBytes) return false;
  return std::equal(kFooterMark.begin(), kFooterMark.end(), file.end() - kFooterMark.size(),
                    [](char mark, uint8_t byte) { return static_cast<uint8_t>(mark) == byte; });
}

TgaAlpha tgaAlpha(const TgaHeader &header, Bytes file) noexcept {
  if (mostAlphaBits(header) == 0) return TgaAlpha::none;
  const TgaAlpha counted = header.alphaBits != 0 ? TgaAlpha::straight : TgaAlpha::none;
  if (!hasTgaFooter(file)) return counted;
  const uint32_t extension = readLittle32(file, file.size() - kFooterBytes);
  if (extension < kHeaderBytes || file.size() < kExtensionBytes || extension > file.size() - kExtensionBytes)
    return counted;
  switch (file[extension + kAlphaKindAt]) {
    case kUsefulAlpha:
      return TgaAlpha::straight;
    case kPremultipliedAlpha:
      return TgaAlpha::premultiplied;
    default:
      return TgaAlpha::none;
  }
}

}  // namespace codecs
