// Which file each input of a run becomes, settled before anything is read.
#pragma once

#include <string>
#include <vector>

#include "batch.h"
#include "formats.h"

struct Job {
  std::string input;
  std::string output;
};

struct Plan {
  const Format *format = nullptr;
  std::string folder;  // to be made if it is not there; empty: none
  std::vector<Job> jobs;
};

// Throws UsageError.
Plan planBatch(const BatchOptions &options);
