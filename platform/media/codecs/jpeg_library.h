// What reading and writing share of libjpeg's interface: errors that jump, and what they mean.
#pragma once

#include <cstddef>
#include <cstdio>

// In this order: jpeglib.h needs size_t and FILE, and what it configures decides the numbers in jerror.h.
#include <jpeglib.h>

#include <jerror.h>

#include <csetjmp>

#include "media/codecs/fault.h"

namespace codecs {

// What an error number of libjpeg's means.
Fault meaningOfJpegError(int message) noexcept;

// REQUIRES: stays in place while the codec object that points to it lives.
struct JpegErrors {
  jpeg_error_mgr manager{};  // first: libjpeg hands back a pointer to it
  std::jmp_buf jump{};
  Fault fault = Fault::none;

  // The first reason counts.
  void blame(Fault reason) noexcept {
    if (fault == Fault::none) fault = reason;
  }
  // Fills the manager: errors blame and jump, nothing is ever printed.
  jpeg_error_mgr *setUp() noexcept;

  [[noreturn]] void fail(Fault reason) noexcept {
    blame(reason);
    std::longjmp(jump, 1);
  }
  static JpegErrors &of(j_common_ptr codec) noexcept { return *reinterpret_cast<JpegErrors *>(codec->err); }
};

}  // namespace codecs
