/* Basic types, counting, and allocators. */
#ifndef COREFOUNDATION_CFBASE_H
#define COREFOUNDATION_CFBASE_H

#include <limits.h>
#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

#if defined(__cplusplus)
#define CF_EXTERN_C_BEGIN extern "C" {
#define CF_EXTERN_C_END }
#define CF_EXPORT extern "C" __attribute__((visibility("default")))
#else
#define CF_EXTERN_C_BEGIN
#define CF_EXTERN_C_END
#define CF_EXPORT extern __attribute__((visibility("default")))
#endif

CF_EXTERN_C_BEGIN

typedef unsigned char Boolean; /* 1 or 0 */
typedef uint8_t UInt8;
typedef int8_t SInt8;
typedef uint16_t UInt16;
typedef int16_t SInt16;
typedef uint32_t UInt32;
typedef int32_t SInt32;
typedef uint64_t UInt64;
typedef int64_t SInt64;
typedef float Float32;
typedef double Float64;
typedef uint16_t UniChar;      /* one UTF-16 unit */
typedef uint32_t FourCharCode; /* four characters, the first in the top byte */
typedef FourCharCode OSType;
typedef int16_t OSErr;    /* 0 or a negative error number */
typedef int32_t OSStatus; /* likewise */

typedef long CFIndex;           /* a position or a count */
typedef unsigned long CFTypeID; /* a class; 0 is none */
typedef unsigned long
    CFHashCode; /* equal objects of one class have equal hashes, unless the class says otherwise */
typedef unsigned long CFOptionFlags;

/* Any object: the first field of what it points to is a CFRuntimeBase. */
typedef const void *CFTypeRef;

typedef const struct __CFAllocator *CFAllocatorRef;
typedef const struct __CFString *CFStringRef;
typedef struct __CFString *CFMutableStringRef;

/* The answer of a search that found nothing. */
enum { kCFNotFound = -1 };

/* How the first operand stands to the second. */
typedef CFIndex CFComparisonResult;
enum { kCFCompareLessThan = -1, kCFCompareEqualTo = 0, kCFCompareGreaterThan = 1 };

/* length items from item location on. */
typedef struct {
  CFIndex location;
  CFIndex length;
} CFRange;

static inline CFRange CFRangeMake(CFIndex location, CFIndex length) {
  CFRange range;
  range.location = location;
  range.length = length;
  return range;
}

/* ---- Objects ---- */

/* Adds a count. Gives the object itself. A NULL object prints one line and aborts. */
CF_EXPORT CFTypeRef CFRetain(CFTypeRef object);

/* Takes a count away; with the last one the object is finalized and its memory returned to its allocator.
 * A NULL object, or a release that no count is left for, prints one line and aborts. */
CF_EXPORT void CFRelease(CFTypeRef object);

/* Gives   the number of counts; LONG_MAX for an object that is never freed, such as a constant string. */
CF_EXPORT CFIndex CFGetRetainCount(CFTypeRef object);

/* Gives   the object's class. */
CF_EXPORT CFTypeID CFGetTypeID(CFTypeRef object);

/* Gives   true for the same object, and for two of one class which that class finds equal. A class that
 *         does not compare content has no two equal objects. */
CF_EXPORT Boolean CFEqual(CFTypeRef object1, CFTypeRef object2);

/* Gives   the class's hash of the object; its address where the class has none. */
CF_EXPORT CFHashCode CFHash(CFTypeRef object);

/* Says what an object is, for people who look for a mistake.
 * Gives   a new string, owned by the caller; "<ClassName 0xaddress>" for a class that does not describe
 *         itself. NULL if the class gives none or memory runs out. */
CF_EXPORT CFStringRef CFCopyDescription(CFTypeRef object);

/* Gives   the name of a class as a new string, owned by the caller; NULL for a number that is no class. */
CF_EXPORT CFStringRef CFCopyTypeIDDescription(CFTypeID typeID);

/* Gives   the allocator that the object was made with, borrowed; never NULL. */
CF_EXPORT CFAllocatorRef CFGetAllocator(CFTypeRef object);

/* Writes the object's description and a line feed to the standard error stream. */
CF_EXPORT void CFShow(CFTypeRef object);

/* ---- Allocators ---- */

/* The current default: a NULL allocator. */
CF_EXPORT const CFAllocatorRef kCFAllocatorDefault;
/* malloc, realloc and free. What the default is until CFAllocatorSetDefault changes it. */
CF_EXPORT const CFAllocatorRef kCFAllocatorSystemDefault;
/* The same, under the name that data objects use for "free these bytes with free". */
CF_EXPORT const CFAllocatorRef kCFAllocatorMalloc;
/* Allocates nothing and frees nothing. */
CF_EXPORT const CFAllocatorRef kCFAllocatorNull;

typedef const void *(*CFAllocatorRetainCallBack)(const void *info);
typedef void (*CFAllocatorReleaseCallBack)(const void *info);
typedef CFStringRef (*CFAllocatorCopyDescriptionCallBack)(const void *info);
/* size   in bytes: what was asked for and the tail room, so never below 32.
 * Gives  a block aligned as malloc's, or NULL. */
typedef void *(*CFAllocatorAllocateCallBack)(CFIndex size, CFOptionFlags hint, void *info);
/* Keeps the contents up to the smaller size. NULL leaves the old block as it was. */
typedef void *(*CFAllocatorReallocateCallBack)(void *block, CFIndex newSize, CFOptionFlags hint, void *info);
typedef void (*CFAllocatorDeallocateCallBack)(void *block, void *info);
typedef CFIndex (*CFAllocatorPreferredSizeCallBack)(CFIndex size, CFOptionFlags hint, void *info);

/* What an allocator is made of. Any callback may be NULL: without allocate or reallocate every such request
 * fails, without deallocate blocks are never returned. */
typedef struct {
  CFIndex version; /* 0 */
  void *info;      /* handed to every callback */
  CFAllocatorRetainCallBack retain;
  CFAllocatorReleaseCallBack release;
  CFAllocatorCopyDescriptionCallBack copyDescription;
  CFAllocatorAllocateCallBack allocate;
  CFAllocatorReallocateCallBack reallocate;
  CFAllocatorDeallocateCallBack deallocate;
  CFAllocatorPreferredSizeCallBack preferredSize;
} CFAllocatorContext;

CF_EXPORT CFTypeID CFAllocatorGetTypeID(void);

/* Makes an allocator.
 *
 * allocator   where the new allocator object itself lives.
 * context     copied; its info is retained by its retain callback, and released with the allocator.
 * Gives       a new allocator, owned by the caller. NULL without a context, for an unknown version, or if
 *             memory runs out. */
CF_EXPORT CFAllocatorRef CFAllocatorCreate(CFAllocatorRef allocator, const CFAllocatorContext *context);

/* Fills context (whose version must be 0) with what the allocator was made of; info is borrowed. */
CF_EXPORT void CFAllocatorGetContext(CFAllocatorRef allocator, CFAllocatorContext *context);

/* Allocates.
 *
 * size   in bytes. Zero gives a block of its own too. Every block has 32 bytes of room beyond size, which
 *        the caller may use: they are added before the allocator's callback is asked.
 * hint   0.
 * Gives  a block with undefined contents, to be returned with CFAllocatorDeallocate on the same allocator;
 *        NULL if memory runs out, or if size is negative or too large to add the tail room to. */
CF_EXPORT void *CFAllocatorAllocate(CFAllocatorRef allocator, CFIndex size, CFOptionFlags hint);

/* Changes the size of a block, which may move. Contents are kept up to the smaller size.
 *
 * block    NULL allocates a new block.
 * newSize  as in CFAllocatorAllocate; but zero returns an existing block, and gives NULL.
 * Gives    the block; NULL on failure, and then the old block stays valid. */
CF_EXPORT void *CFAllocatorReallocate(CFAllocatorRef allocator, void *block, CFIndex newSize,
                                      CFOptionFlags hint);

/* Returns a block. NULL is ignored. */
CF_EXPORT void CFAllocatorDeallocate(CFAllocatorRef allocator, void *block);

/* Gives   the size, at least size, that the allocator would really hand out; size itself if it cannot say. */
CF_EXPORT CFIndex CFAllocatorGetPreferredSizeForSize(CFAllocatorRef allocator, CFIndex size,
                                                     CFOptionFlags hint);

/* Gives   the calling thread's default allocator, borrowed; never NULL. */
CF_EXPORT CFAllocatorRef CFAllocatorGetDefault(void);

/* Makes allocator (retained) the calling thread's default. NULL goes back to kCFAllocatorSystemDefault. */
CF_EXPORT void CFAllocatorSetDefault(CFAllocatorRef allocator);

CF_EXTERN_C_END

#endif
