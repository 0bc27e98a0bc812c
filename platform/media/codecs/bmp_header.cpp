#include "media/codecs/bmp_header.h"

#include <algorithm>
#include <bit>

#include "media/codecs/frame.h"
#include "media/codecs/little_endian.h"

namespace codecs {
namespace {

constexpr uint32_t kCoreBytes = 12;   // the oldest header: sides of 16 bits, colours of 3 bytes
constexpr uint32_t kInfoBytes = 40;   // from here on masks may follow
constexpr uint32_t kMasksBytes = 52;  // masks inside
constexpr uint32_t kAlphaBytes = 56;  // alpha's as well
constexpr uint32_t kOs2Bytes = 64;    // 16 to 64 bytes are OS/2's, whose later fields are others
constexpr uint32_t kProfileBytes = 124;
constexpr size_t kMasksAt = 40;  // in the header
constexpr double kInchesPerMetre = 0.0254;

enum Compression : uint32_t { kPlain = 0, kRuns8 = 1, kRuns4 = 2, kMasks = 3, kMasksWithAlpha = 6 };
enum Os2Compression : uint32_t { kRuns24 = 4 };

// A pixel's four bytes in memory order, as one number.
uint32_t opaquePixel(uint8_t red, uint8_t green, uint8_t blue) noexcept {
  const std::array<uint8_t, 4> bytes{255, red, green, blue};
  return std::bit_cast<uint32_t>(bytes);
}

class Parser {
 public:
  Parser(Bytes file, BmpHeader &header) noexcept : file_(file), header_(header) {}

  // May stop at any step; what is there until then is of no use.
  Fault parse(const CGImageDecodeLimits &limits) noexcept {
    if (file_.size() < kBmpFileHeaderBytes + 4) return Fault::truncated;
    size_ = readLittle32(file_, kBmpFileHeaderBytes);
    if (!isBmpHeaderSize(size_)) return Fault::unsupported;
    if (size_ > file_.size() - kBmpFileHeaderBytes) return Fault::truncated;
    fields_ = file_.subspan(kBmpFileHeaderBytes, size_);
    behind_ = kBmpFileHeaderBytes + size_;
    if (const Fault fault = readSize(limits); fault != Fault::none) return fault;
    if (const Fault fault = readPacking(); fault != Fault::none) return fault;
    if (const Fault fault = findPixels(); fault != Fault::none) return fault;
    if (const Fault fault = readColours(); fault != Fault::none) return fault;
    readResolution();
    findProfile(limits);
    return Fault::none;
  }

 private:
  bool isCore() const noexcept { return size_ == kCoreBytes; }
  bool isOs2() const noexcept { return size_ < kInfoBytes || size_ == kOs2Bytes; }

  // A field of headers that may end before it.
  uint32_t number(size_t at) const noexcept {
    return at + 4 <= fields_.size() ? readLittle32(fields_, at) : 0;
  }

  Fault readSize(const CGImageDecodeLimits &limits) noexcept {
    int64_t width = 0, height = 0;
    if (isCore()) {
      width = readLittle16(fields_, 4);
      height = readLittle16(fields_, 6);
      header_.bits = readLittle16(fields_, 10);
    } else {
      width = static_cast<int32_t>(number(4));
      height = static_cast<int32_t>(number(8));
      header_.bits = readLittle16(fields_, 14);
    }
    if (width <= 0) return Fault::damaged;
    header_.topDown = height < 0;
    const auto rows = static_cast<uint64_t>(height < 0 ? -height : height);
    if (const Fault fault = checkFrame(static_cast<uint64_t>(width), rows, 4, limits); fault != Fault::none)
      return fault;
    header_.width = static_cast<uint32_t>(width);
    header_.height = static_cast<uint32_t>(rows);
    return Fault::none;
  }

  Fault readPacking() noexcept {
    const uint32_t compression = isCore() ? uint32_t{kPlain} : number(16);
    const unsigned bits = header_.bits;
    const bool indexed = bits == 1 || bits == 2 || bits == 4 || bits == 8;
    if (!indexed && bits != 16 && bits != 24 && bits != 32) return Fault::unsupported;
    header_.packing = BmpPacking::plain;
    if (compression == kPlain) return bits == 16 || bits == 32 ? usualMasks() : Fault::none;
    const bool runs = (compression == kRuns8 && bits == 8) || (compression == kRuns4 && bits == 4) ||
                      (isOs2() && compression == kRuns24 && bits == 24);
    if (runs) {
      header_.packing = BmpPacking::runs;
      return Fault::none;
    }
    const bool masks = !isOs2() && (compression == kMasks || compression == kMasksWithAlpha);
    if (!masks || (bits != 16 && bits != 32)) return Fault::unsupported;
    return readMasks(compression);
  }

  // Later headers have alpha's mask also where the others are left to the convention.
  Fault usualMasks() noexcept {
    header_.packing = BmpPacking::masked;
    if (header_.bits == 16) {
      header_.masks = {{{10, 5}, {5, 5}, {0, 5}, {0, 0}}};
    } else {
      header_.masks = {{{16, 8}, {8, 8}, {0, 8}, {0, 0}}};
    }
    return hasAlphaField() ? readMask(3, number(kMasksAt + 12)) : Fault::none;
  }

  bool hasAlphaField() const noexcept { return size_ >= kAlphaBytes && !isOs2(); }

  Fault readMasks(uint32_t compression) noexcept {
    header_.packing = BmpPacking::masked;
    size_t count = hasAlphaField() ? 4 : 3;
    Bytes masks = fields_;
    if (size_ < kMasksBytes) {
      count = compression == kMasksWithAlpha ? 4 : 3;
      if (file_.size() - kBmpFileHeaderBytes < kMasksAt + 4 * count) return Fault::truncated;
      masks = file_.subspan(kBmpFileHeaderBytes);
      behind_ += 4 * count;
    }
    for (size_t i = 0; i < count; ++i) {
      const Fault fault = readMask(i, readLittle32(masks, kMasksAt + 4 * i));
      if (fault != Fault::none) return fault;
    }
    return Fault::none;
  }

  // Bits side by side, inside the pixel, and in no other channel.
  Fault readMask(size_t channel, uint32_t mask) noexcept {
    ChannelMask &found = header_.masks[channel];
    found = {};
    if (mask == 0) return Fault::none;
    found.shift = static_cast<unsigned>(std::countr_zero(mask));
    found.bits = static_cast<unsigned>(std::popcount(mask));
    const bool gaps = std::countr_one(mask >> found.shift) != static_cast<int>(found.bits);
    if (gaps || found.shift + found.bits > header_.bits) return Fault::damaged;
    for (size_t other = 0; other < channel; ++other) {
      const ChannelMask &before = header_.masks[other];
      if (found.shift < before.shift + before.bits && before.shift < found.shift + found.bits)
        return Fault::damaged;
    }
    return Fault::none;
  }

  Fault findPixels() noexcept {
    const uint32_t at = readLittle32(file_, 10);
    if (at < behind_) return Fault::damaged;
    if (at > file_.size()) return Fault::truncated;
    header_.pixels = file_.subspan(at);
    pixelsAt_ = at;
    return Fault::none;
  }

  // Headers may claim more colours than pixels can name, and name fewer than there is room for. Those that
  // would lie in the pixels are not there.
  Fault readColours() noexcept {
    header_.colours.fill(opaquePixel(0, 0, 0));
    if (header_.bits > 8) return Fault::none;
    const size_t each = isCore() ? 3 : 4;
    const uint32_t most = 1u << header_.bits;
    const uint32_t used = isCore() ? 0 : number(32);
    size_t count = used == 0 ? most : std::min(used, most);
    if (used > (file_.size() - behind_) / each) return Fault::truncated;
    count = std::min(count, (pixelsAt_ - behind_) / each);
    for (size_t i = 0; i < count; ++i) {
      const Bytes entry = file_.subspan(behind_ + i * each, 3);
      header_.colours[i] = opaquePixel(entry[2], entry[1], entry[0]);
    }
    return Fault::none;
  }

  void readResolution() noexcept {
    const auto x = static_cast<int32_t>(number(24)), y = static_cast<int32_t>(number(28));
    if (!isCore() && x > 0 && y > 0) header_.resolution = {x * kInchesPerMetre, y * kInchesPerMetre};
  }

  // Only the newest header has a profile; one that lies elsewhere is a name of a file.
  void findProfile(const CGImageDecodeLimits &limits) noexcept {
    if (size_ < kProfileBytes || number(56) != fourCharacterCode("MBED")) return;
    const uint64_t at = uint64_t{kBmpFileHeaderBytes} + number(112), bytes = number(116);
    if (bytes > limits.profileBytes || at > file_.size() || bytes > file_.size() - at) return;
    header_.profile = file_.subspan(at, bytes);
  }

  Bytes file_;
  BmpHeader &header_;
  Bytes fields_;       // the header behind the file header
  uint32_t size_ = 0;  // its length, which is its version
  size_t behind_ = 0;  // where the colours start
  size_t pixelsAt_ = 0;
};

}  // namespace

bool isBmpHeaderSize(uint32_t bytes) noexcept {
  switch (bytes) {
    case kCoreBytes:
    case kInfoBytes:
    case kMasksBytes:
    case kAlphaBytes:
    case kOs2Bytes:
    case 108:
    case kProfileBytes:
      return true;
    default:
      return bytes >= 16 && bytes < kInfoBytes && bytes % 4 == 0;
  }
}

Result<BmpHeader> readBmpHeader(Bytes file, const CGImageDecodeLimits &limits) noexcept {
  BmpHeader header;
  if (const Fault fault = Parser(file, header).parse(limits); fault != Fault::none) return fault;
  return header;
}

}  // namespace codecs
