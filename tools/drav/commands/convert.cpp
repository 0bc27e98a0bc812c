// drav convert: the same image in another file format.
#include <memory>

#include "batch.h"
#include "commands/commands.h"
#include "picture.h"

namespace {

struct ConvertOptions {
  BatchOptions batch;
  std::string scale;  // empty: as it is
};

Decode decoderFor(const ConvertOptions &options) {
  if (options.scale.empty()) return decodeImage;
  return [size = TargetSize(options.scale)](CFDataRef file) { return decodeImageAtSize(file, size); };
}

}  // namespace

void addConvert(CLI::App &tool, int &exitStatus) {
  CLI::App *command = tool.add_subcommand("convert", "write images in another format");
  const auto options = std::make_shared<ConvertOptions>();
  addBatchOptions(*command, options->batch);
  command->add_option(
      "--scale", options->scale,
      "another size, as 640x480 in pixels or as 200%; drawings (PICT) that grow are drawn anew, as fine as "
      "the pixels then are");
  command->callback([options, &exitStatus] {
    const Decode decode = decoderFor(*options);
    exitStatus = runBatch(options->batch, "converted", unchanged, decode);
  });
}
