/* Reading and writing files from start to end. A stream that is released while open closes its file. */
#ifndef COREFOUNDATION_CFSTREAM_H
#define COREFOUNDATION_CFSTREAM_H

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFURL.h>

CF_EXTERN_C_BEGIN

typedef struct __CFReadStream *CFReadStreamRef;
typedef struct __CFWriteStream *CFWriteStreamRef;

typedef CFIndex CFStreamStatus;
enum {
  kCFStreamStatusNotOpen = 0,
  kCFStreamStatusOpening = 1,
  kCFStreamStatusOpen = 2,
  kCFStreamStatusReading = 3,
  kCFStreamStatusWriting = 4,
  kCFStreamStatusAtEnd = 5,
  kCFStreamStatusClosed = 6,
  kCFStreamStatusError = 7
};

CF_EXPORT CFTypeID CFReadStreamGetTypeID(void);
CF_EXPORT CFTypeID CFWriteStreamGetTypeID(void);

/* Gives   a new stream, not yet open, owned by the caller; NULL if the URL is NULL or names no file, or if
 *         memory runs out. The file is not looked at. */
CF_EXPORT CFReadStreamRef CFReadStreamCreateWithFile(CFAllocatorRef allocator, CFURLRef fileURL);

/* Opens the file; waits for the other side of a named pipe.
 * Gives   false, with the error status, if it cannot be read, as a folder cannot; false, with the status
 *         unchanged, if the stream was opened before. */
CF_EXPORT Boolean CFReadStreamOpen(CFReadStreamRef stream);

CF_EXPORT CFStreamStatus CFReadStreamGetStatus(CFReadStreamRef stream);

/* Reads into the caller's buffer.
 * Gives   the bytes read, which may be fewer than length before the end; 0 at the end; -1 if the stream is
 *         not open or reading fails. */
CF_EXPORT CFIndex CFReadStreamRead(CFReadStreamRef stream, UInt8 *buffer, CFIndex length);

/* Reads into the stream's own buffer.
 *
 * maxBytesToRead  0: as many as there are room for.
 * numBytesRead    the length of what is given; 0 at the end.
 * Gives           the bytes, borrowed until the stream is used again; NULL at the end (with 0) and on
 *                 failure (with -1). */
CF_EXPORT const UInt8 *CFReadStreamGetBuffer(CFReadStreamRef stream, CFIndex maxBytesToRead,
                                             CFIndex *numBytesRead);

CF_EXPORT void CFReadStreamClose(CFReadStreamRef stream);

/* As CFReadStreamCreateWithFile. */
CF_EXPORT CFWriteStreamRef CFWriteStreamCreateWithFile(CFAllocatorRef allocator, CFURLRef fileURL);

/* Makes the file, or empties it.
 * Gives   false as CFReadStreamOpen. */
CF_EXPORT Boolean CFWriteStreamOpen(CFWriteStreamRef stream);

CF_EXPORT CFStreamStatus CFWriteStreamGetStatus(CFWriteStreamRef stream);

/* Gives   true if writing would be tried, that is if the stream is open. */
CF_EXPORT Boolean CFWriteStreamCanAcceptBytes(CFWriteStreamRef stream);

/* Writes all bytes before it returns.
 * Gives   length; -1 if the stream is not open, or with the error status if writing fails, whatever part of
 *         the bytes had been written by then. */
CF_EXPORT CFIndex CFWriteStreamWrite(CFWriteStreamRef stream, const UInt8 *buffer, CFIndex length);

/* Closes the file. If the file system reports only now that the bytes were lost, the status is error. */
CF_EXPORT void CFWriteStreamClose(CFWriteStreamRef stream);

CF_EXTERN_C_END

#endif
