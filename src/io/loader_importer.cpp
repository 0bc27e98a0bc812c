// Loading through a graphics importer: describe, draw into a buffer of ours, make an image of it.
#include <climits>
#include <cstdio>
#include <cstdlib>

#include "foundation/ref.h"
#include "foundation/sizes.h"
#include "io/loader.h"
#include "io/loader_layout.h"
#include "io/owners.h"

namespace {

constexpr ComponentResult kCorruptPicture = -3954;
constexpr int32_t kHandleBasedLocation = 2;

void __ImageBufferRelease(void *, const void *data, size_t) { std::free(const_cast<void *>(data)); }

thread_local bool reportsOnce = false;
thread_local bool hasReported = false;

void reportDamage() {
  if (reportsOnce && hasReported) return;
  hasReported = true;
  std::fprintf(stderr, "Corrupt PICT data found, cannot load image\n");
}

// The importer's description, depth included; empty, with the one message there is, if it has none.
drav::HandleOwner describe(GraphicsImportComponent importer) {
  ImageDescriptionHandle description = nullptr;
  const ComponentResult error = GraphicsImportGetImageDescription(importer, &description);
  drav::HandleOwner owner(reinterpret_cast<Handle>(description));
  if (error == noErr && description && *description) return owner;
  if (error == kCorruptPicture) reportDamage();
  return {};
}

// Fields width to bufferSize, alphaInfo and pixelFormat. False if the depth is none that can be drawn.
bool chooseLayout(DRAVCFImageLoaderRef loader, const ImageDescription &description, OSType subtype) {
  const auto layout = drav::layoutFor(description.depth, subtype);
  if (!layout) {
    std::fprintf(stderr, "Unexpected image depth encountered: %d\n", description.depth);
    return false;
  }
  loader->bitsPerComponent = 8;
  loader->bitsPerPixel = layout->bitsPerPixel;
  loader->alphaInfo = layout->alphaInfo;
  loader->pixelFormat = layout->pixelFormat;
  // A side that is negative, sign-extended, is beyond every limit, and fails like memory that ran out.
  loader->width = static_cast<size_t>(description.width);
  loader->height = static_cast<size_t>(description.height);
  const cf::Size row = cf::rowBytes(loader->width, loader->bitsPerPixel);
  const cf::Size whole = row ? cf::bitmapBytes(*row, loader->height) : std::nullopt;
  if (!whole) return false;
  loader->bytesPerRow = *row;
  loader->bufferSize = *whole;
  return true;
}

// The space of the embedded profile, into the loader. False if there is a profile that is no good.
bool takeProfile(DRAVCFImageLoaderRef loader) {
  Handle handle = nullptr;
  GraphicsImportGetColorSyncProfile(loader->importer, &handle);
  const drav::HandleOwner owner(handle);
  if (!handle) return true;
  CMProfileLocation location{};
  location.locType = kHandleBasedLocation;
  location.u.handleLoc.h = handle;
  location.u.handleLoc.size = GetHandleSize(handle);
  if (CMOpenProfile(&loader->profile, &location) != noErr) return false;
  Boolean valid = 0;
  Boolean preferredCMMNotFound = 0;
  if (CMValidateProfile(loader->profile, &valid, &preferredCMMNotFound) != noErr) {
    std::fprintf(stderr, "Cannot validate profile : Valid: %d, Preferred CMM not found : %d\n", valid,
                 preferredCMMNotFound);
    return false;
  }
  loader->colorSpace = CGColorSpaceCreateWithPlatformColorSpace(loader->profile);
  return true;
}

Rect bounds(DRAVCFImageLoaderRef loader) {
  return {0, 0, static_cast<int16_t>(loader->height), static_cast<int16_t>(loader->width)};
}

}  // namespace

drav::ReportDamageOnce::ReportDamageOnce() noexcept {
  reportsOnce = true;
  hasReported = false;
}
drav::ReportDamageOnce::~ReportDamageOnce() { reportsOnce = false; }

Boolean DRAVCFImageLoaderReadBitmapInfo(DRAVCFImageLoaderRef loader) {
  ComponentDescription component{};
  if (GetComponentInfo(loader->importer, &component, nullptr, nullptr, nullptr) != noErr) return 0;
  const drav::HandleOwner owner = describe(loader->importer);
  if (!owner) return 0;
  const auto *description = reinterpret_cast<const ImageDescription *>(*owner.get());
  if (!chooseLayout(loader, *description, component.componentSubType)) return 0;
  loader->buffer = static_cast<uint8_t *>(std::calloc(1, loader->bufferSize));
  if (!loader->buffer || !takeProfile(loader)) return 0;
  if (!loader->colorSpace) {
    loader->colorSpace = loader->pixelFormat == drav::kGrayWorld ? CGColorSpaceCreateDeviceGray()
                                                                 : DRAVCGColorSpaceCreateMainDisplay();
  }
  return 1;
}

Boolean DRAVCFImageLoaderGetBitmapData(DRAVCFImageLoaderRef loader) {
  const Rect rect = bounds(loader);
  GWorldPtr world = nullptr;
  const OSErr error =
      NewGWorldFromPtr(&world, loader->pixelFormat, &rect, nullptr, nullptr, 0,
                       reinterpret_cast<Ptr>(loader->buffer), static_cast<int32_t>(loader->bytesPerRow));
  const drav::WorldOwner owner(world);
  return error == noErr && GraphicsImportSetGWorld(loader->importer, world, nullptr) == noErr &&
         GraphicsImportDraw(loader->importer) == noErr;
}

Boolean DRAVCFImageLoaderCreateImage(DRAVCFImageLoaderRef loader) {
  const cf::Ref provider = cf::adopt(
      CGDataProviderCreateWithData(nullptr, loader->buffer, loader->bufferSize, __ImageBufferRelease));
  if (!provider) return 0;
  loader->buffer = nullptr;
  loader->cgImage =
      CGImageCreate(loader->width, loader->height, loader->bitsPerComponent, loader->bitsPerPixel,
                    loader->bytesPerRow, loader->colorSpace, static_cast<CGBitmapInfo>(loader->alphaInfo),
                    provider.get(), nullptr, true, kCGRenderingIntentDefault);
  return loader->cgImage != nullptr;
}

Boolean DRAVCFImageLoaderLoadFromGraphicsImporter(DRAVCFImageLoaderRef loader) {
  if (!loader || !loader->importer) return 0;
  if (!DRAVCFImageLoaderReadBitmapInfo(loader) || !DRAVCFImageLoaderGetBitmapData(loader)) return 0;
  CloseComponent(loader->importer);
  loader->importer = nullptr;
  return DRAVCFImageLoaderCreateImage(loader);
}

Boolean DRAVCFImageLoaderLoadImageCommon(DRAVCFImageLoaderRef loader, Handle dataReference,
                                         OSType dataReferenceType) {
  if (!loader || !dataReference) return 0;
  GetGraphicsImporterForDataRefWithFlags(dataReference, dataReferenceType, &loader->importer, 0);
  return DRAVCFImageLoaderLoadFromGraphicsImporter(loader);
}
