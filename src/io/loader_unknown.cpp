// Loaders that let the bytes choose the importer.
#include "foundation/ref.h"
#include "io/loader.h"
#include "io/owners.h"

namespace {

DRAVCFImageLoaderRef load(CFAllocatorRef allocator, Handle dataReference, OSType dataReferenceType) {
  cf::Ref loader = cf::adopt(DRAVCFImageLoaderCreate(allocator));
  if (!DRAVCFImageLoaderLoadImageCommon(loader.get(), dataReference, dataReferenceType)) return nullptr;
  return loader.give();
}

}  // namespace

DRAVCFImageLoaderRef DRAVCFCreateUnknownImageLoaderFromPath(CFAllocatorRef allocator, CFStringRef path) {
  drav::HandleOwner reference;
  OSType type = 0;
  if (path) QTNewDataReferenceFromFullPathCFString(path, kQTPOSIXPathStyle, 0, reference.out(), &type);
  return load(allocator, reference.get(), type);
}

DRAVCFImageLoaderRef DRAVCFCreateUnknownImageLoaderFromURL(CFAllocatorRef allocator, CFURLRef url) {
  drav::HandleOwner reference;
  OSType type = 0;
  if (url) QTNewDataReferenceFromCFURL(url, 0, reference.out(), &type);
  return load(allocator, reference.get(), type);
}

// The reference to a handle is a second handle that holds the first.
DRAVCFImageLoaderRef DRAVCFCreateUnknownImageLoaderFromData(CFAllocatorRef allocator, CFDataRef data) {
  if (!data) return nullptr;
  drav::HandleOwner bytes;
  PtrToHand(CFDataGetBytePtr(data), bytes.out(), CFDataGetLength(data));
  if (!bytes) return nullptr;
  drav::HandleOwner reference;
  PtrToHand(bytes.out(), reference.out(), sizeof(Handle));
  return load(allocator, reference.get(), HandleDataHandlerSubType);
}
