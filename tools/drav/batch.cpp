#include "batch.h"

#include <sys/stat.h>

#include <filesystem>
#include <map>
#include <optional>

#include "failure.h"
#include "input.h"
#include "output.h"
#include "plan.h"
#include "report.h"

namespace {

using FileIdentity = std::pair<dev_t, ino_t>;

// Keeps one file of a run from taking the place of another: of an output written before, or of an
// input other than its own.
class Places {
 public:
  explicit Places(const std::vector<Job> &jobs) {
    for (const Job &job : jobs) {
      if (const auto identity = identityOf(job.input)) inputs_.emplace(*identity, job.input);
    }
  }

  // Throws Failure.
  void check(const Job &job) const {
    if (const auto other = written_.find(resolvedPath(job.output)); other != written_.end()) {
      throw Failure("its output " + shownName(job.output) + " was already made from " +
                    shownName(other->second));
    }
    const auto there = identityOf(job.output);
    if (!there || there == identityOf(job.input)) return;
    if (const auto other = inputs_.find(*there); other != inputs_.end()) {
      throw Failure("its output would replace the input " + shownName(other->second));
    }
  }

  void take(const Job &job) { written_.emplace(resolvedPath(job.output), job.input); }

 private:
  // Regular files only: everybody may write to one device.
  static std::optional<FileIdentity> identityOf(const std::string &name) {
    struct stat status = {};
    if (name == kStandardStream || ::stat(name.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
    return FileIdentity{status.st_dev, status.st_ino};
  }

  std::map<FileIdentity, std::string> inputs_;
  std::map<std::string, std::string> written_;
};

void runJob(const Job &job, const Format &format, const Change &change, const Decode &decode) {
  const Image image = change(decode(readInput(job.input).get()));
  writeOutput(job.output, bytesOf(encodeImage(image.get(), format).get()));
}

bool makeFolder(const std::string &folder) {
  std::error_code reason;
  if (!folder.empty()) std::filesystem::create_directories(folder, reason);
  if (reason) printFailure(folder, "cannot be made: " + reason.message());
  return !reason;
}

}  // namespace

void addBatchOptions(CLI::App &command, BatchOptions &options) {
  command.add_option("INPUT", options.inputs, "image files; - is standard input")->required();
  command
      .add_option(
          "-o,--output", options.output,
          "file to write; - is standard output; for several inputs a folder, made if it does not exist")
      ->required();
  command.add_option("--to", options.format,
                     "format to write: " + writtenExtensions() + " (otherwise the output's extension tells)");
}

int runBatch(const BatchOptions &options, const std::string &done, const Change &change,
             const Decode &decode) {
  const Plan plan = planBatch(options);
  if (!makeFolder(plan.folder)) return 1;
  Places places(plan.jobs);
  Report report(plan.jobs.size());
  for (const Job &job : plan.jobs) {
    report.begin(job.input);
    try {
      places.check(job);
      runJob(job, *plan.format, change, decode);
      places.take(job);
      report.succeed();
    } catch (const Failure &failure) {
      report.fail(job.input, failure.what());
    } catch (const std::bad_alloc &) {
      report.fail(job.input, "out of memory");
    }
  }
  return report.finish(done);
}
