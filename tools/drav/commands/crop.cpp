// drav crop: a part of each image.
#include <memory>

#include "batch.h"
#include "commands/commands.h"
#include "failure.h"
#include "geometry.h"
#include "pixels.h"

namespace {

struct CropOptions {
  BatchOptions batch;
  std::string area;
};

Image cropped(Image image, const Area &wanted) {
  const Area kept = intersection(wanted, boundsOf(image.get()));
  if (kept.empty()) throw Failure("the rectangle lies outside of its " + sizeText(image.get()));
  DRAVCFImageCropToRect(image.get(), fromBottom(kept, DRAVCFImageGetHeight(image.get())));
  if (boundsOf(image.get()) != Area{0, 0, kept.width, kept.height}) throw Failure("out of memory");
  return image;
}

}  // namespace

void addCrop(CLI::App &tool, int &exitStatus) {
  CLI::App *command = tool.add_subcommand("crop", "keep a part of each image");
  const auto options = std::make_shared<CropOptions>();
  addBatchOptions(*command, options->batch);
  command
      ->add_option("--rect", options->area,
                   "what to keep, as x,y,w,h in pixels from the top left; what lies outside is left out")
      ->required();
  command->callback([options, &exitStatus] {
    const Area area = parseArea(options->area);
    exitStatus =
        runBatch(options->batch, "cropped", [area](Image image) { return cropped(std::move(image), area); });
  });
}
