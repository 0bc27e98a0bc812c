// The image exporter class: registration and constructors.
#include "core/runtime_class.h"
#include "io/exporter.h"

namespace {

Boolean gDRAVCFImageExporterInited = 0;
CFTypeID _kDRAVCFImageExporterID = 0;
CFRuntimeClass _kDRAVCFImageExporterClass;

void DRAVCFImageExporterInit(CFTypeRef object) { drav::cleared<__DRAVCFImageExporter>(object); }

void DRAVCFImageExporterClassInitialize() {
  _kDRAVCFImageExporterClass = {
      0,      "DRAVCFImageExporter", DRAVCFImageExporterInit, nullptr, nullptr, nullptr, nullptr, nullptr,
      nullptr};
  _kDRAVCFImageExporterID = _CFRuntimeRegisterClass(&_kDRAVCFImageExporterClass);
}

DRAVCFImageExporterRef createFor(CFAllocatorRef allocator, OSType exportType) {
  DRAVCFImageExporterRef exporter = DRAVCFImageExporterCreate(allocator);
  if (exporter) exporter->exportType = exportType;
  return exporter;
}

}  // namespace

DRAVCFImageExporterRef DRAVCFImageExporterCreate(CFAllocatorRef allocator) {
  return drav::createInstance<__DRAVCFImageExporter>(
      allocator, gDRAVCFImageExporterInited, DRAVCFImageExporterClassInitialize, _kDRAVCFImageExporterID);
}

DRAVCFImageExporterRef DRAVCFImageExporterCreateJPEG(CFAllocatorRef allocator) {
  return createFor(allocator, MEDIA_CODE('J', 'P', 'E', 'G'));
}

DRAVCFImageExporterRef DRAVCFImageExporterCreatePICT(CFAllocatorRef allocator) {
  return createFor(allocator, MEDIA_CODE('P', 'I', 'C', 'T'));
}

DRAVCFImageExporterRef DRAVCFImageExporterCreatePCT(CFAllocatorRef allocator) {
  return createFor(allocator, MEDIA_CODE('P', 'C', 'T', ' '));
}

DRAVCFImageExporterRef DRAVCFImageExporterCreatePNG(CFAllocatorRef allocator) {
  return createFor(allocator, MEDIA_CODE('P', 'N', 'G', 'f'));
}

DRAVCFImageExporterRef DRAVCFImageExporterCreateTIFF(CFAllocatorRef allocator) {
  return createFor(allocator, MEDIA_CODE('T', 'I', 'F', 'F'));
}
