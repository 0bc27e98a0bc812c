// Exporting into a file.
#include <unistd.h>

#include "foundation/ref.h"
#include "io/exporter.h"
#include "io/owners.h"
#include "io/path_url.h"
#include "io/write_poll.h"

namespace {

struct FileStream {
  CFWriteStreamRef stream;

  bool open() const { return CFWriteStreamOpen(stream); }
  CFStreamStatus status() const { return CFWriteStreamGetStatus(stream); }
  void write(const uint8_t *bytes, CFIndex length) const { CFWriteStreamWrite(stream, bytes, length); }
  static void sleep() { usleep(1000); }
  void close() const { CFWriteStreamClose(stream); }
};

}  // namespace

void DRAVCFImageExporterWrite(CFURLRef url, const uint8_t *bytes, CFIndex length) {
  if (!bytes) return;
  const cf::Ref stream = cf::adopt(CFWriteStreamCreateWithFile(kCFAllocatorDefault, url));
  if (!stream) return;
  FileStream file{stream.get()};
  drav::writeThrough(file, bytes, length);
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
