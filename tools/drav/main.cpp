// drav: the command line tool.
#include <csignal>
#include <cstdio>

#include "commands/commands.h"
#include "decode_limits.h"
#include "failure.h"
#include "hush.h"

namespace {

constexpr int kFailed = 1;
constexpr int kMisused = 2;

int explainMisuse(const std::string &why) {
  std::fprintf(stderr, "drav: %s\nTry \"drav --help\".\n", why.c_str());
  return kMisused;
}

void addToolOptions(CLI::App &tool) {
  tool.set_version_flag("--version", "drav " DRAV_VERSION);
  tool.add_flag_callback("--verbose", Hush::switchOff, "let the library's own diagnostic lines through");
  tool.add_option_function<std::string>(
      "--limits", setLimits, "how much a file may cost, as NAME=NUMBER,...; names: " + limitNames());
  tool.footer(
      "Exit status: 0 if everything was done, 1 if a file failed, 2 if the command line was not understood.");
  tool.require_subcommand(1);
  tool.fallthrough();  // these options may also follow the command
}

// The parser would take an argument in brackets for a list of several.
std::vector<std::string> argumentsInOrder(int count, char **arguments) {
  std::vector<std::string> list(arguments + 1, arguments + count);
  for (std::string &argument : list) {
    if (argument.starts_with('[') && argument.ends_with(']')) argument.insert(0, "./");
  }
  return list;
}

int run(int count, char **arguments) {
  CLI::App tool("Reads, changes and converts bitmap images.", "drav");
  addToolOptions(tool);
  int exitStatus = 0;
  for (const AddCommand add : kCommands) add(tool, exitStatus);
  try {
    std::vector<std::string> list = argumentsInOrder(count, arguments);
    std::reverse(list.begin(), list.end());  // what the parser asks for
    tool.parse(std::move(list));
  } catch (const CLI::Success &help) {  // --help and --version
    tool.exit(help);
  } catch (const CLI::ParseError &error) {
    return explainMisuse(error.what());
  } catch (const UsageError &error) {
    return explainMisuse(error.what());
  }
  return exitStatus;
}

}  // namespace

int main(int count, char **arguments) {
  // A file that grows beyond what is allowed fails to be written, and does not end the tool.
  std::signal(SIGXFSZ, SIG_IGN);
  try {
    const int exitStatus = run(count, arguments);
    if (std::fflush(stdout) == 0) return exitStatus;
    std::perror("drav: standard output");
  } catch (const std::exception &error) {
    std::fprintf(stderr, "drav: %s\n", error.what());
  }
  return kFailed;
}
