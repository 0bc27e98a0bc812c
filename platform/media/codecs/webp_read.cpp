// Reading WebP: libwebp writes the pixels straight into the final buffer.

#include <webp/decode.h>
#include <webp/demux.h>

#include <memory>
#include <new>

#include "media/codecs/frame.h"
#include "media/codecs/icc.h"
#include "media/codecs/webp.h"

namespace codecs {
namespace {

struct DeleteDemuxer {
  void operator()(WebPDemuxer *demuxer) const noexcept { WebPDemuxDelete(demuxer); }
};
using Demuxer = std::unique_ptr<WebPDemuxer, DeleteDemuxer>;

// The first frame; its bytes belong to the file.
class Frame {
 public:
  explicit Frame(const WebPDemuxer *demuxer) noexcept
      : found_(WebPDemuxGetFrame(demuxer, 1, &iterator_) != 0) {}
  ~Frame() { WebPDemuxReleaseIterator(&iterator_); }
  Frame(const Frame &) = delete;
  Frame &operator=(const Frame &) = delete;

  explicit operator bool() const noexcept { return found_; }
  const WebPIterator *operator->() const noexcept { return &iterator_; }

 private:
  WebPIterator iterator_{};
  bool found_;
};

Fault faultOf(VP8StatusCode status) noexcept {
  switch (status) {
    case VP8_STATUS_OK:
      return Fault::none;
    case VP8_STATUS_OUT_OF_MEMORY:
      return Fault::noMemory;
    case VP8_STATUS_UNSUPPORTED_FEATURE:
      return Fault::unsupported;
    case VP8_STATUS_SUSPENDED:
    case VP8_STATUS_NOT_ENOUGH_DATA:
      return Fault::truncated;
    default:
      return Fault::damaged;
  }
}

bool isLossless(const WebPBitstreamFeatures &features) noexcept {
  constexpr int kLossless = 2;
  return features.format == kLossless;
}

Fault featuresOf(const Frame &frame, WebPBitstreamFeatures &features) noexcept {
  return faultOf(WebPGetFeatures(frame->fragment.bytes, frame->fragment.size, &features));
}

// Lossless frames are unpacked into a second buffer of their own.
Fault checkSizes(uint64_t canvasPixels, const Frame &frame, const WebPBitstreamFeatures &features,
                 const CGImageDecodeLimits &limits) noexcept {
  const uint64_t framePixels = static_cast<uint64_t>(features.width) * static_cast<uint64_t>(features.height);
  const uint64_t bytes = 4 * canvasPixels + (isLossless(features) ? 4 * framePixels : 0);
  if (bytes > limits.memoryBytes) return Fault::tooLarge;
  return checkPromise(canvasPixels - framePixels, frame->fragment.size, 1);
}

// The canvas has the size of the frame but for animations.
Fault makeCanvas(const WebPDemuxer *demuxer, const Frame &frame, const WebPBitstreamFeatures &features,
                 const CGImageDecodeLimits &limits, DecodedImage &image) noexcept {
  const uint32_t width = WebPDemuxGetI(demuxer, WEBP_FF_CANVAS_WIDTH);
  const uint32_t height = WebPDemuxGetI(demuxer, WEBP_FF_CANVAS_HEIGHT);
  Fault fault = checkFrame(width, height, 4, limits);
  if (fault != Fault::none) return fault;
  const int64_t right = int64_t{frame->x_offset} + features.width;
  const int64_t bottom = int64_t{frame->y_offset} + features.height;
  if (right > width || bottom > height) return Fault::damaged;
  fault = checkSizes(uint64_t{width} * height, frame, features, limits);
  if (fault != Fault::none) return fault;
  const bool covered = features.width == int64_t{width} && features.height == int64_t{height};
  const bool alpha = features.has_alpha != 0 || !covered;
  image.depth = alpha ? 32 : 24;
  return makeFrame(image, width, height, alpha ? PixelLayout::argb32 : PixelLayout::xrgb32, limits);
}

Fault decodeFrame(const Frame &frame, DecodedImage &image) noexcept {
  WebPDecoderConfig config;
  if (!WebPInitDecoderConfig(&config)) return Fault::unsupported;
  const size_t start =
      static_cast<size_t>(frame->y_offset) * image.rowBytes + 4 * static_cast<size_t>(frame->x_offset);
  config.output.colorspace = MODE_ARGB;
  config.output.is_external_memory = 1;
  config.output.u.RGBA.rgba = image.pixels.data() + start;
  config.output.u.RGBA.stride = static_cast<int>(image.rowBytes);
  config.output.u.RGBA.size = image.pixels.size() - start;
  return faultOf(WebPDecode(frame->fragment.bytes, frame->fragment.size, &config));
}

// A lossless frame may say that it has no alpha and store some.
void makeOpaque(DecodedImage &image) noexcept {
  uint8_t *const end = image.pixels.data() + image.pixels.size();
  for (uint8_t *pixel = image.pixels.data(); pixel != end; pixel += 4) pixel[0] = 255;
}

Fault readPixels(const WebPDemuxer *demuxer, const CGImageDecodeLimits &limits,
                 DecodedImage &image) noexcept {
  const Frame frame(demuxer);
  if (!frame) return Fault::damaged;
  WebPBitstreamFeatures features{};
  Fault fault = featuresOf(frame, features);
  if (fault == Fault::none) fault = makeCanvas(demuxer, frame, features, limits, image);
  if (fault == Fault::none) fault = decodeFrame(frame, image);
  if (isLossless(features) && image.layout == PixelLayout::xrgb32) makeOpaque(image);
  return fault;
}

// May throw std::bad_alloc.
void keepProfile(const WebPDemuxer *demuxer, const CGImageDecodeLimits &limits, DecodedImage &image) {
  WebPChunkIterator chunk;
  if (WebPDemuxGetChunk(demuxer, "ICCP", 1, &chunk)) {
    const Bytes profile(chunk.chunk.bytes, chunk.chunk.size);
    if (isProfileFor(profile, ProfileColours::rgb, limits))
      image.profile.assign(profile.begin(), profile.end());
  }
  WebPDemuxReleaseChunkIterator(&chunk);
}

}  // namespace

Result<DecodedImage> decodeWebp(Bytes file, const CGImageDecodeLimits &limits) noexcept {
  if (scoreWebp(file) == 0) return Fault::unknownFormat;
  const WebPData data{file.data(), file.size()};
  WebPDemuxState state = WEBP_DEMUX_PARSING_HEADER;
  const Demuxer demuxer(WebPDemuxPartial(&data, &state));
  if (state == WEBP_DEMUX_PARSE_ERROR) return Fault::damaged;
  if (!demuxer || state != WEBP_DEMUX_DONE) return Fault::truncated;
  DecodedImage image;
  try {
    if (const Fault fault = readPixels(demuxer.get(), limits, image); fault != Fault::none) return fault;
    keepProfile(demuxer.get(), limits, image);
  } catch (const std::bad_alloc &) {
    return Fault::noMemory;
  }
  return image;
}

}  // namespace codecs
