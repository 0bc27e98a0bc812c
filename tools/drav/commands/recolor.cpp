// drav recolor: colours replaced by rules.
#include <algorithm>
#include <memory>

#include "batch.h"
#include "commands/commands.h"
#include "failure.h"
#include "input.h"
#include "progress.h"
#include "recoloring.h"
#include "report.h"

namespace {

constexpr char kAboutRules[] =
    "A rules file holds rules such as\n"
    "\n"
    "  rule                        # what follows a # is a comment\n"
    "    red   below 0.3\n"
    "    green scaled above 0      # scales the new green by the old\n"
    "    blue  within 0.8 0.2      # 0.8, up to 0.2 more or less\n"
    "    becomes 0.1 2.0 0.2\n"
    "\n"
    "Components are red, green, blue and alpha, 0 to 1; after \"rule hsb\" hue (degrees), saturation, "
    "brightness\n"
    "and alpha. Tests are within, outside, above and below, \"scaled\" or not, and any. A colour that "
    "several\n"
    "rules match becomes the mean of theirs. \"man drav\" has the whole of it, examples/rules some examples.";

struct RecolorOptions {
  BatchOptions batch;
  std::string rules;
};

void check(const RecolorOptions &options) {
  const auto &inputs = options.batch.inputs;
  if (options.rules == kStandardStream && std::ranges::find(inputs, kStandardStream) != inputs.end())
    throw UsageError("the rules and an image cannot both come from standard input");
}

// Nothing for rules that are in error, which are reported.
MatchList readRules(const std::string &name) {
  try {
    const auto file = readInput(name);
    const auto bytes = bytesOf(file.get());
    return parseRules({static_cast<const char *>(static_cast<const void *>(bytes.data())), bytes.size()});
  } catch (const Failure &failure) {
    printFailure(name, failure.what());
    return nullptr;
  }
}

int runRecolor(const RecolorOptions &options) {
  check(options);
  const MatchList rules = readRules(options.rules);
  if (!rules) return 1;
  const bool alone = options.batch.inputs.size() == 1;  // several files have a progress of their own
  return runBatch(options.batch, "recoloured", [&](Image image) {
    Progress progress("recolouring");
    return recolored(std::move(image), rules.get(), [&](double part) {
      if (alone) progress.show(part);
    });
  });
}

}  // namespace

void addRecolor(CLI::App &tool, int &exitStatus) {
  CLI::App *command = tool.add_subcommand("recolor", "replace colours by rules");
  command->footer(kAboutRules);
  const auto options = std::make_shared<RecolorOptions>();
  addBatchOptions(*command, options->batch);
  command->add_option("--rules", options->rules, "text file with the rules; - is standard input")->required();
  command->callback([options, &exitStatus] { exitStatus = runRecolor(*options); });
}
