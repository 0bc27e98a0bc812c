// drav invert: the negative of each image.
#include <memory>

#include "batch.h"
#include "commands/commands.h"
#include "pixels.h"

namespace {

struct InvertOptions {
  BatchOptions batch;
  bool opaque = false;
};

// The colours are those over black where the image has alpha.
Image inverted(Image image) {
  Image held = DRAVCFImageHasAlpha(image.get()) ? std::move(image) : asRead(std::move(image));
  requireBuffer(held.get());
  DRAVCFImageInvert(held.get());
  return held;
}

void complementFirstBytes(DRAVCFImageRef image) {
  const Pixels pixels = pixelsOf(image);
  for (size_t y = 0; y < pixels.height; ++y) {
    uint8_t *row = pixels.row(y);
    for (size_t x = 0; x < pixels.width; ++x) row[4 * x] = static_cast<uint8_t>(~row[4 * x]);
  }
  DRAVCFImageInvalidateImage(image);
}

// The library makes opaque what it inverts. Declared to be without alpha every byte is complemented, and
// complementing the alpha once more restores it.
Image invertedBesideAlpha(Image image) {
  if (!DRAVCFImageHasAlpha(image.get())) return inverted(std::move(image));
  const Image held = asRead(std::move(image));
  const Image negative = relabelled(held.get(), kCGImageAlphaNoneSkipFirst);
  DRAVCFImageInvert(negative.get());
  complementFirstBytes(negative.get());
  return relabelled(negative.get(), kCGImageAlphaFirst);
}

}  // namespace

void addInvert(CLI::App &tool, int &exitStatus) {
  CLI::App *command = tool.add_subcommand("invert", "make the negative of each image");
  const auto options = std::make_shared<InvertOptions>();
  addBatchOptions(*command, options->batch);
  command->add_flag("--opaque", options->opaque,
                    "invert the image over black, without transparency; otherwise alpha stays as it is");
  command->callback([options, &exitStatus] {
    exitStatus = runBatch(options->batch, "inverted", options->opaque ? inverted : invertedBesideAlpha);
  });
}
