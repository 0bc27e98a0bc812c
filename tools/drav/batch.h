// What every command that makes images from images shares: inputs, output, format, and the run over
// all files in which a bad one does not stop the others.
#pragma once

#include <CLI/CLI.hpp>

#include <functional>
#include <string>
#include <vector>

#include "image.h"

struct BatchOptions {
  std::vector<std::string> inputs;
  std::string output;
  std::string format;  // an extension; empty: the output's own
};

void addBatchOptions(CLI::App &command, BatchOptions &options);

// What a command does to each image between reading and writing it. Throws Failure.
using Change = std::function<Image(Image)>;
inline Image unchanged(Image image) { return image; }

// How the bytes of a file become the image that is changed. Throws Failure.
using Decode = std::function<Image(CFDataRef)>;

// Gives the exit status. `done` is what has happened to the images, for the closing line: "converted".
// Throws UsageError before anything is done.
int runBatch(const BatchOptions &options, const std::string &done, const Change &change,
             const Decode &decode = decodeImage);
