// Encoding a platform image into a handle, and into data.
#include "core/block.h"
#include "core/image.h"
#include "foundation/ref.h"
#include "io/exporter.h"
#include "io/owners.h"

#include <cstring>
#include <utility>

namespace {

constexpr OSType kPICT = MEDIA_CODE('P', 'I', 'C', 'T');
constexpr OSType kPCT = MEDIA_CODE('P', 'C', 'T', ' ');
constexpr Size kPICTFileHeaderBytes = 512;

drav::HandleOwner emptyHandle() {
  drav::HandleOwner handle(NewHandle(0));
  if (MemError() != noErr) return {};
  return handle;
}

// Runs the encoder of that type. Gives the handle that holds what it made.
Handle encode(OSType encoder, CGImageRef image) {
  drav::HandleOwner handle = emptyHandle();
  if (!handle || !image) return nullptr;
  ComponentInstance opened = nullptr;
  const OSErr error = OpenADefaultComponent(GraphicsExporterComponentType, encoder, &opened);
  const drav::ComponentOwner component(opened);
  const bool done = error == noErr && GraphicsExportSetInputCGImage(opened, image) == noErr &&
                    GraphicsExportSetOutputHandle(opened, handle.get()) == noErr &&
                    GraphicsExportDoExport(opened, nullptr) == noErr;
  return done ? handle.give() : nullptr;
}

// An image over a copy of the buffer, divided by alpha.
CGImageRef unpremultipliedImage(DRAVCFImageRef image) {
  DRAVCFImagePromoteImage(image, 0, 0);
  if (!image->buffer) return nullptr;
  CFAllocatorRef allocator = CFGetAllocator(image);
  drav::Block copy(allocator, image->bufferSize);
  if (!copy) return nullptr;
  std::memcpy(copy.get(), image->buffer, image->bufferSize);
  DRAVCFUnpremultiplyARGBBuffer(copy.get(), image->bufferSize);
  const cf::Ref provider = drav::providerOf(allocator, std::move(copy), image->bufferSize);
  if (!provider) return nullptr;
  return CGImageCreate(image->width, image->height, image->bitsPerComponent, image->bitsPerPixel,
                       image->bytesPerRow, image->colorSpace,
                       static_cast<CGBitmapInfo>(kCGImageAlphaPremultipliedFirst), provider.get(), nullptr,
                       true, kCGRenderingIntentDefault);
}

}  // namespace

CGImageRef _DRAVCFImageCreateExportableImage(DRAVCFImageRef image, Boolean unpremultiply) {
  if (unpremultiply && drav::hasAlpha(DRAVCFImageGetAlphaInfo(image))) return unpremultipliedImage(image);
  return CGImageRetain(DRAVCFImageGetCGImage(image));
}

Handle _DRAVCFImageExporterCreatePCTHandle(DRAVCFImageExporterRef, CGImageRef image) {
  if (!image) return nullptr;
  const cf::Ref wrapped = cf::adopt(DRAVCFImageCreateWithImage(kCFAllocatorDefault, image));
  if (!wrapped) return nullptr;
  const cf::Ref exportable = cf::adopt(_DRAVCFImageCreateExportableImage(wrapped.get(), 1));
  return encode(kPICT, exportable.get());
}

Handle DRAVCFImageExporterCreateHandle(DRAVCFImageExporterRef exporter, CGImageRef image) {
  if (!exporter || !image) return nullptr;
  if (exporter->exportType == kPCT) return _DRAVCFImageExporterCreatePCTHandle(exporter, image);
  return encode(exporter->exportType, image);
}

CFDataRef DRAVCFImageExportCreateData(CFAllocatorRef allocator, DRAVCFImageExporterRef exporter,
                                      CGImageRef image) {
  const drav::HandleOwner handle(DRAVCFImageExporterCreateHandle(exporter, image));
  if (!handle) return nullptr;
  HLock(handle.get());
  const auto *bytes = reinterpret_cast<const uint8_t *>(*handle.get());
  Size length = GetHandleSize(handle.get());
  if (exporter->exportType == kPICT) {
    if (length < kPICTFileHeaderBytes) return nullptr;
    bytes += kPICTFileHeaderBytes;
    length -= kPICTFileHeaderBytes;
  }
  CFDataRef data = CFDataCreate(allocator, bytes, length);
  HUnlock(handle.get());
  return data;
}
