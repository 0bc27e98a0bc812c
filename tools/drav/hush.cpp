#include "hush.h"

#include <fcntl.h>

#include <cstdio>

namespace {

bool switchedOff = false;

// Leads a standard stream to where nobody reads; gives the descriptor it had, or none if it was closed.
Descriptor divert(int stream) noexcept {
  Descriptor before(::fcntl(stream, F_DUPFD_CLOEXEC, 3));
  const Descriptor nowhere(::open("/dev/null", O_WRONLY | O_CLOEXEC));
  if (!before || !nowhere) return Descriptor();
  ::dup2(nowhere.number(), stream);
  return before;
}

void restore(int stream, const Descriptor &before) noexcept {
  if (before) ::dup2(before.number(), stream);
}

void flush() noexcept {
  std::fflush(stdout);
  std::fflush(stderr);
}

}  // namespace

Hush::Hush() noexcept {
  if (switchedOff) return;
  flush();
  output_ = divert(STDOUT_FILENO);
  error_ = divert(STDERR_FILENO);
}

Hush::~Hush() {
  flush();
  restore(STDOUT_FILENO, output_);
  restore(STDERR_FILENO, error_);
}

void Hush::switchOff() noexcept { switchedOff = true; }
