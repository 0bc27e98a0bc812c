/* Images: immutable pixels of any common layout. */
#ifndef COREGRAPHICS_CGIMAGE_H
#define COREGRAPHICS_CGIMAGE_H

#include <CoreGraphics/CGColorSpace.h>
#include <CoreGraphics/CGDataProvider.h>
#include <CoreGraphics/CGGeometry.h>

CG_EXTERN_C_BEGIN

/* Where alpha stands in a pixel, and whether the colours are multiplied by it. */
typedef uint32_t CGImageAlphaInfo;

/* Alpha info in the low five bits, byte order in bits 12 to 14: kCGImageAlphaFirst | kCGBitmapByteOrder32Big.
 */
typedef uint32_t CGBitmapInfo;

/* One enumeration, so that the two may be joined in C++ without a warning. */
enum {
  kCGImageAlphaNone = 0,
  kCGImageAlphaPremultipliedLast = 1,
  kCGImageAlphaPremultipliedFirst = 2,
  kCGImageAlphaLast = 3,
  kCGImageAlphaFirst = 4,
  kCGImageAlphaNoneSkipLast = 5,  /* a component that is ignored */
  kCGImageAlphaNoneSkipFirst = 6, /* likewise, first */
  kCGImageAlphaOnly = 7,          /* no colour */

  kCGBitmapAlphaInfoMask = 0x1F,
  kCGBitmapByteOrderMask = 0x7000,
  kCGBitmapByteOrderDefault = 0 << 12, /* big-endian */
  kCGBitmapByteOrder16Little = 1 << 12,
  kCGBitmapByteOrder32Little = 2 << 12,
  kCGBitmapByteOrder16Big = 3 << 12,
  kCGBitmapByteOrder32Big = 4 << 12
};

CG_EXPORT CFTypeID CGImageGetTypeID(void);

/* Makes an image over a provider's bytes.
 *
 * width, height     1 to INT32_MAX pixels.
 * bitsPerComponent  1, 2, 4, 8 or 16.
 * bitsPerPixel      at least the components', alpha included, at most 64; components of 8 and 16 bits fill
 *                   whole bytes. For 1, 2 and 4 bits the pixels are packed from the high bits on.
 * bytesPerRow       at least (width * bitsPerPixel + 7) / 8.
 * space             retained; may be NULL for kCGImageAlphaOnly. Indexed images have no alpha.
 * bitmapInfo        grey and RGB take every alpha info, CMYK only kCGImageAlphaNone.
 * provider          retained; holds at least (height - 1) * bytesPerRow bytes and one row more.
 * decode            NULL, or a least and a greatest value for each colour component.
 * shouldInterpolate whether drawing at another size filters.
 * Gives             a new image; NULL for arguments that do not fit together, or if memory runs out. */
CG_EXPORT CGImageRef CGImageCreate(size_t width, size_t height, size_t bitsPerComponent, size_t bitsPerPixel,
                                   size_t bytesPerRow, CGColorSpaceRef space, CGBitmapInfo bitmapInfo,
                                   CGDataProviderRef provider, const CGFloat *decode, bool shouldInterpolate,
                                   CGColorRenderingIntent intent);

/* Decode a PNG or JPEG file. What comes out is one of: 8-bit grey without alpha; 32-bit colour,
 * kCGImageAlphaNoneSkipFirst; 32-bit colour, kCGImageAlphaFirst. An embedded grey or RGB profile becomes the
 * colour space; without one grey is device grey and colour is sRGB.
 * Gives  a new image; NULL for damaged, truncated or other data, or if memory runs out. */
CG_EXPORT CGImageRef CGImageCreateWithPNGDataProvider(CGDataProviderRef source, const CGFloat *decode,
                                                      bool shouldInterpolate, CGColorRenderingIntent intent);
CG_EXPORT CGImageRef CGImageCreateWithJPEGDataProvider(CGDataProviderRef source, const CGFloat *decode,
                                                       bool shouldInterpolate, CGColorRenderingIntent intent);

/* A second image over the same bytes. */
CG_EXPORT CGImageRef CGImageCreateCopy(CGImageRef image);

/* A part of an image over the same bytes; rect in pixels from the top left, made whole-numbered and
 * clipped. NULL where nothing is left, or a row would begin within a byte. */
CG_EXPORT CGImageRef CGImageCreateWithImageInRect(CGImageRef image, CGRect rect);

CG_EXPORT CGImageRef CGImageRetain(CGImageRef image);
CG_EXPORT void CGImageRelease(CGImageRef image);

CG_EXPORT size_t CGImageGetWidth(CGImageRef image);
CG_EXPORT size_t CGImageGetHeight(CGImageRef image);
CG_EXPORT size_t CGImageGetBitsPerComponent(CGImageRef image);
CG_EXPORT size_t CGImageGetBitsPerPixel(CGImageRef image);
CG_EXPORT size_t CGImageGetBytesPerRow(CGImageRef image);
CG_EXPORT CGColorSpaceRef CGImageGetColorSpace(CGImageRef image);
CG_EXPORT CGImageAlphaInfo CGImageGetAlphaInfo(CGImageRef image);
CG_EXPORT CGBitmapInfo CGImageGetBitmapInfo(CGImageRef image);
CG_EXPORT CGDataProviderRef CGImageGetDataProvider(CGImageRef image);
CG_EXPORT const CGFloat *CGImageGetDecode(CGImageRef image); /* NULL if there is none */
CG_EXPORT bool CGImageGetShouldInterpolate(CGImageRef image);
CG_EXPORT CGColorRenderingIntent CGImageGetRenderingIntent(CGImageRef image);

CG_EXTERN_C_END

#endif
