// The image loader record, and the steps of a load.
#pragma once

#include <CoreFoundation/CFRuntime.h>
#include <DravKit/DravKit.h>

#include "graphics/profile.h"
#include "media/graphics_import.h"

struct __DRAVCFImageLoader {
  CFRuntimeBase base;
  CGImageRef cgImage;                // owned; NULL until a load succeeds
  GraphicsImportComponent importer;  // owned; closed as soon as the pixels are drawn
  size_t width;                      // from the image description
  size_t height;
  size_t bitsPerComponent;
  size_t bitsPerPixel;
  size_t bytesPerRow;
  size_t bufferSize;
  CGImageAlphaInfo alphaInfo;
  CGColorSpaceRef colorSpace;  // owned
  uint8_t *buffer;             // owned, from calloc, until the image's data provider takes it over
  CMProfileRef profile;        // owned
  uint32_t pixelFormat;        // of the offscreen world: 32 ARGB, 40 grey
};

DRAVCFImageLoaderRef DRAVCFImageLoaderCreate(CFAllocatorRef allocator);

namespace drav {

// While one of these lives, a damaged picture is reported once on this thread, however many loaders try it.
class ReportDamageOnce {
 public:
  ReportDamageOnce() noexcept;
  ~ReportDamageOnce();
  ReportDamageOnce(const ReportDamageOnce &) = delete;
  ReportDamageOnce &operator=(const ReportDamageOnce &) = delete;
};

}  // namespace drav

// Opens the importer that recognises what the data reference stands for, and loads with it.
Boolean DRAVCFImageLoaderLoadImageCommon(DRAVCFImageLoaderRef loader, Handle dataReference,
                                         OSType dataReferenceType);

// Loads with the importer that the loader holds: the three steps below.
Boolean DRAVCFImageLoaderLoadFromGraphicsImporter(DRAVCFImageLoaderRef loader);

// Chooses the layout, and makes the buffer and the colour space.
Boolean DRAVCFImageLoaderReadBitmapInfo(DRAVCFImageLoaderRef loader);
// Draws the image into the buffer.
Boolean DRAVCFImageLoaderGetBitmapData(DRAVCFImageLoaderRef loader);
// Makes the platform image over the buffer.
Boolean DRAVCFImageLoaderCreateImage(DRAVCFImageLoaderRef loader);
