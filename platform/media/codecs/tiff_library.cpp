#include "media/codecs/tiff_library.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstring>
#include <new>
#include <string_view>

namespace codecs {
namespace {

TiffInput &inputOf(thandle_t handle) noexcept { return *static_cast<TiffInput *>(handle); }
TiffOutput &outputOf(thandle_t handle) noexcept { return *static_cast<TiffOutput *>(handle); }

// Where a seek leads; past the end is allowed, as with files.
uint64_t target(uint64_t at, uint64_t size, toff_t offset, int whence) noexcept {
  if (whence == SEEK_CUR) return at + offset;
  return whence == SEEK_END ? size + offset : offset;
}

extern "C" {

static tmsize_t readInput(thandle_t handle, void *out, tmsize_t count) {
  TiffInput &input = inputOf(handle);
  if (count <= 0 || input.at >= input.file.size()) return 0;
  const uint64_t got = std::min(static_cast<uint64_t>(count), input.file.size() - input.at);
  std::memcpy(out, input.file.data() + input.at, got);
  input.at += got;
  return static_cast<tmsize_t>(got);
}

static tmsize_t writeNothing(thandle_t, void *, tmsize_t) { return 0; }

static toff_t seekInput(thandle_t handle, toff_t offset, int whence) {
  TiffInput &input = inputOf(handle);
  input.at = target(input.at, input.file.size(), offset, whence);
  return input.at;
}

static toff_t sizeOfInput(thandle_t handle) { return inputOf(handle).file.size(); }

// libtiff wants a pointer that it could write through, and never does in a file that it only reads.
static int mapInput(thandle_t handle, void **base, toff_t *size) {
  const Bytes file = inputOf(handle).file;
  *base = const_cast<uint8_t *>(file.data());
  *size = file.size();
  return 1;
}

static int mapNothing(thandle_t, void **, toff_t *) { return 0; }
static void unmapNothing(thandle_t, void *, toff_t) {}
static int closeNothing(thandle_t) { return 0; }

static tmsize_t readOutput(thandle_t handle, void *out, tmsize_t count) {
  TiffOutput &output = outputOf(handle);
  const uint64_t size = output.file.size() - output.start;
  if (count <= 0 || output.at >= size) return 0;
  const uint64_t got = std::min(static_cast<uint64_t>(count), size - output.at);
  std::memcpy(out, output.file.data() + output.start + output.at, got);
  output.at += got;
  return static_cast<tmsize_t>(got);
}

static tmsize_t writeOutput(thandle_t handle, void *bytes, tmsize_t count) {
  TiffOutput &output = outputOf(handle);
  if (count <= 0 || output.ranOut) return 0;
  const size_t at = output.start + output.at;
  const size_t end = at + static_cast<size_t>(count);
  try {
    if (end > output.file.size()) output.file.resize(end);
  } catch (const std::exception &) {
    output.ranOut = true;
    return 0;
  }
  std::memcpy(output.file.data() + at, bytes, static_cast<size_t>(count));
  output.at += static_cast<uint64_t>(count);
  return count;
}

static toff_t seekOutput(thandle_t handle, toff_t offset, int whence) {
  TiffOutput &output = outputOf(handle);
  output.at = target(output.at, output.file.size() - output.start, offset, whence);
  return output.at;
}

static toff_t sizeOfOutput(thandle_t handle) { return outputOf(handle).file.size() - outputOf(handle).start; }

static int onError(TIFF *, void *messages, const char *, const char *, va_list) {
  static_cast<TiffMessages *>(messages)->error = true;
  return 1;
}

// Fax and JPEG decoders fill in what they cannot read, and only warn of it.
static int onWarning(TIFF *, void *messages, const char *module, const char *, va_list) {
  const std::string_view from = module ? module : "";
  if (from.starts_with("Fax") || from == "JPEGLib") static_cast<TiffMessages *>(messages)->lostPixels = true;
  return 1;
}
}

struct FreeOptions {
  void operator()(TIFFOpenOptions *options) const noexcept { TIFFOpenOptionsFree(options); }
};
using Options = std::unique_ptr<TIFFOpenOptions, FreeOptions>;

Options silentOptions(TiffMessages &messages) noexcept {
  Options options(TIFFOpenOptionsAlloc());
  if (!options) return options;
  TIFFOpenOptionsSetErrorHandlerExtR(options.get(), onError, &messages);
  TIFFOpenOptionsSetWarningHandlerExtR(options.get(), onWarning, &messages);
  return options;
}

}  // namespace

// "c": strips stay as they are; libtiff would cut a long one into pieces.
TiffHandle openTiff(TiffInput &input, TiffMessages &messages, uint64_t mostBytesAtOnce) noexcept {
  const Options options = silentOptions(messages);
  if (!options) return nullptr;
  TIFFOpenOptionsSetMaxSingleMemAlloc(
      options.get(), static_cast<tmsize_t>(std::clamp<uint64_t>(mostBytesAtOnce, 1, PTRDIFF_MAX)));
  return TiffHandle(TIFFClientOpenExt("memory", "rc", &input, readInput, writeNothing, seekInput,
                                      closeNothing, sizeOfInput, mapInput, unmapNothing, options.get()));
}

// "l": the same bytes on every machine.
TiffHandle createTiff(TiffOutput &output, TiffMessages &messages) noexcept {
  const Options options = silentOptions(messages);
  if (!options) return nullptr;
  return TiffHandle(TIFFClientOpenExt("memory", "wl", &output, readOutput, writeOutput, seekOutput,
                                      closeNothing, sizeOfOutput, mapNothing, unmapNothing, options.get()));
}

}  // namespace codecs
