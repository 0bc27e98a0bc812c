#include "media/codecs/limits.h"

#include <mutex>

namespace {

constexpr CGImageDecodeLimits kDefaults{
    .side = 65535,
    .pixels = uint64_t{1} << 28,
    .memoryBytes = uint64_t{1} << 30,
    .jpegScans = 500,
    .tiffTags = 4096,
    .profileBytes = uint32_t{4} << 20,
    .pictOpcodes = 10'000'000,
    .paintedFrames = 64,
    .workFree = uint64_t{1} << 28,
    .workPerByte = 64,
    .pictWork = 3'000'000'000,
    .pictJpegScans = 64,
};

std::mutex lock;
constinit CGImageDecodeLimits current = kDefaults;

}  // namespace

CGImageDecodeLimits CGImageGetDefaultDecodeLimits(void) { return kDefaults; }

CGImageDecodeLimits CGImageGetDecodeLimits(void) {
  const std::lock_guard guard(lock);
  return current;
}

void CGImageSetDecodeLimits(const CGImageDecodeLimits *limits) {
  const std::lock_guard guard(lock);
  current = limits ? *limits : kDefaults;
}
