/* Offscreen worlds: a rectangle of pixels in memory of the caller's, for importers to draw into. */
#ifndef DRAV_MEDIA_OFFSCREEN_H
#define DRAV_MEDIA_OFFSCREEN_H

#include "media/types.h"

/* Edges in pixels; right and bottom lie one past the last pixel. */
typedef struct Rect {
  int16_t top, left, bottom, right;
} Rect;

enum {
  k32ARGBPixelFormat = 32,      /* four bytes a pixel: alpha (or unused), red, green, blue */
  k8IndexedGrayPixelFormat = 40 /* one byte a pixel, 0 black to 255 white */
};

/* What a world is: its fields are for importers to read. */
typedef struct OffscreenWorld {
  uint32_t pixelFormat; /* one of the two above */
  Rect bounds;
  uint8_t *pixels; /* top row first; the caller's */
  size_t rowBytes;
} OffscreenWorld;

typedef OffscreenWorld *GWorldPtr;
typedef struct ColorTableRecord **CTabHandle; /* no call takes one yet: pass NULL */
typedef struct DeviceRecord **GDHandle;       /* likewise */

/* Makes a world over a buffer.
 *
 * world        receives the world, to be given to DisposeGWorld; NULL on failure.
 * pixelFormat  32 or 40.
 * bounds       at least one pixel wide and high; borrowed for the call.
 * colorTable, device, flags   NULL, NULL, 0.
 * buffer       (bottom - top) rows of rowBytes, borrowed until the world is disposed of.
 * rowBytes     at least the row's pixels.
 * Gives        noErr, paramErr or memFullErr. */
MEDIA_EXPORT OSErr NewGWorldFromPtr(GWorldPtr *world, uint32_t pixelFormat, const Rect *bounds,
                                    CTabHandle colorTable, GDHandle device, uint32_t flags, Ptr buffer,
                                    int32_t rowBytes);

/* Frees the world, not its buffer. NULL does nothing. */
MEDIA_EXPORT void DisposeGWorld(GWorldPtr world);

#endif
