// drav convert: the same pixels in another file format.
#include <memory>

#include "batch.h"
#include "commands/commands.h"

void addConvert(CLI::App &tool, int &exitStatus) {
  CLI::App *command = tool.add_subcommand("convert", "write images in another format");
  const auto options = std::make_shared<BatchOptions>();
  addBatchOptions(*command, *options);
  command->callback([options, &exitStatus] {
    exitStatus = runBatch(*options, "converted", [](Image image) { return image; });
  });
}
