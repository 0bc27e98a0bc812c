/* Calls to graphics exporters. */
#ifndef DRAV_MEDIA_GRAPHICS_EXPORT_H
#define DRAV_MEDIA_GRAPHICS_EXPORT_H

#include "media/components.h"

/* The image to encode; retained until the exporter is closed. */
MEDIA_EXPORT ComponentResult GraphicsExportSetInputCGImage(GraphicsExportComponent exporter,
                                                           CGImageRef image);

/* The handle that receives the encoded bytes; borrowed until the exporter is closed. */
MEDIA_EXPORT ComponentResult GraphicsExportSetOutputHandle(GraphicsExportComponent exporter, Handle output);

/* Encodes. On success the handle has exactly the encoded bytes, on failure none.
 *
 * actualSizeWritten  receives their number; may be NULL.
 * Gives              noErr, codecErr, memFullErr, paramErr when image or handle is missing. */
MEDIA_EXPORT ComponentResult GraphicsExportDoExport(GraphicsExportComponent exporter,
                                                    uint32_t *actualSizeWritten);

#endif
