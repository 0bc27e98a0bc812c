// drav formats: what is read and written.
#include "formats.h"

#include <cstdio>

#include "commands/commands.h"

namespace {

void printDetail(const char *what, const std::string &detail) {
  if (!detail.empty()) std::printf("  %-8s %s\n", what, detail.c_str());
}

void printFormats() {
  std::printf("%-8s %-20s %-5s %s\n", "FORMAT", "EXTENSIONS", "READ", "WRITTEN");
  for (const Format &format : allFormats()) {
    std::string extensions;
    for (const std::string &extension : format.extensions) extensions += extension + " ";
    std::printf("%-8s %-20s %-5s %s\n", format.name.c_str(), extensions.c_str(), "yes",
                format.isWritten() ? "yes" : "no");
    printDetail("read", format.reads);
    printDetail("written", format.writes);
  }
}

}  // namespace

void addFormats(CLI::App &tool, int &) {
  tool.add_subcommand("formats", "list the file formats")->callback(printFormats);
}
