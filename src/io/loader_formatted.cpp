// Loaders that name their importer: PICT, PCT and any other by its four-character code.
#include "foundation/ref.h"
#include "io/loader.h"
#include "io/loader_layout.h"
#include "io/owners.h"
#include "io/path_url.h"
#include "media/codecs/limits.h"

namespace {

constexpr CFIndex kPICTFileHeaderBytes = 512;

// Appends what the stream gives. A reading error ends it like the end of the file does: the importer judges
// what is there. False if it is more than memory or the limits allow.
bool appendStream(CFMutableDataRef data, CFReadStreamRef stream) {
  if (!CFReadStreamOpen(stream)) return true;
  const uint64_t most = CGImageGetDecodeLimits().memoryBytes;
  for (;;) {
    CFIndex length = 0;
    const UInt8 *bytes = CFReadStreamGetBuffer(stream, 0, &length);
    if (!bytes || length <= 0) return true;
    const CFIndex expected = CFDataGetLength(data) + length;
    if (static_cast<uint64_t>(expected) > most) return false;
    CFDataAppendBytes(data, bytes, length);
    if (CFDataGetLength(data) != expected) return false;
  }
}

cf::Ref<CFMutableDataRef> readFile(CFAllocatorRef allocator, CFURLRef url) {
  if (!url) return nullptr;
  cf::Ref data = cf::adopt(CFDataCreateMutable(allocator, 0));
  if (!data) return nullptr;
  const cf::Ref stream = cf::adopt(CFReadStreamCreateWithFile(allocator, url));
  if (stream && !appendStream(data.get(), stream.get())) return nullptr;
  return data;
}

drav::HandleOwner handleWith(CFDataRef data) {
  drav::HandleOwner handle;
  PtrToHand(CFDataGetBytePtr(data), handle.out(), CFDataGetLength(data));
  if (MemError() != noErr) return {};
  return handle;
}

bool loadHandle(DRAVCFImageLoaderRef loader, Handle handle, OSType subtype) {
  return OpenADefaultComponent(GraphicsImporterComponentType, subtype, &loader->importer) == noErr &&
         loader->importer && GraphicsImportSetDataHandle(loader->importer, handle) == noErr &&
         DRAVCFImageLoaderLoadFromGraphicsImporter(loader);
}

}  // namespace

DRAVCFImageLoaderRef DRAVCFCreateFormattedImageLoaderFromData(CFAllocatorRef allocator, CFDataRef data,
                                                              uint32_t subtype) {
  if (!data) return nullptr;
  // Declared first, so that it outlives the importer that reads from it.
  const drav::HandleOwner handle = handleWith(data);
  cf::Ref loader = cf::adopt(DRAVCFImageLoaderCreate(allocator));
  if (!loader || !handle || !loadHandle(loader.get(), handle.get(), subtype)) return nullptr;
  return loader.give();
}

DRAVCFImageLoaderRef DRAVCFCreateFormattedImageLoaderFromURL(CFAllocatorRef allocator, CFURLRef url,
                                                             uint32_t subtype) {
  return DRAVCFCreateFormattedImageLoaderFromData(allocator, readFile(allocator, url).get(), subtype);
}

DRAVCFImageLoaderRef DRAVCFCreateFormattedImageLoaderFromPath(CFAllocatorRef allocator, CFStringRef path,
                                                              uint32_t subtype) {
  return DRAVCFCreateFormattedImageLoaderFromURL(allocator, drav::urlForPath(path).get(), subtype);
}

// PICT data stands without the header that a PICT file begins with; the importer expects one.
DRAVCFImageLoaderRef DRAVCFCreatePICTImageLoaderFromData(CFAllocatorRef allocator, CFDataRef data) {
  if (!data) return nullptr;
  const cf::Ref file = cf::adopt(CFDataCreateMutable(allocator, 0));
  if (!file) return nullptr;
  CFDataIncreaseLength(file.get(), kPICTFileHeaderBytes);
  CFDataAppendBytes(file.get(), CFDataGetBytePtr(data), CFDataGetLength(data));
  if (CFDataGetLength(file.get()) != kPICTFileHeaderBytes + CFDataGetLength(data)) return nullptr;
  return DRAVCFCreateFormattedImageLoaderFromData(allocator, file.get(), drav::kPICTSubtype);
}

DRAVCFImageLoaderRef DRAVCFCreatePICTImageLoaderFromURL(CFAllocatorRef allocator, CFURLRef url) {
  return DRAVCFCreatePICTImageLoaderFromData(allocator, readFile(allocator, url).get());
}

DRAVCFImageLoaderRef DRAVCFCreatePICTImageLoaderFromPath(CFAllocatorRef allocator, CFStringRef path) {
  return DRAVCFCreatePICTImageLoaderFromURL(allocator, drav::urlForPath(path).get());
}

DRAVCFImageLoaderRef DRAVCFCreatePCTImageLoaderFromData(CFAllocatorRef allocator, CFDataRef data) {
  return DRAVCFCreateFormattedImageLoaderFromData(allocator, data, drav::kPCTSubtype);
}

DRAVCFImageLoaderRef DRAVCFCreatePCTImageLoaderFromURL(CFAllocatorRef allocator, CFURLRef url) {
  return DRAVCFCreatePCTImageLoaderFromData(allocator, readFile(allocator, url).get());
}

DRAVCFImageLoaderRef DRAVCFCreatePCTImageLoaderFromPath(CFAllocatorRef allocator, CFStringRef path) {
  return DRAVCFCreatePCTImageLoaderFromURL(allocator, drav::urlForPath(path).get());
}
