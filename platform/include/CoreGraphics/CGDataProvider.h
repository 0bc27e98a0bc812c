/* Where the bytes of images come from. A provider's bytes do not change while it lives. */
#ifndef COREGRAPHICS_CGDATAPROVIDER_H
#define COREGRAPHICS_CGDATAPROVIDER_H

#include <CoreFoundation/CFData.h>
#include <CoreFoundation/CFURL.h>
#include <CoreGraphics/CGBase.h>

CG_EXTERN_C_BEGIN

typedef void (*CGDataProviderReleaseDataCallback)(void *info, const void *data, size_t size);

CG_EXPORT CFTypeID CGDataProviderGetTypeID(void);

/* Over size bytes of the caller's, which must stay until release is called with info, data and size; that
 * happens when the provider ends. release may be NULL.
 * Gives  a new provider; NULL if memory runs out (release is not called then). */
CG_EXPORT CGDataProviderRef CGDataProviderCreateWithData(void *info, const void *data, size_t size,
                                                         CGDataProviderReleaseDataCallback releaseData);

/* Over the bytes of data, which is retained. NULL for NULL. */
CG_EXPORT CGDataProviderRef CGDataProviderCreateWithCFData(CFDataRef data);

/* Reads the whole file now. NULL if it cannot be read, is a folder, or exceeds what one image may take. */
CG_EXPORT CGDataProviderRef CGDataProviderCreateWithURL(CFURLRef url);
CG_EXPORT CGDataProviderRef CGDataProviderCreateWithFilename(const char *path);

CG_EXPORT CGDataProviderRef CGDataProviderRetain(CGDataProviderRef provider);
CG_EXPORT void CGDataProviderRelease(CGDataProviderRef provider);

/* A copy of all its bytes. */
CG_EXPORT CFDataRef CGDataProviderCopyData(CGDataProviderRef provider);

CG_EXTERN_C_END

#endif
