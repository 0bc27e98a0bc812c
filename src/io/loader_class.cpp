// The image loader class: registration and callbacks.
#include <cstdlib>

#include "core/runtime_class.h"
#include "foundation/ref.h"
#include "io/loader.h"

namespace {

Boolean gDRAVCFImageLoaderInited = 0;
CFTypeID _kDRAVCFImageLoaderID = 0;
CFRuntimeClass _kDRAVCFImageLoaderClass;

void DRAVCFImageLoaderInit(CFTypeRef object) { drav::cleared<__DRAVCFImageLoader>(object); }

void DRAVCFImageLoaderFinalize(CFTypeRef object) {
  auto *loader = cf::mutableIn<__DRAVCFImageLoader>(object);
  CGImageRelease(loader->cgImage);
  if (loader->importer) CloseComponent(loader->importer);
  CGColorSpaceRelease(loader->colorSpace);
  std::free(loader->buffer);
  if (loader->profile) CMCloseProfile(loader->profile);
}

// The platform image's own description, which serves as a format.
CFStringRef DRAVCFImageLoaderCopyDebugDesc(CFTypeRef object) {
  CGImageRef image = cf::objectIn<__DRAVCFImageLoader>(object).cgImage;
  const cf::Ref description = cf::adopt(image ? CFCopyDescription(image) : nullptr);
  return CFStringCreateWithFormatNoArguments(CFGetAllocator(object), nullptr,
                                             description ? description.get() : CFSTR("(NULL)"));
}

void DRAVCFImageLoaderClassInitialize() {
  _kDRAVCFImageLoaderClass = {0,
                              "DRAVCFImageLoader",
                              DRAVCFImageLoaderInit,
                              nullptr,
                              DRAVCFImageLoaderFinalize,
                              nullptr,
                              nullptr,
                              nullptr,
                              DRAVCFImageLoaderCopyDebugDesc};
  _kDRAVCFImageLoaderID = _CFRuntimeRegisterClass(&_kDRAVCFImageLoaderClass);
}

}  // namespace

DRAVCFImageLoaderRef DRAVCFImageLoaderCreate(CFAllocatorRef allocator) {
  return drav::createInstance<__DRAVCFImageLoader>(allocator, gDRAVCFImageLoaderInited,
                                                   DRAVCFImageLoaderClassInitialize, _kDRAVCFImageLoaderID);
}

CFTypeID DRAVCFImageLoaderGetTypeID(void) { return _kDRAVCFImageLoaderID; }

CGImageRef DRAVCFImageLoaderCopyImage(DRAVCFImageLoaderRef loader) {
  return loader ? CGImageRetain(loader->cgImage) : nullptr;
}
