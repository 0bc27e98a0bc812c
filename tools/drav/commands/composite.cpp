// drav composite: one image blended into another.
#include <memory>
#include <optional>

#include "blend_modes.h"
#include "blending.h"
#include "commands/commands.h"
#include "failure.h"
#include "pair.h"

namespace {

struct CompositeOptions {
  PairOptions pair;
  std::string mode = "SrcOver";
  std::string at, area, sourceArea;
};

struct Placement {
  DRAVCFBlendMode mode = kDRAVCFBlendModeSrcOver;
  Place at;
  std::optional<Area> fitTo, sourceArea;
};

Placement placementFrom(const CompositeOptions &options) {
  Placement placement;
  placement.mode = parseBlendMode(options.mode);
  if (!options.at.empty()) placement.at = parsePlace(options.at);
  if (!options.area.empty()) placement.fitTo = parseArea(options.area);
  if (!options.sourceArea.empty()) placement.sourceArea = parseArea(options.sourceArea);
  if (placement.fitTo) placement.at = {placement.fitTo->x, placement.fitTo->y};
  return placement;
}

Image prepared(Image source, const Placement &placement) {
  if (placement.sourceArea) {
    const Area kept = intersection(*placement.sourceArea, boundsOf(source.get()));
    if (kept.empty()) throw Failure("the source rectangle lies outside of its " + sizeText(source.get()));
    source = partOf(source.get(), kept);
  }
  return placement.fitTo ? resized(std::move(source), placement.fitTo->width, placement.fitTo->height)
                         : source;
}

Image composited(Image source, Image destination, const Placement &placement) {
  const Image ready = prepared(forBlending(std::move(source)), placement);
  Image under = forBlending(std::move(destination));
  if (!blendAt(ready.get(), under.get(), placement.at, placement.mode))
    throw Failure("lies outside of the destination's " + sizeText(under.get()));
  return under;
}

}  // namespace

void addComposite(CLI::App &tool, int &exitStatus) {
  CLI::App *command = tool.add_subcommand("composite", "blend an image into another");
  const auto options = std::make_shared<CompositeOptions>();
  addPairOptions(*command, options->pair, "SOURCE", "image file; - is standard input", "DESTINATION",
                 "image that the source is blended into");
  command->add_option("--mode", options->mode, "blend mode, in any case of letters: " + listOfBlendModes())
      ->capture_default_str();
  CLI::Option *at = command->add_option(
      "--at", options->at, "where the source's top left corner comes, as x,y in pixels from the top left");
  command
      ->add_option("--rect", options->area,
                   "rectangle of the destination, x,y,w,h, that the source is scaled to; otherwise it keeps "
                   "its size")
      ->excludes(at);
  command->add_option("--source-rect", options->sourceArea, "the part of the source to take, x,y,w,h");
  command->callback([options, &exitStatus] {
    const Placement placement = placementFrom(*options);
    exitStatus = runPair(options->pair, [&placement](Image source, Image destination) {
      return composited(std::move(source), std::move(destination), placement);
    });
  });
}
