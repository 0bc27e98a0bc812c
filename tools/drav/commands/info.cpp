// drav info: what a file is.
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>

#include "commands/commands.h"
#include "facts.h"
#include "failure.h"
#include "input.h"
#include "report.h"

namespace {

using Json = nlohmann::ordered_json;

struct InfoOptions {
  std::vector<std::string> inputs;
  bool json = false;
};

Json describeAsJson(const std::string &name, const Facts &facts) {
  Json object{{"file", name},
              {"format", facts.format},
              {"width", facts.width},
              {"height", facts.height},
              {"bitsPerComponent", facts.bitsPerComponent},
              {"bitsPerPixel", facts.bitsPerPixel},
              {"color", facts.color},
              {"alpha", facts.hasAlpha},
              {"profile", nullptr},
              {"resolution", nullptr},
              {"fileBytes", facts.fileBytes}};
  if (facts.profile) object["profile"] = *facts.profile;
  if (facts.dotsPerInchX > 0) object["resolution"] = {{"x", facts.dotsPerInchX}, {"y", facts.dotsPerInchY}};
  return object;
}

void printFacts(const std::string &name, const Facts &facts) {
  std::printf("%s\n", shownName(name).c_str());
  std::printf("  format      %s\n", facts.format.c_str());
  std::printf("  size        %zu x %zu pixels\n", facts.width, facts.height);
  std::printf("  bits        %zu a component, %zu a pixel\n", facts.bitsPerComponent, facts.bitsPerPixel);
  std::printf("  colour      %s\n", facts.color.c_str());
  std::printf("  alpha       %s\n", facts.hasAlpha ? "yes" : "no");
  std::printf("  profile     %s\n", facts.profile ? shownName(*facts.profile).c_str() : "none");
  if (facts.dotsPerInchX > 0) {
    std::printf("  resolution  %.5g x %.5g dots per inch\n", facts.dotsPerInchX, facts.dotsPerInchY);
  }
  std::printf("  file        %zu bytes\n", facts.fileBytes);
}

// File names may hold bytes that are no text; JSON may not.
void printJson(const Json &json) {
  std::printf("%s\n", json.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
}

int runInfo(const InfoOptions &options) {
  bool failed = false;
  Json all = Json::array();
  for (const std::string &name : options.inputs) {
    try {
      const Facts facts = factsOf(readInput(name).get());
      if (options.json) {
        all.push_back(describeAsJson(name, facts));
      } else {
        printFacts(name, facts);
      }
    } catch (const Failure &failure) {
      printFailure(name, failure.what());
      failed = true;
    }
  }
  if (options.json && options.inputs.size() > 1) printJson(all);
  if (options.json && options.inputs.size() == 1 && !failed) printJson(all.front());
  return failed ? 1 : 0;
}

}  // namespace

void addInfo(CLI::App &tool, int &exitStatus) {
  CLI::App *command = tool.add_subcommand("info", "say what image files are");
  const auto options = std::make_shared<InfoOptions>();
  command->add_option("INPUT", options->inputs, "image files; - is standard input")->required();
  command->add_flag("--json", options->json, "one JSON object; an array of them for several inputs");
  command->callback([options, &exitStatus] { exitStatus = runInfo(*options); });
}
