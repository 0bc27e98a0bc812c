#include "picture.h"

#include <algorithm>
#include <new>
#include <utility>

#include "blending.h"
#include "failure.h"
#include "hush.h"
#include "media/drawings.h"
#include "pixels.h"

namespace {

Area areaOf(const Rect &rect) noexcept {
  return {rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top};
}

struct Listing {
  std::vector<OpcodeFact> list;
  bool isComplete = true;

  // Called from C, which lets no exception through.
  static void add(void *self, uint32_t code, const char *name, size_t bytes) noexcept {
    Listing &listing = *static_cast<Listing *>(self);
    try {
      listing.list.push_back({code, name, bytes});
    } catch (const std::bad_alloc &) {
      listing.isComplete = false;
    }
  }
};

bool holdsDrawing(CFDataRef file) {
  const Format *format = formatForBytes(bytesOf(file));
  return format && format->holdsDrawings;
}

Image drawnAtSize(CFDataRef file, long width, long height) {
  checkSize(static_cast<double>(width), static_cast<double>(height));
  const Hush hush;
  const auto bytes = bytesOf(file);
  const auto drawn = cf::adopt(CGImageCreateDrawingAtSize(
      bytes.data(), bytes.size(), static_cast<uint32_t>(width), static_cast<uint32_t>(height)));
  if (!drawn) throw Failure(decodeFault());
  Image image = cf::adopt(DRAVCFImageCreateWithImage(nullptr, drawn.get()));
  if (!image) throw Failure("out of memory");
  return image;
}

struct Sides {
  long width, height;
};

Sides sidesOf(const TargetSize &target, const Area &natural) noexcept {
  const CGSize size = target.of(static_cast<size_t>(natural.width), static_cast<size_t>(natural.height));
  return {static_cast<long>(size.width), static_cast<long>(size.height)};
}

}  // namespace

std::optional<PictureFacts> pictureFactsOf(CFDataRef file, Opcodes opcodes) {
  if (!holdsDrawing(file)) return std::nullopt;
  const auto bytes = bytesOf(file);
  CGPictureInfo info = {};
  Listing listing;
  if (!CGImageInspectPicture(bytes.data(), bytes.size(), &info,
                             opcodes == Opcodes::listed ? Listing::add : nullptr, &listing))
    throw Failure(decodeFault());
  if (!listing.isComplete) throw std::bad_alloc();
  PictureFacts facts;
  facts.version = info.version;
  facts.isExtended = info.isExtended;
  facts.frame = areaOf(info.frame);
  facts.drawing = areaOf(info.drawing);
  facts.opcodes = info.opcodes;
  facts.list = std::move(listing.list);
  return facts;
}

// What becomes smaller is drawn at its own size and then reduced: lines of less than a pixel would vanish
// otherwise, or become too thick.
Image decodeImageAtSize(CFDataRef file, const TargetSize &target) {
  const std::optional<PictureFacts> picture = pictureFactsOf(file, Opcodes::counted);
  Image image = picture ? nullptr : decodeImage(file);
  const Area natural = picture ? picture->drawing : boundsOf(image.get());
  const Sides wanted = sidesOf(target, natural);
  if (picture)
    image = drawnAtSize(file, std::max(wanted.width, natural.width), std::max(wanted.height, natural.height));
  if (boundsOf(image.get()) == Area{0, 0, wanted.width, wanted.height}) return image;
  return resized(std::move(image), wanted.width, wanted.height);
}
