#include "image.h"

#include "failure.h"
#include "hush.h"
#include "media/inspection.h"

std::span<const uint8_t> bytesOf(CFDataRef data) noexcept {
  return {CFDataGetBytePtr(data), static_cast<size_t>(CFDataGetLength(data))};
}

std::string decodeFault() {
  const char *reason = CGImageGetLastDecodeFault();
  return reason ? reason : "cannot be decoded";
}

Image decodeImage(CFDataRef file) {
  const Hush hush;
  // The content decides, not the name: a JPEG that is called .png is read as what it is.
  const Format *format = formatForBytes(bytesOf(file));
  Image image = cf::adopt(DRAVCFImageCreateWithFormattedData(
      nullptr, file, format ? format->loadAs : DRAVCFImageFormat{kDRAVCFImageFormatUnknown}));
  if (!image || !DRAVCFImageGetCGImage(image.get())) throw Failure(decodeFault());
  return image;
}

cf::Ref<CFDataRef> encodeImage(DRAVCFImageRef image, const Format &format) {
  const Hush hush;
  const auto exporter = cf::adopt(format.createExporter(nullptr));
  CGImageRef pixels = DRAVCFImageGetCGImage(image);
  if (!exporter || !pixels) throw Failure("out of memory");
  auto data = cf::adopt(DRAVCFImageExportCreateData(nullptr, exporter.get(), pixels));
  if (!data) throw Failure(std::string("cannot be written as ") + format.name);
  return data;
}
