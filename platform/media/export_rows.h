// An image's rows in the form that an encoder takes.
#pragma once

#include <memory>

#include "foundation/ref.h"
#include "graphics/image_rows.h"
#include "media/codecs/codec.h"

namespace media {

class ExportRows {
 public:
  // Colours stay in the image's own space where that is grey or RGB with a profile or of the device, and
  // are converted to the display's otherwise. Null when memory runs out or the image cannot be read.
  static std::unique_ptr<ExportRows> make(CGImageRef image, codecs::AlphaSupport alphaSupport);

  // Borrows from this object.
  codecs::EncodeSource source() noexcept;

 private:
  bool copyRow(uint32_t y, uint8_t *out) noexcept;

  uint32_t width_ = 0;
  uint32_t height_ = 0;
  codecs::RowLayout layout_ = codecs::RowLayout::rgbx;
  cg::RowForm form_ = cg::RowForm::rgbaStraight;
  codecs::Resolution resolution_;
  cf::Ref<CFDataRef> profile_;
  std::unique_ptr<cg::RowReader> reader_;
  bool onWhite_ = false;                      // composed over white
  std::unique_ptr<uint8_t[]> premultiplied_;  // one row, when the image is read premultiplied
};

}  // namespace media
