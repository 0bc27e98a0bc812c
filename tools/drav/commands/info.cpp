// drav info: what a file is.
#include <cstdio>
#include <memory>

#include "commands/commands.h"
#include "description.h"
#include "failure.h"
#include "input.h"
#include "report.h"

namespace {

using Json = nlohmann::ordered_json;

struct InfoOptions {
  std::vector<std::string> inputs;
  bool json = false;
  bool opcodes = false;
};

// File names may hold bytes that are no text; JSON may not.
void printJson(const Json &json) {
  std::printf("%s\n", json.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
}

int runInfo(const InfoOptions &options) {
  bool failed = false;
  Json all = Json::array();
  const Opcodes opcodes = options.opcodes ? Opcodes::listed : Opcodes::counted;
  for (const std::string &name : options.inputs) {
    try {
      const Facts facts = factsOf(readInput(name).get(), opcodes);
      if (options.json) {
        all.push_back(factsAsJson(name, facts));
      } else {
        printFacts(name, facts);
      }
    } catch (const Failure &failure) {
      printFailure(name, failure.what());
      failed = true;
    } catch (const std::bad_alloc &) {
      printFailure(name, "out of memory");
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
  command->add_flag("--opcodes", options->opcodes,
                    "list what a PICT is made of, opcode by opcode; otherwise they are counted");
  command->callback([options, &exitStatus] { exitStatus = runInfo(*options); });
}
