// Images from encoded files and data, and back.
#include "core/image.h"
#include "foundation/ref.h"
#include "io/loader.h"
#include "io/path_url.h"

namespace {

// The loaders of one kind of source, by format; the unknown format's is the fallback of all others.
template <class Source>
struct Loaders {
  using Make = DRAVCFImageLoaderRef (*)(CFAllocatorRef, Source);
  Make unknown;
  Make byFormat[5];
};

constexpr Loaders<CFURLRef> kURLLoaders{
    DRAVCFCreateUnknownImageLoaderFromURL,
    {nullptr, DRAVCFCreatePICTImageLoaderFromURL, DRAVCFCreatePCTImageLoaderFromURL,
     DRAVCFCreatePNGImageLoaderFromURL, DRAVCFCreateJPEGImageLoaderFromURL}};
constexpr Loaders<CFDataRef> kDataLoaders{
    DRAVCFCreateUnknownImageLoaderFromData,
    {nullptr, DRAVCFCreatePICTImageLoaderFromData, DRAVCFCreatePCTImageLoaderFromData,
     DRAVCFCreatePNGImageLoaderFromData, DRAVCFCreateJPEGImageLoaderFromData}};

template <class Source>
CGImageRef loadWith(DRAVCFImageLoaderRef (*make)(CFAllocatorRef, Source), CFAllocatorRef allocator,
                    Source source) {
  return make ? DRAVCFImageLoaderCopyImage(cf::adopt(make(allocator, source)).get()) : nullptr;
}

template <class Source>
DRAVCFImageRef create(CFAllocatorRef allocator, Source source, DRAVCFImageFormat format,
                      const Loaders<Source> &loaders) {
  cf::Ref image = cf::adopt(DRAVCFImageCreate(allocator));
  if (!image || !source || format > kDRAVCFImageFormatJPEG) return nullptr;
  const drav::ReportDamageOnce once;
  image->cgImage = loadWith(loaders.byFormat[format], allocator, source);
  if (!image->cgImage) image->cgImage = loadWith(loaders.unknown, allocator, source);
  return image->cgImage ? image.give() : nullptr;
}

DRAVCFImageFormat formatOf(CFURLRef url) {
  return DRAVCFImageFormatForPathExtension(cf::adopt(CFURLCopyPathExtension(url)).get());
}

CFDataRef copyData(CFAllocatorRef allocator, DRAVCFImageRef image,
                   DRAVCFImageExporterRef (*makeExporter)(CFAllocatorRef)) {
  CGImageRef cgImage = DRAVCFImageGetCGImage(image);
  if (!cgImage) return nullptr;
  const cf::Ref exporter = cf::adopt(makeExporter(allocator));
  return exporter ? DRAVCFImageExportCreateData(allocator, exporter.get(), cgImage) : nullptr;
}

}  // namespace

DRAVCFImageRef DRAVCFImageCreateWithURLAndFormat(CFAllocatorRef allocator, CFURLRef url,
                                                 DRAVCFImageFormat format) {
  if (url && format == kDRAVCFImageFormatUnknown) format = formatOf(url);
  return create(allocator, url, format, kURLLoaders);
}

DRAVCFImageRef DRAVCFImageCreateWithURL(CFAllocatorRef allocator, CFURLRef url) {
  return DRAVCFImageCreateWithURLAndFormat(allocator, url, kDRAVCFImageFormatUnknown);
}

DRAVCFImageRef DRAVCFImageCreateWithPathAndFormat(CFAllocatorRef allocator, CFStringRef path,
                                                  DRAVCFImageFormat format) {
  return DRAVCFImageCreateWithURLAndFormat(allocator, drav::urlForPath(path, allocator).get(), format);
}

DRAVCFImageRef DRAVCFImageCreateWithPath(CFAllocatorRef allocator, CFStringRef path) {
  return DRAVCFImageCreateWithPathAndFormat(allocator, path, kDRAVCFImageFormatUnknown);
}

DRAVCFImageRef DRAVCFImageCreateWithFormattedData(CFAllocatorRef allocator, CFDataRef data,
                                                  DRAVCFImageFormat format) {
  return create(allocator, data, format, kDataLoaders);
}

DRAVCFImageRef DRAVCFImageCreateWithData(CFAllocatorRef allocator, CFDataRef data) {
  return DRAVCFImageCreateWithFormattedData(allocator, data, kDRAVCFImageFormatUnknown);
}

CFDataRef DRAVCFImageCopyPNGData(CFAllocatorRef allocator, DRAVCFImageRef image) {
  return copyData(allocator, image, DRAVCFImageExporterCreatePNG);
}

CFDataRef DRAVCFImageCopyTIFFData(CFAllocatorRef allocator, DRAVCFImageRef image) {
  return copyData(allocator, image, DRAVCFImageExporterCreateTIFF);
}
