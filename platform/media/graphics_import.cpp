#include "media/graphics_import.h"

#include "media/component_instance.h"

namespace {

bool isImporter(GraphicsImportComponent importer) noexcept {
  return media::isOpen(importer, GraphicsImporterComponentType);
}

ImageDescription blankDescription(const ComponentTable &table) noexcept {
  ImageDescription description{};
  description.idSize = sizeof description;
  description.cType = table.subType;
  return description;
}

}  // namespace

ComponentResult GraphicsImportSetDataHandle(GraphicsImportComponent importer, Handle data) {
  if (!isImporter(importer)) return badComponentInstance;
  if (!data) return nilHandleErr;
  if (!importer->table->setData) return badComponentSelector;
  importer->data = data;
  return importer->table->setData(importer->self, reinterpret_cast<const uint8_t *>(*data),
                                  static_cast<size_t>(GetHandleSize(data)));
}

ComponentResult GraphicsImportGetImageDescription(GraphicsImportComponent importer,
                                                  ImageDescriptionHandle *description) {
  if (!description) return paramErr;
  *description = nullptr;
  if (!isImporter(importer)) return badComponentInstance;
  if (!importer->table->getDescription) return badComponentSelector;
  ImageDescription facts = blankDescription(*importer->table);
  const ComponentResult error = importer->table->getDescription(importer->self, &facts);
  if (error != noErr) return error;
  return PtrToHand(&facts, reinterpret_cast<Handle *>(description), sizeof facts);
}

ComponentResult GraphicsImportGetColorSyncProfile(GraphicsImportComponent importer, Handle *profile) {
  if (!profile) return paramErr;
  *profile = nullptr;
  if (!isImporter(importer)) return badComponentInstance;
  if (!importer->table->getProfile) return badComponentSelector;
  return importer->table->getProfile(importer->self, profile);
}

ComponentResult GraphicsImportSetGWorld(GraphicsImportComponent importer, GWorldPtr world, GDHandle device) {
  if (!isImporter(importer)) return badComponentInstance;
  if (!world || device) return paramErr;
  importer->world = world;
  return noErr;
}

ComponentResult GraphicsImportDraw(GraphicsImportComponent importer) {
  if (!isImporter(importer)) return badComponentInstance;
  if (!importer->table->draw) return badComponentSelector;
  if (!importer->world) return paramErr;
  return importer->table->draw(importer->self, importer->world);
}
