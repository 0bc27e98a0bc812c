#include "media/offscreen.h"

#include <new>

namespace {

bool holdsRow(uint32_t pixelFormat, int32_t width, int32_t rowBytes) noexcept {
  const int64_t pixelBytes = pixelFormat == k32ARGBPixelFormat ? 4 : 1;
  return width * pixelBytes <= rowBytes;
}

bool isUsable(uint32_t pixelFormat, const Rect *bounds, Ptr buffer, int32_t rowBytes) noexcept {
  if (pixelFormat != k32ARGBPixelFormat && pixelFormat != k8IndexedGrayPixelFormat) return false;
  if (!bounds || !buffer) return false;
  const int32_t width = bounds->right - bounds->left;
  return width > 0 && bounds->bottom > bounds->top && holdsRow(pixelFormat, width, rowBytes);
}

}  // namespace

OSErr NewGWorldFromPtr(GWorldPtr *world, uint32_t pixelFormat, const Rect *bounds, CTabHandle colorTable,
                       GDHandle device, uint32_t flags, Ptr buffer, int32_t rowBytes) {
  if (!world) return paramErr;
  *world = nullptr;
  if (colorTable || device || flags || !isUsable(pixelFormat, bounds, buffer, rowBytes)) return paramErr;
  *world = new (std::nothrow) OffscreenWorld{pixelFormat, *bounds, reinterpret_cast<uint8_t *>(buffer),
                                             static_cast<size_t>(rowBytes)};
  return *world ? noErr : memFullErr;
}

void DisposeGWorld(GWorldPtr world) { delete world; }
