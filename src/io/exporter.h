// The image exporter record, and the steps of an export.
#pragma once

#include <CoreFoundation/CFRuntime.h>
#include <DravKit/DravKit.h>

#include "media/graphics_export.h"

struct __DRAVCFImageExporter {
  CFRuntimeBase base;
  OSType exportType;  // the encoder, by its four-character code
};

DRAVCFImageExporterRef DRAVCFImageExporterCreate(CFAllocatorRef allocator);

// The encoded bytes in a handle for the caller to dispose of; NULL on failure.
Handle DRAVCFImageExporterCreateHandle(DRAVCFImageExporterRef exporter, CGImageRef image);
Handle _DRAVCFImageExporterCreatePCTHandle(DRAVCFImageExporterRef exporter, CGImageRef image);

// Writes a file, waiting for the stream for about five seconds at most. NULL bytes write nothing.
void DRAVCFImageExporterWrite(CFURLRef url, const uint8_t *bytes, CFIndex length);

// A platform image for the caller to release; NULL on failure. With unpremultiply its colours are divided
// by their alpha, while its alpha info goes on saying premultiplied: PICT encoders take bytes as they are.
CGImageRef _DRAVCFImageCreateExportableImage(DRAVCFImageRef image, Boolean unpremultiply);
