/* Types, error numbers and the export mark that the media calls share.
 *
 * These headers are not installed: the calls serve the library above, the command line tool and
 * tests. They are plain C all the same, so that the calls can be used from C.
 *
 * Conventions of every media call:
 *  1. A result of noErr (0) is success; anything else left the out parameters NULL or untouched.
 *  2. NULL where an object is needed gives paramErr (or nilHandleErr for a handle), never a crash.
 *  3. Handles are owned by whoever made them: an importer or exporter borrows the handles it is
 *     given until it is closed. */
#ifndef DRAV_MEDIA_TYPES_H
#define DRAV_MEDIA_TYPES_H

#include <CoreFoundation/CoreFoundation.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
#define MEDIA_EXPORT extern "C" __attribute__((visibility("default")))
#else
#define MEDIA_EXPORT extern __attribute__((visibility("default")))
#endif

typedef char *Ptr;
typedef Ptr *Handle; /* points to a master pointer, which points to the block */
typedef long Size;   /* bytes */
typedef OSStatus ComponentResult;

/* The number of a code: its first character in the top byte. */
#ifdef __cplusplus
constexpr OSType MEDIA_CODE(char a, char b, char c, char d) {
  return static_cast<OSType>(static_cast<uint8_t>(a)) << 24 |
         static_cast<OSType>(static_cast<uint8_t>(b)) << 16 |
         static_cast<OSType>(static_cast<uint8_t>(c)) << 8 | static_cast<uint8_t>(d);
}
#else
#define MEDIA_CODE(a, b, c, d) \
  ((OSType)(uint8_t)(a) << 24 | (OSType)(uint8_t)(b) << 16 | (OSType)(uint8_t)(c) << 8 | (OSType)(uint8_t)(d))
#endif

enum {
  noErr = 0,
  fnfErr = -43,                 /* the file of a data reference cannot be read */
  paramErr = -50,               /* an argument that no call could honour */
  memFullErr = -108,            /* memory ran out */
  nilHandleErr = -109,          /* a NULL handle */
  cantFindHandler = -2003,      /* no component answers to that type and subtype */
  badComponentInstance = -3000, /* not an open component, or of another type */
  badComponentSelector = -3001, /* the component does not offer that call */
  pictureDataErr = -3954,       /* a picture whose opcodes make no sense */
  codecErr = -8960,             /* the image cannot be encoded or drawn */
  codecUnsupportedErr = -8961,  /* sound data in a variant that is not supported */
  codecBadDataErr = -8969,      /* damaged or truncated data */
  codecTooLargeErr = -8973      /* above the decode limits, or too large to describe */
};

#endif
