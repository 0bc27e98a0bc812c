/* Colour spaces. Two are equal (CFEqual) when they are of one kind with the same profile bytes, parameters
 * or table. Device RGB is taken as sRGB. */
#ifndef COREGRAPHICS_CGCOLORSPACE_H
#define COREGRAPHICS_CGCOLORSPACE_H

#include <CoreFoundation/CFData.h>
#include <CoreGraphics/CGBase.h>

CG_EXTERN_C_BEGIN

/* How colours that the destination lacks are brought into it. */
typedef int32_t CGColorRenderingIntent;
enum {
  kCGRenderingIntentDefault = 0, /* perceptual */
  kCGRenderingIntentAbsoluteColorimetric = 1,
  kCGRenderingIntentRelativeColorimetric = 2,
  kCGRenderingIntentPerceptual = 3,
  kCGRenderingIntentSaturation = 4
};

/* What CGColorSpaceGetType answers. */
enum {
  kCGColorSpaceTypeDeviceGray = 0,
  kCGColorSpaceTypeDeviceRGB = 1,
  kCGColorSpaceTypeDeviceCMYK = 2,
  kCGColorSpaceTypeCalibratedGray = 3, /* also a grey profile: grey is not colour, however defined */
  kCGColorSpaceTypeCalibratedRGB = 4,
  kCGColorSpaceTypeLab = 5,
  kCGColorSpaceTypeICCBased = 6,
  kCGColorSpaceTypeIndexed = 7
};

CG_EXPORT CFTypeID CGColorSpaceGetTypeID(void);

/* Each gives a space for the caller to release; NULL if memory runs out. */
CG_EXPORT CGColorSpaceRef CGColorSpaceCreateDeviceGray(void);
CG_EXPORT CGColorSpaceRef CGColorSpaceCreateDeviceRGB(void);
CG_EXPORT CGColorSpaceRef CGColorSpaceCreateDeviceCMYK(void);

/* Grey from gamma and white point (CIE XYZ, Y is 1); RGB from gammas and a matrix of nine, the XYZ of full
 * red, green and blue one after the other. The black point is not used. NULL for parameters that make none.
 */
CG_EXPORT CGColorSpaceRef CGColorSpaceCreateCalibratedGray(const CGFloat whitePoint[3],
                                                           const CGFloat blackPoint[3], CGFloat gamma);
CG_EXPORT CGColorSpaceRef CGColorSpaceCreateCalibratedRGB(const CGFloat whitePoint[3],
                                                          const CGFloat blackPoint[3], const CGFloat gamma[3],
                                                          const CGFloat matrix[9]);

/* From the bytes of an ICC profile of grey, RGB or CMYK; the data is copied.
 * Gives  a space for the caller to release; NULL for bytes that are no such profile. */
CG_EXPORT CGColorSpaceRef CGColorSpaceCreateWithICCProfile(CFDataRef profile);

/* Colours of a table: index i stands for the components at table[i * n], n those of the base.
 *
 * base       any space but an indexed one; retained.
 * lastIndex  0 to 255.
 * table      (lastIndex + 1) * n bytes, copied.
 * Gives      a space for the caller to release; NULL for other arguments. */
CG_EXPORT CGColorSpaceRef CGColorSpaceCreateIndexed(CGColorSpaceRef base, size_t lastIndex,
                                                    const unsigned char *table);

/* From an open profile (an opaque CMProfileRef). Gives a space for the caller to release, or NULL. */
CG_EXPORT CGColorSpaceRef CGColorSpaceCreateWithPlatformColorSpace(const void *profile);

CG_EXPORT CGColorSpaceRef CGColorSpaceRetain(CGColorSpaceRef space);
CG_EXPORT void CGColorSpaceRelease(CGColorSpaceRef space);

/* 1 grey, 3 RGB or Lab, 4 CMYK, 1 indexed; 0 for NULL. */
CG_EXPORT size_t CGColorSpaceGetNumberOfComponents(CGColorSpaceRef space);

/* One of the numbers above; -1 for NULL. */
CG_EXPORT int CGColorSpaceGetType(CGColorSpaceRef space);

/* The bytes of the ICC profile that the space was made from, for the caller to release; NULL if it was not
 * made from one. */
CG_EXPORT CFDataRef CGColorSpaceCopyICCProfile(CGColorSpaceRef space);

/* The base of an indexed space, borrowed; NULL for any other. */
CG_EXPORT CGColorSpaceRef CGColorSpaceGetBaseColorSpace(CGColorSpaceRef space);

CG_EXTERN_C_END

#endif
