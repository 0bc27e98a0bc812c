// An open component, as the calls see it.
#pragma once

#include "foundation/ref.h"
#include "media/components.h"

struct ComponentInstanceRecord {
  const ComponentTable *table = nullptr;
  void *self = nullptr;  // what the table's open stored

  // Importers
  Handle data = nullptr;            // borrowed
  Handle ownedData = nullptr;       // bytes read for a data reference; disposed of on closing
  OffscreenWorld *world = nullptr;  // borrowed

  // Exporters
  cf::Ref<CGImageRef> image;
  Handle output = nullptr;  // borrowed
};

namespace media {

// The component that answers to type and subtype; null for none.
const ComponentTable *findComponent(OSType type, OSType subType) noexcept;

// The importer that is surest that data starting with these bytes is its own; null for none.
const ComponentTable *findImporterFor(const uint8_t *head, size_t size) noexcept;

// Opens a component found before. NULL in *instance on failure.
OSErr openComponent(const ComponentTable *table, ComponentInstance *instance) noexcept;

// Whether this is an open component of that type.
bool isOpen(ComponentInstance instance, OSType type) noexcept;

}  // namespace media
