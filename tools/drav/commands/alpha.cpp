// drav alpha: what becomes of transparency.
#include <memory>

#include "batch.h"
#include "commands/commands.h"
#include "failure.h"
#include "hush.h"
#include "pixels.h"

namespace {

Image orOutOfMemory(DRAVCFImageRef made) {
  if (!made) throw Failure("out of memory");
  return cf::adopt(made);
}

Image withAlpha(const Image &image) {
  DRAVCFImageAddAlphaChannel(image.get());
  if (!DRAVCFImageHasAlpha(image.get())) throw Failure("out of memory");
  return image;
}

Image withoutAlpha(const Image &image) {
  if (!DRAVCFImageHasAlpha(image.get())) return image;
  const Hush hush;
  const Image opaque = orOutOfMemory(DRAVCFImageCopyOpaqueImage(nullptr, image.get()));
  // What is left of the alpha is a mark for the library's eyes; a file without alpha has no place for it.
  return relabelled(opaque.get(), kCGImageAlphaNoneSkipFirst);
}

Image alphaOf(const Image &image) { return orOutOfMemory(DRAVCFImageCopyAlphaChannel(nullptr, image.get())); }

Image overBlack(const Image &image) {
  return orOutOfMemory(DRAVCFImageCopyPremultipliedOpaqueImage(nullptr, image.get()));
}

struct Verb {
  const char *name;
  const char *help;
  const char *done;
  Image (*change)(const Image &);
};

constexpr Verb kVerbs[] = {
    {"add", "give images without alpha an opaque one", "given alpha", withAlpha},
    {"remove", "drop alpha and show the colours that it hid", "rid of alpha", withoutAlpha},
    {"extract", "make a grey image of the alpha", "written as alpha alone", alphaOf},
    {"opaque", "make every pixel opaque, over black", "made opaque", overBlack},
};

}  // namespace

void addAlpha(CLI::App &tool, int &exitStatus) {
  CLI::App *command = tool.add_subcommand("alpha", "add, remove, extract or fill alpha");
  command->require_subcommand(1);
  command->fallthrough();
  for (const Verb &verb : kVerbs) {
    CLI::App *sub = command->add_subcommand(verb.name, verb.help);
    const auto options = std::make_shared<BatchOptions>();
    addBatchOptions(*sub, *options);
    sub->callback([options, verb, &exitStatus] { exitStatus = runBatch(*options, verb.done, verb.change); });
  }
}
