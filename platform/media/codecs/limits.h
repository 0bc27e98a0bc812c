/* How much a decoder may spend on one file. This is the only place where these numbers live. */
#ifndef DRAV_MEDIA_CODECS_LIMITS_H
#define DRAV_MEDIA_CODECS_LIMITS_H

#include <stdint.h>

#ifdef __cplusplus
#define CODECS_EXPORT extern "C" __attribute__((visibility("default")))
#else
#define CODECS_EXPORT extern __attribute__((visibility("default")))
#endif

typedef struct CGImageDecodeLimits {
  uint32_t side;          /* pixels of width or height */
  uint64_t pixels;        /* width times height */
  uint64_t memoryBytes;   /* live at one time for one load, the encoded file not counted */
  uint32_t jpegScans;     /* scans of a progressive JPEG */
  uint32_t tiffTags;      /* entries of all directories of a TIFF that are looked at */
  uint32_t profileBytes;  /* an embedded colour profile */
  uint64_t pictOpcodes;   /* opcodes of a picture */
  uint32_t paintedFrames; /* area painted by a picture, in multiples of its frame */
  uint64_t workFree;      /* pixel visits that every file may cost ... */
  uint64_t workPerByte;   /* ... and how many more for each byte of input and of pixels */
  uint64_t pictWork;      /* the most visits that a picture may cost, however large it is */
  uint32_t pictJpegScans; /* scans of a progressive JPEG inside a picture, which may hold many */
} CGImageDecodeLimits;

/* What holds unless somebody sets something else: 65,535 pixels a side, 2^28 pixels, 1 GiB, 500
 * scans, 4,096 tags, 4 MiB of profile, 10^7 opcodes, 64 frames, 2^28 visits and 64 a byte; 3 * 10^9
 * visits of a picture, up to two nanoseconds each, and 64 scans inside it. */
CODECS_EXPORT CGImageDecodeLimits CGImageGetDefaultDecodeLimits(void);

/* The limits that loads start with from now on. Loads under way keep theirs. */
CODECS_EXPORT CGImageDecodeLimits CGImageGetDecodeLimits(void);
CODECS_EXPORT void CGImageSetDecodeLimits(const CGImageDecodeLimits *limits); /* NULL: the defaults */

#endif
