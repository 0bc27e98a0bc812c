// drav mask: the grey of one image becomes the alpha of another.
#include <memory>

#include "commands/commands.h"
#include "failure.h"
#include "hush.h"
#include "pair.h"
#include "pixels.h"

namespace {

struct MaskOptions {
  PairOptions pair;
  bool premultiplied = false;
};

Image masked(const Image &image, const Image &mask, bool premultiplied) {
  if (boundsOf(image.get()) != boundsOf(mask.get()))
    throw Failure("has " + sizeText(image.get()) + ", its mask " + sizeText(mask.get()));
  const Hush hush;
  Image made = cf::adopt(DRAVCFImageCreateWithImageAndMask(nullptr, image.get(), mask.get(), premultiplied));
  if (!made) throw Failure("out of memory");
  return made;
}

}  // namespace

void addMask(CLI::App &tool, int &exitStatus) {
  CLI::App *command = tool.add_subcommand("mask", "give an image the grey of another as its alpha");
  const auto options = std::make_shared<MaskOptions>();
  addPairOptions(*command, options->pair, "IMAGE", "image file; - is standard input", "MASK",
                 "image of the same size: white keeps, black clears");
  command->add_flag("--premultiplied", options->premultiplied,
                    "the image's colours are already multiplied by the mask");
  command->callback([options, &exitStatus] {
    exitStatus = runPair(options->pair, [options](const Image &image, const Image &mask) {
      return masked(image, mask, options->premultiplied);
    });
  });
}
