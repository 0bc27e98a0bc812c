/* Which file formats there are, and images from files of any of them. */
#ifndef DRAV_MEDIA_FORMATS_H
#define DRAV_MEDIA_FORMATS_H

#include <CoreGraphics/CoreGraphics.h>

#include "media/types.h"

typedef struct CGImageFormatInfo {
  const char *name;       /* "JPEG" */
  const char *extensions; /* "jpg|jpeg", the usual one first */
  const char *reads;      /* what of it is read, as a phrase; empty where nothing is said */
  const char *writes;     /* likewise for writing */
  OSType exporter;        /* the code that opens its exporter; 0: it is not written */
  uint32_t mostSide;      /* the widest or highest image that it holds when written, in pixels */
  Boolean holdsDrawings;  /* CGImageCreateDrawingAtSize decodes it at any size */
} CGImageFormatInfo;

MEDIA_EXPORT size_t CGImageGetFormatCount(void);

/* index  below CGImageGetFormatCount().
 * info   receives the facts; its texts are constant. Untouched on failure.
 * Gives  1, or 0 for an index beyond the last. */
MEDIA_EXPORT Boolean CGImageGetFormat(size_t index, CGImageFormatInfo *info);

/* The format that encoded bytes are in, as their first ones tell.
 *
 * bytes  length bytes, borrowed for the call.
 * Gives  its index, or CGImageGetFormatCount() for none. */
MEDIA_EXPORT size_t CGImageRecogniseFormat(const void *bytes, size_t length);

/* Decodes an image in whichever format its bytes are: colours beside alpha, not multiplied by it, with the
 * embedded profile and the resolution.
 *
 * bytes  length bytes, borrowed for the call.
 * Gives  a new image, owned by the caller; NULL with the reason in CGImageGetLastDecodeFault(). */
MEDIA_EXPORT CGImageRef CGImageCreateWithEncodedData(const void *bytes, size_t length);

#endif
