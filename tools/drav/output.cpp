#include "output.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>

#include "descriptor.h"
#include "failure.h"
#include "input.h"

namespace {

// While a temporary file exists, a signal that ends the tool waits until it is renamed or gone.
class SignalsHeld {
 public:
  SignalsHeld() noexcept {
    sigset_t ending;
    sigemptyset(&ending);
    for (const int signal : {SIGHUP, SIGINT, SIGTERM}) sigaddset(&ending, signal);
    pthread_sigmask(SIG_BLOCK, &ending, &before_);
  }
  ~SignalsHeld() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  SignalsHeld(const SignalsHeld &) = delete;
  SignalsHeld &operator=(const SignalsHeld &) = delete;

 private:
  sigset_t before_ = {};
};

std::string folderOf(const std::string &path) {
  const size_t slash = path.rfind('/');
  return slash == std::string::npos ? "" : path.substr(0, slash + 1);
}

// A file beside the one to be made, which goes away unless it takes that one's place. Its name is
// short, so that it fits wherever the other name fits.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string &folder) {
    const std::string stem = folder + ".drav-" + std::to_string(::getpid()) + "-";
    for (int attempt = 0; !file_; ++attempt) {
      path_ = stem + std::to_string(attempt);
      file_ = Descriptor(::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
      if (!file_ && errno != EEXIST) throw Failure(systemReason(errno));
    }
  }
  ~TemporaryFile() {
    if (!placed_) ::unlink(path_.c_str());
  }
  TemporaryFile(const TemporaryFile &) = delete;
  TemporaryFile &operator=(const TemporaryFile &) = delete;

  const Descriptor &file() const noexcept { return file_; }

  void takeThePlaceOf(const std::string &target) {
    if (!file_.close() || std::rename(path_.c_str(), target.c_str()) != 0) throw Failure(systemReason(errno));
    placed_ = true;
  }

 private:
  std::string path_;
  Descriptor file_;
  bool placed_ = false;
};

void writeAll(const Descriptor &file, std::span<const uint8_t> bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file.number(), bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) throw Failure(systemReason(errno));
    bytes = bytes.subspan(static_cast<size_t>(written));
  }
}

void writeInPlace(const std::string &name, std::span<const uint8_t> bytes) {
  Descriptor file(::open(name.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
  if (!file) throw Failure(systemReason(errno));
  writeAll(file, bytes);
  if (!file.close()) throw Failure(systemReason(errno));
}

// Whoever may not change the owner still may write, so that failing is no failure here.
void keepOwnerAndPermissions(const Descriptor &file, const struct stat &before) {
  [[maybe_unused]] const int ignored = ::fchown(file.number(), before.st_uid, before.st_gid);
  if (::fchmod(file.number(), before.st_mode & 0777) != 0) throw Failure(systemReason(errno));
}

void replaceFile(const std::string &target, const std::optional<struct stat> &before,
                 std::span<const uint8_t> bytes) {
  // Renaming asks the folder alone; a file that is protected stays protected.
  if (before && ::access(target.c_str(), W_OK) != 0) throw Failure(systemReason(errno));
  const SignalsHeld held;
  TemporaryFile temporary(folderOf(target));
  writeAll(temporary.file(), bytes);
  if (before) keepOwnerAndPermissions(temporary.file(), *before);
  temporary.takeThePlaceOf(target);
}

std::optional<struct stat> statusOf(const std::string &name) {
  struct stat status = {};
  if (::stat(name.c_str(), &status) == 0) return status;
  if (errno == ENOENT) return std::nullopt;
  throw Failure(systemReason(errno));
}

void writeNamed(const std::string &name, std::span<const uint8_t> bytes) {
  const std::optional<struct stat> before = statusOf(name);
  if (before && S_ISDIR(before->st_mode)) throw Failure("is a folder");
  if (before && !S_ISREG(before->st_mode)) return writeInPlace(name, bytes);
  replaceFile(resolvedPath(name), before, bytes);
}

}  // namespace

std::string resolvedPath(const std::string &name) {
  const std::unique_ptr<char, void (*)(void *)> real(::realpath(name.c_str(), nullptr), std::free);
  return real ? real.get() : name;
}

void writeOutput(const std::string &name, std::span<const uint8_t> bytes) {
  if (name == kStandardStream) {
    writeAll(Descriptor(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3)), bytes);
    return;
  }
  try {
    writeNamed(name, bytes);
  } catch (const Failure &failure) {
    throw Failure(shownName(name) + " cannot be written: " + failure.what());
  }
}
