#include "hush.h"

#include <fcntl.h>

#include <cstdio>

namespace {

bool switchedOff = false;

// Leads a standard stream elsewhere; gives the descriptor it had, or none if it was closed.
Descriptor divert(int stream, const Descriptor &elsewhere) noexcept {
  Descriptor before(::fcntl(stream, F_DUPFD_CLOEXEC, 3));
  if (!before || !elsewhere) return Descriptor();
  ::dup2(elsewhere.number(), stream);
  return before;
}

Descriptor nowhere() noexcept { return Descriptor(::open("/dev/null", O_WRONLY | O_CLOEXEC)); }
Descriptor standardError() noexcept { return Descriptor(::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3)); }

void restore(int stream, const Descriptor &before) noexcept {
  if (before) ::dup2(before.number(), stream);
}

void flush() noexcept {
  std::fflush(stdout);
  std::fflush(stderr);
}

}  // namespace

Hush::Hush() noexcept {
  flush();
  output_ = divert(STDOUT_FILENO, switchedOff ? standardError() : nowhere());
  if (!switchedOff) error_ = divert(STDERR_FILENO, nowhere());
}

Hush::~Hush() {
  flush();
  restore(STDOUT_FILENO, output_);
  restore(STDERR_FILENO, error_);
}

void Hush::switchOff() noexcept { switchedOff = true; }
