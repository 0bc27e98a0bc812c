// Loaders of the formats that the platform decodes directly: PNG and JPEG.
#include "foundation/ref.h"
#include "io/loader.h"
#include "io/path_url.h"

namespace {

using Decode = CGImageRef (*)(CGDataProviderRef, const CGFloat *, bool, CGColorRenderingIntent);

DRAVCFImageLoaderRef load(CFAllocatorRef allocator, CGDataProviderRef provider, Decode decode) {
  cf::Ref loader = cf::adopt(DRAVCFImageLoaderCreate(allocator));
  if (!loader || !provider) return nullptr;
  loader->cgImage = decode(provider, nullptr, true, kCGRenderingIntentDefault);
  return loader->cgImage ? loader.give() : nullptr;
}

DRAVCFImageLoaderRef loadFromURL(CFAllocatorRef allocator, CFURLRef url, Decode decode) {
  if (!url) return nullptr;
  return load(allocator, cf::adopt(CGDataProviderCreateWithURL(url)).get(), decode);
}

void __ImageCFDataRelease(void *info, const void *, size_t) { CFRelease(info); }

DRAVCFImageLoaderRef loadFromData(CFAllocatorRef allocator, CFDataRef data, Decode decode) {
  if (!data) return nullptr;
  auto *info = const_cast<void *>(static_cast<const void *>(data));
  const cf::Ref provider = cf::adopt(CGDataProviderCreateWithData(
      info, CFDataGetBytePtr(data), static_cast<size_t>(CFDataGetLength(data)), __ImageCFDataRelease));
  if (provider) CFRetain(data);  // the provider's, given back by the callback
  return load(allocator, provider.get(), decode);
}

}  // namespace

DRAVCFImageLoaderRef DRAVCFCreatePNGImageLoaderFromPath(CFAllocatorRef allocator, CFStringRef path) {
  return DRAVCFCreatePNGImageLoaderFromURL(allocator, drav::urlForPath(path).get());
}

DRAVCFImageLoaderRef DRAVCFCreatePNGImageLoaderFromURL(CFAllocatorRef allocator, CFURLRef url) {
  return loadFromURL(allocator, url, CGImageCreateWithPNGDataProvider);
}

DRAVCFImageLoaderRef DRAVCFCreatePNGImageLoaderFromData(CFAllocatorRef allocator, CFDataRef data) {
  return loadFromData(allocator, data, CGImageCreateWithPNGDataProvider);
}

DRAVCFImageLoaderRef DRAVCFCreateJPEGImageLoaderFromPath(CFAllocatorRef allocator, CFStringRef path) {
  return DRAVCFCreateJPEGImageLoaderFromURL(allocator, drav::urlForPath(path).get());
}

DRAVCFImageLoaderRef DRAVCFCreateJPEGImageLoaderFromURL(CFAllocatorRef allocator, CFURLRef url) {
  return loadFromURL(allocator, url, CGImageCreateWithJPEGDataProvider);
}

DRAVCFImageLoaderRef DRAVCFCreateJPEGImageLoaderFromData(CFAllocatorRef allocator, CFDataRef data) {
  return loadFromData(allocator, data, CGImageCreateWithJPEGDataProvider);
}
