/* Colour profiles: the calls that the libraries make, no more. Not installed. */
#ifndef DRAV_GRAPHICS_PROFILE_H
#define DRAV_GRAPHICS_PROFILE_H

#include <CoreFoundation/CoreFoundation.h>

#ifdef __cplusplus
#define PROFILE_EXPORT extern "C" __attribute__((visibility("default")))
#else
#define PROFILE_EXPORT extern __attribute__((visibility("default")))
#endif

typedef struct CMProfile *CMProfileRef; /* an open profile: its ICC bytes */
typedef int32_t CMError;                /* 0: no error */

enum { cmHandleBasedProfile = 2 };

/* Where the bytes of a profile are: in a memory handle. */
typedef struct CMHandleLocation {
  char **h;  /* a Handle: points to a master pointer, which points to the block */
  long size; /* bytes of the block */
} CMHandleLocation;

typedef struct CMProfileLocation {
  int16_t locType; /* cmHandleBasedProfile */
  union {
    CMHandleLocation handleLoc;
  } u;
} CMProfileLocation;

/* The main display's profile: sRGB, made in memory, the same bytes in every process.
 * Gives  0 and an open profile for the caller to close; an error if it cannot be had. */
PROFILE_EXPORT CMError CMGetSystemProfile(CMProfileRef *profile);

/* Opens a profile over a copy of the bytes at a location; they need not make sense yet.
 * Gives  0 and an open profile for the caller to close; an error for another kind of location, for no bytes,
 *        or if memory runs out. */
PROFILE_EXPORT CMError CMOpenProfile(CMProfileRef *profile, const CMProfileLocation *location);

/* Checks whether the bytes make a profile of grey, RGB or CMYK that colours can be converted with.
 * valid                 receives 1 or 0.
 * preferredCMMNotFound  receives 0: there is one colour engine, and it serves every profile.
 * Gives                 0 if it is valid. */
PROFILE_EXPORT CMError CMValidateProfile(CMProfileRef profile, Boolean *valid, Boolean *preferredCMMNotFound);

PROFILE_EXPORT CMError CMCloseProfile(CMProfileRef profile);

/* The bytes of an open profile; borrowed. */
PROFILE_EXPORT CFDataRef CMProfileGetData(CMProfileRef profile);

#endif
