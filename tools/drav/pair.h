// What the commands share that make one image of two.
#pragma once

#include <CLI/CLI.hpp>

#include <functional>
#include <string>

#include "image.h"

struct PairOptions {
  std::string first, second;
  std::string output;
  std::string format;  // an extension; empty: the output's own
};

// The two inputs with their names in --help and what they are.
void addPairOptions(CLI::App &command, PairOptions &options, const std::string &firstName,
                    const std::string &firstHelp, const std::string &secondName,
                    const std::string &secondHelp);

// Makes the image to write. A Failure that it throws is reported for the first input.
using Join = std::function<Image(Image first, Image second)>;

// Gives the exit status. Throws UsageError before anything is done.
int runPair(const PairOptions &options, const Join &join);
