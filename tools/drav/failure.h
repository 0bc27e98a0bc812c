// How a command gives up on one file, or on its command line.
#pragma once

#include <stdexcept>
#include <string>

// One file cannot be dealt with. The text is the reason, for the line that names the file.
struct Failure : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The command line asks for something that makes no sense; nothing has been done.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// What the operating system says about an error number.
std::string systemReason(int errorNumber);
