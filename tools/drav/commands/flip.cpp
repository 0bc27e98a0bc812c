// drav flip: top and bottom exchanged.
#include <memory>

#include "batch.h"
#include "commands/commands.h"
#include "pixels.h"

namespace {

Image flipped(Image image) {
  Image held = asRead(std::move(image));
  DRAVCFImageFlipVertically(held.get());
  return held;
}

}  // namespace

void addFlip(CLI::App &tool, int &exitStatus) {
  CLI::App *command = tool.add_subcommand("flip", "exchange top and bottom");
  const auto options = std::make_shared<BatchOptions>();
  addBatchOptions(*command, *options);
  command->callback([options, &exitStatus] { exitStatus = runBatch(*options, "flipped", flipped); });
}
