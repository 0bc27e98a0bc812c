// The owner of a file descriptor.
#pragma once

#include <unistd.h>

#include <utility>

class Descriptor {
 public:
  explicit Descriptor(int owned = -1) noexcept : number_(owned) {}
  Descriptor(Descriptor &&other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor &operator=(Descriptor &&other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor() { close(); }

  int number() const noexcept { return number_; }
  explicit operator bool() const noexcept { return number_ >= 0; }

  // False where the system reports, only now, that what was written did not arrive.
  bool close() noexcept {
    const int last = std::exchange(number_, -1);
    return last < 0 || ::close(last) == 0;
  }

 private:
  int number_;
};
