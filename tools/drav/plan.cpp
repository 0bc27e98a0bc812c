#include "plan.h"

#include <unistd.h>

#include <filesystem>

#include "failure.h"
#include "input.h"

namespace {

namespace fs = std::filesystem;

bool isFolder(const std::string &path) {
  std::error_code ignored;
  return path.ends_with('/') || fs::is_directory(path, ignored);
}

const Format *formatNamed(const std::string &extension) {
  const Format *format = formatForExtension(extension);
  if (!format || !format->isWritten()) {
    throw UsageError(shownName(extension) + ": no format that is written; one of " + writtenExtensions());
  }
  return format;
}

const Format *formatOfOutput(const std::string &output) {
  const std::string extension = fs::path(output).extension();
  if (extension.empty()) {
    throw UsageError(shownName(output) + ": has no extension to tell the format; name one with --to");
  }
  return formatNamed(extension.substr(1));
}

std::string nameInFolder(const std::string &input, const Format &format) {
  const std::string stem = input == kStandardStream ? "stdin" : fs::path(input).stem().string();
  return (stem.empty() ? "image" : stem) + "." + format.extensions.front();
}

Plan planFolder(const BatchOptions &options) {
  if (options.output == kStandardStream) throw UsageError("several images cannot go to standard output");
  if (options.format.empty()) throw UsageError("an output folder needs a format: --to");
  std::error_code ignored;
  if (fs::exists(options.output, ignored) && !isFolder(options.output)) {
    throw UsageError(shownName(options.output) + ": several inputs need a folder as output");
  }
  Plan plan{formatNamed(options.format), options.output, {}};
  for (const std::string &input : options.inputs) {
    plan.jobs.push_back({input, fs::path(options.output) / nameInFolder(input, *plan.format)});
  }
  return plan;
}

}  // namespace

Plan planBatch(const BatchOptions &options) {
  const bool toStandardOutput = options.output == kStandardStream;
  if (options.inputs.size() > 1 || (!toStandardOutput && isFolder(options.output)))
    return planFolder(options);
  if (toStandardOutput && options.format.empty()) throw UsageError("standard output needs a format: --to");
  if (toStandardOutput && ::isatty(STDOUT_FILENO))
    throw UsageError("an image would not be readable on a terminal");
  const Format *format =
      options.format.empty() ? formatOfOutput(options.output) : formatNamed(options.format);
  return {format, "", {{options.inputs.front(), options.output}}};
}
