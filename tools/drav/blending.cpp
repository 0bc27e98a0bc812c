#include "blending.h"

#include "failure.h"

namespace {

// A grey that has no profile means the same in every image.
bool isPlainGray(DRAVCFImageRef image) {
  constexpr int kDeviceGray = 0;
  CGColorSpaceRef space = DRAVCFImageGetColorSpace(image);
  return space && CGColorSpaceGetType(space) == kDeviceGray && !DRAVCFImageHasAlpha(image);
}

Area movedBy(Area area, long x, long y) noexcept {
  area.x += x;
  area.y += y;
  return area;
}

}  // namespace

Image forBlending(Image image) {
  if (isPlainGray(image.get())) return asRead(std::move(image));
  requireBuffer(image.get());
  return image;
}

Image partOf(DRAVCFImageRef image, const Area &part) {
  Image copy = cf::adopt(DRAVCFImageCreateCopy(nullptr, image));
  if (!copy) throw Failure("out of memory");
  DRAVCFImageCropToRect(copy.get(), fromBottom(part, DRAVCFImageGetHeight(image)));
  if (boundsOf(copy.get()) != Area{0, 0, part.width, part.height}) throw Failure("out of memory");
  return copy;
}

Image resized(Image image, long width, long height) {
  checkSize(static_cast<double>(width), static_cast<double>(height));
  const Area wanted{0, 0, width, height};
  DRAVCFImageScaleToSize(image.get(), fromTop(wanted).size);
  if (boundsOf(image.get()) != wanted) throw Failure("out of memory");
  return image;
}

// The library fits the source to what is left of the destination's rectangle. Rectangles of one size, cut by
// us, are blended pixel by pixel.
bool blendAt(DRAVCFImageRef source, DRAVCFImageRef destination, const Place &at, DRAVCFBlendMode mode) {
  const Area reached = intersection(movedBy(boundsOf(source), at.x, at.y), boundsOf(destination));
  if (reached.empty()) return false;
  const CGRect from = fromTop(movedBy(reached, -at.x, -at.y)), to = fromTop(reached);
  DRAVCFImageComposite(source, destination, &from, &to, 1, mode);
  // It leaves a platform image of before in place.
  DRAVCFImageInvalidateImage(destination);
  return true;
}

Image blankImage(const Area &size, bool isColor) {
  checkSize(static_cast<double>(size.width), static_cast<double>(size.height));
  Image made = cf::adopt(DRAVCFImageCreateWithSize(nullptr, fromTop(size).size, isColor));
  if (!made) throw Failure("out of memory");
  return made;
}
