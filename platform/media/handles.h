/* Relocatable blocks of memory behind a master pointer.
 *
 * The blocks come from malloc. A locked handle keeps its block in place only as long as nobody
 * resizes it; an unlocked one behaves the same, so that locking costs nothing. */
#ifndef DRAV_MEDIA_HANDLES_H
#define DRAV_MEDIA_HANDLES_H

#include "media/types.h"

/* Makes a handle on byteCount zero bytes.
 * Gives  a handle to be given to DisposeHandle; its master pointer is not NULL even for 0 bytes.
 *        NULL with MemError() memFullErr when memory runs out, paramErr for a negative count. */
MEDIA_EXPORT Handle NewHandle(Size byteCount);

/* Frees the block and the handle. NULL does nothing but set MemError() to nilHandleErr. */
MEDIA_EXPORT void DisposeHandle(Handle handle);

/* Gives  the block's size in bytes, 0 with MemError() nilHandleErr for NULL. */
MEDIA_EXPORT Size GetHandleSize(Handle handle);

/* Changes the block's size; the bytes that both sizes share stay, new ones are zero. The master
 * pointer may change. On failure (MemError() tells) the block stays as it was. */
MEDIA_EXPORT void SetHandleSize(Handle handle, Size byteCount);

/* Keep the block in place between the two calls. */
MEDIA_EXPORT void HLock(Handle handle);
MEDIA_EXPORT void HUnlock(Handle handle);

/* Makes a handle with a copy of byteCount bytes.
 *
 * source       borrowed for the call; may be NULL when byteCount is 0.
 * destination  receives the handle, to be given to DisposeHandle; NULL on failure.
 * Gives        noErr, memFullErr or paramErr; MemError() says the same. */
MEDIA_EXPORT OSErr PtrToHand(const void *source, Handle *destination, Size byteCount);

/* Gives  how the last of these calls on this thread went. */
MEDIA_EXPORT OSErr MemError(void);

#endif
