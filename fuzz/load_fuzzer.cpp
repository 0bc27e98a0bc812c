// The whole way from bytes of an unknown format to pixels in an offscreen world.

#include <cstdint>
#include <vector>

#include "codec_fuzzing.h"
#include "media/media.h"

namespace {

void drawAll(GraphicsImportComponent importer, const ImageDescription &description) {
  const bool grey = description.depth == 8;
  const size_t rowBytes = static_cast<size_t>(description.width) * (grey ? 1 : 4);
  std::vector<char> pixels(rowBytes * static_cast<size_t>(description.height));
  const Rect bounds{0, 0, description.height, description.width};
  GWorldPtr world = nullptr;
  if (NewGWorldFromPtr(&world, grey ? k8IndexedGrayPixelFormat : k32ARGBPixelFormat, &bounds, nullptr,
                       nullptr, 0, pixels.data(), static_cast<int32_t>(rowBytes)) == noErr &&
      GraphicsImportSetGWorld(importer, world, nullptr) == noErr) {
    GraphicsImportDraw(importer);
  }
  DisposeGWorld(world);
}

void load(Handle reference) {
  GraphicsImportComponent importer = nullptr;
  if (GetGraphicsImporterForDataRefWithFlags(reference, HandleDataHandlerSubType, &importer, 0) != noErr)
    return;
  ImageDescriptionHandle description = nullptr;
  if (GraphicsImportGetImageDescription(importer, &description) == noErr) {
    Handle profile = nullptr;
    GraphicsImportGetColorSyncProfile(importer, &profile);
    if (profile) DisposeHandle(profile);
    drawAll(importer, **description);
    DisposeHandle(reinterpret_cast<Handle>(description));
  }
  CloseComponent(importer);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t size) {
  const CGImageDecodeLimits limits = fuzzingLimits();
  CGImageSetDecodeLimits(&limits);
  Handle data = nullptr, reference = nullptr;
  PtrToHand(bytes, &data, static_cast<Size>(size));
  PtrToHand(&data, &reference, sizeof data);
  load(reference);
  DisposeHandle(reference);
  DisposeHandle(data);
  return 0;
}
