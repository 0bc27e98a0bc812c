/* What can be asked of pictures beyond their pixels. */
#ifndef DRAV_MEDIA_DRAWINGS_H
#define DRAV_MEDIA_DRAWINGS_H

#include <CoreGraphics/CoreGraphics.h>

#include "media/offscreen.h"

typedef struct CGPictureInfo {
  int32_t version;    /* 1 or 2 */
  Boolean isExtended; /* version 2 with a resolution of its own */
  Rect frame;         /* in units of 1/72 inch, in principle */
  Rect drawing;       /* what the canvas shows, in units of the drawing: one pixel each */
  double dotsPerInchX;
  double dotsPerInchY;
  uint64_t opcodes; /* the end mark not counted */
} CGPictureInfo;

/* Called for every opcode in turn.
 *
 * context  what was passed along.
 * code     the opcode's number.
 * name     "paintRect", "reserved"; constant.
 * bytes    of its operands, without padding. */
typedef void (*CGPictureOpcodeCallback)(void *context, uint32_t code, const char *name, size_t bytes);

/* Goes over a picture's opcodes without drawing them.
 *
 * bytes     length bytes, borrowed for the call.
 * info      receives the facts; untouched on failure. May be NULL.
 * callback  NULL: nothing is listed. On failure it has seen the opcodes before the damage.
 * Gives     1, or 0 with the reason in CGImageGetLastDecodeFault(). */
MEDIA_EXPORT Boolean CGImageInspectPicture(const void *bytes, size_t length, CGPictureInfo *info,
                                           CGPictureOpcodeCallback callback, void *context);

/* Decodes a picture at a size other than its own: lines, shapes and letters are drawn as finely as that
 * size allows, images are scaled.
 *
 * bytes          length bytes, borrowed for the call.
 * width, height  in pixels.
 * Gives          a new image, owned by the caller; NULL for formats of pixels alone, and on failure, with
 *                the reason in CGImageGetLastDecodeFault(). */
MEDIA_EXPORT CGImageRef CGImageCreateDrawingAtSize(const void *bytes, size_t length, uint32_t width,
                                                   uint32_t height);

#endif
