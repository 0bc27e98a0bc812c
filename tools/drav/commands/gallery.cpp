// drav gallery: what every blend mode makes of two images.
#include <filesystem>
#include <memory>

#include "commands/commands.h"
#include "contact_sheet.h"
#include "failure.h"
#include "input.h"
#include "pair.h"

namespace {

struct GalleryOptions {
  PairOptions pair;
  long cellSide = 140;
};

std::string titleOf(const std::string &name) {
  return shownName(name == kStandardStream ? name : std::filesystem::path(name).filename().string());
}

}  // namespace

void addGallery(CLI::App &tool, int &exitStatus) {
  CLI::App *command = tool.add_subcommand("gallery", "show all blend modes of two images on one sheet");
  const auto options = std::make_shared<GalleryOptions>();
  addPairOptions(*command, options->pair, "SOURCE", "image file; - is standard input", "DESTINATION",
                 "image that the source is blended into");
  command->add_option("--cell", options->cellSide, "longest side of each picture in pixels, 32 to 1024")
      ->capture_default_str()
      ->check(CLI::Range(32, 1024));
  command->callback([options, &exitStatus] {
    const SheetText text{titleOf(options->pair.first), titleOf(options->pair.second)};
    exitStatus = runPair(options->pair, [&](Image source, Image destination) {
      return makeContactSheet(std::move(source), std::move(destination), text, options->cellSide);
    });
  });
}
