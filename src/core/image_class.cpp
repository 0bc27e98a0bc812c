// The image class: registration and callbacks.
#include <cstring>

#include "core/block.h"
#include "core/image.h"
#include "core/runtime_class.h"
#include "foundation/ref.h"

CFTypeID kDRAVCFImageID = 0;
CGColorSpaceRef gDRAVCFNativeColorSpace = nullptr;

namespace {

Boolean gDRAVCFImageInited = 0;
CFRuntimeClass imageClass;

CFTypeRef copyCallback(CFAllocatorRef allocator, CFTypeRef source) {
  return DRAVCFImageCopy(allocator, source);
}

const char *alphaInfoName(CGImageAlphaInfo info) {
  switch (info) {
    case kCGImageAlphaNone:
      return "kCGImageAlphaNone";
    case kCGImageAlphaPremultipliedLast:
      return "kCGImageAlphaPremultipliedLast";
    case kCGImageAlphaPremultipliedFirst:
      return "kCGImageAlphaPremultipliedFirst";
    case kCGImageAlphaLast:
      return "kCGImageAlphaLast";
    case kCGImageAlphaFirst:
      return "kCGImageAlphaFirst";
    case kCGImageAlphaNoneSkipLast:
      return "kCGImageAlphaNoneSkipLast";
    case kCGImageAlphaNoneSkipFirst:
      return "kCGImageAlphaNoneSkipFirst";
    case kCGImageAlphaOnly:
      return "kCGImageAlphaOnly";
    default:
      return "";
  }
}

// Everything but the buffer and the context, with counts of its own.
void copyFields(DRAVCFImageRef to, const __DRAVCFImage &from) {
  to->cgImage = cf::share(from.cgImage).give();
  to->bufferSize = from.bufferSize;
  to->width = from.width;
  to->height = from.height;
  to->bitsPerComponent = from.bitsPerComponent;
  to->bitsPerPixel = from.bitsPerPixel;
  to->bytesPerRow = from.bytesPerRow;
  to->colorSpace = cf::share(from.colorSpace).give();
  to->alphaInfo = from.alphaInfo;
}

bool copyBuffer(DRAVCFImageRef to, CFAllocatorRef allocator, const __DRAVCFImage &from) {
  to->buffer = drav::allocateBytes(allocator, from.bufferSize);
  if (to->buffer) std::memcpy(to->buffer, from.buffer, from.bufferSize);
  return to->buffer != nullptr;
}

}  // namespace

void DRAVCFImageClassInitialize(void) {
  imageClass = {0,
                "DRAVCFImage",
                DRAVCFImageInit,
                copyCallback,
                DRAVCFImageFinalize,
                DRAVCFImageEqual,
                DRAVCFImageHash,
                DRAVCFImageCopyFormattingDesc,
                DRAVCFImageCopyDebugDesc};
  kDRAVCFImageID = _CFRuntimeRegisterClass(&imageClass);
  gDRAVCFNativeColorSpace = DRAVCGColorSpaceCreateMainDisplay();
}

DRAVCFImageRef DRAVCFImageCreate(CFAllocatorRef allocator) {
  return drav::createInstance<__DRAVCFImage>(allocator, gDRAVCFImageInited, DRAVCFImageClassInitialize,
                                             kDRAVCFImageID);
}

CFTypeID DRAVCFImageGetTypeID(void) { return kDRAVCFImageID; }

void DRAVCFImageInit(CFTypeRef object) {
  drav::cleared<__DRAVCFImage>(object)->alphaInfo = kCGImageAlphaPremultipliedFirst;
}

DRAVCFImageRef DRAVCFImageCopy(CFAllocatorRef allocator, CFTypeRef source) {
  const auto &from = cf::objectIn<__DRAVCFImage>(source);
  cf::Ref copy = cf::adopt(DRAVCFImageCreate(allocator));
  if (!copy) return nullptr;
  copyFields(copy.get(), from);
  if (from.buffer && !copyBuffer(copy.get(), allocator, from)) return nullptr;
  if (copy->cgImage) {
    // A copy without pixels would be a success that lost them.
    if (!DRAVCFImageGetImageBuffer(copy.get())) return nullptr;
    DRAVCFImageInvalidateImage(copy.get());
  }
  return copy.give();
}

void DRAVCFImageFinalize(CFTypeRef object) {
  auto *image = cf::mutableIn<__DRAVCFImage>(object);
  DRAVCFImageInvalidateImage(image);
  DRAVCFImageInvalidateBuffer(image);
  if (!image->context) return;
  // The context draws into memory that is gone now, so it ends here, whoever still counts on it.
  for (CFIndex count = CFGetRetainCount(image->context); count > 0; --count) CFRelease(image->context);
  image->context = nullptr;
}

Boolean DRAVCFImageEqual(CFTypeRef a, CFTypeRef b) {
  if (a == b) return 1;
  CGImageRef imageA = cf::objectIn<__DRAVCFImage>(a).cgImage;
  CGImageRef imageB = cf::objectIn<__DRAVCFImage>(b).cgImage;
  return imageA && imageB && CFEqual(imageA, imageB);
}

CFHashCode DRAVCFImageHash(CFTypeRef object) { return reinterpret_cast<CFHashCode>(object); }

CFStringRef DRAVCFImageCopyFormattingDesc(CFTypeRef object, CFDictionaryRef formatOptions) {
  auto *image = cf::mutableIn<__DRAVCFImage>(object);
  return CFStringCreateWithFormat(
      CFGetAllocator(image), formatOptions, CFSTR("<DRAVCFImage: %zux%zu bpc=%zu bpp=%zu rowBytes=%zu %s>"),
      DRAVCFImageGetWidth(image), DRAVCFImageGetHeight(image), DRAVCFImageGetBitsPerComponent(image),
      DRAVCFImageGetBitsPerPixel(image), DRAVCFImageGetBytesPerRow(image),
      alphaInfoName(DRAVCFImageGetAlphaInfo(image)));
}

CFStringRef DRAVCFImageCopyDebugDesc(CFTypeRef object) {
  return DRAVCFImageCopyFormattingDesc(object, nullptr);
}
