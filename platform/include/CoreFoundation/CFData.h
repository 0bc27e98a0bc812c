/* Runs of bytes. */
#ifndef COREFOUNDATION_CFDATA_H
#define COREFOUNDATION_CFDATA_H

#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

typedef const struct __CFData *CFDataRef;
typedef struct __CFData *CFMutableDataRef;

CF_EXPORT CFTypeID CFDataGetTypeID(void);

/* Gives   a new data object with a copy of length bytes, owned by the caller; NULL if memory runs out,
 *         length is negative, or bytes is NULL with a length. */
CF_EXPORT CFDataRef CFDataCreate(CFAllocatorRef allocator, const UInt8 *bytes, CFIndex length);

/* The same without copying: the bytes must not change while the object lives.
 *
 * bytesDeallocator  frees the bytes with the object, and is retained by it: kCFAllocatorMalloc for
 *                   malloc's, kCFAllocatorNull to leave them to the caller, NULL for the default allocator.
 * Gives             NULL as CFDataCreate; the bytes then stay the caller's. */
CF_EXPORT CFDataRef CFDataCreateWithBytesNoCopy(CFAllocatorRef allocator, const UInt8 *bytes, CFIndex length,
                                                CFAllocatorRef bytesDeallocator);

/* Gives   data with the same bytes that cannot change, owned by the caller; the object itself, retained,
 *         where it cannot change and lives on that allocator. */
CF_EXPORT CFDataRef CFDataCreateCopy(CFAllocatorRef allocator, CFDataRef data);

/* Gives   new empty data that can change, owned by the caller.
 *
 * capacity  the greatest length in bytes; 0: no limit. */
CF_EXPORT CFMutableDataRef CFDataCreateMutable(CFAllocatorRef allocator, CFIndex capacity);

/* The same with a copy of data's bytes. NULL also if they are more than capacity. */
CF_EXPORT CFMutableDataRef CFDataCreateMutableCopy(CFAllocatorRef allocator, CFIndex capacity,
                                                   CFDataRef data);

/* Gives   the number of bytes. */
CF_EXPORT CFIndex CFDataGetLength(CFDataRef data);

/* Gives   the bytes, borrowed until the object changes or goes; never NULL for an object, even an empty
 *         one. */
CF_EXPORT const UInt8 *CFDataGetBytePtr(CFDataRef data);

/* The same to write to; NULL for data that cannot change. */
CF_EXPORT UInt8 *CFDataGetMutableBytePtr(CFMutableDataRef data);

/* Copies the bytes of range to buffer. A range that leaves the data copies nothing. */
CF_EXPORT void CFDataGetBytes(CFDataRef data, CFRange range, UInt8 *buffer);

/* ---- Changing ----
 * Each leaves the data as it was if it cannot change, if memory runs out, if the result would be longer than
 * its capacity, or if a range leaves the data. */

/* Cuts off, or grows by zero bytes. */
CF_EXPORT void CFDataSetLength(CFMutableDataRef data, CFIndex length);
CF_EXPORT void CFDataIncreaseLength(CFMutableDataRef data, CFIndex extraLength);

/* bytes may lie inside the data itself. */
CF_EXPORT void CFDataAppendBytes(CFMutableDataRef data, const UInt8 *bytes, CFIndex length);

/* Puts newLength bytes, which do not lie inside the data, in the place of range. */
CF_EXPORT void CFDataReplaceBytes(CFMutableDataRef data, CFRange range, const UInt8 *newBytes,
                                  CFIndex newLength);
CF_EXPORT void CFDataDeleteBytes(CFMutableDataRef data, CFRange range);

CF_EXTERN_C_END

#endif
