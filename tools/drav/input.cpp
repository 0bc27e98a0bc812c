#include "input.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "descriptor.h"
#include "failure.h"

namespace {

// More than any file that the decode limits would let through; it keeps an endless stream from
// filling the memory.
constexpr CFIndex kMaxBytes = CFIndex{1} << 30;
constexpr CFIndex kStep = 1 << 16;

Descriptor openInput(const std::string &name) {
  const int number = name == kStandardStream ? ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3)
                                             : ::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
  if (number < 0) throw Failure(systemReason(errno));
  return Descriptor(number);
}

// What the system says about the size: the exact one for a file, nothing for a pipe.
CFIndex expectedBytes(const Descriptor &file) {
  struct stat status = {};
  if (::fstat(file.number(), &status) != 0) throw Failure(systemReason(errno));
  if (S_ISDIR(status.st_mode)) throw Failure("is a folder");
  if (!S_ISREG(status.st_mode)) return 0;
  if (status.st_size > kMaxBytes) throw Failure("is larger than 1 GiB");
  return static_cast<CFIndex>(status.st_size);
}

void resize(CFMutableDataRef data, CFIndex length) {
  CFDataSetLength(data, length);
  if (CFDataGetLength(data) != length) throw Failure("out of memory");
}

CFIndex readSome(const Descriptor &file, UInt8 *to, CFIndex room) {
  for (;;) {
    const ssize_t got = ::read(file.number(), to, static_cast<size_t>(room));
    if (got >= 0) return got;
    if (errno != EINTR) throw Failure(systemReason(errno));
  }
}

}  // namespace

std::string systemReason(int errorNumber) { return std::strerror(errorNumber); }

cf::Ref<CFDataRef> readInput(const std::string &name) {
  const Descriptor file = openInput(name);
  auto data = cf::adopt(CFDataCreateMutable(nullptr, 0));
  if (!data) throw Failure("out of memory");
  // One byte more than expected, so that the end of a file is seen without growing once more.
  resize(data.get(), expectedBytes(file) + 1);
  CFIndex filled = 0;
  while (const CFIndex got = readSome(file, CFDataGetMutableBytePtr(data.get()) + filled,
                                      CFDataGetLength(data.get()) - filled)) {
    filled += got;
    if (filled > kMaxBytes) throw Failure("is larger than 1 GiB");
    if (filled == CFDataGetLength(data.get())) resize(data.get(), filled + std::max(kStep, filled / 2));
  }
  if (filled == 0) throw Failure("is empty");
  resize(data.get(), filled);
  return cf::adopt(CFDataRef{data.give()});
}

std::string shownName(const std::string &name) {
  if (name == kStandardStream) return "standard input";
  if (name.empty()) return "(empty name)";
  std::string shown;
  for (const char c : name) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte != 0x7f) {
      shown += c;
      continue;
    }
    // A name may hold a line end or a terminal's control codes; a message must stay one line.
    constexpr char kDigits[] = "0123456789abcdef";
    shown += {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 15]};
  }
  return shown;
}
