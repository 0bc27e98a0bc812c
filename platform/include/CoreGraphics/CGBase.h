/* Types and marks that all of the drawing interface shares. */
#ifndef COREGRAPHICS_CGBASE_H
#define COREGRAPHICS_CGBASE_H

#include <CoreFoundation/CFBase.h>
#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

#define CG_EXPORT CF_EXPORT
#define CG_EXTERN_C_BEGIN CF_EXTERN_C_BEGIN
#define CG_EXTERN_C_END CF_EXTERN_C_END

/* Every coordinate and every component is single precision. */
typedef float CGFloat;

typedef struct CGColorSpace *CGColorSpaceRef;
typedef struct CGDataProvider *CGDataProviderRef;
typedef struct CGImage *CGImageRef;
typedef struct CGContext *CGContextRef;
typedef struct CGPath *CGMutablePathRef;
typedef const struct CGPath *CGPathRef;

#endif
