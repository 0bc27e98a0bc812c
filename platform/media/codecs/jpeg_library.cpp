#include "media/codecs/jpeg_library.h"

namespace codecs {

Fault meaningOfJpegError(int message) noexcept {
  switch (message) {
    case JERR_OUT_OF_MEMORY:
      return Fault::noMemory;
    case JERR_NO_BACKING_STORE:  // what libjpeg says when its memory limit is reached
    case JERR_IMAGE_TOO_BIG:
    case JERR_WIDTH_OVERFLOW:
      return Fault::tooLarge;
    case JERR_ARITH_NOTIMPL:
    case JERR_BAD_PRECISION:
    case JERR_CCIR601_NOTIMPL:
    case JERR_COMPONENT_COUNT:
    case JERR_CONVERSION_NOTIMPL:
    case JERR_FRACT_SAMPLE_NOTIMPL:
    case JERR_NOT_COMPILED:
    case JERR_NOTIMPL:
    case JERR_SOF_UNSUPPORTED:
      return Fault::unsupported;
    case JERR_INPUT_EMPTY:
    case JERR_INPUT_EOF:
      return Fault::truncated;
    default:
      return Fault::damaged;
  }
}

namespace {

extern "C" {

[[noreturn]] static void onError(j_common_ptr codec) {
  JpegErrors::of(codec).fail(meaningOfJpegError(codec->err->msg_code));
}

static void onMessage(j_common_ptr, int) {}
static void printNothing(j_common_ptr) {}
}

}  // namespace

jpeg_error_mgr *JpegErrors::setUp() noexcept {
  jpeg_std_error(&manager);
  manager.error_exit = onError;
  manager.emit_message = onMessage;
  manager.output_message = printNothing;
  return &manager;
}

}  // namespace codecs
