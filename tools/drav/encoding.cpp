// From images to encoded bytes.
#include "failure.h"
#include "hush.h"
#include "image.h"
#include "media/types.h"
#include "pixels.h"

namespace {

using CreateExporter = DRAVCFImageExporterRef (*)(CFAllocatorRef);

constexpr uint32_t kPictExporter = MEDIA_CODE('P', 'I', 'C', 'T');
constexpr CFIndex kPictFileHeaderBytes = 512;

bool isPremultiplied(DRAVCFImageRef image) noexcept {
  const CGImageAlphaInfo alpha = DRAVCFImageGetAlphaInfo(image);
  return alpha == kCGImageAlphaPremultipliedFirst || alpha == kCGImageAlphaPremultipliedLast;
}

// A picture has its colours beside its alpha. One of the library's two exporters for pictures divides by
// alpha; the other writes what is there, which loses nothing where that is divided already.
CreateExporter exporterFor(DRAVCFImageRef image, const Format &format) {
  switch (format.exporter) {
    case MEDIA_CODE('P', 'N', 'G', 'f'):
      return DRAVCFImageExporterCreatePNG;
    case MEDIA_CODE('J', 'P', 'E', 'G'):
      return DRAVCFImageExporterCreateJPEG;
    case MEDIA_CODE('T', 'I', 'F', 'F'):
      return DRAVCFImageExporterCreateTIFF;
    case kPictExporter:
      return isPremultiplied(image) ? DRAVCFImageExporterCreatePCT : DRAVCFImageExporterCreatePICT;
    default:
      throw Failure(format.name + " is not written");
  }
}

// Data of that exporter stands without the blank bytes that files begin with.
cf::Ref<CFDataRef> behindFileHeader(CFDataRef picture) {
  const CFIndex length = kPictFileHeaderBytes + CFDataGetLength(picture);
  auto file = cf::adopt(CFDataCreateMutable(nullptr, 0));
  if (!file) return nullptr;
  CFDataSetLength(file.get(), kPictFileHeaderBytes);
  CFDataAppendBytes(file.get(), CFDataGetBytePtr(picture), CFDataGetLength(picture));
  if (CFDataGetLength(file.get()) != length) return nullptr;
  return cf::adopt(CFDataRef{file.give()});
}

void checkSides(DRAVCFImageRef image, const Format &format) {
  if (DRAVCFImageGetWidth(image) <= format.mostSide && DRAVCFImageGetHeight(image) <= format.mostSide) return;
  throw Failure("has " + sizeText(image) + "; " + format.name + " holds at most " +
                std::to_string(format.mostSide) + " a side: scale it, or write another format");
}

}  // namespace

cf::Ref<CFDataRef> encodeImage(DRAVCFImageRef image, const Format &format) {
  const Hush hush;
  checkSides(image, format);
  const CreateExporter create = exporterFor(image, format);
  const auto exporter = cf::adopt(create(nullptr));
  CGImageRef pixels = DRAVCFImageGetCGImage(image);
  if (!exporter || !pixels) throw Failure("out of memory");
  auto data = cf::adopt(DRAVCFImageExportCreateData(nullptr, exporter.get(), pixels));
  if (data && create == DRAVCFImageExporterCreatePICT) data = behindFileHeader(data.get());
  if (!data) throw Failure("cannot be written as " + format.name);
  return data;
}
