// Writing PICT.

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>

#include "media/codecs/pict/packbits.h"
#include "media/codecs/pict/pict.h"

namespace codecs {
namespace {

using namespace pict;

constexpr uint32_t kMostMapPixels = 4095;  // a row of one map, as its row bytes go
constexpr size_t kFileHeader = 512;
constexpr size_t kMostProfilePart = 32763;  // of a comment, behind the selector
constexpr uint32_t kShortRow = 8;           // shorter rows are stored as they are
constexpr uint32_t kLongestByteCount = 250;
constexpr double kScreenResolution = 72;
constexpr size_t kMostReserved = size_t{1} << 28;  // before it is known how well an image packs

// Big-endian fields at the end of a vector.
class Out {
 public:
  explicit Out(std::vector<uint8_t> &bytes) noexcept : bytes_(bytes) {}

  Out &u8(unsigned value) {
    bytes_.push_back(static_cast<uint8_t>(value));
    return *this;
  }
  Out &u16(unsigned value) { return u8(value >> 8).u8(value); }
  Out &u32(uint32_t value) { return u16(value >> 16).u16(value); }
  Out &fixed(double value) { return u32(static_cast<uint32_t>(std::lround(value * 65536))); }
  Out &box(uint32_t left, uint32_t top, uint32_t right, uint32_t bottom) {
    return u16(top).u16(left).u16(bottom).u16(right);
  }
  Out &bytes(Bytes more) {
    bytes_.insert(bytes_.end(), more.begin(), more.end());
    return *this;
  }

 private:
  std::vector<uint8_t> &bytes_;
};

// One map of an image; wide images take several, side by side.
struct Strip {
  uint32_t left = 0;
  uint32_t width = 0;
  std::vector<uint8_t> rows;

  uint32_t rowBytes() const noexcept { return 4 * width; }
};

class Writing {
 public:
  Writing(const EncodeSource &source, std::vector<uint8_t> &file)
      : source_(source), file_(file), out_(file), start_(file.size() + kFileHeader) {
    if (source.resolution.x > 0 && source.resolution.y > 0 && source.resolution.x < 32767 &&
        source.resolution.y < 32767)
      resolution_ = source.resolution;
    for (uint32_t left = 0; left < source.width; left += kMostMapPixels)
      strips_.push_back({left, std::min(kMostMapPixels, source.width - left), {}});
    row_.resize(source.width * bytesPerPixel(source.layout));
    planes_.resize(size_t{planeCount()} * std::min(kMostMapPixels, source.width));
    packed_.resize(mostPackedBytes(planes_.size()));
  }

  Fault write() {
    writeHeader();
    writeProfile();
    writeStripHeader(strips_.front());
    file_.reserve(file_.size() + std::min(kMostReserved, source_.height * (packed_.size() + 2)));
    if (!packRows()) return Fault::noMemory;
    for (const Strip &strip : std::span(strips_).subspan(1)) {
      writeStripHeader(strip);
      out_.bytes(strip.rows);
    }
    pad();
    out_.u16(0x00FF);
    const size_t size = file_.size() - start_;
    file_[start_] = static_cast<uint8_t>(size >> 8);
    file_[start_ + 1] = static_cast<uint8_t>(size);
    return Fault::none;
  }

 private:
  bool hasAlpha() const noexcept { return source_.layout == RowLayout::rgba; }
  unsigned planeCount() const noexcept { return hasAlpha() ? 4 : 3; }

  // Even, from the picture's first byte.
  void pad() {
    if ((file_.size() - start_) % 2) out_.u8(0);
  }

  uint32_t atScreenResolution(uint32_t pixels, double dotsPerInch) const noexcept {
    const auto units = std::lround(pixels * kScreenResolution / dotsPerInch);
    return static_cast<uint32_t>(std::clamp<long>(units, 1, kMostPictSide));
  }

  void writeHeader() {
    file_.insert(file_.end(), kFileHeader, 0);
    out_.u16(0).box(0, 0, atScreenResolution(source_.width, resolution_.x),
                    atScreenResolution(source_.height, resolution_.y));
    out_.u32(0x001102FF).u16(0x0C00).u16(0xFFFE).u16(0).fixed(resolution_.x).fixed(resolution_.y);
    out_.box(0, 0, source_.width, source_.height).u32(0);
    out_.u16(0x001E);
    out_.u16(0x0001).u16(10).box(0, 0, source_.width, source_.height);
  }

  void writeProfile() {
    const Bytes profile = source_.layout == RowLayout::grey ? Bytes{} : source_.profile;
    for (size_t at = 0; at < profile.size(); at += kMostProfilePart)
      writeProfilePart(at == 0 ? 0 : 1, profile.subspan(at, std::min(kMostProfilePart, profile.size() - at)));
    if (!profile.empty()) writeProfilePart(2, {});
  }

  void writeProfilePart(uint32_t selector, Bytes part) {
    out_.u16(0x00A1).u16(224).u16(static_cast<unsigned>(4 + part.size())).u32(selector).bytes(part);
    pad();
  }

  void writeStripHeader(const Strip &strip) {
    const uint32_t right = strip.left + strip.width;
    pad();
    out_.u16(0x009A).u32(0xFF).u16(strip.rowBytes() | 0x8000).box(strip.left, 0, right, source_.height);
    out_.u16(0).u16(4).u32(0).fixed(resolution_.x).fixed(resolution_.y).u16(16).u16(32);
    out_.u16(planeCount()).u16(8).u32(0).u32(0).u32(0);
    out_.box(strip.left, 0, right, source_.height).box(strip.left, 0, right, source_.height).u16(0);
  }

  // Rows come once and whole: the first strip's go into the file, the others' wait for their turn.
  bool packRows() {
    for (uint32_t y = 0; y < source_.height; ++y) {
      if (!source_.copyRow(source_.context, y, row_.data())) return false;
      for (Strip &strip : strips_) packRow(strip, &strip == strips_.data() ? file_ : strip.rows);
    }
    return true;
  }

  void packRow(const Strip &strip, std::vector<uint8_t> &to) {
    const uint8_t *const from = row_.data() + strip.left * bytesPerPixel(source_.layout);
    if (strip.rowBytes() < kShortRow) {
      const size_t green = source_.layout == RowLayout::grey ? 0 : 1, blue = 2 * green;
      Out(to).u8(hasAlpha() ? from[3] : 0).u8(from[0]).u8(from[green]).u8(from[blue]);
      return;
    }
    splitPlanes(from, strip.width);
    const size_t size = packBytes(Bytes(planes_.data(), size_t{planeCount()} * strip.width), packed_.data());
    Out out(to);
    strip.rowBytes() > kLongestByteCount ? out.u16(static_cast<unsigned>(size))
                                         : out.u8(static_cast<unsigned>(size));
    out.bytes(Bytes(packed_.data(), size));
  }

  void splitPlanes(const uint8_t *from, size_t width) noexcept {
    uint8_t *to = planes_.data();
    if (source_.layout == RowLayout::grey) {
      for (int plane = 0; plane < 3; ++plane, to += width) std::memcpy(to, from, width);
      return;
    }
    if (hasAlpha()) {
      for (size_t x = 0; x < width; ++x) to[x] = from[4 * x + 3];
      to += width;
    }
    uint8_t *const red = to, *const green = red + width, *const blue = green + width;
    for (size_t x = 0; x < width; ++x) {
      red[x] = from[4 * x];
      green[x] = from[4 * x + 1];
      blue[x] = from[4 * x + 2];
    }
  }

  const EncodeSource &source_;
  std::vector<uint8_t> &file_;
  Out out_;
  const size_t start_;
  Resolution resolution_{kScreenResolution, kScreenResolution};
  std::vector<Strip> strips_;
  std::vector<uint8_t> row_;
  std::vector<uint8_t> planes_;
  std::vector<uint8_t> packed_;
};

}  // namespace

Fault encodePict(const EncodeSource &source, std::vector<uint8_t> &file) noexcept {
  if (source.width == 0 || source.height == 0 || source.width > kMostPictSide ||
      source.height > kMostPictSide)
    return Fault::unsupported;
  try {
    return Writing(source, file).write();
  } catch (const std::bad_alloc &) {
    return Fault::noMemory;
  }
}

}  // namespace codecs
