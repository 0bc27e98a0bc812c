// drav formats: what is read and written.
#include "formats.h"

#include <cstdio>

#include "commands/commands.h"

namespace {

void printFormats() {
  std::printf("%-8s %-16s %-5s %s\n", "FORMAT", "EXTENSIONS", "READ", "WRITTEN");
  for (const Format &format : allFormats()) {
    std::string extensions;
    for (const std::string &extension : format.extensions) extensions += extension + " ";
    std::printf("%-8s %-16s %-5s %s\n", format.name, extensions.c_str(), "yes",
                format.createExporter ? "yes" : "no");
  }
}

}  // namespace

void addFormats(CLI::App &tool, int &) {
  tool.add_subcommand("formats", "list the file formats")->callback(printFormats);
}
