// File formats by path extension.
#include <DravKit/DravKit.h>

DRAVCFImageFormat DRAVCFImageFormatForPathExtension(CFStringRef extension) {
  if (!extension) return kDRAVCFImageFormatUnknown;
  const auto is = [&](CFStringRef name) {
    return CFStringCompare(extension, name, kCFCompareCaseInsensitive) == kCFCompareEqualTo;
  };
  if (is(CFSTR("pict"))) return kDRAVCFImageFormatPICT;
  if (is(CFSTR("pct"))) return kDRAVCFImageFormatPCT;
  if (is(CFSTR("png"))) return kDRAVCFImageFormatPNG;
  if (is(CFSTR("jpeg")) || is(CFSTR("jpg"))) return kDRAVCFImageFormatJPEG;
  return kDRAVCFImageFormatUnknown;
}
