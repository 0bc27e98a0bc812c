// drav gray: images without colour.
#include <memory>

#include "batch.h"
#include "commands/commands.h"
#include "failure.h"
#include "pixels.h"

namespace {

struct GrayOptions {
  BatchOptions batch;
  bool keepFormat = false;
};

Image converted(Image image) {
  DRAVCFImageConvertToGrayscale(image.get());
  if (DRAVCFImageIsColor(image.get())) throw Failure("out of memory");
  return image;
}

Image drained(Image image) {
  Image held = asRead(std::move(image));
  DRAVCFImageMakeGrayscale(held.get());
  return held;
}

}  // namespace

void addGray(CLI::App &tool, int &exitStatus) {
  CLI::App *command = tool.add_subcommand("gray", "make images grey");
  const auto options = std::make_shared<GrayOptions>();
  addBatchOptions(*command, options->batch);
  command->add_flag("--keep-format", options->keepFormat,
                    "keep a colour image, and its alpha, with the mean of red, green and blue as its grey; "
                    "otherwise one byte a pixel, weighted for the eye, without alpha");
  command->callback([options, &exitStatus] {
    exitStatus = runBatch(options->batch, "made grey", options->keepFormat ? drained : converted);
  });
}
