// drav scale: each image at another size.
#include <memory>

#include "batch.h"
#include "commands/commands.h"
#include "failure.h"
#include "geometry.h"
#include "pixels.h"

namespace {

struct ScaleOptions {
  BatchOptions batch;
  std::string size;
};

Image scaled(Image image, const TargetSize &target) {
  const CGSize size = target.of(DRAVCFImageGetWidth(image.get()), DRAVCFImageGetHeight(image.get()));
  checkSize(size.width, size.height);
  DRAVCFImageScaleToSize(image.get(), size);
  const Area reached = boundsOf(image.get());
  if (CGFloat(reached.width) != size.width || CGFloat(reached.height) != size.height)
    throw Failure("out of memory");
  return image;
}

}  // namespace

void addScale(CLI::App &tool, int &exitStatus) {
  CLI::App *command = tool.add_subcommand("scale", "make images larger or smaller");
  const auto options = std::make_shared<ScaleOptions>();
  addBatchOptions(*command, options->batch);
  command->add_option("--size", options->size, "the new size, as 640x480 in pixels or as 50%")->required();
  command->callback([options, &exitStatus] {
    const TargetSize size(options->size);
    exitStatus =
        runBatch(options->batch, "scaled", [size](Image image) { return scaled(std::move(image), size); });
  });
}
