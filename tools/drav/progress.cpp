#include "progress.h"

#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <utility>

namespace {

constexpr std::chrono::milliseconds kDrawEvery{80};

}  // namespace

// What is done at once is not worth a line.
Progress::Progress(std::string what)
    : what_(std::move(what)),
      shows_(::isatty(STDERR_FILENO) == 1),
      nextDraw_(std::chrono::steady_clock::now() + kDrawEvery) {}

Progress::~Progress() {
  if (!drawn_) return;
  std::fprintf(stderr, "\r\x1b[K");
  std::fflush(stderr);
}

void Progress::show(double part) {
  if (!shows_) return;
  const auto now = std::chrono::steady_clock::now();
  if (now < nextDraw_) return;
  nextDraw_ = now + kDrawEvery;
  std::fprintf(stderr, "\r%s %3ld%%\x1b[K", what_.c_str(), std::lround(100 * part));
  std::fflush(stderr);
  drawn_ = true;
}
