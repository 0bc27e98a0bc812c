#include "composite/work_image.h"

#include <cstring>
#include <utility>

#include "composite/job.h"
#include "core/block.h"
#include "core/image.h"

namespace drav {

WorkImage::WorkImage(WorkImage &&other) noexcept
    : image_(std::move(other.image_)), isBorrowed_(std::exchange(other.isBorrowed_, false)) {}

WorkImage &WorkImage::operator=(WorkImage &&other) noexcept {
  std::swap(image_, other.image_);
  std::swap(isBorrowed_, other.isBorrowed_);
  return *this;
}

WorkImage::~WorkImage() {
  if (isBorrowed_ && image_) image_->buffer = nullptr;
}

WorkImage WorkImage::forReading(DRAVCFImageRef source, DRAVCFImageRef destination) noexcept {
  if (source != destination && unificationKeeps(source, destination)) {
    WorkImage work = borrow(source);
    if (work) return work;
  }
  return copyOf(source);
}

WorkImage WorkImage::copyOf(DRAVCFImageRef source) noexcept {
  WorkImage work;
  work.image_ = cf::adopt(DRAVCFImageCopy(CFGetAllocator(source), source));
  return work;
}

WorkImage WorkImage::borrow(DRAVCFImageRef source) noexcept {
  WorkImage work;
  work.image_ = cf::adopt(DRAVCFImageCreate(CFGetAllocator(source)));
  if (!work.image_) return work;
  installBuffer(work.get(), {source->buffer, source->bufferSize, source->width, source->height,
                             source->bitsPerComponent, source->bitsPerPixel, source->bytesPerRow,
                             cf::share(source->colorSpace).give(), source->alphaInfo});
  work.isBorrowed_ = true;
  return work;
}

bool WorkImage::own() noexcept {
  if (!isBorrowed_) return true;
  uint8_t *copy = allocateBytes(CFGetAllocator(get()), image_->bufferSize);
  if (!copy) return false;
  std::memcpy(copy, image_->buffer, image_->bufferSize);
  image_->buffer = copy;
  isBorrowed_ = false;
  return true;
}

}  // namespace drav
