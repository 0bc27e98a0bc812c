// Keeps the library's diagnostic lines out of the user's way.
#pragma once

#include "descriptor.h"

// Some operations of the library print on standard output or standard error by definition. While a Hush
// lives, both lead nowhere, so that they neither mix with an image on standard output nor with the one line
// that names a bad file.
class Hush {
 public:
  Hush() noexcept;
  ~Hush();
  Hush(const Hush &) = delete;
  Hush &operator=(const Hush &) = delete;

  // For --verbose: the lines are let through to standard error, never into standard output.
  static void switchOff() noexcept;

 private:
  Descriptor output_, error_;
};
