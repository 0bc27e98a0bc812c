#include "media/codecs/pict/picture.h"

#include <array>

#include "media/codecs/pict/opcode.h"

namespace codecs::pict {
namespace {

constexpr size_t kFrameAt = 2;
constexpr size_t kVersionAt = 10;
constexpr uint32_t kVersion2 = 0x001102FF;
constexpr uint16_t kVersion1 = 0x1101;
constexpr size_t kFileHeader = 512;
constexpr size_t kMacBinaryHeader = 128;
constexpr size_t kSearched = 4096;  // for a picture behind a wrapping of unusual length
constexpr int16_t kExtended = -2;

// In the order in which they are believed.
constexpr std::array<size_t, 6> kStarts{kFileHeader,      0,
                                        2 * kFileHeader,  kFileHeader + kMacBinaryHeader,
                                        kMacBinaryHeader, 2 * kFileHeader + kMacBinaryHeader};

bool isVersion2(Bytes file, size_t start) noexcept {
  return file.size() >= start + kVersionAt + 4 && readBig32(file, start + kVersionAt) == kVersion2;
}

// Two bytes are weak evidence, so the frame has to make sense as well.
bool isVersion1(Bytes file, size_t start) noexcept {
  if (file.size() < start + kVersionAt + 2 || readBig16(file, start + kVersionAt) != kVersion1) return false;
  ByteReader reader(file.subspan(start + kFrameAt));
  return !readBox(reader).isEmpty();
}

bool isBlank(Bytes bytes) noexcept {
  return std::ranges::all_of(bytes, [](uint8_t byte) { return byte == 0; });
}

// Fields that are zero in every MacBinary header, and the name's length.
bool isMacBinaryHeader(Bytes header) noexcept {
  return header[0] == 0 && header[1] >= 1 && header[1] <= 63 && header[74] == 0 && header[82] == 0;
}

// Whether the bytes in front of a start that is no multiple of the file header's length explain it.
bool isUnwrapped(Bytes file, size_t start) noexcept {
  if (start % kFileHeader == 0) return true;
  return isMacBinaryHeader(file) || (start > kFileHeader && isMacBinaryHeader(file.subspan(kFileHeader)));
}

// The bytes of a picture's own pixels can look like another picture further on.
std::optional<size_t> findVersion1(Bytes file) noexcept {
  const bool isBare = isVersion1(file, 0);
  if (isBare && !(isVersion1(file, kFileHeader) && isBlank(file.first(kFileHeader)))) return 0;
  for (const size_t start : kStarts) {
    if (isVersion1(file, start) && isUnwrapped(file, start)) return start;
  }
  return std::nullopt;
}

std::optional<size_t> findVersion2(Bytes file) noexcept {
  for (const size_t start : kStarts) {
    if (isVersion2(file, start)) return start;
  }
  return std::nullopt;
}

std::optional<size_t> searchVersion2(Bytes file) noexcept {
  for (size_t start = 0; start < kSearched && start + kVersionAt + 4 <= file.size(); ++start) {
    if (isVersion2(file, start)) return start;
  }
  return std::nullopt;
}

double fixedToDouble(int32_t fixed) noexcept { return fixed / 65536.0; }

void readExtendedHeader(ByteReader reader, Picture &picture) noexcept {
  if (reader.u16() != op::header || reader.i16() != kExtended) return;
  reader.skip(2);
  const double hRes = fixedToDouble(reader.i32()), vRes = fixedToDouble(reader.i32());
  const Box drawing = readBox(reader);
  if (reader.failed()) return;
  picture.isExtended = true;
  if (!drawing.isEmpty()) picture.drawing = drawing;
  if (hRes > 0 && vRes > 0) picture.resolution = {hRes, vRes};
}

Picture pictureAt(Bytes file, size_t start, int version) noexcept {
  Picture picture;
  picture.bytes = file.subspan(start);
  picture.version = version;
  picture.firstOpcode = kVersionAt + (version == 2 ? 4 : 2);
  picture.resolution = {72, 72};
  ByteReader reader(picture.bytes.subspan(kFrameAt));
  picture.frame = picture.drawing = readBox(reader);
  if (version == 2) readExtendedHeader(ByteReader(picture.bytes.subspan(picture.firstOpcode)), picture);
  return picture;
}

}  // namespace

int scorePicture(Bytes head) noexcept {
  if (findVersion2(head)) return 90;
  return findVersion1(head) ? 40 : 0;
}

std::optional<Picture> findPicture(Bytes file) noexcept {
  if (const auto start = findVersion2(file)) return pictureAt(file, *start, 2);
  if (const auto start = findVersion1(file)) return pictureAt(file, *start, 1);
  if (const auto start = searchVersion2(file)) return pictureAt(file, *start, 2);
  return std::nullopt;
}

}  // namespace codecs::pict
