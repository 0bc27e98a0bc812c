// Exporting into a file.
#include <unistd.h>

#include "foundation/ref.h"
#include "io/exporter.h"
#include "io/owners.h"
#include "io/path_url.h"
#include "io/write_poll.h"

void DRAVCFImageExporterWrite(CFURLRef url, const uint8_t *bytes, CFIndex length) {
  if (!bytes) return;
  const cf::Ref stream = cf::adopt(CFWriteStreamCreateWithFile(kCFAllocatorDefault, url));
  if (!stream || !CFWriteStreamOpen(stream.get())) return;
  const CFStreamStatus opened = CFWriteStreamGetStatus(stream.get());
  if (opened == kCFStreamStatusOpening || opened == kCFStreamStatusOpen) {
    CFWriteStreamWrite(stream.get(), bytes, length);
  }
  const auto status =
      drav::waitWhileWriting([&] { return CFWriteStreamGetStatus(stream.get()); }, [] { usleep(1000); });
  if (status && *status != kCFStreamStatusError) CFWriteStreamClose(stream.get());
}

void DRAVCFImageExportToURL(DRAVCFImageExporterRef exporter, CGImageRef image, CFURLRef url) {
  if (!url) return;
  const drav::HandleOwner handle(DRAVCFImageExporterCreateHandle(exporter, image));
  if (!handle) return;
  HLock(handle.get());
  DRAVCFImageExporterWrite(url, reinterpret_cast<const uint8_t *>(*handle.get()),
                           GetHandleSize(handle.get()));
  HUnlock(handle.get());
}

void DRAVCFImageExportToFile(DRAVCFImageExporterRef exporter, CGImageRef image, CFStringRef path) {
  DRAVCFImageExportToURL(exporter, image, drav::urlForPath(path).get());
}
