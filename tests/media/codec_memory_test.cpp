// Memory that runs out while a file of any format is read or written: a fault, whichever request it was.

#include <gtest/gtest.h>

#include "failing_malloc.h"
#include "media/codecs/registry.h"
#include "one_of_each.h"

namespace {

using codecs::Fault;
using testing_support::FailingMalloc;

const CGImageDecodeLimits kLimits = CGImageGetDefaultDecodeLimits();

// Runs `work` with the first request failing, then the second, until a run asks for fewer. Gives how many
// runs failed. work() gives a result; judge(result, whether a request failed, its number).
template <class Work, class Judge>
long failEachRequest(Work &&work, Judge &&judge) {
  for (long request = 1; request < 100000; ++request) {
    bool failed = false;
    const auto result = [&] {
      const FailingMalloc failing(request);
      auto made = work();
      failed = failing.failed();
      return made;
    }();
    judge(result, failed, request);
    if (!failed || testing::Test::HasFailure()) return request - 1;
  }
  ADD_FAILURE() << "there was always one more request to fail";
  return 0;
}

TEST(CodecMemory, EveryFormatIsReadOrFailsForWantOfMemory) {
  for (const NamedFile &file : oneOfEach()) {
    SCOPED_TRACE(file.name);
    ASSERT_EQ(codecs::decodeAny(file.bytes, kLimits).fault, Fault::none);
    const long failed = failEachRequest([&] { return codecs::decodeAny(file.bytes, kLimits); },
                                        [&](const auto &read, bool didFail, long request) {
                                          ASSERT_EQ(read.fault, didFail ? Fault::noMemory : Fault::none)
                                              << request;
                                        });
    EXPECT_GT(failed, 0);
  }
}

codecs::EncodeSource stripes(codecs::RowLayout layout, const std::vector<uint8_t> &profile) {
  codecs::EncodeSource source;
  source.width = 40;
  source.height = 30;
  source.layout = layout;
  source.profile = profile;
  source.resolution = {300, 300};
  source.copyRow = [](void *, uint32_t y, uint8_t *out) noexcept {
    for (size_t i = 0; i < 160; ++i) out[i] = static_cast<uint8_t>(i * y);
    return true;
  };
  return source;
}

struct Written {
  Fault fault = Fault::none;
  std::vector<uint8_t> file;
};

TEST(CodecMemory, EveryFormatIsWrittenOrFailsForWantOfMemory) {
  const std::vector<uint8_t> profile = swappedRgbProfile();
  const codecs::EncodeSource source = stripes(codecs::RowLayout::rgba, profile);
  for (const codecs::CodecRecord *codec : codecs::all()) {
    if (!codec->encode) continue;
    SCOPED_TRACE(codec->name);
    const long failed = failEachRequest(
        [&] {
          std::vector<uint8_t> file;
          return codec->encode(source, file);
        },
        [](Fault fault, bool didFail, long request) {
          ASSERT_EQ(fault, didFail ? Fault::noMemory : Fault::none) << request;
        });
    EXPECT_GT(failed, 0);
  }
}

}  // namespace
