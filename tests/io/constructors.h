// All eighteen loader constructors, by kind of source, each with bytes of a 3 x 2 picture that it loads.
#pragma once

#include <array>

#include "files.h"
#include "media/types.h"

namespace test {

inline constexpr OSType kTIFFCode = MEDIA_CODE('T', 'I', 'F', 'F');

struct LoaderConstructors {
  const char *name;
  DRAVCFImageLoaderRef (*fromPath)(CFAllocatorRef, CFStringRef);
  DRAVCFImageLoaderRef (*fromURL)(CFAllocatorRef, CFURLRef);
  DRAVCFImageLoaderRef (*fromData)(CFAllocatorRef, CFDataRef);
  DRAVCFImageExporterRef (*makeExporter)(CFAllocatorRef);  // of data that they load

  [[nodiscard]] Bytes goodBytes() const { return encoded(makeExporter, picture().get()); }
};

inline constexpr std::array<LoaderConstructors, 6> kLoaders{{
    {"PICT", DRAVCFCreatePICTImageLoaderFromPath, DRAVCFCreatePICTImageLoaderFromURL,
     DRAVCFCreatePICTImageLoaderFromData, DRAVCFImageExporterCreatePICT},
    {"PCT", DRAVCFCreatePCTImageLoaderFromPath, DRAVCFCreatePCTImageLoaderFromURL,
     DRAVCFCreatePCTImageLoaderFromData, DRAVCFImageExporterCreatePCT},
    {"PNG", DRAVCFCreatePNGImageLoaderFromPath, DRAVCFCreatePNGImageLoaderFromURL,
     DRAVCFCreatePNGImageLoaderFromData, DRAVCFImageExporterCreatePNG},
    {"JPEG", DRAVCFCreateJPEGImageLoaderFromPath, DRAVCFCreateJPEGImageLoaderFromURL,
     DRAVCFCreateJPEGImageLoaderFromData, DRAVCFImageExporterCreateJPEG},
    {"formatted",
     [](CFAllocatorRef allocator, CFStringRef path) {
       return DRAVCFCreateFormattedImageLoaderFromPath(allocator, path, kTIFFCode);
     },
     [](CFAllocatorRef allocator, CFURLRef url) {
       return DRAVCFCreateFormattedImageLoaderFromURL(allocator, url, kTIFFCode);
     },
     [](CFAllocatorRef allocator, CFDataRef data) {
       return DRAVCFCreateFormattedImageLoaderFromData(allocator, data, kTIFFCode);
     },
     DRAVCFImageExporterCreateTIFF},
    {"unknown", DRAVCFCreateUnknownImageLoaderFromPath, DRAVCFCreateUnknownImageLoaderFromURL,
     DRAVCFCreateUnknownImageLoaderFromData, DRAVCFImageExporterCreatePCT},
}};

}  // namespace test
