/* File paths and URLs. Nothing here looks at the file system. */
#ifndef COREFOUNDATION_CFURL_H
#define COREFOUNDATION_CFURL_H

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFString.h>

CF_EXTERN_C_BEGIN

typedef const struct __CFURL *CFURLRef;

typedef CFIndex CFURLPathStyle;
enum { kCFURLPOSIXPathStyle = 0 }; /* any other style is refused */

CF_EXPORT CFTypeID CFURLGetTypeID(void);

/* Makes a URL that names a file.
 *
 * path         absolute, or relative to whatever folder is current when the URL is used.
 * isDirectory  true: the path names a folder, and the URL ends in a slash.
 * Gives        a new URL, owned by the caller; NULL if the path is NULL, empty, holds a zero character or
 *              cannot be written in UTF-8, for an unknown style, or if memory runs out. */
CF_EXPORT CFURLRef CFURLCreateWithFileSystemPath(CFAllocatorRef allocator, CFStringRef path,
                                                 CFURLPathStyle style, Boolean isDirectory);

/* The same from the bytes of a file name as the file system has it, UTF-8 or not. */
CF_EXPORT CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef allocator, const UInt8 *bytes,
                                                           CFIndex length, Boolean isDirectory);

/* Makes a URL from its text.
 *
 * string   percent escapes included. "file:" URLs and texts without a scheme name files; others name none.
 * baseURL  NULL, or the URL of a file that a relative text starts from.
 * Gives    a new URL, owned by the caller; NULL if the text is empty, holds a character that a URL must
 *          escape or a broken escape, or if memory runs out. */
CF_EXPORT CFURLRef CFURLCreateWithString(CFAllocatorRef allocator, CFStringRef string, CFURLRef baseURL);

/* Gives   the URL's text, borrowed: "file:///a%20b" for an absolute file path, "a%20b" for a relative one. */
CF_EXPORT CFStringRef CFURLGetString(CFURLRef url);

/* Gives   the file path as a new string, owned by the caller, without a slash at its end; NULL if the URL
 *         names no file, its name is not UTF-8, or for an unknown style. */
CF_EXPORT CFStringRef CFURLCopyFileSystemPath(CFURLRef url, CFURLPathStyle style);

/* Writes the file path as the file system takes it, terminated by a zero.
 *
 * resolveAgainstBase  true: a relative path is put behind the current folder's.
 * bufferSize          in bytes, the zero included.
 * Gives               false if the URL names no file or its path does not fit. */
CF_EXPORT Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean resolveAgainstBase, UInt8 *buffer,
                                                   CFIndex bufferSize);

/* Gives   what follows the last dot of the path's last component, as a new string, owned by the caller;
 *         NULL if it has none, if nothing follows or precedes the dot, or if it is not UTF-8. */
CF_EXPORT CFStringRef CFURLCopyPathExtension(CFURLRef url);

/* Gives   the path's last component as a new string, owned by the caller; "/" for the root, NULL if the URL
 *         has no path or it is not UTF-8. */
CF_EXPORT CFStringRef CFURLCopyLastPathComponent(CFURLRef url);

/* Gives   true if the URL was made as, or ends like, a folder's. */
CF_EXPORT Boolean CFURLHasDirectoryPath(CFURLRef url);

CF_EXTERN_C_END

#endif
