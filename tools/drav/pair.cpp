#include "pair.h"

#include <new>

#include "failure.h"
#include "input.h"
#include "output.h"
#include "plan.h"
#include "report.h"

namespace {

// Runs one step for one file. False if it failed, and that was reported.
template <class Step>
bool attempt(const std::string &name, const Step &step) {
  try {
    step();
    return true;
  } catch (const Failure &failure) {
    printFailure(name, failure.what());
  } catch (const std::bad_alloc &) {
    printFailure(name, "out of memory");
  }
  return false;
}

}  // namespace

void addPairOptions(CLI::App &command, PairOptions &options, const std::string &firstName,
                    const std::string &firstHelp, const std::string &secondName,
                    const std::string &secondHelp) {
  command.add_option(firstName, options.first, firstHelp)->required();
  command.add_option(secondName, options.second, secondHelp)->required();
  command.add_option("-o,--output", options.output, "file to write; - is standard output")->required();
  command.add_option("--to", options.format,
                     "format to write: " + writtenExtensions() + " (otherwise the output's extension tells)");
}

int runPair(const PairOptions &options, const Join &join) {
  if (options.first == kStandardStream && options.second == kStandardStream)
    throw UsageError("only one image can come from standard input");
  const Plan plan = planBatch({{options.first}, options.output, options.format});
  Image first, second;
  const bool read = attempt(options.first, [&] { first = decodeImage(readInput(options.first).get()); }) &&
                    attempt(options.second, [&] { second = decodeImage(readInput(options.second).get()); });
  const bool written =
      read && attempt(options.first, [&] {
        const Image joined = join(std::move(first), std::move(second));
        writeOutput(plan.jobs.front().output, bytesOf(encodeImage(joined.get(), *plan.format).get()));
      });
  return written ? 0 : 1;
}
