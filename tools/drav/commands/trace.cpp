// drav trace: the outline of what is opaque.
#include <memory>

#include "commands/commands.h"
#include "failure.h"
#include "input.h"
#include "output.h"
#include "overlay.h"
#include "plan.h"
#include "report.h"
#include "svg.h"

namespace {

struct TraceOptions {
  std::string input;
  std::string svg, overlay;  // files to write; empty: none
  float threshold = 0.5F;
  std::string fill = "black", stroke;
  double strokeWidth = 1;
};

void check(const TraceOptions &options) {
  if (options.svg.empty() && options.overlay.empty()) throw UsageError("nothing to write: -o or --overlay");
  if (options.svg == kStandardStream && options.overlay == kStandardStream)
    throw UsageError("only one output can go to standard output");
  if (!(options.threshold >= 0 && options.threshold <= 1)) throw UsageError("--threshold is 0 to 1");
  if (!(options.strokeWidth > 0 && options.strokeWidth <= 100))
    throw UsageError("--stroke-width is above 0 to 100");
}

LineStyle svgStyle(const TraceOptions &options) {
  return {parseInk(options.fill), parseInk(options.stroke.empty() ? "none" : options.stroke),
          options.strokeWidth};
}

struct Overlay {
  const Format *format = nullptr;  // null: none is wanted
  Ink line;
  double width = 1;
};

Overlay overlayFrom(const TraceOptions &options) {
  if (options.overlay.empty()) return {};
  const std::optional<Ink> line = parseInk(options.stroke.empty() ? "magenta" : options.stroke);
  if (!line) throw UsageError("an overlay needs a colour for its line: --stroke");
  const std::string format = options.overlay == kStandardStream ? "png" : "";
  return {planBatch({{options.input}, options.overlay, format}).format, *line, options.strokeWidth};
}

std::span<const uint8_t> bytesIn(const std::string &text) noexcept {
  const auto bytes = std::as_bytes(std::span(text));
  return {static_cast<const uint8_t *>(static_cast<const void *>(bytes.data())), bytes.size()};
}

cf::Ref<CFDataRef> encodedOverlay(Image picture, const Outline &outline, const Overlay &overlay) {
  const Image drawn = withOutline(std::move(picture), outline, overlay.line, overlay.width);
  return encodeImage(drawn.get(), *overlay.format);
}

int runTrace(const TraceOptions &options) {
  check(options);
  const LineStyle style = svgStyle(options);
  const Overlay overlay = overlayFrom(options);
  try {
    Image image = decodeImage(readInput(options.input).get());
    const Outline outline = traceOutline(image.get(), options.threshold);
    const auto drawn = overlay.format ? encodedOverlay(std::move(image), outline, overlay) : nullptr;
    if (!options.svg.empty()) writeOutput(options.svg, bytesIn(svgOf(outline, style)));
    if (drawn) writeOutput(options.overlay, bytesOf(drawn.get()));
    return 0;
  } catch (const Failure &failure) {
    printFailure(options.input, failure.what());
  } catch (const std::bad_alloc &) {
    printFailure(options.input, "out of memory");
  }
  return 1;
}

}  // namespace

void addTrace(CLI::App &tool, int &exitStatus) {
  CLI::App *command = tool.add_subcommand("trace", "draw the outline of what is opaque");
  const auto options = std::make_shared<TraceOptions>();
  command->add_option("INPUT", options->input, "image file with alpha; - is standard input")->required();
  command->add_option("-o,--output", options->svg, "SVG file to write, with one path; - is standard output");
  command->add_option("--overlay", options->overlay, "image file to write: the outline over the picture");
  command->add_option("--threshold", options->threshold, "alpha above which a pixel is inside, 0 to 1")
      ->capture_default_str();
  command->add_option("--fill", options->fill, "colour inside: #rrggbb or one of " + listOfInks())
      ->capture_default_str();
  command->add_option("--stroke", options->stroke,
                      "colour of the line; otherwise none in an SVG and magenta in an overlay");
  command->add_option("--stroke-width", options->strokeWidth, "width of the line in pixels")
      ->capture_default_str();
  command->callback([options, &exitStatus] { exitStatus = runTrace(*options); });
}
