// drav tile: an image repeated over another.
#include <memory>
#include <optional>

#include "blend_modes.h"
#include "blending.h"
#include "commands/commands.h"
#include "failure.h"
#include "pair.h"
#include "tiling.h"

namespace {

struct TileOptions {
  PairOptions pair;
  std::string mode = "SrcOver";
  std::string corner = "top-left";
  std::string area, sourceArea;
};

struct Pattern {
  DRAVCFBlendMode mode = kDRAVCFBlendModeSrcOver;
  Corner corner = Corner::topLeft;
  std::optional<Area> area, sourceArea;  // none: the whole image
};

Pattern patternFrom(const TileOptions &options) {
  Pattern pattern;
  pattern.mode = parseBlendMode(options.mode);
  pattern.corner = parseCorner(options.corner);
  if (!options.area.empty()) pattern.area = parseArea(options.area);
  if (!options.sourceArea.empty()) pattern.sourceArea = parseArea(options.sourceArea);
  return pattern;
}

// Nothing yet, in the layout of another image: blends differ between those with alpha and those without.
Image blankLike(DRAVCFImageRef image, const Area &size) {
  const bool isColor = DRAVCFImageIsColor(image);
  Image blank = blankImage(size, isColor);
  return isColor && !DRAVCFImageHasAlpha(image) ? relabelled(blank.get(), kCGImageAlphaNoneSkipFirst) : blank;
}

// What the rectangle covers is cut out, tiled and put back. The library's tiles reach beyond the rectangle,
// and those that the image's edge cuts are squeezed instead: here the cut-out is made to hold whole tiles.
Image tiled(Image source, Image destination, const Pattern &pattern) {
  const Image tile = forBlending(std::move(source));
  Image under = forBlending(std::move(destination));
  const Area tileArea = intersection(pattern.sourceArea.value_or(boundsOf(tile.get())), boundsOf(tile.get()));
  if (tileArea.empty()) throw Failure("the source rectangle lies outside of its " + sizeText(tile.get()));
  const Area area = pattern.area.value_or(boundsOf(under.get()));
  const Area visible = intersection(area, boundsOf(under.get()));
  if (visible.empty())
    throw Failure("the rectangle lies outside of the destination's " + sizeText(under.get()));

  DRAVCFImageUnifyImageFormats(tile.get(), under.get());
  const Area whole = tiledArea(area, visible, tileArea.width, tileArea.height, pattern.corner);
  const Image cutOut = blankLike(under.get(), whole);
  blendAt(under.get(), cutOut.get(), {-whole.x, -whole.y}, kDRAVCFBlendModeCopySrc);
  DRAVCFImageTile(tile.get(), cutOut.get(), fromTop(tileArea), fromTop({0, 0, whole.width, whole.height}),
                  pattern.mode, static_cast<uint32_t>(pattern.corner));
  DRAVCFImageInvalidateImage(cutOut.get());
  const Image shown =
      partOf(cutOut.get(), {visible.x - whole.x, visible.y - whole.y, visible.width, visible.height});
  blendAt(shown.get(), under.get(), {visible.x, visible.y}, kDRAVCFBlendModeCopySrc);
  return under;
}

}  // namespace

void addTile(CLI::App &tool, int &exitStatus) {
  CLI::App *command = tool.add_subcommand("tile", "repeat an image over another");
  const auto options = std::make_shared<TileOptions>();
  addPairOptions(*command, options->pair, "SOURCE", "image file; - is standard input", "DESTINATION",
                 "image that the tiles are blended into");
  command->add_option("--mode", options->mode, "blend mode, in any case of letters: " + listOfBlendModes())
      ->capture_default_str();
  command->add_option("--rect", options->area,
                      "rectangle of the destination to cover, x,y,w,h; otherwise the whole of it");
  command->add_option("--source-rect", options->sourceArea,
                      "the part of the source to repeat, x,y,w,h; otherwise the whole of it");
  command
      ->add_option("--corner", options->corner,
                   "corner of the rectangle where the first whole tile stands: " + listOfCorners())
      ->capture_default_str();
  command->callback([options, &exitStatus] {
    const Pattern pattern = patternFrom(*options);
    exitStatus = runPair(options->pair, [&pattern](Image source, Image destination) {
      return tiled(std::move(source), std::move(destination), pattern);
    });
  });
}
