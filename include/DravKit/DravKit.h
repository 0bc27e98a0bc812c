/* DravKit: bitmap images with exact pixel arithmetic.
 *
 * What holds for every function here:
 *
 *  1. Ownership. A function whose name holds Create or Copy gives the caller a reference to release:
 *     CFRelease for DravKit objects, data and strings, CGImageRelease for a platform image,
 *     CGPathRelease for a path, CGColorSpaceRelease for a colour space. A Get function lends one that
 *     lives until the object changes or is released.
 *  2. Allocators. NULL (kCFAllocatorDefault) is the default allocator. An object takes the bytes it
 *     owns from the allocator it was made with, where its comment says nothing else.
 *  3. Failure. Creators give NULL; operations without a result leave their target as it was, unless
 *     their comment says otherwise. There are no error codes, and no exception leaves the library.
 *     Arguments that are handles must be valid objects unless the comment allows NULL.
 *  4. Threads. An object belongs to one thread at a time. Nothing is locked; different objects may be
 *     used by different threads once one object of each class exists.
 *  5. Units. Widths and heights are pixels, sizes and strides bytes, colour components of float
 *     colours 0.0 to 1.0, hues degrees. Row 0 is the top row and first in memory.
 *
 * An image holds its pixels as a platform image (CGImageRef, immutable), as a pixel buffer, or both.
 * Buffers that the library makes have 8 bits a component and one of three layouts:
 *
 *     S_8        1 byte   grey                                 kCGImageAlphaNone
 *     RGB_888    4 bytes  ignored, red, green, blue            kCGImageAlphaNoneSkipFirst
 *     ARGB_8888  4 bytes  alpha, red, green, blue;             kCGImageAlphaPremultipliedFirst
 *                         colour premultiplied by alpha
 *
 * A minimal program:
 *
 *     DRAVCFImageRef image = DRAVCFImageCreateWithPath(NULL, CFSTR("in.jpg"));
 *     CFDataRef png = image ? DRAVCFImageCopyPNGData(NULL, image) : NULL;
 *     ...
 *     if (png) CFRelease(png);
 *     if (image) CFRelease(image);
 */
#ifndef DRAVKIT_DRAVKIT_H
#define DRAVKIT_DRAVKIT_H

#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>
#include <stddef.h>
#include <stdint.h>

#define DRAV_EXPORT extern __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

typedef struct __DRAVCFImage *DRAVCFImageRef;
typedef struct __DRAVCFContext *DRAVCFContextRef;
typedef struct __DRAVCFImageLoader *DRAVCFImageLoaderRef;
typedef struct __DRAVCFImageExporter *DRAVCFImageExporterRef;
typedef struct __DRAVCFColorMatchList *DRAVCFColorMatchListRef;

/* File formats. PICT and PCT are one format with two conventions: data of kDRAVCFImageFormatPICT
 * stands without the 512-byte file header, data of kDRAVCFImageFormatPCT with it. */
typedef uint32_t DRAVCFImageFormat;
enum {
  kDRAVCFImageFormatUnknown = 0, /* decided by the path extension, then by the bytes */
  kDRAVCFImageFormatPICT = 1,
  kDRAVCFImageFormatPCT = 2,
  kDRAVCFImageFormatPNG = 3,
  kDRAVCFImageFormatJPEG = 4
};

/* How a source pixel is combined with a destination pixel: the Porter-Duff operators and the separable
 * blend functions. Opaque formats have no alpha to carry a Porter-Duff result: there Clear, SrcOut,
 * DestOut and XOR give white, the others the source or the destination. */
typedef uint32_t DRAVCFBlendMode;
enum {
  kDRAVCFBlendModeClear = 0,
  kDRAVCFBlendModeCopySrc = 1,
  kDRAVCFBlendModeCopyDest = 2,
  kDRAVCFBlendModeSrcOver = 3,
  kDRAVCFBlendModeDestOver = 4,
  kDRAVCFBlendModeSrcIn = 5,
  kDRAVCFBlendModeDestIn = 6,
  kDRAVCFBlendModeSrcOut = 7,
  kDRAVCFBlendModeDestOut = 8,
  kDRAVCFBlendModeSrcAtop = 9,
  kDRAVCFBlendModeDestAtop = 10,
  kDRAVCFBlendModeXOR = 11,
  kDRAVCFBlendModePlus = 12,
  kDRAVCFBlendModeMultiply = 13,
  kDRAVCFBlendModeScreen = 14,
  kDRAVCFBlendModeOverlay = 15,
  kDRAVCFBlendModeDarken = 16,
  kDRAVCFBlendModeLighten = 17,
  kDRAVCFBlendModeColorDodge = 18,
  kDRAVCFBlendModeColorBurn = 19,
  kDRAVCFBlendModeHardLight = 20,
  kDRAVCFBlendModeSoftLight = 21,
  kDRAVCFBlendModeDifference = 22,
  kDRAVCFBlendModeExclusion = 23
};

/* ------------------------------------------------------------------------------------------------
 * Images: class
 * ------------------------------------------------------------------------------------------------ */

/* The type identifier of images; 0 until the first image is made. */
DRAV_EXPORT CFTypeID kDRAVCFImageID;

/* The type identifier as it stands: 0 until the first image is made. */
DRAV_EXPORT CFTypeID DRAVCFImageGetTypeID(void);

/* Makes an image that holds nothing yet: no platform image, no buffer, every getter 0 but the alpha
 * info, which is kCGImageAlphaPremultipliedFirst.
 * Gives  a new image; NULL if memory runs out. */
DRAV_EXPORT DRAVCFImageRef DRAVCFImageCreate(CFAllocatorRef allocator);

/* Registers the class and makes the main display's colour space. DRAVCFImageCreate does this when the
 * first image is made; nobody else needs to. */
DRAV_EXPORT void DRAVCFImageClassInitialize(void);

/* The callbacks of the image class, as the object runtime calls them.
 *
 * Init        clears a new instance.
 * Copy        a deep copy that shares no pixels with its source and holds a buffer only; NULL if
 *             memory runs out or the source's pixels cannot be converted.
 * Finalize    frees what the image owns, its drawing context included, whoever still retains that.
 * Equal       true for the same object, and for two images that hold equal platform images; images
 *             that hold only buffers are never equal.
 * Hash        the address.
 * CopyFormattingDesc, CopyDebugDesc
 *             "<DRAVCFImage: 10x4 bpc=8 bpp=32 rowBytes=40 kCGImageAlphaPremultipliedFirst>". */
DRAV_EXPORT void DRAVCFImageInit(CFTypeRef image);
DRAV_EXPORT DRAVCFImageRef DRAVCFImageCopy(CFAllocatorRef allocator, CFTypeRef source);
DRAV_EXPORT void DRAVCFImageFinalize(CFTypeRef image);
DRAV_EXPORT Boolean DRAVCFImageEqual(CFTypeRef a, CFTypeRef b);
DRAV_EXPORT CFHashCode DRAVCFImageHash(CFTypeRef image);
DRAV_EXPORT CFStringRef DRAVCFImageCopyFormattingDesc(CFTypeRef image, CFDictionaryRef formatOptions);
DRAV_EXPORT CFStringRef DRAVCFImageCopyDebugDesc(CFTypeRef image);

/* Drops the cached platform image. Call it after writing into the buffer, so that the next
 * DRAVCFImageGetCGImage shows what was written. Where the image holds no buffer its pixels are gone. */
DRAV_EXPORT void DRAVCFImageInvalidateImage(DRAVCFImageRef image);

/* Frees the buffer and resets its description (sizes 0, no colour space, alpha info
 * kCGImageAlphaPremultipliedFirst). The platform image stays. */
DRAV_EXPORT void DRAVCFImageInvalidateBuffer(DRAVCFImageRef image);

/* Makes sure that the image has a buffer in a working layout.
 *
 * toColor   1: convert to the main display's colour space, from grey as from any other space.
 * addAlpha  1: the result is ARGB_8888.
 * With both 0 an existing buffer is kept as it is, whatever its layout. In every other case the
 * buffer is made anew from the platform image. The colour space of a new buffer is the main display's;
 * alpha that the platform image has is kept, as ARGB_8888.
 * On failure the image has no buffer, and keeps its platform image; if memory does not suffice even
 * to build that from the buffer, the pixels are lost. */
DRAV_EXPORT void DRAVCFImagePromoteImage(DRAVCFImageRef image, Boolean toColor, Boolean addAlpha);

/* Promotes two images so that one blend function fits both: both grey or both colour, both
 * ARGB_8888 or neither with alpha. Nothing more happens once one of them cannot have a buffer. */
DRAV_EXPORT void DRAVCFImageUnifyImageFormats(DRAVCFImageRef a, DRAVCFImageRef b);

/* The format that a path extension (without its dot, any case) stands for: "pict", "pct", "png",
 * "jpeg", "jpg"; kDRAVCFImageFormatUnknown for any other and for NULL. */
DRAV_EXPORT DRAVCFImageFormat DRAVCFImageFormatForPathExtension(CFStringRef extension);

/* A release callback for CGDataProviderCreateWithData: frees data with the allocator in info. */
DRAV_EXPORT void DRAVCFReleaseImageBuffer(void *info, const void *data, size_t size);

/* The main display's colour space, one shared sRGB object.
 * Gives  a reference for the caller to release; NULL if it cannot be made (the next call tries again). */
DRAV_EXPORT CGColorSpaceRef DRAVCGColorSpaceCreateMainDisplay(void);

/* ------------------------------------------------------------------------------------------------
 * Images: creation
 * ------------------------------------------------------------------------------------------------ */

/* Makes an image that holds (retains) a platform image.
 * Gives  a new image; NULL if memory runs out. */
DRAV_EXPORT DRAVCFImageRef DRAVCFImageCreateWithImage(CFAllocatorRef allocator, CGImageRef image);

/* Makes an image with a private copy of the caller's pixels.
 *
 * source            bytesPerRow * height bytes, top row first; borrowed for the call.
 * width, height     in pixels.
 * bitsPerComponent  of one component; 8 in the working layouts.
 * bitsPerPixel      0: bitsPerComponent times 4 for a colour space of three components, else times
 *                   the number of its components.
 * bytesPerRow       row stride; 0: (width * bitsPerPixel + 7) / 8.
 * colorSpace        retained; NULL means the main display's.
 * alphaInfo         where alpha stands in a pixel.
 * Gives             a new image; NULL if memory runs out or source is NULL. The description is stored as
 *                   given. Where it fits no pixels, operations do nothing, and what promotes the image loses
 *                   them (DRAVCFImagePromoteImage). */
DRAV_EXPORT DRAVCFImageRef DRAVCFImageCreateWithBuffer(CFAllocatorRef allocator, const uint8_t *source,
                                                       size_t width, size_t height, size_t bitsPerComponent,
                                                       size_t bitsPerPixel, size_t bytesPerRow,
                                                       CGColorSpaceRef colorSpace,
                                                       CGImageAlphaInfo alphaInfo);

/* Makes a cleared image: transparent black ARGB_8888, or white S_8.
 *
 * size     in pixels, rounded to the nearest, halves away from zero.
 * isColor  1: ARGB_8888 in the main display's space; 0: S_8 in the device's grey.
 * Gives    a new image; NULL if memory runs out or a side is negative, not a number or too large. */
DRAV_EXPORT DRAVCFImageRef DRAVCFImageCreateWithSize(CFAllocatorRef allocator, CGSize size, Boolean isColor);

/* A deep copy that holds a buffer and no platform image (DRAVCFImageCopy). */
DRAV_EXPORT DRAVCFImageRef DRAVCFImageCreateCopy(CFAllocatorRef allocator, DRAVCFImageRef source);

/* Loads an image file. The path extension chooses the decoder; where it names none, or that decoder
 * refuses the file, the bytes decide. The file is opened anew then: what comes through a named pipe can be
 * read once only.
 *
 * path   a POSIX path, absolute or relative.
 * Gives  a new image that holds a platform image; NULL if nothing can read it. */
DRAV_EXPORT DRAVCFImageRef DRAVCFImageCreateWithPath(CFAllocatorRef allocator, CFStringRef path);
DRAV_EXPORT DRAVCFImageRef DRAVCFImageCreateWithURL(CFAllocatorRef allocator, CFURLRef url);

/* The same with the format given by the caller; kDRAVCFImageFormatUnknown asks the extension. A code
 * that is no format gives NULL. */
DRAV_EXPORT DRAVCFImageRef DRAVCFImageCreateWithPathAndFormat(CFAllocatorRef allocator, CFStringRef path,
                                                              DRAVCFImageFormat format);
DRAV_EXPORT DRAVCFImageRef DRAVCFImageCreateWithURLAndFormat(CFAllocatorRef allocator, CFURLRef url,
                                                             DRAVCFImageFormat format);

/* The same from bytes in memory. With kDRAVCFImageFormatUnknown, which DRAVCFImageCreateWithData
 * implies, the bytes decide. */
DRAV_EXPORT DRAVCFImageRef DRAVCFImageCreateWithData(CFAllocatorRef allocator, CFDataRef data);
DRAV_EXPORT DRAVCFImageRef DRAVCFImageCreateWithFormattedData(CFAllocatorRef allocator, CFDataRef data,
                                                              DRAVCFImageFormat format);

/* Gives one image the grey of another as its alpha.
 *
 * image, mask      of equal width and height; neither is changed.
 * isPremultiplied  1: the colours of image are already multiplied by the mask; 0: they are now.
 * Gives            a new ARGB_8888 image; NULL if the sizes differ or memory runs out. */
DRAV_EXPORT DRAVCFImageRef DRAVCFImageCreateWithImageAndMask(CFAllocatorRef allocator, DRAVCFImageRef image,
                                                             DRAVCFImageRef mask, Boolean isPremultiplied);

/* The image as the bytes of a PNG file, or of a TIFF file.
 * Gives  new data; NULL if the image holds nothing, or memory runs out. */
DRAV_EXPORT CFDataRef DRAVCFImageCopyPNGData(CFAllocatorRef allocator, DRAVCFImageRef image);
DRAV_EXPORT CFDataRef DRAVCFImageCopyTIFFData(CFAllocatorRef allocator, DRAVCFImageRef image);

/* ------------------------------------------------------------------------------------------------
 * Images: access
 * ------------------------------------------------------------------------------------------------ */

/* The platform image, built from a copy of the buffer where there is none.
 * Gives  a borrowed platform image; NULL if the image holds nothing, its description fits no pixels,
 *        or memory runs out. */
DRAV_EXPORT CGImageRef DRAVCFImageGetCGImage(DRAVCFImageRef image);

/* The writable pixel buffer, made from the platform image where there is none (then in a working
 * layout, colour in the main display's space). Call DRAVCFImageInvalidateImage after writing.
 * Gives  a borrowed pointer to DRAVCFImageGetImageBufferSize bytes; NULL if it cannot be made. */
DRAV_EXPORT uint8_t *DRAVCFImageGetImageBuffer(DRAVCFImageRef image);
DRAV_EXPORT size_t DRAVCFImageGetImageBufferSize(DRAVCFImageRef image);

/* The geometry and layout: the platform image's where there is one, else the buffer's. */
DRAV_EXPORT size_t DRAVCFImageGetWidth(DRAVCFImageRef image);
DRAV_EXPORT size_t DRAVCFImageGetHeight(DRAVCFImageRef image);
DRAV_EXPORT size_t DRAVCFImageGetBitsPerComponent(DRAVCFImageRef image);
DRAV_EXPORT size_t DRAVCFImageGetBitsPerPixel(DRAVCFImageRef image);
DRAV_EXPORT size_t DRAVCFImageGetBytesPerRow(DRAVCFImageRef image);
DRAV_EXPORT CGColorSpaceRef DRAVCFImageGetColorSpace(DRAVCFImageRef image);
DRAV_EXPORT CGImageAlphaInfo DRAVCFImageGetAlphaInfo(DRAVCFImageRef image);

/* ------------------------------------------------------------------------------------------------
 * Drawing contexts
 * ------------------------------------------------------------------------------------------------ */

/* The type identifier as it stands: 0 until the first context is made. */
DRAV_EXPORT CFTypeID DRAVCFContextGetTypeID(void);

/* Makes a context that draws into pixel memory.
 *
 * width, height     in pixels.
 * buffer            bytesPerRow * height bytes that outlive the context and its copies; NULL: the context
 *                   makes its own, zeroed, on the default allocator.
 * bitsPerComponent  8.
 * bytesPerRow       row stride; 0: packed rows of 4 components for a colour space of three, else of
 *                   as many as the space has.
 * colorSpace        NULL means the main display's.
 * alphaInfo         colour: any but kCGImageAlphaNone; grey: kCGImageAlphaNone.
 * Gives             a new context; NULL for a layout that cannot be drawn into, or if memory runs out. */
DRAV_EXPORT DRAVCFContextRef DRAVCFContextCreate(CFAllocatorRef allocator, size_t width, size_t height,
                                                 uint8_t *buffer, size_t bitsPerComponent, size_t bytesPerRow,
                                                 CGColorSpaceRef colorSpace, CGImageAlphaInfo alphaInfo);

/* Makes a context of an image's size and layout. The image's pixels are not drawn into it.
 * Gives  a new context; NULL for a NULL image, or as DRAVCFContextCreate. */
DRAV_EXPORT DRAVCFContextRef DRAVCFContextCreateForImage(CFAllocatorRef allocator, DRAVCFImageRef image,
                                                         uint8_t *buffer);

/* The bitmap context to draw with, and the memory it draws into; both borrowed. */
DRAV_EXPORT CGContextRef DRAVCFContextGetCGContext(DRAVCFContextRef context);
DRAV_EXPORT uint8_t *DRAVCFContextGetBuffer(DRAVCFContextRef context);

/* Lends a context that draws into the image's own buffer. Each call wants one
 * DRAVCFImageReleaseContext; the last of those ends the context and drops the cached platform image.
 * While it is out the image must not be changed otherwise. It ends with the image in any case.
 * Gives  a borrowed bitmap context; NULL if it cannot be made. */
DRAV_EXPORT CGContextRef DRAVCFImageRetainContext(DRAVCFImageRef image);
DRAV_EXPORT void DRAVCFImageReleaseContext(DRAVCFImageRef image);

/* ------------------------------------------------------------------------------------------------
 * Pixels and colours
 * ------------------------------------------------------------------------------------------------ */

/* Multiply every colour byte by its pixel's alpha, or divide it, in place: size / 4 pixels without row
 * padding; the 0 to 3 bytes after them stay. Computed in single precision and rounded to the nearest, halves
 * up; of quotients that are just a half a few come out below it and round down. A pixel whose colour exceeds
 * its alpha cannot be divided: it is clamped, and one line a call says so on standard error. */
DRAV_EXPORT void DRAVCFPremultiplyARGBBuffer(uint8_t *buffer, size_t size);
DRAV_EXPORT void DRAVCFUnpremultiplyARGBBuffer(uint8_t *buffer, size_t size);
DRAV_EXPORT void DRAVCFPremultiplyRGBABuffer(uint8_t *buffer, size_t size);
DRAV_EXPORT void DRAVCFUnpremultiplyRGBABuffer(uint8_t *buffer, size_t size);

/* Convert a colour of three floats in place.
 *
 * RGBToHSV  red, green, blue become hue, saturation, value. The hue may be negative; saturation is the
 *           difference of the largest and the smallest component, not divided by the largest.
 * HSVToRGB  reads hue, saturation and value all from element 0, and writes red, green, blue. */
DRAV_EXPORT void DRAVConvertRGBToHSV(float *color);
DRAV_EXPORT void DRAVConvertHSVToRGB(float *color);

/* ------------------------------------------------------------------------------------------------
 * Compositing
 * ------------------------------------------------------------------------------------------------ */

/* Combines one source pixel into one destination pixel; called once for every pair. */
typedef void (*DRAVCFCompositeFunction)(const uint8_t *source, uint8_t *destination);

/* The function for a layout and a mode.
 *
 * componentCount, alphaInfo  1 with kCGImageAlphaNone (S_8), 3 with kCGImageAlphaNoneSkipFirst
 *                            (RGB_888) or kCGImageAlphaPremultipliedFirst (ARGB_8888).
 * mode                       a DRAVCFBlendMode.
 * Gives                      a function; NULL for any other layout or mode. */
DRAV_EXPORT DRAVCFCompositeFunction DRAVCFImageCompositorForParameters(uint32_t componentCount,
                                                                       uint32_t alphaInfo, uint32_t mode);

/* Combines a rectangle of an image into a rectangle of pixels of the same layout.
 *
 * sourceImage        may be cropped and scaled by the call, where the rectangles' sizes differ.
 * sourceRect, destinationRect
 *                    in pixels, y counted from the top row; made whole-numbered and clipped. An origin
 *                    left of or above the image moves to 0 without shortening the rectangle.
 * sourceWidth ... destinationBytesPerRow
 *                    describe the source image's buffer and the destination's.
 * bytesPerPixel      of both.
 * compositor         called once a pixel pair, in increasing order of address.
 * NULL for a rectangle, the buffer or the function, or an empty rectangle, draws nothing. */
DRAV_EXPORT void DRAVCFImageCompositeRect(DRAVCFImageRef sourceImage, const CGRect *sourceRect,
                                          size_t sourceWidth, size_t sourceHeight, size_t sourceBytesPerRow,
                                          uint8_t *destinationBuffer, const CGRect *destinationRect,
                                          size_t destinationWidth, size_t destinationHeight,
                                          size_t destinationBytesPerRow, size_t bytesPerPixel,
                                          DRAVCFCompositeFunction compositor);

/* Combines one image into another, over pairs of rectangles.
 *
 * sourceImage       not changed.
 * destinationImage  promoted to the layout that fits both, then drawn into. A platform image that it
 *                   has cached stays: call DRAVCFImageInvalidateImage to see what was drawn.
 * sourceRects, destinationRects
 *                   count rectangles each, in pixels, y counted from the top row; NULL: the whole image.
 *                   Where the sizes of a pair differ the source is scaled to the destination.
 * count             0 counts as 1. */
DRAV_EXPORT void DRAVCFImageComposite(DRAVCFImageRef sourceImage, DRAVCFImageRef destinationImage,
                                      const CGRect *sourceRects, const CGRect *destinationRects,
                                      uint32_t count, DRAVCFBlendMode mode);

/* Repeats a rectangle of one image over a rectangle of another.
 *
 * startCorner  where the first tile stands in the destination rectangle: 0 least x and greatest y,
 *              1 greatest x and greatest y, 2 least x and least y, 3 greatest x and least y (y from
 *              the top row). Any other value does nothing.
 * The last row and column of tiles may reach beyond the rectangle; only the image clips them. */
DRAV_EXPORT void DRAVCFImageTile(DRAVCFImageRef sourceImage, DRAVCFImageRef destinationImage,
                                 CGRect sourceRect, CGRect destinationRect, DRAVCFBlendMode mode,
                                 uint32_t startCorner);

/* ------------------------------------------------------------------------------------------------
 * Geometry
 * ------------------------------------------------------------------------------------------------ */

/* Crops in place. rect is in pixels with the origin at the bottom left, y upward; it is made
 * whole-numbered, then clipped: an origin below 0 moves to 0 without shortening the rectangle. */
DRAV_EXPORT void DRAVCFImageCropToRect(DRAVCFImageRef image, CGRect rect);

/* Scales in place to size pixels, rounded to whole ones; filtered. A negative size does nothing. */
DRAV_EXPORT void DRAVCFImageScaleToSize(DRAVCFImageRef image, CGSize size);

/* Exchanges top and bottom in place. */
DRAV_EXPORT void DRAVCFImageFlipVertically(DRAVCFImageRef image);

/* ------------------------------------------------------------------------------------------------
 * Colour and alpha
 * ------------------------------------------------------------------------------------------------ */

/* 1 unless the colour space is grey (device or calibrated). */
DRAV_EXPORT int DRAVCFImageIsColor(DRAVCFImageRef image);

/* 0 for kCGImageAlphaNone, kCGImageAlphaNoneSkipLast and kCGImageAlphaNoneSkipFirst, else 1. */
DRAV_EXPORT int DRAVCFImageHasAlpha(DRAVCFImageRef image);

/* 1 if the image has no alpha, or the first byte of every pixel of its buffer is 255. */
DRAV_EXPORT int DRAVCFImageIsOpaque(DRAVCFImageRef image);

/* Converts a colour image to S_8 in place, weighted 0.30, 0.59, 0.11; alpha is dropped. */
DRAV_EXPORT void DRAVCFImageConvertToGrayscale(DRAVCFImageRef image);

/* Converts a grey image to colour in place; fails as DRAVCFImagePromoteImage does. */
DRAV_EXPORT void DRAVCFImageConvertToColor(DRAVCFImageRef image);

/* Sets red, green and blue of every pixel of a colour image to their mean; the layout stays. */
DRAV_EXPORT void DRAVCFImageMakeGrayscale(DRAVCFImageRef image);

/* Gives an image without alpha an opaque one: ARGB_8888. Fails as DRAVCFImagePromoteImage does. */
DRAV_EXPORT void DRAVCFImageAddAlphaChannel(DRAVCFImageRef image);

/* Divides the colours of an image with alpha by their alpha and sets every alpha byte to 1. The layout
 * stays ARGB_8888. Colour above its alpha is clamped, and one line a call says so on standard error.
 * Fails as DRAVCFImagePromoteImage does. */
DRAV_EXPORT void DRAVCFImageRemoveAlphaChannel(DRAVCFImageRef image);

/* Complements every colour byte; where the image has alpha every alpha byte becomes 255. */
DRAV_EXPORT void DRAVCFImageInvert(DRAVCFImageRef image);

/* Makes the image transparent black where it has alpha, else white. */
DRAV_EXPORT void DRAVCFImageClear(DRAVCFImageRef image);

/* A copy with its alpha removed (DRAVCFImageRemoveAlphaChannel). NULL if memory runs out or the image's
 * pixels cannot be converted. */
DRAV_EXPORT DRAVCFImageRef DRAVCFImageCopyOpaqueImage(CFAllocatorRef allocator, DRAVCFImageRef image);

/* A copy with every alpha byte 255 and the premultiplied colours as they are: the image over black.
 * The platform image cached in the source is dropped. NULL if memory runs out or pixels are not of 32 bits.
 */
DRAV_EXPORT DRAVCFImageRef DRAVCFImageCopyPremultipliedOpaqueImage(CFAllocatorRef allocator,
                                                                   DRAVCFImageRef image);

/* The alpha as a grey image: S_8. NULL if memory runs out or pixels are not of 32 bits. */
DRAV_EXPORT DRAVCFImageRef DRAVCFImageCopyAlphaChannel(CFAllocatorRef allocator, DRAVCFImageRef image);

/* ------------------------------------------------------------------------------------------------
 * Loaders
 * ------------------------------------------------------------------------------------------------ */

/* A loader reads one source when it is made and hands out the image; then it is released.
 * Every constructor gives a new loader whose image is loaded, or NULL: for a NULL path, a source that
 * cannot be read, bytes that are damaged or of another format, or if memory runs out.
 *
 * PICT  expects data without the 512-byte file header (and finds the picture if it is there).
 * PCT   expects the header. */
DRAV_EXPORT DRAVCFImageLoaderRef DRAVCFCreatePICTImageLoaderFromPath(CFAllocatorRef, CFStringRef path);
DRAV_EXPORT DRAVCFImageLoaderRef DRAVCFCreatePICTImageLoaderFromURL(CFAllocatorRef, CFURLRef);
DRAV_EXPORT DRAVCFImageLoaderRef DRAVCFCreatePICTImageLoaderFromData(CFAllocatorRef, CFDataRef);
DRAV_EXPORT DRAVCFImageLoaderRef DRAVCFCreatePCTImageLoaderFromPath(CFAllocatorRef, CFStringRef path);
DRAV_EXPORT DRAVCFImageLoaderRef DRAVCFCreatePCTImageLoaderFromURL(CFAllocatorRef, CFURLRef);
DRAV_EXPORT DRAVCFImageLoaderRef DRAVCFCreatePCTImageLoaderFromData(CFAllocatorRef, CFDataRef);
DRAV_EXPORT DRAVCFImageLoaderRef DRAVCFCreatePNGImageLoaderFromPath(CFAllocatorRef, CFStringRef path);
DRAV_EXPORT DRAVCFImageLoaderRef DRAVCFCreatePNGImageLoaderFromURL(CFAllocatorRef, CFURLRef);
DRAV_EXPORT DRAVCFImageLoaderRef DRAVCFCreatePNGImageLoaderFromData(CFAllocatorRef, CFDataRef);
DRAV_EXPORT DRAVCFImageLoaderRef DRAVCFCreateJPEGImageLoaderFromPath(CFAllocatorRef, CFStringRef path);
DRAV_EXPORT DRAVCFImageLoaderRef DRAVCFCreateJPEGImageLoaderFromURL(CFAllocatorRef, CFURLRef);
DRAV_EXPORT DRAVCFImageLoaderRef DRAVCFCreateJPEGImageLoaderFromData(CFAllocatorRef, CFDataRef);

/* The decoder is named by its four-character code, as 'TIFF' is 0x54494646. */
DRAV_EXPORT DRAVCFImageLoaderRef DRAVCFCreateFormattedImageLoaderFromPath(CFAllocatorRef, CFStringRef path,
                                                                          uint32_t subtype);
DRAV_EXPORT DRAVCFImageLoaderRef DRAVCFCreateFormattedImageLoaderFromURL(CFAllocatorRef, CFURLRef,
                                                                         uint32_t subtype);
DRAV_EXPORT DRAVCFImageLoaderRef DRAVCFCreateFormattedImageLoaderFromData(CFAllocatorRef, CFDataRef,
                                                                          uint32_t subtype);

/* The bytes choose the decoder. */
DRAV_EXPORT DRAVCFImageLoaderRef DRAVCFCreateUnknownImageLoaderFromPath(CFAllocatorRef, CFStringRef path);
DRAV_EXPORT DRAVCFImageLoaderRef DRAVCFCreateUnknownImageLoaderFromURL(CFAllocatorRef, CFURLRef);
DRAV_EXPORT DRAVCFImageLoaderRef DRAVCFCreateUnknownImageLoaderFromData(CFAllocatorRef, CFDataRef);

/* The loaded image. Gives a platform image for the caller to release; NULL for a NULL loader. */
DRAV_EXPORT CGImageRef DRAVCFImageLoaderCopyImage(DRAVCFImageLoaderRef loader);

/* The type identifier as it stands: 0 until the first loader is made. */
DRAV_EXPORT CFTypeID DRAVCFImageLoaderGetTypeID(void);

/* ------------------------------------------------------------------------------------------------
 * Exporters
 * ------------------------------------------------------------------------------------------------ */

/* An exporter is a chosen format; use it for any number of exports.
 * Each gives a new exporter; NULL if memory runs out. */
DRAV_EXPORT DRAVCFImageExporterRef DRAVCFImageExporterCreateJPEG(CFAllocatorRef);
DRAV_EXPORT DRAVCFImageExporterRef DRAVCFImageExporterCreatePICT(CFAllocatorRef);
DRAV_EXPORT DRAVCFImageExporterRef DRAVCFImageExporterCreatePCT(CFAllocatorRef);
DRAV_EXPORT DRAVCFImageExporterRef DRAVCFImageExporterCreatePNG(CFAllocatorRef);
DRAV_EXPORT DRAVCFImageExporterRef DRAVCFImageExporterCreateTIFF(CFAllocatorRef);

/* The image as the bytes of a file. PICT data comes without the 512-byte file header.
 * Gives  new data; NULL for a NULL exporter or image, one that cannot be encoded, or if memory runs out. */
DRAV_EXPORT CFDataRef DRAVCFImageExportCreateData(CFAllocatorRef allocator, DRAVCFImageExporterRef exporter,
                                                  CGImageRef image);

/* Writes the image as a file, replacing one that is there. No result: where success matters, make the
 * data and write it yourself. An image that cannot be encoded leaves the file alone. */
DRAV_EXPORT void DRAVCFImageExportToFile(DRAVCFImageExporterRef exporter, CGImageRef image, CFStringRef path);
DRAV_EXPORT void DRAVCFImageExportToURL(DRAVCFImageExporterRef exporter, CGImageRef image, CFURLRef url);

/* ------------------------------------------------------------------------------------------------
 * Tracing
 * ------------------------------------------------------------------------------------------------ */

/* Traces the outline of the pixels whose alpha exceeds a threshold.
 *
 * image           promoted to ARGB_8888 by the call.
 * alphaThreshold  0.0 to 1.0; alpha equal to it is outside.
 * Gives           a path in pixels, origin at the bottom left, y upward, vertices on pixel positions;
 *                 an empty path for an image without alpha; NULL if memory runs out.
 * The tracing is narrated line by line on standard output. */
DRAV_EXPORT CGMutablePathRef DRAVCFImageCopyAlphaPath(DRAVCFImageRef image, float alphaThreshold);

/* ------------------------------------------------------------------------------------------------
 * Colour match lists
 * ------------------------------------------------------------------------------------------------ */

/* How one component is tested, and whether the replacement is scaled by how well it matches. */
typedef uint32_t DRAVCFColorMatchMode;
enum {
  ProportionallyIfWithinRange = 0,
  ProportionallyIfNotWithinRange = 1,
  AbsolutelyIfWithinRange = 2,
  AbsolutelyIfNotWithinRange = 3,
  ProportionallyIfGreaterThan = 4,
  ProportionallyIfLessThan = 5,
  AbsolutelyIfGreaterThan = 6,
  AbsolutelyIfLessThan = 7,
  AlwaysMatches = 8
};

typedef uint32_t DRAVCFColorMatchListOptions;
enum {
  AllEntriesMustMatch = 0x1 /* one entry that does not match fails the whole */
};

typedef uint32_t DRAVCFColorMatchEntryOptions;
enum {
  IgnoringAlpha = 0x1,          /* three tests; the replacement's alpha is taken as it is */
  IgnoringIntensities = 0x2,    /* one test; the whole replacement is taken as it is */
  AllComponentsMustMatch = 0x4, /* the entry matches only if every tested component does */
  ConvertToHSB = 0x8            /* test and replace in hue (degrees), saturation, brightness */
};

typedef struct {
  uint32_t matchMode; /* a DRAVCFColorMatchMode; above 8 never matches */
  float target;
  float range;
} DRAVCFColorMatchComponent;

typedef struct {
  uint32_t options; /* DRAVCFColorMatchEntryOptions */
  DRAVCFColorMatchComponent
      *findComponents;      /* 1 with IgnoringIntensities, else 3 with IgnoringAlpha, else 4 */
  float *replaceComponents; /* as many as the list has components */
} DRAVCFColorMatchEntry;

/* The type identifier as it stands: 0 until the first list is made. */
DRAV_EXPORT CFTypeID DRAVCFColorMatchListGetTypeID(void);

/* Makes a list without entries.
 *
 * options         DRAVCFColorMatchListOptions.
 * componentCount  of every colour: 3, or 4 with alpha. A list of more than 4 never matches.
 * Gives           a new list; NULL if memory runs out. */
DRAV_EXPORT DRAVCFColorMatchListRef DRAVCFColorMatchListCreate(CFAllocatorRef allocator, uint32_t options,
                                                               uint32_t componentCount);

/* Adds a copy of an entry at the end; the caller keeps its own arrays.
 * Gives  1; 0 if memory runs out, the list then as it was. */
DRAV_EXPORT int32_t DRAVCFColorMatchListAddEntry(DRAVCFColorMatchListRef list,
                                                 const DRAVCFColorMatchEntry *entry);

/* Finds the replacement of a colour.
 *
 * color, result  as many floats as the list has components: red, green, blue, alpha. They may be the
 *                same array.
 * Gives          1 and the replacement in result; 0 where nothing matches. */
DRAV_EXPORT int32_t DRAVCFColorMatchListFindMatch(DRAVCFColorMatchListRef list, const float *color,
                                                  float *result);

#ifdef __cplusplus
}
#endif

#endif
