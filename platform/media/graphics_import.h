/* Calls to graphics importers, and data references that name what they read. */
#ifndef DRAV_MEDIA_GRAPHICS_IMPORT_H
#define DRAV_MEDIA_GRAPHICS_IMPORT_H

#include "media/components.h"

enum { kQTNativeDefaultPathStyle = -1, kQTPOSIXPathStyle = 0 };

/* Hands encoded bytes to an importer. The handle is borrowed until the importer is closed and must
 * not be resized. Gives  noErr, nilHandleErr, badComponentInstance. */
MEDIA_EXPORT ComponentResult GraphicsImportSetDataHandle(GraphicsImportComponent importer, Handle data);

/* Describes the image. For the built-in importers this is where the data is decoded.
 *
 * description  receives a new handle, to be given to DisposeHandle; NULL on failure.
 * Gives        noErr, or why the data cannot be read: codecBadDataErr, codecUnsupportedErr,
 *              codecTooLargeErr, pictureDataErr, memFullErr. */
MEDIA_EXPORT ComponentResult GraphicsImportGetImageDescription(GraphicsImportComponent importer,
                                                               ImageDescriptionHandle *description);

/* Gives the embedded profile.
 *
 * profile  receives a new handle on the profile's bytes, to be given to DisposeHandle; NULL when
 *          there is none (that is not an error) or on failure. */
MEDIA_EXPORT ComponentResult GraphicsImportGetColorSyncProfile(GraphicsImportComponent importer,
                                                               Handle *profile);

/* Says where to draw. The world is borrowed until the next call or until the importer is closed;
 * device is NULL. */
MEDIA_EXPORT ComponentResult GraphicsImportSetGWorld(GraphicsImportComponent importer, GWorldPtr world,
                                                     GDHandle device);

/* Draws the image with its top left pixel in the world's top left corner; what does not fit is cut off.
 * Into 32-bit worlds alpha goes first: premultiplied, except that "PCT " importers draw straight
 * pixels; opaque pixels carry 255 there. */
MEDIA_EXPORT ComponentResult GraphicsImportDraw(GraphicsImportComponent importer);

/* Opens the importer that recognises the data behind a data reference.
 *
 * dataReference  borrowed for the call; what it refers to until the importer is closed.
 * importer       receives the open importer with its data set; NULL on failure.
 * flags          0.
 * Gives          noErr, nilHandleErr, paramErr, fnfErr, cantFindHandler, memFullErr, codecTooLargeErr. */
MEDIA_EXPORT OSErr GetGraphicsImporterForDataRefWithFlags(Handle dataReference, OSType dataReferenceType,
                                                          GraphicsImportComponent *importer, long flags);

/* Make a data reference to a file, whether or not there is one.
 *
 * dataReference      receives a new handle, to be given to DisposeHandle; NULL on failure.
 * dataReferenceType  receives its type.
 * Gives              noErr, paramErr, memFullErr. */
MEDIA_EXPORT OSErr QTNewDataReferenceFromFullPathCFString(CFStringRef path, int32_t pathStyle, uint32_t flags,
                                                          Handle *dataReference, OSType *dataReferenceType);
MEDIA_EXPORT OSErr QTNewDataReferenceFromCFURL(CFURLRef url, uint32_t flags, Handle *dataReference,
                                               OSType *dataReferenceType);

#endif
