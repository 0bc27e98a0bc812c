#include "report.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "input.h"

namespace {

constexpr std::chrono::milliseconds kDrawEvery{80};
constexpr size_t kWidestBar = 30;

size_t terminalColumns() noexcept {
  struct winsize size = {};
  return ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

// As much of `text` as fits into that many columns, taking a character for a column.
std::string clipped(const std::string &text, size_t columns) {
  size_t characters = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    const bool startsCharacter = (static_cast<unsigned char>(text[i]) & 0xC0) != 0x80;
    if (startsCharacter && characters++ == columns) return text.substr(0, i);
  }
  return text;
}

}  // namespace

void printFailure(const std::string &name, const std::string &reason) {
  std::fprintf(stderr, "drav: %s: %s\n", shownName(name).c_str(), reason.c_str());
}

Report::Report(size_t total) noexcept : total_(total), showsBar_(total > 1 && ::isatty(STDERR_FILENO)) {}

void Report::begin(const std::string &name) {
  if (!showsBar_) return;
  // A terminal that is slower than the work would hold it up.
  const auto now = std::chrono::steady_clock::now();
  if (now < nextDraw_) return;
  nextDraw_ = now + kDrawEvery;
  draw(name);
}

void Report::fail(const std::string &name, const std::string &reason) {
  ++failed_;
  if (showsBar_) clear();
  printFailure(name, reason);
  if (showsBar_) draw(name);
}

int Report::finish(const std::string &done) {
  if (showsBar_) clear();
  if (total_ > 1) {
    std::printf("%zu of %zu images %s", done_, total_, done.c_str());
    if (failed_ > 0) std::printf(", %zu failed", failed_);
    std::printf("\n");
  }
  return failed_ > 0 ? 1 : 0;
}

void Report::draw(const std::string &name) const {
  const size_t columns = terminalColumns();
  const size_t dealtWith = done_ + failed_;
  const size_t bar = std::min(kWidestBar, columns / 3);
  const size_t full = bar * dealtWith / total_;
  std::string line = "[";
  line.append(full, '#').append(bar - full, '.');
  line += "] " + std::to_string(dealtWith) + "/" + std::to_string(total_) + " " + shownName(name);
  std::fprintf(stderr, "\r%s\x1b[K", clipped(line, columns - 1).c_str());
  std::fflush(stderr);
}

void Report::clear() const {
  std::fprintf(stderr, "\r\x1b[K");
  std::fflush(stderr);
}
