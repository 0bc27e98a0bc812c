/* What a tool wants to tell about a file and about a failed load. */
#ifndef DRAV_MEDIA_INSPECTION_H
#define DRAV_MEDIA_INSPECTION_H

#include "media/types.h"

typedef struct CGImageFileInfo {
  char format[16]; /* "PNG", "JPEG", ... */
  uint32_t width;  /* pixels */
  uint32_t height;
  int32_t depth;            /* as an importer reports it: 8 grey, 24 colour, 32 with alpha */
  uint32_t colorComponents; /* of a decoded pixel, alpha not counted: 1 grey, 3 RGB */
  Boolean hasAlpha;
  char profileName[128]; /* the embedded profile's own, in UTF-8, cut where it is longer; "unnamed" if it
                            has none; empty: no profile that fits the pixels */
  double dotsPerInchX;   /* 0: the file does not say */
  double dotsPerInchY;
} CGImageFileInfo;

/* Recognises encoded bytes by their content and decodes them whole.
 *
 * bytes  length bytes, borrowed for the call.
 * info   receives the facts; untouched on failure.
 * Gives  1, or 0 with the reason in CGImageGetLastDecodeFault(). */
MEDIA_EXPORT Boolean CGImageInspectData(const void *bytes, size_t length, CGImageFileInfo *info);

/* Gives  a short reason, as a phrase without a full stop, for the last failed decode on this thread
 *        ("not an image this tool knows", "truncated", "damaged", "too large", "out of memory",
 *        "a variant that is not supported"); NULL when the last decode succeeded or none was tried.
 *        The text is constant. */
MEDIA_EXPORT const char *CGImageGetLastDecodeFault(void);

#endif
