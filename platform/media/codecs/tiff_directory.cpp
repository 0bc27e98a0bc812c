#include "media/codecs/tiff_directory.h"

#include <algorithm>
#include <array>

#include "media/codecs/frame.h"

namespace codecs {
namespace {

enum Tag : uint16_t {
  kImageWidth = 256,
  kImageLength = 257,
  kBitsPerSample = 258,
  kCompression = 259,
  kPhotometric = 262,
  kStripOffsets = 273,
  kSamplesPerPixel = 277,
  kRowsPerStrip = 278,
  kPlanarConfiguration = 284,
  kTileWidth = 322,
  kTileLength = 323,
  kTileOffsets = 324,
};

constexpr uint32_t kMostSamples = 64;
constexpr uint32_t kMostBits = 16;
constexpr uint64_t kMostTileSide = uint64_t{1} << 24;

// Bytes of one value by the type's number; 0 for types that there are not.
constexpr std::array<uint8_t, 19> kTypeBytes{0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4, 0, 0, 8, 8, 8};

struct Entry {
  uint16_t tag;
  uint16_t type;
  uint64_t count;
  uint64_t at;  // of its values in the file
};

// Numbers in the file's byte order, and what differs between the two sizes of TIFF.
class Reader {
 public:
  explicit Reader(Bytes file) noexcept
      : file_(file), bigEndian_(file[0] == 'M'), large_(file[2] == 43 || file[3] == 43) {}

  bool has(uint64_t at, uint64_t count) const noexcept {
    return at <= file_.size() && count <= file_.size() - at;
  }
  // REQUIRES: has(at, bytes); bytes is at most 8.
  uint64_t number(uint64_t at, unsigned bytes) const noexcept {
    uint64_t value = 0;
    for (unsigned i = 0; i < bytes; ++i) {
      value = value << 8 | file_[at + (bigEndian_ ? i : bytes - 1 - i)];
    }
    return value;
  }
  unsigned offsetBytes() const noexcept { return large_ ? 8 : 4; }
  unsigned countBytes() const noexcept { return large_ ? 8 : 2; }
  unsigned entryBytes() const noexcept { return large_ ? 20 : 12; }
  uint64_t firstDirectoryAt() const noexcept { return large_ ? 8 : 4; }
  uint64_t size() const noexcept { return file_.size(); }

 private:
  Bytes file_;
  bool bigEndian_;
  bool large_;
};

class Directory {
 public:
  Directory(Bytes file, const CGImageDecodeLimits &limits) noexcept : reader_(file), limits_(limits) {}

  Fault find() noexcept {
    const uint64_t pointer = reader_.firstDirectoryAt();
    if (!reader_.has(pointer, reader_.offsetBytes())) return Fault::truncated;
    const uint64_t at = reader_.number(pointer, reader_.offsetBytes());
    if (!reader_.has(at, reader_.countBytes())) return Fault::truncated;
    count_ = reader_.number(at, reader_.countBytes());
    if (count_ == 0) return Fault::damaged;
    if (count_ > limits_.tiffTags) return Fault::tooLarge;
    entries_ = at + reader_.countBytes();
    return reader_.has(entries_, count_ * reader_.entryBytes()) ? Fault::none : Fault::truncated;
  }

  // Shared values are legal, but what they add up to in memory has to stay in proportion to the file.
  Fault checkValues() const noexcept {
    uint64_t left = 2 * reader_.size();
    for (uint64_t i = 0; i < count_; ++i) {
      const Entry found = entry(i);
      const uint64_t each = bytesOf(found);
      if (each == 0) continue;
      if (found.count > reader_.size() / each) return Fault::truncated;
      const uint64_t bytes = found.count * each;
      if (!reader_.has(found.at, bytes)) return Fault::truncated;
      if (bytes > left) return Fault::damaged;
      left -= bytes;
    }
    return Fault::none;
  }

  // The first value of a tag with whole numbers. Of entries that repeat a tag the first counts.
  uint64_t number(Tag tag, uint64_t otherwise) const noexcept {
    for (uint64_t i = 0; i < count_; ++i) {
      const Entry found = entry(i);
      if (found.tag != tag) continue;
      const bool whole = found.type == 1 || found.type == 3 || found.type == 4 || found.type == 16;
      return whole && found.count > 0 ? reader_.number(found.at, bytesOf(found)) : otherwise;
    }
    return otherwise;
  }

  uint64_t countOf(Tag tag) const noexcept {
    for (uint64_t i = 0; i < count_; ++i) {
      const Entry found = entry(i);
      if (found.tag == tag) return found.count;
    }
    return 0;
  }

 private:
  static unsigned bytesOf(const Entry &entry) noexcept {
    return entry.type < kTypeBytes.size() ? kTypeBytes[entry.type] : 0;
  }

  Entry entry(uint64_t index) const noexcept {
    const uint64_t at = entries_ + index * reader_.entryBytes();
    const unsigned offset = reader_.offsetBytes();
    Entry entry{static_cast<uint16_t>(reader_.number(at, 2)),
                static_cast<uint16_t>(reader_.number(at + 2, 2)), reader_.number(at + 4, offset),
                at + 4 + offset};
    const unsigned each = bytesOf(entry);
    if (each != 0 && entry.count > offset / each) entry.at = reader_.number(entry.at, offset);
    return entry;
  }

  Reader reader_;
  const CGImageDecodeLimits &limits_;
  uint64_t entries_ = 0;
  uint64_t count_ = 0;
};

bool isKnown(uint64_t compression) noexcept {
  switch (static_cast<TiffCompression>(compression)) {
    case TiffCompression::none:
    case TiffCompression::ccittRle:
    case TiffCompression::ccittFax3:
    case TiffCompression::ccittFax4:
    case TiffCompression::lzw:
    case TiffCompression::jpeg:
    case TiffCompression::deflate:
    case TiffCompression::packBits:
    case TiffCompression::oldDeflate:
    case TiffCompression::zstandard:
      return compression <= UINT16_MAX;
  }
  return false;
}

bool isKnownPhotometric(uint64_t photometric) noexcept {
  switch (static_cast<TiffPhotometric>(photometric)) {
    case TiffPhotometric::whiteIsZero:
    case TiffPhotometric::blackIsZero:
    case TiffPhotometric::rgb:
    case TiffPhotometric::palette:
    case TiffPhotometric::cmyk:
    case TiffPhotometric::yCbCr:
      return photometric <= UINT16_MAX;
  }
  return false;
}

// CCITT files that do not say what their zeros are mean paper.
uint64_t defaultPhotometric(uint64_t compression) noexcept {
  return compression >= 2 && compression <= 4 ? 0 : 1;
}

Fault readSamples(const Directory &directory, TiffDirectory &found) noexcept {
  const uint64_t samples = directory.number(kSamplesPerPixel, 1);
  const uint64_t bits = directory.number(kBitsPerSample, 1);
  const uint64_t compression = directory.number(kCompression, 1);
  const uint64_t photometric = directory.number(kPhotometric, defaultPhotometric(compression));
  const uint64_t planar = directory.number(kPlanarConfiguration, 1);
  if (samples == 0 || bits == 0 || (planar != 1 && planar != 2)) return Fault::damaged;
  if (samples > kMostSamples || bits > kMostBits || !isKnown(compression) || !isKnownPhotometric(photometric))
    return Fault::unsupported;
  found.samples = static_cast<uint32_t>(samples);
  found.bits = static_cast<uint32_t>(bits);
  found.compression = static_cast<TiffCompression>(compression);
  found.photometric = static_cast<TiffPhotometric>(photometric);
  found.planes = planar == 2 && samples > 1;
  return Fault::none;
}

Fault readChunks(const Directory &directory, TiffDirectory &found) noexcept {
  const uint64_t tileWidth = directory.number(kTileWidth, 0);
  const uint64_t tileLength = directory.number(kTileLength, 0);
  found.tiled = tileWidth != 0 || tileLength != 0;
  if (found.tiled) {
    if (tileWidth == 0 || tileLength == 0) return Fault::damaged;
    if (tileWidth > kMostTileSide || tileLength > kMostTileSide) return Fault::tooLarge;
  }
  const uint64_t rows = std::min<uint64_t>(directory.number(kRowsPerStrip, found.height), found.height);
  if (rows == 0) return Fault::damaged;
  found.chunkWidth = found.tiled ? static_cast<uint32_t>(tileWidth) : found.width;
  found.chunkHeight = static_cast<uint32_t>(found.tiled ? tileLength : rows);
  const uint64_t offsets = directory.countOf(found.tiled ? kTileOffsets : kStripOffsets);
  return found.chunkCount() <= offsets ? Fault::none : Fault::damaged;
}

// The fewest bytes that can hold the pixels: how often a byte of the file can be used at most.
uint64_t leastBytes(const TiffDirectory &found) noexcept {
  const uint64_t rows = uint64_t{found.height} * found.planeCount();
  uint64_t bytes = rows * ((uint64_t{found.width} * found.samplesTogether() * found.bits + 7) / 8);
  if (found.photometric == TiffPhotometric::yCbCr) bytes /= 3;  // colour may be stored for 16 pixels at once
  switch (found.compression) {
    case TiffCompression::none:
      return bytes;
    case TiffCompression::packBits:
      return bytes / 64;  // 128 equal bytes from two
    case TiffCompression::lzw:
      return bytes / 2731;  // a string of 4,096 from twelve bits
    case TiffCompression::deflate:
    case TiffCompression::oldDeflate:
      return bytes / 1032;  // 258 bytes from two bits
    case TiffCompression::zstandard:
      return bytes / 32768;  // a block of 128 KiB from four bytes
    case TiffCompression::ccittRle:
    case TiffCompression::ccittFax3:
    case TiffCompression::ccittFax4:
      return rows / 8;  // a row like the one above from one bit
    case TiffCompression::jpeg:
      return uint64_t{found.width} * found.height / 512;  // a block of 64 from one bit
  }
  return 0;
}

}  // namespace

Result<TiffDirectory> inspectTiff(Bytes file, const CGImageDecodeLimits &limits) noexcept {
  Directory directory(file, limits);
  if (const Fault fault = directory.find(); fault != Fault::none) return fault;
  if (const Fault fault = directory.checkValues(); fault != Fault::none) return fault;
  const uint64_t width = directory.number(kImageWidth, 0), height = directory.number(kImageLength, 0);
  if (const Fault fault = checkFrame(width, height, 1, limits); fault != Fault::none) return fault;
  TiffDirectory found;
  found.width = static_cast<uint32_t>(width);
  found.height = static_cast<uint32_t>(height);
  if (const Fault fault = readSamples(directory, found); fault != Fault::none) return fault;
  if (const Fault fault = readChunks(directory, found); fault != Fault::none) return fault;
  if (leastBytes(found) > file.size()) return Fault::truncated;
  return found;
}

}  // namespace codecs
