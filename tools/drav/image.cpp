#include "image.h"

#include "failure.h"
#include "hush.h"
#include "media/formats.h"
#include "media/inspection.h"

namespace {

struct Advice {
  std::string_view reason;  // as the decoder puts it
  std::string_view then;
};

constexpr Advice kAdvice[] = {
    {"not an image this tool knows", "; \"drav formats\" lists those that are"},
    {"truncated", ": it ends before its image does; get the whole file"},
    {"damaged", ": its bytes contradict its format; get a sound copy"},
    {"a variant that is not supported", "; save it in a plainer one"},
    {"too large", ": above what --limits allows"},
};

}  // namespace

std::span<const uint8_t> bytesOf(CFDataRef data) noexcept {
  return {CFDataGetBytePtr(data), static_cast<size_t>(CFDataGetLength(data))};
}

std::string decodeFault() {
  const char *fault = CGImageGetLastDecodeFault();
  std::string reason = fault ? fault : "cannot be decoded";
  for (const Advice &advice : kAdvice) {
    if (advice.reason == reason) return reason.append(advice.then);
  }
  return reason;
}

Image decodeImage(CFDataRef file) {
  const Hush hush;
  const auto bytes = bytesOf(file);
  const auto decoded = cf::adopt(CGImageCreateWithEncodedData(bytes.data(), bytes.size()));
  if (!decoded) throw Failure(decodeFault());
  Image image = cf::adopt(DRAVCFImageCreateWithImage(nullptr, decoded.get()));
  if (!image) throw Failure("out of memory");
  return image;
}
