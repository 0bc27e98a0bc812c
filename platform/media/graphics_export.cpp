#include "media/graphics_export.h"

#include "media/component_instance.h"

namespace {

bool isExporter(GraphicsExportComponent exporter) noexcept {
  return media::isOpen(exporter, GraphicsExporterComponentType);
}

}  // namespace

ComponentResult GraphicsExportSetInputCGImage(GraphicsExportComponent exporter, CGImageRef image) {
  if (!isExporter(exporter)) return badComponentInstance;
  if (!image) return paramErr;
  exporter->image = cf::share(image);
  return noErr;
}

ComponentResult GraphicsExportSetOutputHandle(GraphicsExportComponent exporter, Handle output) {
  if (!isExporter(exporter)) return badComponentInstance;
  if (!output) return nilHandleErr;
  exporter->output = output;
  return noErr;
}

ComponentResult GraphicsExportDoExport(GraphicsExportComponent exporter, uint32_t *actualSizeWritten) {
  if (actualSizeWritten) *actualSizeWritten = 0;
  if (!isExporter(exporter)) return badComponentInstance;
  if (!exporter->table->encode) return badComponentSelector;
  if (!exporter->image || !exporter->output) return paramErr;
  const ComponentResult error =
      exporter->table->encode(exporter->self, exporter->image.get(), exporter->output);
  if (error != noErr) {
    SetHandleSize(exporter->output, 0);
    return error;
  }
  if (actualSizeWritten) *actualSizeWritten = static_cast<uint32_t>(GetHandleSize(exporter->output));
  return noErr;
}
