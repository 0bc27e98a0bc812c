// The owner of an open file.
#pragma once

#include <unistd.h>

#include <utility>

namespace cf {

class Descriptor {
 public:
  Descriptor() noexcept = default;
  explicit Descriptor(int number) noexcept : number_(number) {}
  Descriptor(Descriptor &&other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor &operator=(Descriptor &&other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor() { close(); }

  // False if the file system reports only now that something was lost. The number is free in either case.
  bool close() noexcept { return number_ < 0 || ::close(std::exchange(number_, -1)) == 0; }

  [[nodiscard]] int get() const noexcept { return number_; }
  explicit operator bool() const noexcept { return number_ >= 0; }

 private:
  int number_ = -1;
};

}  // namespace cf
