/* The registry of components: graphics importers (type "grip") and graphics exporters ("grex"),
 * each with a subtype that names its format and a table of functions. */
#ifndef DRAV_MEDIA_COMPONENTS_H
#define DRAV_MEDIA_COMPONENTS_H

#include <CoreGraphics/CoreGraphics.h>

#include "media/handles.h"
#include "media/offscreen.h"

enum {
  GraphicsImporterComponentType = MEDIA_CODE('g', 'r', 'i', 'p'),
  GraphicsExporterComponentType = MEDIA_CODE('g', 'r', 'e', 'x'),
  HandleDataHandlerSubType = MEDIA_CODE('h', 'n', 'd', 'l') /* a data reference to a handle */
};

typedef struct ComponentInstanceRecord *ComponentInstance;
typedef struct ComponentInstanceRecord *Component; /* an instance stands for its component, too */
typedef ComponentInstance GraphicsImportComponent;
typedef ComponentInstance GraphicsExportComponent;

typedef struct ComponentDescription {
  OSType componentType;
  OSType componentSubType;
  OSType componentManufacturer; /* 0 */
  uint32_t componentFlags;      /* 0 */
  uint32_t componentFlagsMask;  /* 0 */
} ComponentDescription;

typedef int32_t Fixed; /* 16.16 */

/* What an importer knows about its image. */
typedef struct ImageDescription {
  int32_t idSize; /* bytes of this record */
  OSType cType;   /* the importer's subtype */
  int16_t width;  /* pixels */
  int16_t height;
  Fixed hRes; /* dots per inch; 0 when the file does not say */
  Fixed vRes;
  int16_t depth; /* 40 grey, 32 with alpha, 24 colour, 8 grey (or, for pictures, indexed) */
} ImageDescription;

typedef ImageDescription *ImageDescriptionPtr;
typedef ImageDescriptionPtr *ImageDescriptionHandle;

/* Opens the component of that type and subtype; of several the one registered last.
 *
 * instance  receives the open component, to be given to CloseComponent; NULL on failure.
 * Gives     noErr, paramErr, cantFindHandler or memFullErr. */
MEDIA_EXPORT OSErr OpenADefaultComponent(OSType type, OSType subType, ComponentInstance *instance);

/* Closes an open component. What it was given (handles, images, worlds) may be gone by then. */
MEDIA_EXPORT OSErr CloseComponent(ComponentInstance instance);

/* Tells type and subtype of a component; an open instance may be passed as its component.
 * name, info, icon  NULL: nothing is stored there. */
MEDIA_EXPORT OSErr GetComponentInfo(Component component, ComponentDescription *description, Handle name,
                                    Handle info, Handle icon);

/* A component as its author hands it in. Functions that are NULL answer badComponentSelector,
 * except open and close, which are then skipped. `self` is what open stored (NULL without open). */
typedef struct ComponentTable {
  OSType type;
  OSType subType;
  void *context; /* handed to validate and open */

  OSErr (*open)(const struct ComponentTable *table, void **self);
  void (*close)(void *self);

  /* Importers. The bytes stay in place until the component is closed. */
  int (*validate)(const struct ComponentTable *table, const uint8_t *head,
                  size_t size); /* 0: not mine; highest wins */
  ComponentResult (*setData)(void *self, const uint8_t *bytes, size_t size);
  ComponentResult (*getDescription)(
      void *self, ImageDescription *description);             /* all fields preset to 0 but idSize, cType */
  ComponentResult (*getProfile)(void *self, Handle *profile); /* NULL in *profile: none */
  ComponentResult (*draw)(void *self, const OffscreenWorld *world);

  /* Exporters. `encode` resizes the handle to what it writes. */
  ComponentResult (*encode)(void *self, CGImageRef image, Handle output);
} ComponentTable;

/* Adds a component, in front of all that are there. The table is borrowed until it is taken out.
 * Gives  noErr, paramErr or memFullErr. */
MEDIA_EXPORT OSErr RegisterComponentTable(const ComponentTable *table);

/* Takes a component out; no instance of it may be open. Gives  noErr or cantFindHandler. */
MEDIA_EXPORT OSErr UnregisterComponentTable(const ComponentTable *table);

#endif
