// Data objects: bytes of their own, or bytes borrowed for their lifetime.
#include <CoreFoundation/CFData.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <span>

#include "foundation/buffer.h"
#include "foundation/object.h"
#include "foundation/runtime.h"

struct __CFData : cf::ObjectOf<__CFData> {
  static constexpr const char *kName = "CFData";
  ~__CFData();
  bool operator==(const __CFData &other) const noexcept;
  CFHashCode hash() const noexcept;
  std::string describe() const;

  [[nodiscard]] std::span<const UInt8> content() const noexcept {
    return isForeign ? foreign : std::span<const UInt8>{bytes.data(), bytes.size()};
  }

  cf::Buffer<UInt8> bytes;
  std::span<const UInt8> foreign;  // somebody's bytes, given back to their allocator with the object
  cf::Ref<CFAllocatorRef> foreignAllocator;
  bool isForeign = false;
  bool isMutable = false;
  std::size_t capacity = 0;  // the greatest length of mutable data; 0: no limit
};

__CFData::~__CFData() {
  if (isForeign) CFAllocatorDeallocate(foreignAllocator.get(), const_cast<UInt8 *>(foreign.data()));
}

bool __CFData::operator==(const __CFData &other) const noexcept {
  return std::ranges::equal(content(), other.content());
}

// The front of the bytes and their number tell most data apart, at the same cost for a photograph as for a
// name.
CFHashCode __CFData::hash() const noexcept {
  CFHashCode hash = 0xCBF29CE484222325 ^ content().size();
  for (const UInt8 byte : content().first(std::min<std::size_t>(content().size(), 80)))
    hash = (hash ^ byte) * 0x100000001B3;
  return hash;
}

std::string __CFData::describe() const {
  constexpr std::size_t kShown = 24;
  char number[64];
  std::snprintf(number, sizeof number, "<CFData %p>{length = %zu, bytes = 0x",
                static_cast<const void *>(this), content().size());
  std::string text = number;
  for (const UInt8 byte : content().first(std::min(content().size(), kShown))) {
    std::snprintf(number, sizeof number, "%02x", byte);
    text += number;
  }
  return text + (content().size() > kShown ? " ...}" : "}");
}

namespace cf {
namespace {

constexpr UInt8 kNoBytes[1] = {};
constinit UInt8 gNoMutableBytes[1] = {};

bool areBytes(const UInt8 *bytes, CFIndex length) noexcept { return length >= 0 && (bytes || length == 0); }

bool holds(CFDataRef data, CFRange range) noexcept {
  const CFIndex length = CFDataGetLength(data);
  return range.location >= 0 && range.length >= 0 && range.location <= length &&
         range.length <= length - range.location;
}

Ref<__CFData> newData(CFAllocatorRef allocator, std::span<const UInt8> bytes) noexcept {
  auto made = make<__CFData>(allocator);
  if (!made) return nullptr;
  made->bytes = Buffer<UInt8>(made->allocator());
  if (!made->bytes.reserve(bytes.size()) || !made->bytes.append(bytes.data(), bytes.size())) return nullptr;
  return made;
}

Ref<__CFData> newMutableData(CFAllocatorRef allocator, CFIndex capacity,
                             std::span<const UInt8> bytes) noexcept {
  if (capacity < 0) return nullptr;
  const auto most = static_cast<std::size_t>(capacity);
  if (most != 0 && bytes.size() > most) return nullptr;
  auto made = newData(allocator, bytes);
  if (!made) return nullptr;
  made->isMutable = true;
  made->capacity = most;
  return made;
}

bool accepts(CFMutableDataRef data, CFIndex more) noexcept {
  if (!data || !data->isMutable || more <= 0) return false;
  const Size length = sum(data->bytes.size(), static_cast<std::size_t>(more));
  return length && (data->capacity == 0 || *length <= data->capacity);
}

// Room for so many more bytes at the end, or NULL if the data stays as it is.
UInt8 *grow(CFMutableDataRef data, CFIndex more) noexcept {
  return accepts(data, more) ? data->bytes.grow(static_cast<std::size_t>(more)) : nullptr;
}

}  // namespace
}  // namespace cf

using namespace cf;

CFTypeID CFDataGetTypeID(void) { return __CFData::typeID(); }

CFDataRef CFDataCreate(CFAllocatorRef allocator, const UInt8 *bytes, CFIndex length) {
  if (!areBytes(bytes, length)) return nullptr;
  return newData(allocator, {bytes, static_cast<std::size_t>(length)}).give();
}

CFDataRef CFDataCreateWithBytesNoCopy(CFAllocatorRef allocator, const UInt8 *bytes, CFIndex length,
                                      CFAllocatorRef bytesDeallocator) {
  if (!areBytes(bytes, length)) return nullptr;
  auto made = make<__CFData>(allocator);
  if (!made) return nullptr;
  made->isForeign = true;
  made->foreign = {bytes, static_cast<std::size_t>(length)};
  made->foreignAllocator = share(allocatorOrDefault(bytesDeallocator));
  return made.give();
}

CFDataRef CFDataCreateCopy(CFAllocatorRef allocator, CFDataRef data) {
  if (!data) return nullptr;
  if (!data->isMutable && data->allocator() == allocatorOrDefault(allocator)) return share(data).give();
  return newData(allocator, data->content()).give();
}

CFMutableDataRef CFDataCreateMutable(CFAllocatorRef allocator, CFIndex capacity) {
  return newMutableData(allocator, capacity, {}).give();
}

CFMutableDataRef CFDataCreateMutableCopy(CFAllocatorRef allocator, CFIndex capacity, CFDataRef data) {
  return data ? newMutableData(allocator, capacity, data->content()).give() : nullptr;
}

CFIndex CFDataGetLength(CFDataRef data) { return data ? static_cast<CFIndex>(data->content().size()) : 0; }

const UInt8 *CFDataGetBytePtr(CFDataRef data) {
  if (!data) return nullptr;
  return data->content().data() ? data->content().data() : kNoBytes;
}

UInt8 *CFDataGetMutableBytePtr(CFMutableDataRef data) {
  if (!data || !data->isMutable) return nullptr;
  return data->bytes.data() ? data->bytes.data() : gNoMutableBytes;
}

void CFDataGetBytes(CFDataRef data, CFRange range, UInt8 *buffer) {
  if (!data || !buffer || !holds(data, range)) return;
  std::memmove(buffer, CFDataGetBytePtr(data) + range.location, static_cast<std::size_t>(range.length));
}

void CFDataSetLength(CFMutableDataRef data, CFIndex length) {
  if (!data || !data->isMutable || length < 0) return;
  data->bytes.truncate(static_cast<std::size_t>(length));
  CFDataIncreaseLength(data, length - CFDataGetLength(data));
}

void CFDataIncreaseLength(CFMutableDataRef data, CFIndex extraLength) {
  if (UInt8 *added = grow(data, extraLength)) std::memset(added, 0, static_cast<std::size_t>(extraLength));
}

void CFDataAppendBytes(CFMutableDataRef data, const UInt8 *bytes, CFIndex length) {
  // Not to be had: the data stays as it is, and there is nobody to tell.
  if (bytes && accepts(data, length))
    static_cast<void>(data->bytes.append(bytes, static_cast<std::size_t>(length)));
}

void CFDataReplaceBytes(CFMutableDataRef data, CFRange range, const UInt8 *newBytes, CFIndex newLength) {
  if (!data || !data->isMutable || !holds(data, range) || !areBytes(newBytes, newLength)) return;
  const CFIndex oldLength = CFDataGetLength(data), behind = range.location + range.length;
  if (newLength > range.length && !grow(data, newLength - range.length)) return;
  UInt8 *at = CFDataGetMutableBytePtr(data) + range.location;
  std::memmove(at + newLength, at + range.length, static_cast<std::size_t>(oldLength - behind));
  if (newLength > 0) std::memcpy(at, newBytes, static_cast<std::size_t>(newLength));
  data->bytes.truncate(static_cast<std::size_t>(oldLength - range.length + newLength));
}

void CFDataDeleteBytes(CFMutableDataRef data, CFRange range) { CFDataReplaceBytes(data, range, nullptr, 0); }
