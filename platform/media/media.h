/* Every media call. */
#ifndef DRAV_MEDIA_MEDIA_H
#define DRAV_MEDIA_MEDIA_H

#include "media/codecs/limits.h"
#include "media/components.h"
#include "media/graphics_export.h"
#include "media/graphics_import.h"
#include "media/handles.h"
#include "media/inspection.h"
#include "media/offscreen.h"

#endif
