// drav scale: each image at another size.
#include <memory>

#include "batch.h"
#include "commands/commands.h"
#include "picture.h"

namespace {

struct ScaleOptions {
  BatchOptions batch;
  std::string size;
};

}  // namespace

void addScale(CLI::App &tool, int &exitStatus) {
  CLI::App *command = tool.add_subcommand("scale", "make images larger or smaller");
  const auto options = std::make_shared<ScaleOptions>();
  addBatchOptions(*command, options->batch);
  command
      ->add_option("--size", options->size,
                   "the new size, as 640x480 in pixels or as 50%; drawings that grow are drawn anew")
      ->required();
  command->callback([options, &exitStatus] {
    const TargetSize size(options->size);
    exitStatus = runBatch(options->batch, "scaled", unchanged,
                          [size](CFDataRef file) { return decodeImageAtSize(file, size); });
  });
}
